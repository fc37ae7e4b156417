#include "cli/related_files.h"

#include <algorithm>
#include <unordered_map>

#include "cli/table.h"
#include "files/bytes.h"

namespace tarnby::cli {

namespace {

/// How people call a group; the list of files has its marker.
struct GroupName {
  std::string_view marker;
  std::string_view name;
};

constexpr GroupName group_names[] = {{"Executables", "Application"},
                                     {"Supportfiles", "Support files"},
                                     {"LauchAgents", "Started in the background"},
                                     {"Plugins", "Plug-ins"}};

std::string name_of_group(const std::string& marker) {
  const auto* row = std::ranges::find(group_names, marker, &GroupName::marker);
  return row == std::end(group_names) ? marker : std::string(row->name);
}

std::int64_t size_at(const ApplicationItem& item, std::size_t at) {
  const auto* size = std::get_if<std::uint64_t>(&item.sizes[at]);
  return size ? static_cast<std::int64_t>(*size) : 0;
}

/// True when the size of the outer one has the inner one in it: what is hidden does not count there.
bool counts_in(const Url& inner, const Url& outer) {
  return inner.is_within(outer) && inner.path().find("/.", outer.path().size()) == std::string::npos;
}

}  // namespace

Url application_at(const Context& context, const std::string& typed) {
  const Url path = typed_path(typed);
  const Url folder = real_folder(path.parent());
  Url url = folder.appending(path.last_path_component());
  if (!context.files().is_application(url)) {
    throw CommandError(wrong_usage,
                       "\"" + one_line(typed) + "\" is not an application; give the path of a folder NAME.app");
  }
  return url;
}

Json json_related_files(const ApplicationItem& item) {
  Json groups = Json::array();
  for (std::size_t at = 0; at < item.files.size(); ++at) {
    const Url& file = item.files[at];
    if (!file.is_file_url()) {
      groups.push_back({{"name", json_text(file.path())}, {"items", Json::array()}});
    } else {
      groups.back()["items"].push_back({{"path", json_text(file.path())}, {"size", size_at(item, at)}});
    }
  }
  return groups;
}

void print_related_files(Context& context, const ApplicationItem& item) {
  Table table({Table::Align::right, Table::Align::left}, window_columns());
  for (std::size_t at = 0; at < item.files.size(); ++at) {
    const Url& file = item.files[at];
    if (!file.is_file_url()) {
      table.heading({"", name_of_group(file.path())});
    } else {
      table.line({context.text().byte_count(size_at(item, at)), one_line(file.path())});
    }
  }
  table.print(context.out);
}

std::int64_t bytes_of(const ApplicationItem& item, std::span<const Url> urls) {
  std::unordered_map<Url, std::int64_t> sizes;
  for (std::size_t at = 0; at < item.files.size(); ++at) sizes.emplace(item.files[at], size_at(item, at));
  std::vector<Url> in_order(urls.begin(), urls.end());
  std::sort(in_order.begin(), in_order.end(),
            [](const Url& a, const Url& b) { return walks_before(a.path(), b.path()); });
  std::int64_t bytes = 0;
  std::vector<Url> around;  // those counted that the next one may lie inside of
  for (const Url& url : in_order) {
    while (!around.empty() && !url.is_within(around.back())) around.pop_back();
    if (!around.empty() && counts_in(url, around.back())) continue;
    bytes = add_bytes(bytes, sizes.at(url));
    around.push_back(url);
  }
  return bytes;
}

}  // namespace tarnby::cli
