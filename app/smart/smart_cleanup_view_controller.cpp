#include "app/smart/smart_cleanup_view_controller.h"

#include <QVBoxLayout>

#include "app/layouts.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds ring_time{2000};
constexpr std::chrono::milliseconds until_complete{1500};
constexpr std::chrono::milliseconds until_cleaned{1500};

}  // namespace

void start_removal(AppContext& context, Cleaner& cleaner) {
  context.removal = {.running = true, .left = {}};
  // Nobody replaces the list meanwhile: that takes another scan, which waits behind this removal.
  context.background.async([&context, &cleaner] {
    const std::vector<Removal> results = cleaner.remove_files({.stop = &context.ending});
    auto left = left_of(context.platform.files, cleaner.files, results);
    context.platform.main_queue.async([&context, left = std::move(left)]() mutable {
      context.removal = {.running = false, .left = std::move(left)};
      context.platform.notifications.post(RemovalRun::removal_changed);
    });
  });
}

SmartCleanupViewController::SmartCleanupViewController(AppContext& context) : Screen(context) {
  Cleaner& cleaner = context.sharedCleaner();
  progressView = new DeleteView(context.clock, this);
  progressView->setAccessibleName(context.text("Removal"));
  smart_size = progressView->number();
  smart_item = new FadingLabel(context.clock, this);
  progressView->show_number(context.byte_count(cleaner.wasCleaned));
  smart_item->show_text(context.text("Removing what you chose..."));

  QVBoxLayout* layout = screen_column(this);
  layout->addStretch(10);
  layout->addWidget(progressView, 0, Qt::AlignHCenter);
  layout->addSpacing(4 * theme::grid);
  layout->addWidget(smart_item);
  layout->addStretch(9);

  start_removal(context, cleaner);
  progressView->animate_stroke_end(1, static_cast<int>(ring_time.count()));
  after(until_complete, [this] { smart_item->show_text(context_.text("Cleanup complete...")); });
  // When the ring is full. The moment is taken from the main queue, since without motion the ring is full at once.
  after(ring_time, [this] {
    progressView->show_number(context_.text("Done"));
    after(until_cleaned, [this] { post("cleaned_view_controller"); });
  });
}

}  // namespace tarnby
