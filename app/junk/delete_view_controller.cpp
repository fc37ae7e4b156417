#include "app/junk/delete_view_controller.h"

#include <QVBoxLayout>
#include <utility>

#include "app/junk/download_helper.h"
#include "app/parts/category_look.h"
#include "app/parts/layouts.h"
#include "app/parts/notifications.h"
#include "engine/categories.h"
#include "engine/cleaner.h"
#include "platform/workspace.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds ring_time{5400};
constexpr milliseconds after_ring{500};
constexpr milliseconds cleanup_interval{200};
constexpr milliseconds complete_delay{3300};

}  // namespace

DeleteViewController::DeleteViewController(AppContext& context)
    : RemovalScreen(context, ring_time),
      appDelegate(context.appDelegate),
      app_settings(context.settings()),
      sharedCleaner(context.sharedCleaner()),
      deleteView(ring_),
      clean_label(line_),
      hand_off(context.platform, sharedCleaner, [&context](const Url& helper) { context.workspace.launch(helper); }) {
  skip_button = new PushButton(context.text("Go on without it"), ButtonKind::shaded, this);
  keep_place_when_hidden(skip_button);
  skip_button->setVisible(false);
  connect(skip_button, &QAbstractButton::clicked, this, &DeleteViewController::cleanup);
  below_->addWidget(skip_button, 0, Qt::AlignHCenter);

  schedule_texts();
  start(request());
  after(ring_time + after_ring, [this] { ring_is_full(); });
  observe(notifications::cleanup_with_file_exist, [this] { cleanup(); });
}

/// A category is told at its moment when it is switched on then; what is told at once is there with the screen.
void DeleteViewController::schedule_texts() {
  QString first = context_.text("Clean up...");
  for (const CategoryLook& look : category_looks()) {
    if (!look.removal_text_at) continue;
    const Category& category = *category_row(look.type);
    const QString words = context_.text("Cleanup in \"%@\"", {context_.text(category.label)});
    if (*look.removal_text_at > milliseconds(0)) {
      after(*look.removal_text_at, [this, words, setting = category.setting] {
        if (app_settings.boolean(setting) && !context_.removal.stopped) clean_label->show_text(words);
      });
    } else if (app_settings.boolean(category.setting)) {
      first = words;
    }
  }
  clean_label->show_text(first);
  when_over(complete_delay, [this] { clean_label->show_text(context_.text("Cleanup complete...")); });
}

RemovalRequest DeleteViewController::request() {
  return {sharedCleaner.cleanup_files(), sharedCleaner.cleanup_amount(),
          [&cleaner = sharedCleaner, report = report_](const RemovalOptions& options) {
            report->options = options;
            cleaner.cleanup_with_complete_handler([] {}, report.get());
            return report->removals;
          }};
}

/// What it took is not offered again, and a list of large files that some are missing from is looked for anew.
void DeleteViewController::removal_is_over() {
  cleanup_complete = true;
  if (std::exchange(sharedCleaner.large_files_item, nullptr) == nullptr) return;
  context_.large_files_are_known = false;
  sharedCleaner.totalLargeFilesSize = 0;
  sharedCleaner.largeFiles.clear();
  sharedCleaner.outlineItems.clear();
}

void DeleteViewController::ring_is_full() {
  if (cleanup_complete) return finish();
  every(cleanup_interval, [this] {
    if (!cleanup_complete) return true;
    finish();
    return false;
  });
}

void DeleteViewController::finish() {
  if (report_->left.empty()) return cleanup();
  sharedCleaner.remainder_urls = report_->left;
  context_.removal.left_unsure = true;
  if (hand_off.delete_files_with_helper()) return wait_for_helper();
  present_sheet(std::make_unique<DownloadHelper>(context_, hand_off));
}

void DeleteViewController::wait_for_helper() {
  clean_label->show_text(context_.text("Waiting for the helper..."));
  skip_button->setVisible(true);
  skip_button->setFocus();
  every(HandOff::timer_interval, [this] { return hand_off.helper_timer_proc(); });
}

}  // namespace tarnby
