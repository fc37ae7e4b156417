#pragma once

#include <QString>
#include <atomic>
#include <functional>
#include <initializer_list>
#include <memory>

#include "app/icons/icons.h"
#include "app/parts/app_delegate.h"
#include "app/parts/engine_turn.h"
#include "app/parts/removal_run.h"
#include "files/file_manager.h"
#include "platform/app_settings.h"
#include "platform/notification_center.h"
#include "platform/queues.h"

namespace tarnby {

class AnimationClock;
class Cleaner;
class FolderChooser;
class LoginItems;
class Measurer;
class Platform;
class Workspace;
struct Session;

/// What every screen needs, in one place. Outlives the screens. Main thread only, but for what says otherwise.
struct AppContext {
  Platform& platform;
  AnimationClock& clock;
  AppDelegate& appDelegate;
  /// Scans and removals, one after the other.
  BackgroundQueue& background;
  /// Short looks and writes that a scan must not hold up.
  BackgroundQueue& io_queue;
  Workspace& workspace;
  FolderChooser& folder_chooser;
  /// The engine; made when it is first asked for, since it takes the grants as they are then.
  std::function<Cleaner&()> sharedCleaner;
  /// The grants were changed: whoever asks for the engine from now on gets one that has taken them anew.
  std::function<void()> renew_grants = [] {};
  RemovalRun removal = {};
  Icons icons{platform};
  EngineTurn turn{notifications(), main_queue()};
  /// The last smart scan found nothing it knows in the home folder, and nothing else either. Main thread.
  bool scanned_home_is_empty = false;
  /// A search for large files of this launch has found some, and nothing writes them any more. Main thread.
  bool large_files_are_known = false;
  /// Set when the program is to end: nothing new begins. Any thread.
  std::atomic<bool> ending{false};

  /// Asked when the window is to close, which ends the program. False keeps it open; who says so has asked the person.
  std::function<bool(QWidget& window)> may_close = [](QWidget&) { return true; };

  /// A thread for what may wait for a person's answer, such as for the system's consent; made when it is first needed.
  /// Nothing else waits behind it, and the program's end does not either.
  std::unique_ptr<BackgroundQueue> consent = nullptr;
  /// How much of that is under way. Any thread.
  std::atomic<int> consents_asked{0};
  /// Runs work there. Main thread.
  void ask_consent(std::function<void()> work);

  // The parts of the platform that screens use.
  AppSettings& settings() const;
  FileManager& files() const;
  Measurer& measurer() const;
  NotificationCenter& notifications() const;
  MainQueue& main_queue() const;
  LoginItems& login_items() const;
  const Session& session() const;

  /// The program is to end: what looks stops, and a removal, too.
  void end();
  /// Whether a scan may be asked for: none is under way, and no removal.
  bool is_free() const { return turn.is_free() && !removal.running; }
  /// To be asked in the background before a scan or a search: lets the file manager look again, which a scan that was
  /// given up may have stopped. False when the program is to end: then nothing may begin. Whether this very scan was
  /// given up is to be asked afterwards, or a stop in between would be lost.
  bool begin_looking();
  /// Nobody waits for the scan any more that runs, or waits for its turn in the background. Main thread.
  void give_up_looking();
  /// How often that was said. A scan that has not begun when the number changes never does. Any thread.
  std::atomic<unsigned> times_given_up{0};

  /// The text in the user's language; `values` take the places of its "%@".
  QString text(const char* english) const;
  QString text(const char* english, std::initializer_list<QString> values) const;
  /// The form of a text that the language takes for that number; the number in the user's locale takes the place of its
  /// "%@", or of the first after those of `values`.
  QString plural(std::int64_t count, const char* english_one, const char* english_other,
                 std::initializer_list<QString> values = {}) const;
  QString byte_count(std::int64_t bytes) const;
  /// A whole number in the user's locale.
  QString number(std::int64_t number) const;

  /// Brings the settings to the disk soon, without waiting for it.
  void flush_settings();
};

}  // namespace tarnby
