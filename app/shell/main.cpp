#include <QApplication>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "app/desktop/desktop_folder_chooser.h"
#include "app/desktop/desktop_language.h"
#include "app/desktop/desktop_look.h"
#include "app/desktop/desktop_services.h"
#include "app/desktop/display.h"
#include "app/desktop/resources.h"
#include "app/parts/app_context.h"
#include "app/parts/notice.h"
#include "app/shell/cleaner_window_controller.h"
#include "app/shell/command_line.h"
#include "app/shell/end_signals.h"
#include "app/shell/engine_objects.h"
#include "app/shell/qt_main_queue.h"
#include "platform/platform.h"
#include "platform/workspace.h"

namespace tarnby {
namespace {

Session session_for(const CommandLine& line) {
  Session session = current_session();
  if (line.languages) session.preferred_languages = languages_from_list(*line.languages, ',');
  return session;
}

/// Does what can wait once the window has been painted for the first time; or, where nobody sees it, a little later.
class AfterFirstPicture final : public QObject {
 public:
  AfterFirstPicture(QWindow& window, std::function<void()> work) : QObject(&window), work_(std::move(work)) {
    window.installEventFilter(this);
    QTimer::singleShot(longest_wait, this, &AfterFirstPicture::begin);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    // The picture is made while the event is handled.
    if (event->type() == QEvent::Expose) QTimer::singleShot(0, this, &AfterFirstPicture::begin);
    return false;
  }

 private:
  static constexpr std::chrono::seconds longest_wait{1};

  void begin() {
    if (const auto work = std::exchange(work_, nullptr)) work();
    deleteLater();
  }

  std::function<void()> work_;
};

int run_window(QApplication& application, const CommandLine& line) {
  const Session session = session_for(line);
  const std::unique_ptr<DesktopServices> services = desktop_services(session);
  if (!services->is_first_window()) return 0;
  apply_desktop_look();
  services->apply_motion();

  QtMainQueue main_queue;
  const Url tables = Url::file(resource_path(QStringLiteral("localization")).toStdString());
  const Localization localization = Localization::for_languages(session.preferred_languages, tables);
  apply_desktop_language(application, localization);
  Platform::set_shared(std::make_unique<Platform>(session, nullptr, main_queue, localization));
  Platform& platform = Platform::shared();
  platform.files.confine_threads(FileManager::Callers::keep_their_rights);
  TimerClock clock;
  BackgroundQueue io_queue;
  AppDelegate delegate(platform.app_settings,
                       [&] { io_queue.async([&] { (void)platform.app_settings.synchronize(); }); });
  platform.application_delegate = &delegate;
  const std::unique_ptr<Workspace> workspace = services->make_workspace(platform, io_queue);
  DesktopFolderChooser folder_chooser;
  BackgroundQueue background;
  EngineObjects engine(platform);
  AppContext context = {platform,
                        clock,
                        delegate,
                        background,
                        io_queue,
                        *workspace,
                        folder_chooser,
                        [&]() -> Cleaner& { return engine.cleaner(); },
                        [&] { engine.renew_grants(); }};

  delegate.applicationDidFinishLaunching();
  QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
  CleanerWindowController window(context);
  services->serve(window, [&](const QString& what) {
    Notice::present(context, context.text("This could not be opened"),
                    context.text("Nothing on this desktop opens %@.", {what}), &window);
  });
  window.show();
  window.load();
  new AfterFirstPicture(*window.windowHandle(), [&] {
    clock.start();
    QApplication::setWindowIcon(program_icon());
    services->ask_for_motion();
  });
  // Nobody is asked, as where the window is closed: who ends a session does not wait for an answer.
  const EndSignals end_signals([] { QApplication::exit(); });
  const int status = QApplication::exec();
  delegate.applicationWillTerminate();
  context.end();
  background.finish();
  count_unseen_removal(context);
  io_queue.finish();  // and the settings reach the disk
  // Its thread may never come back; nothing is left to do here that it could miss.
  if (context.consents_asked > 0) std::_Exit(status);
  return status;
}

}  // namespace
}  // namespace tarnby

int main(int argc, char** argv) {
  using Asks = tarnby::CommandLine::Asks;
  const std::span<const char* const> words(argv + std::min(argc, 1), argv + argc);
  const tarnby::CommandLine line = tarnby::read_command_line(words);
  if (line.asks == Asks::help) return std::fputs(tarnby::window_help, stdout) < 0 ? 1 : 0;
  if (line.asks == Asks::version) return std::puts("tarnby-cleaner " TARNBY_VERSION) < 0 ? 1 : 0;
  if (line.asks == Asks::wrong) {
    std::fprintf(stderr, "tarnby-cleaner: %s; see tarnby-cleaner --help\n", line.fault.c_str());
    return 2;  // NOLINT: as the terminal program ends
  }
  std::optional<QApplication> application;
  {
    const tarnby::NeedsDisplay display;
    const std::shared_ptr<void> beside = tarnby::work_beside_the_start();
    application.emplace(argc, argv);
  }
  QApplication::setApplicationName(QStringLiteral("tarnby-cleaner"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tarnby cleaner"));
  QApplication::setDesktopFileName(QStringLiteral("com.corvash.tarnby-cleaner"));
  QApplication::setApplicationVersion(QStringLiteral(TARNBY_VERSION));
  return tarnby::run_window(*application, line);
}
