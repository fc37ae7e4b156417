#include "platform/platform.h"

#include <syslog.h>

#include "platform/system_services.h"

namespace tarnby {

namespace {

std::unique_ptr<Platform>& shared_place() {
  static std::unique_ptr<Platform> platform;
  return platform;
}

}  // namespace

Platform::Platform(Session user, std::unique_ptr<SettingsStore> settings, MainQueue& queue, Localization texts)
    : settings_(settings ? std::move(settings) : open_standard_settings(user)),
      group_(open_group_settings(user)),
      metadata_(open_file_metadata(files)),
      login_items_(open_login_items(user)),
      session(std::move(user)),
      localization(std::move(texts)),
      text(session.collation_locale, session.number_locale, localization),
      app_settings(*settings_),
      group_settings(*group_),
      measurer(files),
      bookmarks(*settings_, files.granted()),
      metadata(*metadata_),
      login_items(*login_items_),
      main_queue(queue),
      now([] { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }),
      system_log([](std::string_view line) { syslog(LOG_INFO, "%.*s", static_cast<int>(line.size()), line.data()); }) {}

Platform& Platform::shared() {
  static PlainMainQueue main_queue;
  static std::once_flag once;
  std::call_once(once, [] {
    if (!shared_place()) shared_place() = std::make_unique<Platform>(current_session(), nullptr, main_queue);
  });
  return *shared_place();
}

void Platform::set_shared(std::unique_ptr<Platform> platform) {
  shared_place() = std::move(platform);
}

}  // namespace tarnby
