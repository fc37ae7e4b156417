#include "app/cleaned/cleaned_view_controller.h"

#include <QLabel>
#include <QVBoxLayout>

#include "app/cleaned/left_panel.h"
#include "app/layouts.h"
#include "app/screen_catalogue.h"
#include "engine/lifetime_total.h"
#include "ui/shadow_label.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds until_sheet{1500};
constexpr std::int64_t most_promotions = 3;
constexpr std::int64_t first_promotion = 4;
constexpr std::int64_t repeats_from = 9;
constexpr std::int64_t repeats_every = 5;

bool is_repeat(std::int64_t launches) {
  return launches >= repeats_from && launches % repeats_every == 0;
}

}  // namespace

CleanedSheet due_sheet(const AppSettings& settings) {
  const std::int64_t promotions = settings.integer("UOLaunchCount");
  const bool wanted = settings.integer("UOAppearence") < most_promotions && !settings.boolean("Uninstaller Orvane");
  if (wanted && (promotions == first_promotion || is_repeat(promotions))) return CleanedSheet::promotion;
  const bool rates = is_repeat(settings.integer("appLaunchCount")) && !settings.boolean("RateOnStore");
  return rates ? CleanedSheet::rating : CleanedSheet::none;
}

CleanedViewController::CleanedViewController(AppContext& context) : Screen(context), cleaner_(context.sharedCleaner()) {
  QVBoxLayout* layout = screen_column(this);
  layout->setSpacing(0);
  layout->addStretch(11);
  imageview = new CleanedMark(context.clock, this);
  layout->addWidget(imageview, 0, Qt::AlignHCenter);
  layout->addSpacing(2 * theme::grid);
  was_cleaned_size = new ShadowLabel(context.byte_count(cleaner_.wasCleaned), this);
  was_cleaned_size->setFont(theme::font(theme::Type::huge, theme::Weight::strong));
  label = text_label(context.text("was cleaned"), theme::Type::title, theme::text, this);
  layout->addWidget(was_cleaned_size);
  layout->addWidget(label);
  layout->addSpacing(4 * theme::grid);

  search_button = new PushButton(context.text("Find now"), ButtonKind::shaded, this);
  done_button = new PushButton(context.text("Done"), ButtonKind::accent, this);
  connect(search_button, &QAbstractButton::clicked, this, &CleanedViewController::find_now);
  connect(done_button, &QAbstractButton::clicked, this, &CleanedViewController::done);
  layout->addLayout(centred_row({search_button, done_button}));
  layout->addSpacing(2 * theme::grid);

  left_button = new PushButton({}, ButtonKind::shaded, this);
  keep_place_when_hidden(left_button);
  connect(left_button, &QAbstractButton::clicked, this, &CleanedViewController::show_left);
  layout->addWidget(left_button, 0, Qt::AlignHCenter);
  layout->addStretch(8);

  observe(RemovalRun::removal_changed, [this] { update_left(); });
  update_left();
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  cleaned_open_anim();
  done_button->setFocus();
}

/// Springs into place.
void CleanedViewController::cleaned_open_anim() {
  entrance_->open(QEasingCurve::OutBack);
  imageview->draw_in();
}

void CleanedViewController::update_left() {
  const RemovalRun& removal = context_.removal;
  left_button->setVisible(removal.running || !removal.left.empty());
  left_button->setEnabled(!removal.running);
  const auto count = static_cast<std::int64_t>(removal.left.size());
  left_button->setText(
      removal.running ? context_.text("Still removing…")
                      : context_.plural(count, "One entry could not be removed", "%@ entries could not be removed"));
  left_button->updateGeometry();
}

void CleanedViewController::view_did_appear() {
  AppSettings& settings = context_.platform.app_settings;
  settings.add_integer("TotallyCleaned", cleaner_.wasCleaned);
  const CleanedSheet due = due_sheet(settings);
  if (due == CleanedSheet::promotion) settings.add_integer("UOAppearence", 1);
  context_.flush_settings();
  if (due == CleanedSheet::none) return;
  const char* sheet = due == CleanedSheet::promotion ? "DownloadUninstallerOrvane" : "RateOnAppStore";
  after(until_sheet, [this, sheet] { present_sheet(ScreenCatalogue::main().make(sheet, context_)); });
}

void CleanedViewController::done() {
  post("home_view_controller");
}

void CleanedViewController::find_now() {
  // The first takes this screen away; the centre outlives it.
  NotificationCenter& center = context_.platform.notifications;
  center.post("home_end_anim_complete");
  center.post("smart_scan_view_controller");
}

void CleanedViewController::show_left() {
  present_sheet(std::make_unique<LeftPanel>(context_));
}

}  // namespace tarnby
