#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>
#include <cstring>

#include "app/app_context.h"
#include "app/cleaner_window_controller.h"
#include "app/desktop/desktop_folder_chooser.h"
#include "app/desktop/desktop_language.h"
#include "app/desktop/desktop_look.h"
#ifdef __APPLE__
#include "app/desktop/macos_workspace.h"
#else
#include "app/desktop/desktop_workspace.h"
#endif
#include "app/desktop/resources.h"
#include "app/notice.h"
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

/// What the command line asks for; ends the program when it asks for anything else.
Session session_asked_for(const QApplication& application) {
  const QCommandLineOption languages(QStringLiteral("languages"),
                                     QStringLiteral("Speak the first of these languages that there is, instead of the "
                                                    "desktop's. Separated by commas."),
                                     QStringLiteral("LIST"));
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOption(languages);
  parser.process(application);
  Session session = current_session();
  if (parser.isSet(languages)) {
    session.preferred_languages = languages_from_list(parser.value(languages).toStdString(), ',');
  }
  return session;
}

int run_window(QApplication& application) {
  const Session session = session_asked_for(application);
  SingleWindow single(session.settings_folder);
  if (!single.is_first()) return 0;
  take_desktop_look(application);

  QtMainQueue main_queue;
  const Url tables = Url::file(resource_path(QStringLiteral("localization")).toStdString());
  const Localization localization = Localization::for_languages(session.preferred_languages, tables);
  take_desktop_language(application, localization);
  Platform::set_shared(std::make_unique<Platform>(session, nullptr, main_queue, localization));
  Platform& platform = Platform::shared();
  TimerClock clock;
  BackgroundQueue errands;
  AppDelegate delegate(platform.app_settings,
                       [&] { errands.async([&] { (void)platform.app_settings.synchronize(); }); });
  platform.application_delegate = &delegate;
#ifdef __APPLE__
  MacosWorkspace workspace;
#else
  DesktopWorkspace workspace(platform, errands);
#endif
  DesktopFolderChooser folder_chooser;
  BackgroundQueue background;
  AppContext context = {platform, clock,     delegate,       background,
                        errands,  workspace, folder_chooser, []() -> Cleaner& { return Cleaner::sharedCleaner(); }};

  delegate.applicationDidFinishLaunching();
  QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
  CleanerWindowController window(context);
#ifndef __APPLE__
  workspace.set_window(&window);
  workspace.when_nothing_opens([&](const QString& what) {
    Notice::present(context, context.text("This could not be opened"),
                    context.text("Nothing on this desktop opens %@.", {what}), &window);
  });
#endif
  single.when_asked_to_front([&] { bring_to_front(window); });
  window.show();
  const int status = QApplication::exec();
  delegate.applicationWillTerminate();
  context.end();
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
