#include "app/home/home_view_controller.h"

#include <QVBoxLayout>

#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "app/parts/screen_catalogue.h"
#include "app/privacy/privacy_disk_access_view_controller.h"
#include "app/scheduler/scheduler.h"
#include "leftovers/full_disk_access.h"
#include "platform/platform.h"
#include "ui/shadow_label.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds until_offer{1500};
constexpr std::chrono::milliseconds until_guide{4000};
constexpr std::int64_t first_offer = 5;  // launches
constexpr int words_width = 640;

}  // namespace

HomeViewController::HomeViewController(AppContext& context) : Screen(context) {
  QVBoxLayout* layout = screen_column(this);
  layout->setSpacing(0);
  layout->addStretch(around_ring.above);

  search_button = new HomeView(context.text("Scan"), context.clock, this);
  search_button->setDefault(true);
  connect(search_button, &QAbstractButton::clicked, this, &HomeViewController::search);
  layout->addWidget(search_button, 0, Qt::AlignHCenter);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(new ShadowLabel(context.text("Make room on your disk"), this));
  layout->addSpacing(theme::grid);
  const QColor quiet = theme::readable(theme::secondary, theme::wave_ground);
  layout->addWidget(
      paragraph(context.text("Caches, logs, leftovers, browser data, mail attachments, installers and the Trash."),
                theme::Type::body, quiet, words_width, this),
      0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  cleaned_so_far = text_label({}, theme::Type::note, quiet, this);
  layout->addWidget(cleaned_so_far);
  layout->addSpacing(theme::grid);
  categories_button = new PushButton(context.text("Categories"), ButtonKind::link, this);
  connect(categories_button, &QAbstractButton::clicked, this, &HomeViewController::show_categories);
  layout->addWidget(categories_button, 0, Qt::AlignHCenter);
  layout->addStretch(around_ring.below);

  observe(notifications::home_end_anim, [this] { home_end_anim(); });
  for (const char* changed : {EngineTurn::turn_is_free, RemovalRun::removal_changed}) {
    observe(changed, [this] { update_ui(); });
  }
  update_ui();
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  entrance_->open();
  search_button->setFocus();
}

HomeViewController::~HomeViewController() = default;

void HomeViewController::view_did_appear() {
  if (FullDiskAccess(context_.platform).is_guarded()) {
    // Taken before the folders are touched, which may be over the next moment: the system's own questions go first.
    folders_were_touched_ = context_.settings().boolean("PrivacyAccess");
    if (!folders_were_touched_) privacy_for_directories();
    privacy_full_disk_access();
  }
  if (offers_scheduler()) {
    offer_sheet(until_offer, [this] { return ScreenCatalogue::main().make("EnableScheduler", context_); });
  }
}

bool HomeViewController::offers_scheduler() const {
  const AppSettings& settings = context_.settings();
  return settings.integer("appLaunchCount") >= first_offer && !settings.boolean("Scheduler") &&
         !settings.boolean("EnableScheduler") && context_.login_items().is_installed(scheduler_identifier);
}

void HomeViewController::privacy_for_directories() {
  context_.ask_consent([&platform = context_.platform] { FullDiskAccess(platform).privacy_for_directories(); });
}

void HomeViewController::privacy_full_disk_access() {
  look_up(
      context_.io_queue, [&platform = context_.platform] { return FullDiskAccess(platform).test(); },
      [this](DiskAccess access) {
        if (access != DiskAccess::denied) return;
        after(folders_were_touched_ ? std::chrono::milliseconds(0) : until_guide, [this] { show_guide(); });
      });
}

void HomeViewController::show_guide() {
  privacy_windowcontroller = GuideWindow::present(context_, window());
}

void HomeViewController::search() {
  post(notifications::smart_scan_view_controller);
}

void HomeViewController::show_categories() {
  post(notifications::scan_view_controller);
}

/// While a scan or a removal comes to its end another scan would only be refused.
void HomeViewController::update_ui() {
  for (QWidget* button : {static_cast<QWidget*>(search_button), static_cast<QWidget*>(categories_button)}) {
    button->setEnabled(context_.is_free());
  }
  cleaned_so_far->setText(status_text());
  if (context_.is_free() && window()->focusWidget() == nullptr) search_button->setFocus();
}

QString HomeViewController::status_text() const {
  if (context_.removal.running) return context_.text("Still removing…");
  if (!context_.turn.is_free()) return context_.text("Still stopping the scan…");
  const std::int64_t total = context_.settings().integer("TotallyCleaned");
  return total > 0 ? context_.text("Cleaned so far: %@", {context_.byte_count(total)}) : QString();
}

void HomeViewController::home_end_anim() {
  search_button->setEnabled(false);
  categories_button->setEnabled(false);
  entrance_->close([this] { post(notifications::home_end_anim_complete); });
}

}  // namespace tarnby
