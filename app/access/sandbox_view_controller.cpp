#include "app/access/sandbox_view_controller.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/access/folder_card.h"
#include "app/desktop/folder_chooser.h"
#include "app/parts/layouts.h"
#include "app/parts/links.h"
#include "app/parts/notifications.h"
#include "platform/platform.h"
#include "platform/workspace.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds until_home{300};
constexpr int words_width = 520;

/// What is said of a wrong folder: its name comes first, then the folder that is asked for.
struct FaultRow {
  Grant grant;
  GrantFault fault;
  const char* words;
};

constexpr FaultRow fault_rows[] = {
    {Grant::home, GrantFault::missing, english("%@ cannot be opened. Pick your home folder: %@")},
    {Grant::home, GrantFault::other_folder, english("%@ is another folder. Pick your home folder: %@")},
    {Grant::home, GrantFault::other_owner, english("%@ belongs to another user. Pick your home folder: %@")},
    {Grant::applications, GrantFault::missing, english("%@ cannot be opened. Pick the folder named “Applications”.")},
    {Grant::applications, GrantFault::other_folder,
     english("%@ is another folder. Pick the one named “Applications”.")},
    {Grant::applications, GrantFault::no_application,
     english("No application is in %@. Pick the folder “Applications” that holds yours.")},
};

QString path_text(const Url& folder) {
  return QString::fromStdString(folder.path()).simplified();
}

}  // namespace

SandboxViewController::SandboxViewController(AppContext& context)
    : Screen(context),
      app_settings(context.settings()),
      access_(FolderGrants(context.platform).access()),
      changes_(access_.is_complete()) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
  layout->setSpacing(0);
  layout->addStretch(1);
  make_words();
  layout->addWidget(label);
  layout->addSpacing(theme::grid);
  layout->addWidget(text, 0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  directory_view = make_cards();
  layout->addWidget(directory_view);
  buttons_view = make_buttons();
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(buttons_view);
  layout->addStretch(1);

  for (const Grant grant : {Grant::home, Grant::applications}) context.platform.bookmarks.resolve_and_access(grant);
  show_access();
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  entrance_->open();
}

void SandboxViewController::make_words() {
  const Words words = words_now();
  label = text_label(context_.text(words.title), theme::Type::large, theme::text, this, theme::Weight::strong);
  text = paragraph(context_.text(words.text), theme::Type::body, theme::readable(theme::secondary, theme::wave_ground),
                   words_width, this);
}

/// A home of the Linux kind is enough by itself: what is installed stands in lists of the system.
SandboxViewController::Words SandboxViewController::words_now() const {
  if (!access_.needs_applications) {
    return {changes_ ? english("Folder access") : english("Allow access to your home folder"),
            english("Tarnby cleaner looks through your home folder. Outside of it, it reads only the system's lists of "
                    "what is installed and of what runs.")};
  }
  if (changes_) {
    return {english("Folder access"),
            english("Tarnby cleaner sees only these folders. When you change one, the next scan looks there.")};
  }
  return {english("Allow access to two folders"),
          english("Tarnby cleaner sees only what you open for it. Pick your home folder and the Applications folder; "
                  "it asks only once.")};
}

QWidget* SandboxViewController::make_cards() {
  const ButtonKind kind = changes_ ? ButtonKind::shaded : ButtonKind::accent;
  allowHome = new PushButton(context_.text("Allow…"), kind, this);
  allowHome->setAccessibleName(context_.text("Allow access to the home folder"));
  allowApps = new PushButton(context_.text("Allow…"), kind, this);
  allowApps->setAccessibleName(context_.text("Allow access to the Applications folder"));
  connect(allowHome, &QAbstractButton::clicked, this, &SandboxViewController::allow_home);
  connect(allowApps, &QAbstractButton::clicked, this, &SandboxViewController::allow_applications);

  auto* view = new QWidget(this);
  home_card = new FolderCard(FolderCard::Picture::home, context_.text("Home folder"),
                             context_.text("Caches, logs, mail attachments, Downloads and the Trash"), allowHome, view);
  applications_card = new FolderCard(
      FolderCard::Picture::applications, context_.text("Applications folder"),
      context_.text("To tell what belongs to an installed application from what was left behind"), allowApps, view);
  auto* cards = new QHBoxLayout(view);
  cards->setContentsMargins(0, 0, 0, 0);
  cards->setSpacing(3 * theme::grid);
  cards->addStretch();
  cards->addWidget(home_card);
  cards->addWidget(applications_card);
  cards->addStretch();
  return view;
}

