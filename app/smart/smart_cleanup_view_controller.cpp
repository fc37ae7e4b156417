#include "app/smart/smart_cleanup_view_controller.h"

#include "app/parts/notifications.h"
#include "engine/cleaner.h"

namespace tarnby {

namespace {

constexpr std::chrono::milliseconds ring_time{2000};
constexpr std::chrono::milliseconds until_complete{1500};
constexpr std::chrono::milliseconds until_cleaned{1500};

}  // namespace

SmartCleanupViewController::SmartCleanupViewController(AppContext& context)
    : RemovalScreen(context, ring_time), progressView(ring_), smart_item(line_), smart_size(ring_->number()) {
  Cleaner& cleaner = context.sharedCleaner();
  smart_item->show_text(context.text("Removing what you chose..."));
  start({cleaner.files, cleaner.wasCleaned,
         [&cleaner](const RemovalOptions& options) { return cleaner.remove_files(options); }});
  when_over(until_complete, [this] { smart_item->show_text(context_.text("Cleanup complete...")); });
  when_over(ring_time, [this] { show_done(); });
}

void SmartCleanupViewController::show_done() {
  progressView->show_caption({});
  progressView->show_number(context_.text("Done"));
  after(until_cleaned, [this] { post(notifications::cleaned_view_controller); });
}

}  // namespace tarnby
