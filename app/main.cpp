#include <QApplication>
#include <cstdio>
#include <cstring>

#include "app/app_context.h"
#include "app/cleaner_window_controller.h"
#include "app/desktop/desktop_folder_chooser.h"
#include "app/desktop/desktop_look.h"
#include "app/desktop/desktop_workspace.h"
#include "app/qt_main_queue.h"
#include "app/single_window.h"

namespace tarnby {
namespace {

void bring_to_front(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

int run_window(QApplication& application) {
  SingleWindow single(current_session().settings_folder);
  if (!single.is_first()) return 0;
  take_desktop_look(application);

  QtMainQueue main_queue;
  Platform::set_shared(std::make_unique<Platform>(current_session(), nullptr, main_queue));
  Platform& platform = Platform::shared();
  TimerClock clock;
  BackgroundQueue errands;
  AppDelegate delegate(platform.app_settings,
                       [&] { errands.async([&] { (void)platform.app_settings.synchronize(); }); });
  platform.application_delegate = &delegate;
  DesktopWorkspace workspace(platform, errands);
  DesktopFolderChooser folder_chooser;
  BackgroundQueue background;
  AppContext context = {platform, clock,     delegate,       background,
                        errands,  workspace, folder_chooser, []() -> Cleaner& { return Cleaner::sharedCleaner(); }};

  delegate.applicationDidFinishLaunching();
  QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
  CleanerWindowController window(context);
  workspace.set_window(&window);
  single.when_asked_to_front([&] { bring_to_front(window); });
  window.show();
  const int status = QApplication::exec();
  delegate.applicationWillTerminate();
  context.ending = true;
  platform.files.stop_looking();
  background.finish();  // a removal finishes the entry in hand
  errands.finish();     // and the settings reach the disk
  return status;
}

}  // namespace
}  // namespace tarnby

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
    std::puts("tarnby-cleaner " TARNBY_VERSION);
    return 0;
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tarnby-cleaner"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tarnby cleaner"));
  QApplication::setDesktopFileName(QStringLiteral("com.corvash.tarnby-cleaner"));
  QApplication::setApplicationVersion(QStringLiteral(TARNBY_VERSION));
  return tarnby::run_window(application);
}