QWidget* SandboxViewController::make_buttons() {
  auto* view = new QWidget(this);
  auto* buttons = new QVBoxLayout(view);
  buttons->setSpacing(2 * theme::grid);
  done_button = new PushButton(context_.text("Done"), ButtonKind::accent, view);
  connect(done_button, &QAbstractButton::clicked, this, &SandboxViewController::go_home);
  buttons->addWidget(done_button, 0, Qt::AlignCenter);
  done_button->setVisible(changes_);
  info_text = new PushButton(context_.text("Why is this needed?"), ButtonKind::link, view);
  connect(info_text, &QAbstractButton::clicked, this, &SandboxViewController::open_sandbox_webpage);
  buttons->addWidget(info_text, 0, Qt::AlignCenter);
  if (changes_) done_button->setFocus();
  return view;
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
  const Url start = grant == Grant::home ? context_.session().home_folder : Url::file("/Applications");
  const FolderRequest request = {context_.text("Allow access"), context_.text("Allow"), start};
  context_.folder_chooser.choose(window(), request, while_here([this, grant](const std::optional<Url>& folder) {
                                   if (folder) chosen(grant, *folder);
                                 }));
}

/// Stored and looked at beside the main thread, which waits for no disk.
void SandboxViewController::chosen(Grant grant, const Url& folder) {
  struct Outcome {
    GrantState taken;
    Access access;
  };
  look_up(
      context_.io_queue,
      [&platform = context_.platform, grant, folder] {
        FolderGrants grants(platform);
        const GrantState taken = grants.take(grant, folder);
        return Outcome{taken, grants.access()};
      },
      [this, grant, folder](const Outcome& outcome) {
        access_ = outcome.access;
        answer(grant, folder, outcome.taken);
      });
}

void SandboxViewController::answer(Grant grant, const Url& picked, const GrantState& taken) {
  show_access();
  if (!taken.is_valid) return show_fault(grant, taken.fault, picked);
  if (access_.is_complete() && !changes_) go_home();
}

void SandboxViewController::go_home() {
  context_.renew_grants();
  sandbox_end_anim();
  // Whether this screen is still there by then or not.
  context_.main_queue().after(until_home, [&center = context_.notifications()] {
    center.post(notifications::home_view_controller_for_launch);
  });
}

void SandboxViewController::sandbox_end_anim() {
  for (PushButton* button : {allowHome, allowApps, done_button}) button->setEnabled(false);
  entrance_->close([this] { post(notifications::sandbox_end_anim_complete); });
}

void SandboxViewController::show_access() {
  done_button->setEnabled(access_.is_complete());
  show_grant(Grant::home, access_.home);
  show_grant(Grant::applications, access_.applications);
  applications_card->setVisible(access_.needs_applications);
  const Words words = words_now();
  label->setText(context_.text(words.title));
  text->setText(context_.text(words.text));
}

void SandboxViewController::show_grant(Grant grant, const GrantState& state) {
  const bool asks = !state.is_valid || state.is_stale;
  PushButton* button = button_of(grant);
  button->setText(asks ? context_.text("Allow…") : changes_ ? context_.text("Change…") : context_.text("✓ Allowed"));
  button->setEnabled(asks || changes_);
  FolderCard* card = card_of(grant);
  if (!state.is_valid && !state.folder.empty()) return show_fault(grant, state.fault, state.folder);
  if (state.is_valid && state.is_stale) {
    return card->show_state(context_.text("The system wants to be asked for this folder again."),
                            FolderCard::Tone::attention);
  }
  const QString shown = state.is_valid ? path_text(state.folder) : grant == Grant::home ? wanted_home() : QString();
  card->show_state(card->line_of(shown), FolderCard::Tone::quiet);
}

void SandboxViewController::show_fault(Grant grant, GrantFault fault, const Url& folder) {
  FolderCard* card = card_of(grant);
  for (const FaultRow& row : fault_rows) {
    if (row.grant != grant || row.fault != fault) continue;
    card->show_state(context_.text(row.words, {card->line_of(path_text(folder)), card->line_of(wanted_home())}),
                     FolderCard::Tone::attention);
  }
}

/// Where the user's home folder is, as far as the account tells; nothing there is looked at.
QString SandboxViewController::wanted_home() const {
  const Session& session = context_.session();
  return path_text(session.account_home.empty() ? session.home_folder : session.account_home);
}

}  // namespace tarnby
