#include "engine/entry_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "engine/smart_selection.h"

namespace tarnby {

namespace {

/// How people call a client; the engine knows it by its type.
struct ClientName {
  std::string_view type;
  std::string_view name;
};

constexpr ClientName client_names[] = {{"chrome", "Google Chrome"}, {"mozilla", "Firefox"}, {"safari", "Safari"},
                                       {"apple-mail", "Mail"},      {"airmail", "Airmail"}, {"spark", "Spark"}};

struct Label {
  std::string operator()(const std::shared_ptr<CacheItem>& item) const { return item->label; }
  std::string operator()(const std::shared_ptr<LargeFile>& file) const { return file->name; }
  std::string operator()(const std::shared_ptr<RemainderItem>& item) const { return item->label; }
  std::string operator()(const std::shared_ptr<CleanerItem>& item) const {
    const auto* row = std::find_if(std::begin(client_names), std::end(client_names),
                                   [&](const ClientName& client) { return client.type == item->type; });
    return row == std::end(client_names) ? item->type : std::string(row->name);
  }
};

}  // namespace

std::string label_of(const CleanerEntry& entry) {
  return std::visit(Label{}, entry);
}

std::string place_of(const CleanerEntry& entry, const Url& home) {
  const auto urls = locations_of(entry);
  if (urls.empty()) return {};
  const Url folder = urls.front().parent();
  std::string place = folder.path();
  if (folder.is_within(home)) place.replace(0, home.path().size(), "~");
  std::size_t end = 0;
  for (int components = 0; components < 3 && end != std::string::npos; ++components) end = place.find('/', end + 1);
  return end == std::string::npos ? place : place.substr(0, end) + "/…";
}

}  // namespace tarnby
