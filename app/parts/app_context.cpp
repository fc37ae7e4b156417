#include "app/parts/app_context.h"

#include <QLocale>

#include "platform/platform.h"
#include "text/text.h"

namespace tarnby {

namespace {

std::vector<std::string> in_utf8(std::initializer_list<QString> values) {
  std::vector<std::string> owned;
  for (const QString& value : values) owned.push_back(value.toStdString());
  return owned;
}

}  // namespace

AppSettings& AppContext::settings() const {
  return platform.app_settings;
}

FileManager& AppContext::files() const {
  return platform.files;
}

Measurer& AppContext::measurer() const {
  return platform.measurer;
}

NotificationCenter& AppContext::notifications() const {
  return platform.notifications;
}

MainQueue& AppContext::main_queue() const {
  return platform.main_queue;
}

LoginItems& AppContext::login_items() const {
  return platform.login_items;
}

const Session& AppContext::session() const {
  return platform.session;
}

QString AppContext::text(const char* english) const {
  return QString::fromStdString(platform.localization.text(english));
}

QString AppContext::text(const char* english, std::initializer_list<QString> values) const {
  return QString::fromStdString(platform.localization.text(english, in_utf8(values)));
}

QString AppContext::plural(std::int64_t count, const char* english_one, const char* english_other,
                           std::initializer_list<QString> values) const {
  std::vector<std::string> owned = in_utf8(values);
  owned.push_back(number(count).toStdString());
  return QString::fromStdString(platform.localization.plural(count, english_one, english_other, owned));
}

QString AppContext::byte_count(std::int64_t bytes) const {
  return QString::fromStdString(platform.text.byte_count(bytes));
}

QString AppContext::number(std::int64_t number) const {
  return QLocale().toString(static_cast<qlonglong>(number));
}

void AppContext::flush_settings() {
  io_queue.async([&settings = platform.app_settings] { (void)settings.synchronize(); });
}

void AppContext::ask_consent(std::function<void()> work) {
  if (!consent) consent = std::make_unique<BackgroundQueue>();
  ++consents_asked;
  consent->async([this, work = std::move(work)] {
    work();
    --consents_asked;
  });
}

void AppContext::end() {
  ending = true;
  removal.stop();
  platform.files.stop_looking();
}

void AppContext::give_up_looking() {
  ++times_given_up;
  platform.files.stop_looking();
}

bool AppContext::begin_looking() {
  platform.files.look_again();
  if (ending) platform.files.stop_looking();  // it may have been asked to between the two
  return !ending;
}

}  // namespace tarnby
