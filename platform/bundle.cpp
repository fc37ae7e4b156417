#include "platform/bundle.h"

namespace tarnby {

namespace {

constexpr std::size_t largest_info_list = 16'000'000;

constexpr std::string_view image_extensions[] = {"icns", "png", "tiff", "tif", "jpg",
                                                 "jpeg", "gif", "bmp",  "ico", "pdf"};

}  // namespace

Bundle::Bundle(const FileManager& files, Url url)
    : files_(files),
      url_(std::move(url)),
      is_real_(files.is_folder(url_) && files.is_folder(url_.appending("Contents"))) {
  if (!is_real_) return;
  if (const auto bytes = files.read(url_.appending("Contents/Info.plist"), largest_info_list)) {
    info_ = parse_property_list(*bytes);
  }
}

std::optional<std::string> Bundle::text(std::string_view key) const {
  const PropertyList* value = info_ ? info_->find(key) : nullptr;
  const std::string* text = value ? value->as<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::string> Bundle::identifier() const {
  std::optional<std::string> identifier = text("CFBundleIdentifier");
  if (identifier && identifier->empty()) identifier.reset();
  return identifier;
}

Url Bundle::image_resource(std::string_view name) const {
  if (name.empty() || !is_real_) return {};
  const LookWatch of_a_picture(LookWatch::Tells::here);
  const Url resources = url_.appending("Contents/Resources");
  const auto existing = [&](const std::string& file) {
    Url url = resources.appending(file);
    return files_.status(url).kind == EntryKind::file ? url : Url();
  };
  if (!path_extension_of(last_component_of(name)).empty()) {
    if (Url url = existing(std::string(name)); !url.empty()) return url;
  }
  for (const std::string_view extension : image_extensions) {
    if (Url url = existing(std::string(name) + "." + std::string(extension)); !url.empty()) return url;
  }
  return {};
}

std::optional<std::string> bundle_identifier(const FileManager& files, const Url& bundle) {
  return Bundle(files, bundle).identifier();
}

}  // namespace tarnby
