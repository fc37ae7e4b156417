#pragma once

#include <atomic>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/characters.h"
#include "cli/invocation.h"
#include "files/file_manager.h"
#include "files/home_kind.h"
#include "files/measurer.h"
#include "platform/app_settings.h"
#include "platform/bookmarks.h"
#include "platform/notification_center.h"
#include "platform/queues.h"
#include "platform/session.h"
#include "text/text.h"

namespace tarnby {
class Platform;
}  // namespace tarnby

namespace tarnby::cli {

/// Everything one run of the program works with: what was asked, where it writes, and the process-wide platform, set up
/// for this run.
struct Context {
  const Invocation& asked;
  std::ostream& out;
  std::ostream& err;
  Platform& platform;
  /// The platform's settings, to which values can be given that hold for this run.
  RunSettings& run_settings;
  PlainMainQueue& main_queue;
  /// What is printed is read by a person in a window.
  bool out_is_terminal;
  /// A line on standard error can be written over, see rewrites_lines.
  bool err_rewrites_lines;
  /// There is somebody to ask.
  bool in_is_terminal;

  // The parts of the platform that commands use.
  AppSettings& settings() const;
  FileManager& files() const;
  Measurer& measurer() const;
  Bookmarks& bookmarks() const;
  NotificationCenter& notifications() const;
  const Session& session() const;
  const Text& text() const;

  /// Of which kind the home is, as the command line or else the home itself says.
  HomeKind layout() const;
};

/// "macos" or "linux".
std::string_view layout_name(HomeKind kind);

/// The platform of one run, and its settings, which the platform owns.
struct RunPlatform {
  std::unique_ptr<Platform> platform;
  RunSettings& settings;
};

/// Makes this process's platform for this run: folders and settings given on the command line stand before the stored
/// ones, and nothing of that is stored. Throws CommandError when what was given is no use.
RunPlatform platform_for(const Invocation& asked, MainQueue& main_queue);

/// True when an option gives this setting a value of its own for this run.
bool given_for_this_run(const Invocation& asked, std::string_view key);

/// Begins to access the home and the Applications folder (and the disk, when it was given); throws CommandError with
/// `no_access` when one was not granted, is missing or cannot be read.
void need_folders(Context& context);
/// The same, but in a home of the Linux kind for the home folder alone: what is installed there stands in lists that
/// everybody may read.
void need_scan_folders(Context& context);
/// The same for the home folder alone.
void need_home(Context& context);

/// An absolute path for one typed by a person, by the current folder; nowhere when that is unknown.
Url typed_path(const std::string& text);

}  // namespace tarnby::cli
