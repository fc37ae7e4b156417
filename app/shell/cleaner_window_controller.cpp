#include "app/shell/cleaner_window_controller.h"

#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QWindow>

#include "app/home/home_view_controller.h"
#include "app/parts/links.h"
#include "app/parts/notifications.h"
#include "app/parts/overlay.h"
#include "app/parts/screen_catalogue.h"
#include "app/shell/about_program.h"
#include "platform/workspace.h"
#include "text/localization.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

constexpr QSize usual_size(960, 640);
constexpr QSize least_size(820, 560);

}  // namespace

CleanerWindowController::CleanerWindowController(AppContext& context) : context_(context) {
  setWindowTitle(QStringLiteral("Tarnby cleaner"));  // the program's name is the same in every language
  resize(usual_size);
  setMinimumSize(least_size);
  setMouseTracking(true);
  QPalette colors = palette();
  colors.setColor(QPalette::Window, theme::background);
  setPalette(colors);
}

void CleanerWindowController::load() {
  make_menus();
  content_ = new ViewController(context_, this);
  setCentralWidget(content_);
}

void CleanerWindowController::make_menus() {
  const auto add = [this](QMenu* menu, const char* text, const QKeySequence& keys, QAction::MenuRole role, auto work) {
    QAction* action = menu->addAction(context_.text(text));
    action->setShortcut(keys);
    action->setMenuRole(role);
    connect(action, &QAction::triggered, this, work);
    return action;
  };
  QMenu* program = menuBar()->addMenu(QStringLiteral("&Tarnby cleaner"));
  add(program, english("About Tarnby cleaner"), {}, QAction::AboutRole,
      [this] { show_sheet(std::make_unique<AboutProgram>(context_)); });
  add(program, english("Preferences…"), QKeySequence(Qt::CTRL | Qt::Key_Comma), QAction::PreferencesRole,
      [this] { show_sheet(ScreenCatalogue::main().make("Preferences", context_)); });
  QAction* access = add(program, english("Folder access…"), {}, QAction::ApplicationSpecificRole, [this] {
    if (home_screen() != nullptr && context_.is_free()) show_access();
  });
  program->addSeparator();
  add(program, english("Quit"), QKeySequence::Quit, QAction::QuitRole, [this] { close(); });
  QMenu* actions = menuBar()->addMenu(context_.text("&Scan"));
  // Only where the person is not in the middle of something: from the home screen.
  QAction* scan = add(actions, english("Smart scan"), QKeySequence(Qt::CTRL | Qt::Key_R), QAction::NoRole, [this] {
    if (auto* home = home_screen()) home->search();
  });
  QAction* categories =
      add(actions, english("Categories"), QKeySequence(Qt::CTRL | Qt::Key_K), QAction::NoRole, [this] {
        if (auto* home = home_screen()) home->show_categories();
      });
  connect(program, &QMenu::aboutToShow, this,
          [this, access] { access->setEnabled(home_screen() != nullptr && context_.is_free()); });
  connect(actions, &QMenu::aboutToShow, this, [this, scan, categories] {
    for (QAction* action : {scan, categories}) action->setEnabled(home_screen() != nullptr && context_.is_free());
  });
  connect(actions, &QMenu::aboutToHide, this, [scan, categories] {
    for (QAction* action : {scan, categories}) action->setEnabled(true);  // or their keys would stay dead
  });
  QMenu* help = menuBar()->addMenu(context_.text("&Help"));
  add(help, english("About folder access"), {}, QAction::NoRole,
      [this] { context_.workspace.open_link(links::folder_access_page); });
  if (!links::feedback.empty()) {
    add(help, english("Send feedback…"), {}, QAction::NoRole, [this] { showFeedbackDialog(); });
  }
}

/// The home screen when it is what is seen, with nothing over it.
HomeViewController* CleanerWindowController::home_screen() const {
  if (content_->viewcontrollerA || !findChildren<Overlay*>(QString(), Qt::FindDirectChildrenOnly).isEmpty())
    return nullptr;
  return qobject_cast<HomeViewController*>(content_->viewcontrollerC.get());
}

/// In the place of the home screen, which comes again afterwards.
void CleanerWindowController::show_access() {
  NotificationCenter& center = context_.notifications();
  center.post(notifications::home_end_anim_complete);
  center.post(notifications::sandbox_view_controller);
}

void CleanerWindowController::showFeedbackDialog() {
  context_.workspace.open_link(links::feedback);
}

/// Not while another one waits for its answer.
void CleanerWindowController::show_sheet(std::unique_ptr<Screen> content) {
  for (const auto* sheet : findChildren<Sheet*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (sheet->isVisible()) return;
  }
  Sheet::present(std::move(content), this);
}

/// However the person asks: by the window's own button, a key or the menu.
void CleanerWindowController::closeEvent(QCloseEvent* event) {
  event->setAccepted(context_.may_close(*this));
}

/// Only what no control took arrives here.
void CleanerWindowController::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && windowHandle() != nullptr) windowHandle()->startSystemMove();
}

}  // namespace tarnby
