#include "app/cleaned/cleaned_view_controller.h"

#include <QLabel>
#include <QMargins>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/cleaned/not_removed_panel.h"
#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "app/parts/screen_catalogue.h"
#include "engine/cleaner.h"
#include "text/localization.h"
#include "ui/freed_view.h"
#include "ui/panel.h"
#include "ui/shadow_label.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds until_sheet{1500};
constexpr std::int64_t most_promotions = 3;
constexpr std::int64_t first_promotion = 4;
constexpr std::int64_t repeats_from = 9;
constexpr std::int64_t repeats_every = 5;
constexpr int card_width = 360;
constexpr QMargins card_margins(panel_gap, close_gap, panel_gap, 2 * theme::grid);
constexpr FreeRoom around_amount = {9, 7};

int scaled(int pixels) {
  return static_cast<int>(std::lround(pixels * std::max(1.0, theme::text_scale())));
}

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

CleanedViewController::CleanedViewController(AppContext& context)
    : Screen(context), cleaned_(context.sharedCleaner().wasCleaned) {
  QVBoxLayout* layout = screen_column(this);
  layout->setSpacing(0);
  layout->addStretch(around_amount.above);
  imageview = new CleanedMark(context.clock, this);
  layout->addWidget(imageview, 0, Qt::AlignHCenter);
  layout->addSpacing(theme::grid);
  was_cleaned_size = new ShadowLabel(context.byte_count(cleaned_), this);
  was_cleaned_size->setFont(theme::font(theme::Type::huge, theme::Weight::strong));
  label = text_label(context.text("was cleaned"), theme::Type::title, theme::text, this);
  layout->addWidget(was_cleaned_size);
  layout->addWidget(label);
  layout->addSpacing(2 * theme::grid);
  add_space(layout);
  add_left(layout);
  layout->addSpacing(2 * theme::grid);

  search_button = new PushButton(context.text("Find now"), ButtonKind::shaded, this);
  done_button = new PushButton(context.text("Done"), ButtonKind::accent, this);
  connect(search_button, &QAbstractButton::clicked, this, &CleanedViewController::find_now);
  connect(done_button, &QAbstractButton::clicked, this, &CleanedViewController::done);
  layout->addLayout(centred_row({search_button, done_button}));
  layout->addSpacing(2 * theme::grid);
  cleaned_so_far = text_label({}, theme::Type::note, theme::text, this);
  layout->addWidget(cleaned_so_far);
  layout->addStretch(around_amount.below);

  observe(RemovalRun::removal_changed, [this] { update_left(); });
  update_left();
  if (!context.removal.outcome.left.empty()) look_again_at_left(context);  // others may have taken it meanwhile
  entrance_ = std::make_unique<Entrance>(context.clock, this);
  cleaned_open_anim();
  done_button->setFocus();
}

/// What the disk gained, as the system tells it.
void CleanedViewController::add_space(QVBoxLayout* layout) {
  const auto& before = context_.removal.outcome.space_before;
  const auto& after = context_.removal.outcome.space_after;
  if (!before || !after || before->whole <= 0) return;
  auto* card = new Panel(this);
  card->setFixedWidth(scaled(card_width));
  auto* inside = new QVBoxLayout(card);
  inside->setContentsMargins(card_margins);
  inside->setSpacing(close_gap);
  const auto told = [&](const DiskSpace& space, theme::Weight weight) {
    return text_label(context_.text("%@ free", {context_.byte_count(space.free)}), theme::Type::body, theme::text, card,
                      weight);
  };
  const QString arrow = isRightToLeft() ? QStringLiteral("←") : QStringLiteral("→");
  inside->addLayout(
      centred_row({told(*before, theme::Weight::regular), text_label(arrow, theme::Type::body, theme::text, card),
                   told(*after, theme::Weight::strong)}));
  auto* bar = new FreedView(context_.clock, card);
  const auto used = [&](const DiskSpace& space) {
    return 1 - static_cast<double>(space.free) / static_cast<double>(space.whole);
  };
  bar->show_parts(used(*before), used(*after));
  inside->addWidget(bar);
  layout->addWidget(card, 0, Qt::AlignHCenter);
  layout->addSpacing(close_gap);
}

void CleanedViewController::add_left(QVBoxLayout* layout) {
  left_card_ = new Panel(this);
  left_card_->setMinimumWidth(scaled(card_width));
  auto* row = new QHBoxLayout(left_card_);
  row->setContentsMargins(2 * theme::grid, theme::grid, 2 * theme::grid, theme::grid);
  row->setSpacing(2 * theme::grid);
  auto* words = new QVBoxLayout;
  words->setSpacing(0);
  left_label = text_label({}, theme::Type::body, theme::text, left_card_, theme::Weight::strong);
  left_size = text_label({}, theme::Type::detail, theme::text, left_card_);
  for (QLabel* line : {left_label, left_size}) {
    align_at_beginning(line);
    words->addWidget(line);
  }
  row->addLayout(words, 1);
  left_button = new PushButton(context_.text("Show list"), ButtonKind::plain, left_card_);
  connect(left_button, &QAbstractButton::clicked, this, &CleanedViewController::show_left);
  row->addWidget(left_button);
  layout->addWidget(left_card_, 0, Qt::AlignHCenter);
}

/// Springs into place.
void CleanedViewController::cleaned_open_anim() {
  entrance_->open(QEasingCurve::OutBack);
  imageview->draw_in();
}

void CleanedViewController::update_left() {
  const RemovalRun& removal = context_.removal;
  const auto count = static_cast<std::int64_t>(removal.outcome.left.size());
  const bool any = count > 0 && !removal.left_unsure;
  left_card_->setVisible(any);
  const QString words = removal.stopped ? context_.plural(count, "Stopped. One entry is still there",
                                                          "Stopped. %@ entries are still there")
                                        : context_.plural(count, "One entry was left", "%@ entries were left");
  left_label->setText(words);
  left_size->setText(context_.byte_count(removal.outcome.left_bytes));
  left_button->setAccessibleDescription(words);
  // Where everything has stayed, nothing is to be celebrated.
  const bool nothing = any && cleaned_ == 0;
  imageview->setVisible(!nothing);
  label->setText(context_.text(nothing ? english("Nothing was removed") : english("was cleaned")));
}

void CleanedViewController::view_did_appear() {
  AppSettings& settings = context_.settings();
  count_removal(context_);
  cleaned_so_far->setText(
      context_.text("Cleaned so far: %@", {context_.byte_count(settings.integer("TotallyCleaned"))}));
  const CleanedSheet due = due_sheet(settings);
  if (due == CleanedSheet::promotion) settings.add_integer("UOAppearence", 1);
  context_.flush_settings();
  if (due == CleanedSheet::none) return;
  const char* sheet = due == CleanedSheet::promotion ? "DownloadUninstallerOrvane" : "RateOnAppStore";
  offer_sheet(until_sheet, [this, sheet] { return ScreenCatalogue::main().make(sheet, context_); });
}

void CleanedViewController::done() {
  post(notifications::home_view_controller);
}

void CleanedViewController::find_now() {
  // The first takes this screen away; the centre outlives it.
  NotificationCenter& center = context_.notifications();
  center.post(notifications::home_end_anim_complete);
  center.post(notifications::smart_scan_view_controller);
}

void CleanedViewController::show_left() {
  present_sheet(std::make_unique<NotRemovedPanel>(context_));
}

}  // namespace tarnby
