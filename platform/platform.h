#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "files/file_manager.h"
#include "files/home_kind.h"
#include "files/measurer.h"
#include "platform/app_settings.h"
#include "platform/application_delegate.h"
#include "platform/bookmarks.h"
#include "platform/file_metadata.h"
#include "platform/login_items.h"
#include "platform/notification_center.h"
#include "platform/queues.h"
#include "platform/session.h"
#include "platform/settings_store.h"
#include "text/localization.h"
#include "text/text.h"

namespace tarnby {

/// Everything the operating system gives, in one place. The objects above take what they need from it when they are
/// made; it outlives them all.
class Platform {
 public:
  /// @param session who the user is and where the settings are.
  /// @param settings the standard store; none opens that of the session.
  /// @param main_queue the queue of the main thread.
  /// @param texts the language that people are spoken to in; English without it.
  Platform(Session session, std::unique_ptr<SettingsStore> settings, MainQueue& main_queue, Localization texts = {});
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;

  /// The one of this process: the current session, its settings, and a plain main queue. Made on first use, unless the
  /// program has put its own in place before.
  static Platform& shared();
  /// Puts this program's own platform in place; before anything has used the shared one.
  static void set_shared(std::unique_ptr<Platform> platform);

 private:
  std::unique_ptr<SettingsStore> settings_;
  std::unique_ptr<SettingsStore> group_;
  std::unique_ptr<FileMetadata> metadata_;
  std::unique_ptr<LoginItems> login_items_;

 public:
  const Session session;
  const Localization localization;
  const Text text;
  AppSettings app_settings;
  /// What this program shares with its scheduler: the key "Date", the moment of the last removal run.
  SettingsStore& group_settings;
  FileManager files;
  Measurer measurer;
  Bookmarks bookmarks;
  const FileMetadata& metadata;
  LoginItems& login_items;
  NotificationCenter notifications;
  MainQueue& main_queue;
  /// Of which kind the home is, when somebody has said so; else the home itself tells.
  std::optional<HomeKind> home_kind;
  /// Null in the terminal.
  ApplicationDelegate* application_delegate = nullptr;
  /// The present moment, in whole seconds.
  std::function<Moment()> now;
  /// Writes a line into the system's log: syslog(3).
  std::function<void(std::string_view line)> system_log;
};

}  // namespace tarnby
