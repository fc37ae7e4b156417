#include "files/url.h"

#include <algorithm>
#include <cstring>

namespace tarnby {

std::string_view path_extension_of(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return name.substr(dot + 1);
}

std::string_view last_component_of(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

namespace {

/// Appends the components of `path` to `out` (which ends in no "/"), leaving out empty ones and ".".
void append_components(std::string& out, std::string_view path) {
  while (!path.empty()) {
    const auto slash = path.find('/');
    const auto component = path.substr(0, slash);
    path = slash == std::string_view::npos ? std::string_view{} : path.substr(slash + 1);
    if (component.empty() || component == ".") continue;
    out += '/';
    out += component;
  }
}

}  // namespace

Url Url::file(std::string_view absolute_path) {
  if (absolute_path.empty() || absolute_path.front() != '/') return {};
  if (absolute_path.find('\0') != std::string_view::npos) return {};
  std::string path;
  path.reserve(absolute_path.size());
  append_components(path, absolute_path);
  if (path.empty()) path.push_back('/');
  return Url(std::move(path));
}

Url Url::text(std::string_view text) {
  if (!text.empty() && text.front() == '/') return {};
  return Url(std::string(text));
}

std::string_view Url::last_path_component() const {
  return last_component_of(text_);
}

Url Url::appending(std::string_view components) const {
  if (!is_file_url() || components.find('\0') != std::string_view::npos) return {};
  std::string path;
  path.reserve(text_.size() + 1 + components.size());
  if (text_ != "/") path = text_;
  append_components(path, components);
  if (path.empty()) path.push_back('/');
  return Url(std::move(path));
}

Url Url::parent() const {
  if (!is_file_url()) return {};
  const auto slash = text_.rfind('/');
  return Url(slash == 0 ? std::string("/") : text_.substr(0, slash));
}

bool Url::is_within(const Url& folder) const {
  if (!is_file_url() || !folder.is_file_url()) return false;
  if (folder.text_ == "/") return true;
  if (!std::string_view(text_).starts_with(folder.text_)) return false;
  return text_.size() == folder.text_.size() || text_[folder.text_.size()] == '/';
}

bool walks_before(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t at = 0;
  constexpr std::size_t stride = 8;  // paths that are compared have much in common
  while (at + stride <= shorter && std::memcmp(a.data() + at, b.data() + at, stride) == 0) at += stride;
  while (at < shorter && a[at] == b[at]) ++at;
  if (at == b.size()) return false;
  if (at == a.size()) return true;
  // "/" ends a component, so it comes before every byte that a name may hold.
  if (a[at] == '/' || b[at] == '/') return a[at] == '/';
  return static_cast<unsigned char>(a[at]) < static_cast<unsigned char>(b[at]);
}

}  // namespace tarnby
