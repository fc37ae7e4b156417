#include "app/junk/delete_view_controller.h"

#include <QVBoxLayout>

#include "app/junk/download_helper.h"
#include "app/layouts.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds ring_time{5400};
constexpr milliseconds after_ring{500};
constexpr milliseconds cleanup_interval{200};

/// When the line says what; only where the category is switched on.
struct TextRow {
  milliseconds delay;
  const char* setting;
  const char* category;
};

constexpr TextRow text_rows[] = {
    {milliseconds(800), "Logs", english("Applications logs")},               // clean_in_apps_logs
    {milliseconds(1500), "Remainders", english("Applications remainders")},  // clean_in_apps_remainders
    {milliseconds(1800), "Downloads", english("Downloads")},                 // clean_in_downloads
    {milliseconds(2200), "Trash", english("Trash Bin")},                     // clean_in_trash
    {milliseconds(2700), "Mails", english("Mail attachments")},              // clean_in_mails
};
constexpr milliseconds complete_delay{3300};

}  // namespace

DeleteViewController::DeleteViewController(AppContext& context)
    : Screen(context),
      appDelegate(context.appDelegate),
      app_settings(context.platform.app_settings),
      sharedCleaner(context.sharedCleaner()),
      hand_off(context.platform, sharedCleaner, [&context](const Url& helper) { context.workspace.launch(helper); }) {
  deleteView = new DeleteView(context.clock, this);
  deleteView->setAccessibleName(context.text("Removal"));
  deleteView->show_number(context.byte_count(sharedCleaner.beCleaned()));
  clean_label = new FadingLabel(context.clock, this);
  skip_button = new PushButton(context.text("Go on without it"), ButtonKind::shaded, this);
  keep_place_when_hidden(skip_button);
  skip_button->setVisible(false);
  connect(skip_button, &QAbstractButton::clicked, this, &DeleteViewController::cleanup);

  QVBoxLayout* layout = screen_column(this);
  layout->addStretch(10);
  layout->addWidget(deleteView, 0, Qt::AlignHCenter);
  layout->addSpacing(4 * theme::grid);
  layout->addWidget(clean_label);
  layout->addSpacing(2 * theme::grid);
  layout->addWidget(skip_button, 0, Qt::AlignHCenter);
  layout->addStretch(7);

  deleteView->animate_stroke_end(1, static_cast<int>(ring_time.count()));
  after(ring_time + after_ring, [this] { ring_is_full(); });
  schedule_texts();
  start_removal();
  observe("cleanup_with_file_exist", [this] { cleanup(); });
}

void DeleteViewController::schedule_texts() {
  const auto in_category = [this](const char* category) {
    return context_.text("Cleanup in \"%@\"", {context_.text(category)});
  };
  clean_label->show_text(app_settings.boolean("Caches") ? in_category(english("Applications caches"))
                                                        : context_.text("Clean up..."));
  for (const TextRow& row : text_rows) {
    after(row.delay, [this, &row, in_category] {
      if (app_settings.boolean(row.setting)) clean_label->show_text(in_category(row.category));
    });
  }
  after(complete_delay, [this] { clean_label->show_text(context_.text("Cleanup complete...")); });
}

void DeleteViewController::start_removal() {
  context_.removal = {.running = true, .left = {}};
  report_->options.stop = &context_.ending;
  const auto complete = while_here([this] { cleanup_complete = true; });
  context_.background.async([&context = context_, &cleaner = sharedCleaner, report = report_, complete] {
    const std::vector<Url> files = cleaner.cleanup_files();
    cleaner.cleanup_with_complete_handler([&] {}, report.get());
    context.platform.main_queue.async(
        [&context, left = left_of(context.platform.files, files, report->removals), complete]() mutable {
          context.removal = {.running = false, .left = std::move(left)};
          context.platform.notifications.post(RemovalRun::removal_changed);
          complete();
        });
  });
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
