#include "app/access/sandbox_view_controller.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/access/folder_card.h"
#include "app/links.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds until_home{300};

}  // namespace

SandboxViewController::SandboxViewController(AppContext& context)
    : Screen(context), app_settings(context.platform.app_settings), grants_(context.platform) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
  layout->setSpacing(0);
  layout->addStretch(1);
  const QColor quiet = theme::readable(theme::secondary, theme::wave_ground);
  label = text_label(context.text("Allow access to two folders"), theme::Type::large, theme::text, this,
                     theme::Weight::strong);
  text = paragraph(context.text("Tarnby cleaner sees only what you open for it. Pick your home folder and the "
                                "Applications folder; it asks only once."),
                   theme::Type::body, quiet, 520, this);
  layout->addWidget(label);
  layout->addSpacing(theme::grid);
  layout->addWidget(text, 0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);

  allowHome = new PushButton(context.text("Allow…"), ButtonKind::accent, this);
  allowHome->setAccessibleName(context.text("Allow access to the home folder"));
  allowApps = new PushButton(context.text("Allow…"), ButtonKind::accent, this);
  allowApps->setAccessibleName(context.text("Allow access to the Applications folder"));
  connect(allowHome, &QAbstractButton::clicked, this, &SandboxViewController::allow_home);
  connect(allowApps, &QAbstractButton::clicked, this, &SandboxViewController::allow_applications);

  directory_view = new QWidget(this);
  auto* cards = new QHBoxLayout(directory_view);
  cards->setContentsMargins(0, 0, 0, 0);
  cards->setSpacing(3 * theme::grid);
  cards->addStretch();
  cards->addWidget(new FolderCard(FolderCard::Picture::home, context.text("Home folder"),
                                  context.text("Caches, logs, mail attachments, Downloads and the Trash"), allowHome,
                                  directory_view));
  cards->addWidget(new FolderCard(FolderCard::Picture::applications, context.text("Applications folder"),
                                  context.text("To tell what belongs to an installed application from what was left "
                                               "behind"),
                                  allowApps, directory_view));
  cards->addStretch();
  layout->addWidget(directory_view);

  buttons_view = new QWidget(this);
  auto* buttons = new QHBoxLayout(buttons_view);
  info_text = new PushButton(context.text("Why is this needed?"), ButtonKind::link, buttons_view);
  connect(info_text, &QAbstractButton::clicked, this, &SandboxViewController::open_sandbox_webpage);
  buttons->addWidget(info_text, 0, Qt::AlignCenter);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(buttons_view);
  layout->addStretch(1);

  // At most one of the two is shown as allowed from the beginning: with both there would be no such screen.
  Bookmarks& bookmarks = context.platform.bookmarks;
  bookmarks.resolve_and_access(Grant::home);
  bookmarks.resolve_and_access(Grant::applications);
  if (grants_.check(Grant::home).is_valid) {
    show_as_allowed(allowHome);
  } else if (grants_.check(Grant::applications).is_valid) {
    show_as_allowed(allowApps);
  }
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  entrance_->open();
}

void SandboxViewController::allow_home() {
  choose(Grant::home);
}

void SandboxViewController::allow_applications() {
  choose(Grant::applications);
}

void SandboxViewController::open_sandbox_webpage() {
  context_.workspace.open_link(links::folder_access_page);
}

void SandboxViewController::choose(Grant grant) {
  const Url start = grant == Grant::home ? context_.platform.session.home_folder : Url::file("/Applications");
  const FolderRequest request = {context_.text("Allow access"), context_.text("Allow"), start};
  auto here = std::make_shared<std::optional<Url>>();
  const auto go_on = while_here([this, grant, here] { chosen(grant, *here); });
  context_.folder_chooser.choose(window(), request, [here, go_on](const std::optional<Url>& folder) {
    *here = folder;
    go_on();
  });
}

void SandboxViewController::chosen(Grant grant, const std::optional<Url>& folder) {
  if (!folder) return;
  // Stored first, whatever it is: the next check refuses a wrong one.
  (void)grants_.store(grant, *folder);  // what the disk does not take now goes with the next write
  const GrantState state = grants_.check(grant);
  if (!state.is_valid || state.folder.empty()) return;
  show_as_allowed(grant == Grant::home ? allowHome : allowApps);
  context_.platform.bookmarks.resolve_and_access(grant);
  const Grant other = grant == Grant::home ? Grant::applications : Grant::home;
  if (context_.platform.bookmarks.resolve_and_access(other).empty()) return;
  sandbox_end_anim();
  // Whether this screen is still there by then or not.
  context_.platform.main_queue.after(
      until_home, [&center = context_.platform.notifications] { center.post("home_view_controller_for_launch"); });
}

void SandboxViewController::sandbox_end_anim() {
  entrance_->close([this] { post("sandbox_end_anim_complete"); });
}

void SandboxViewController::show_as_allowed(PushButton* button) {
  button->setText(context_.text("✓ Allowed"));
  button->setEnabled(false);
}

}  // namespace tarnby
