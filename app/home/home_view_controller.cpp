#include "app/home/home_view_controller.h"

#include <QVBoxLayout>

#include "app/layouts.h"
#include "app/privacy/privacy_disk_access_view_controller.h"
#include "app/screen_catalogue.h"
#include "leftovers/full_disk_access.h"
#include "ui/shadow_label.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds until_offer{1500};
constexpr std::chrono::milliseconds until_guide{4000};
constexpr std::int64_t first_offer = 5;  // launches

}  // namespace

HomeViewController::HomeViewController(AppContext& context) : Screen(context) {
  QVBoxLayout* layout = screen_column(this);
  layout->setSpacing(0);
  layout->addStretch(10);

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
                theme::Type::body, quiet, 640, this),
      0, Qt::AlignHCenter);
  layout->addSpacing(3 * theme::grid);
  cleaned_so_far = text_label({}, theme::Type::note, quiet, this);
  const std::int64_t total = context.platform.app_settings.integer("TotallyCleaned");
  if (total > 0) cleaned_so_far->setText(context.text("Cleaned so far: %@", {context.byte_count(total)}));
  layout->addWidget(cleaned_so_far);
  layout->addSpacing(theme::grid);
  categories_button = new PushButton(context.text("Categories"), ButtonKind::link, this);
  connect(categories_button, &QAbstractButton::clicked, this, &HomeViewController::show_categories);
  layout->addWidget(categories_button, 0, Qt::AlignHCenter);
  layout->addStretch(7);

  observe("home_end_anim", [this] { home_end_anim(); });
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  entrance_->open();
  search_button->setFocus();
}

HomeViewController::~HomeViewController() = default;

void HomeViewController::view_did_appear() {
  if (FullDiskAccess(context_.platform).is_guarded()) {
    // Taken before the folders are touched, which may be over the next moment: the system's own questions go first.
    folders_were_touched_ = context_.platform.app_settings.boolean("PrivacyAccess");
    if (!folders_were_touched_) privacy_for_directories();
    privacy_full_disk_access();
  }
  if (offers_scheduler()) {
    after(until_offer, [this] { present_sheet(ScreenCatalogue::main().make("EnableScheduler", context_)); });
  }
}

bool HomeViewController::offers_scheduler() const {
  const AppSettings& settings = context_.platform.app_settings;
  return settings.integer("appLaunchCount") >= first_offer && !settings.boolean("Scheduler") &&
         !settings.boolean("EnableScheduler");
}

void HomeViewController::privacy_for_directories() {
  context_.errands.async([&platform = context_.platform] { FullDiskAccess(platform).privacy_for_directories(); });
}

void HomeViewController::privacy_full_disk_access() {
  auto outcome = std::make_shared<DiskAccess>(DiskAccess::unknown);
  const auto answer = while_here([this, outcome] {
    if (*outcome != DiskAccess::denied) return;
    after(folders_were_touched_ ? std::chrono::milliseconds(0) : until_guide, [this] { show_guide(); });
  });
  context_.errands.async([&platform = context_.platform, outcome, answer] {
    *outcome = FullDiskAccess(platform).test();
    platform.main_queue.async(answer);
  });
}

void HomeViewController::show_guide() {
  privacy_windowcontroller = new GuideWindow(context_, window());
  privacy_windowcontroller->setAttribute(Qt::WA_DeleteOnClose);
  privacy_windowcontroller->show();
}

void HomeViewController::search() {
  post("smart_scan_view_controller");
}

void HomeViewController::show_categories() {
  Cleaner& cleaner = context_.sharedCleaner();
  cleaner.apps_junk_search_complete = false;  // of an earlier scan, whose results are replaced now
  cleaner.media_search_coomplete = false;
  context_.background.async([&cleaner, &context = context_] {
    if (context.begin_looking()) cleaner.clean_with_complete_handler([] {});
  });
  categories_button->setEnabled(false);
  search_button->setEnabled(false);
  post("scan_view_controller");
}

void HomeViewController::home_end_anim() {
  entrance_->close([this] { post("home_end_anim_complete"); });
}

}  // namespace tarnby
