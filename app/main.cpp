#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <optional>
#include <utility>

#include "app/app_context.h"
#include "app/cleaner_window_controller.h"
#include "app/desktop/desktop_folder_chooser.h"
#include "app/desktop/desktop_language.h"
#include "app/desktop/desktop_look.h"
#ifdef __APPLE__
#include "app/desktop/macos_workspace.h"
#else
#include "app/desktop/desktop_portal.h"
#include "app/desktop/desktop_workspace.h"
#include "app/desktop/fonts_ahead.h"
#include "app/single_window.h"
#endif
#include "app/desktop/resources.h"
#include "app/engine_objects.h"
#include "app/notice.h"
#include "app/qt_main_queue.h"
#include "ui/motion.h"

namespace tarnby {
namespace {

#ifndef __APPLE__
void bring_to_front(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}
#endif

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

int run_window(QApplication& application) {
  const Session session = session_asked_for(application);
#ifndef __APPLE__  // where the system starts a program but once
  SingleWindow single(session.settings_folder);
  if (!single.is_first()) return 0;
#endif
  take_desktop_look();
#ifdef __APPLE__
  motion::set_reduced(wants_reduced_motion());
#endif

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
  EngineObjects engine(platform);
  AppContext context = {platform,
                        clock,
                        delegate,
                        background,
                        errands,
                        workspace,
                        folder_chooser,
                        [&]() -> Cleaner& { return engine.cleaner(); },
                        [&] { engine.take_grants_anew(); }};

  delegate.applicationDidFinishLaunching();
  QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
  CleanerWindowController window(context);
#ifndef __APPLE__
  workspace.set_window(&window);
  workspace.when_nothing_opens([&](const QString& what) {
    Notice::present(context, context.text("This could not be opened"),
                    context.text("Nothing on this desktop opens %@.", {what}), &window);
  });
  single.when_asked_to_front([&] { bring_to_front(window); });
#endif
  window.show();
  window.load();
  new AfterFirstPicture(*window.windowHandle(), [&] {
    clock.start();
#ifndef __APPLE__
    ask_portal_for_stillness(application);
#endif
  });
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
  std::optional<QApplication> application;
  {
#ifndef __APPLE__
    const tarnby::FontsAhead fonts;
#endif
    application.emplace(argc, argv);
  }
  QApplication::setApplicationName(QStringLiteral("tarnby-cleaner"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tarnby cleaner"));
  QApplication::setDesktopFileName(QStringLiteral("com.corvash.tarnby-cleaner"));
  QApplication::setApplicationVersion(QStringLiteral(TARNBY_VERSION));
  return tarnby::run_window(*application);
}
