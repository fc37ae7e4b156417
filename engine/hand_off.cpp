#include "engine/hand_off.h"

#include <algorithm>

#include "engine/cleaner.h"
#include "engine/notifications.h"
#include "platform/platform.h"
#include "text/property_list.h"

namespace tarnby {

namespace {

constexpr std::size_t most_answer_bytes = std::size_t{64} << 20U;

/// A name may hold bytes that no property list can. Such a path is not handed over, since the helper would read another
/// one.
bool can_be_written(const std::string& path) {
  return parse_property_list(write_xml_property_list(path)) == PropertyList(path);
}

PropertyList store_of(const std::vector<Url>& urls) {
  PropertyList::Array paths;
  for (const Url& url : urls) {
    if (can_be_written(url.path())) paths.emplace_back(url.path());
  }
  return PropertyList::Dictionary{{"Store", std::move(paths)}};
}

}  // namespace

HandOff::HandOff(Platform& platform, Cleaner& cleaner, Launch launch)
    : application_support_url(platform.app_settings.location("application_support_url")),
      helper_url(platform.app_settings.location("helper_url")),
      platform_(platform),
      cleaner_(cleaner),
      launch_(std::move(launch)) {}

bool HandOff::delete_files_with_helper() {
  FileManager& files = platform_.files;
  if (!files.exists(helper_url)) return false;
  store_url = application_support_url.appending("Tarnby cleaner/Store.plist");
  const std::string list = write_xml_property_list(store_of(cleaner_.remainder_urls));
  if (!files.make_folder(store_url.parent()) || !files.write(store_url, list)) return false;
  launch_(helper_url);
  return true;
}

bool HandOff::helper_timer_proc() {
  const auto bytes = platform_.files.read(store_url, most_answer_bytes);
  const auto answer = bytes ? parse_property_list(*bytes) : std::nullopt;
  if (answer && answer->find("Complete")) {
    platform_.notifications.post(notifications::cleaned_view_controller);
    return false;
  }
  if (answer && answer->find("Cancel")) return delete_files_with_helper();
  return true;
}

void HandOff::cancel() {
  const auto& urls = cleaner_.remainder_urls;
  const bool is_any_left =
      std::any_of(urls.begin(), urls.end(), [&](const Url& url) { return platform_.files.exists(url); });
  platform_.notifications.post(is_any_left ? notifications::cleanup_with_file_exist
                                           : notifications::cleaned_view_controller);
}

}  // namespace tarnby
