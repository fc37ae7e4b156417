#include "app/smart/smart_scan_view_controller.h"

#include <QVBoxLayout>

#include "app/parts/category_look.h"
#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "engine/categories.h"
#include "engine/cleaner.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr double first_stroke_end = 0.5;
constexpr int first_stroke_ms = 3000;
/// The first category, the six others and what was found in all: 1.2 seconds for the fastest scan.
constexpr std::chrono::milliseconds step_time{150};

/// How full the ring is once a category but the first begins: half at the second, then in equal steps.
double stroke_end(std::size_t category) {
  const auto steps = static_cast<double>(smart_categories().size() - 2);
  return first_stroke_end + (1 - first_stroke_end) * static_cast<double>(category - 1) / steps;
}

}  // namespace

SmartScanViewController::SmartScanViewController(AppContext& context)
    : ScanScreen(context),
      appDelegate(context.appDelegate),
      app_settings(context.settings()),
      sharedCleaner(context.sharedCleaner()) {
  progressView = new ScanView(context.clock, this);
  progressView->setAccessibleName(context.text("Scan"));
  smart_size = progressView->number();
  smart_item = new FadingLabel(context.clock, this);
  steps = new DashView(this);
  steps->setAccessibleName(context.text("Categories"));
  QStringList names;
  for (const Category& category : smart_categories()) names << context.text(look_of(category.type).short_name);
  steps->set_steps(names);
  steps->set_current(0);
  transitionSize(context.byte_count(0));
  progressView->show_caption(context.text("found so far"));

  QVBoxLayout* layout = screen_column(this);
  layout->addStretch(around_ring.above);
  layout->addWidget(progressView, 0, Qt::AlignHCenter);
  layout->addSpacing(4 * theme::grid);
  layout->addWidget(smart_item);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(steps);
  add_stop_button(layout);
  layout->addStretch(around_ring.below);

  start();
  after(step_time, [this] { show_next(); });
  progressView->animate_stroke_end(first_stroke_end, first_stroke_ms);
}

void SmartScanViewController::start() {
  // Until then the notifications are those of a scan before, which nobody waits for any more.
  const auto begun = while_here([this] {
    for (std::size_t at = 1; at < smart_categories().size(); ++at) {
      observe(std::string(smart_categories()[at].smart.notification),
              [this, at] { show_in_turn([this, at] { begin_category(at); }); });
    }
  });
  const auto complete = while_here([this] { this->complete(); });
  context_.background.async([&cleaner = sharedCleaner, &context = context_, begun, complete, here = here(),
                             turn = context_.turn.held()] {
    if (!context.begin_looking() || here.expired()) return;
    context.main_queue().async(begun);
    cleaner.smart_clean_with_complete_handler([] {});
    const bool home_is_empty = !cleaner.knows_places() && context.files().list(cleaner.url_home, Hidden::take).empty();
    context.main_queue().async([&context, home_is_empty, complete] {
      context.scanned_home_is_empty = home_is_empty;
      complete();
    });
  });
}

void SmartScanViewController::complete() {
  scanning_ = false;
  show_in_turn([this] {
    count_category(smart_categories().size() - 1);
    steps->set_current(static_cast<int>(smart_categories().size()));
  });
  show_in_turn([this] { post(notifications::smart_clean_view_controller); });
}

void SmartScanViewController::show_in_turn(Work step) {
  steps_to_come_.push_back(std::move(step));
  if (!step_has_its_time_) show_next();
}

void SmartScanViewController::show_next() {
  step_has_its_time_ = !steps_to_come_.empty();
  if (!step_has_its_time_) return;
  const Work step = std::move(steps_to_come_.front());
  steps_to_come_.pop_front();
  after(step_time, [this] { show_next(); });
  step();
}

void SmartScanViewController::view_will_appear() {
  smart_item->show_text(context_.text("Scan in \"%@\"", {context_.text(smart_categories()[0].label)}));
}

/// Category `at` begins, the one before it is done. Only finished categories are read: the scan goes on meanwhile and
/// writes the others and their total.
void SmartScanViewController::begin_category(std::size_t at) {
  transitionItem(context_.text("Scan in \"%@\"", {context_.text(smart_categories()[at].label)}));
  count_category(at - 1);
  progressView->set_stroke_end(stroke_end(at));
  steps->set_current(static_cast<int>(at));
}

/// The engine's own sum of a category may hold what earlier scans found; the entries are what there is. Once the scan
/// is over it is known which of them are listed twice.
void SmartScanViewController::count_category(std::size_t finished) {
  const auto& item = sharedCleaner.*smart_categories()[finished].item;
  if (!item) return;
  found_.insert(found_.end(), item->items.begin(), item->items.end());
  const bool counts_once = !scanning_ && sharedCleaner.smart_amount;
  const std::int64_t bytes = counts_once ? sharedCleaner.smart_amount->amount(found_) : ChosenAmount().amount(found_);
  transitionSize(context_.byte_count(bytes));
}

/// Fades, over 0.1 seconds.
void SmartScanViewController::transitionItem(const QString& text) {
  smart_item->show_text(text);
}

/// Pushes, over 0.3 seconds.
void SmartScanViewController::transitionSize(const QString& text) {
  progressView->show_number(text);
}

}  // namespace tarnby
