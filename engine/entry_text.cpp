#include "engine/entry_text.h"

#include <string_view>

#include "engine/clients.h"
#include "engine/smart_selection.h"

namespace tarnby {

namespace {

std::string offered_label(const Offer& offer) {
  return offer.label_suffix ? offer.label + ": " + offer.label_suffix : offer.label;
}

struct Label {
  std::string operator()(const std::shared_ptr<CacheItem>& item) const { return item->label; }
  std::string operator()(const std::shared_ptr<LargeFile>& file) const { return file->name; }
  std::string operator()(const std::shared_ptr<RemainderItem>& item) const { return item->label; }
  std::string operator()(const std::shared_ptr<CleanerItem>& item) const { return client_name(item->type); }
  std::string operator()(const std::shared_ptr<OfferedItem>& item) const { return offered_label(item->offer); }
};

}  // namespace

std::string client_name(std::string_view type) {
  const ClientRow* row = client_row(type);
  return row ? row->name : std::string(type);
}

std::string short_path(const Url& url, const Url& home) {
  return url.is_within(home) ? "~" + url.path().substr(home.path().size()) : url.path();
}

std::string label_of(const CleanerEntry& entry) {
  return std::visit(Label{}, entry);
}

std::string place_of(const CleanerEntry& entry, const Url& home) {
  const auto urls = locations_of(entry);
  if (urls.empty()) return {};
  const std::string place = short_path(urls.front().parent(), home);
  std::size_t end = 0;
  for (int components = 0; components < 3 && end != std::string::npos; ++components) end = place.find('/', end + 1);
  return end == std::string::npos ? place : place.substr(0, end) + "/…";
}

}  // namespace tarnby
