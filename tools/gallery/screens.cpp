#include <QMenu>
#include <array>

#include "app/access/sandbox_view_controller.h"
#include "app/cleaned/cleaned_view_controller.h"
#include "app/home/home_view_controller.h"
#include "app/overlay.h"
#include "app/smart/smart_clean_view_controller.h"
#include "app/smart/smart_cleanup_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "tools/gallery/stage.h"

namespace tarnby {
namespace {

const ScreenCatalogue& main_screens() {
  return ScreenCatalogue::main();
}
const ScreenCatalogue& smart_screens() {
  return ScreenCatalogue::smart_clean();
}

void access_new(Stage& stage) {
  stage.show<SandboxViewController>(main_screens(), "Sandbox", nullptr);
}

void access_half(Stage& stage) {
  stage.context().platform.bookmarks.store(Grant::home, stage.home());
  stage.show<SandboxViewController>(main_screens(), "Sandbox", nullptr);
}

void home_first(Stage& stage) {
  stage.show<HomeViewController>(main_screens(), "Home", &BackgroundView::animation_for_home_view);
}

void home_later(Stage& stage) {
  stage.context().platform.app_settings.set_integer("TotallyCleaned", 48'200'000'000);
  home_first(stage);
}

SmartScanViewController* scan(Stage& stage) {
  auto* screen =
      stage.show<SmartScanViewController>(smart_screens(), "SmartScan", &BackgroundView::animation_for_scan_view);
  stage.finish_background();
  pretend_smart_scan(stage.cleaner());  // instead of what the screen's own scan has found
  return screen;
}

void scan_begins(Stage& stage) {
  scan(stage);
}

void scan_browsers(Stage& stage) {
  scan(stage);
  for (const char* step : {"smart_scan_logs", "smart_scan_remainders", "smart_scan_browsers"}) {
    stage.context().platform.notifications.post(step);
  }
  stage.pass(400);
}

SmartCleanViewController* clean(Stage& stage) {
  return stage.show<SmartCleanViewController>(smart_screens(), "SmartClean", &BackgroundView::animation_for_page_view);
}

/// As after some use: one entry and one group unticked, the first group open.
SmartCleanViewController* clean_in_use(Stage& stage) {
  pretend_smart_scan(stage.cleaner());
  SmartCleanViewController* screen = clean(stage);
  const auto* model = screen->outlineview->model();
  screen->select_item(model->index(2, 0, model->index(0, 0)), false);
  screen->select_smart_outline_item(model->index(3, 0), false);
  screen->outlineview->setAnimated(false);
  screen->show_items(model->index(0, 0));
  screen->outlineview->setCurrentIndex(model->index(0, 0));
  stage.pass(800);
  return screen;
}

void clean_all(Stage& stage) {
  pretend_smart_scan(stage.cleaner());
  clean(stage);
}

void clean_some(Stage& stage) {
  clean_in_use(stage);
}

void clean_nothing(Stage& stage) {
  pretend_clean_home(stage.cleaner());
  clean(stage);
}

void clean_about(Stage& stage) {
  SmartCleanViewController* screen = clean_in_use(stage);
  screen->about_item(screen->outlineview->model()->index(2, 0));
}

void clean_warning(Stage& stage) {
  clean_in_use(stage)->ask_and_remove();
}

SmartCleanupViewController* removal(Stage& stage) {
  stage.cleaner().wasCleaned = 6'180'000'000;
  return stage.show<SmartCleanupViewController>(smart_screens(), "SmartCleanup",
                                                &BackgroundView::animation_for_delete_view);
}

void removal_runs(Stage& stage) {
  removal(stage)->progressView->set_stroke_end(0.4);
}

void removal_done(Stage& stage) {
  removal(stage);
  stage.run_delayed();
}

CleanedViewController* cleaned(Stage& stage) {
  stage.cleaner().wasCleaned = 6'180'000'000;
  return stage.show<CleanedViewController>(main_screens(), "Cleaned", &BackgroundView::animation_for_cleaned_view);
}

void cleaned_all(Stage& stage) {
  cleaned(stage);
}

void leave_some(Stage& stage) {
  const Url logs = stage.home().appending("Library/Logs");
  stage.context().removal.left = {{logs.appending("DiagnosticReports"), "Permission denied"},
                                  {logs.appending("Sketchbook"), "Device or resource busy"}};
}

void cleaned_left(Stage& stage) {
  leave_some(stage);
  cleaned(stage);
}

void cleaned_left_list(Stage& stage) {
  leave_some(stage);
  cleaned(stage)->show_left();
}

void cleaned_rating(Stage& stage) {
  stage.context().platform.app_settings.set_integer("appLaunchCount", 10);
  cleaned(stage);
  stage.run_delayed();
}

void cleaned_promotion(Stage& stage) {
  stage.context().platform.app_settings.set_integer("UOLaunchCount", 4);
  cleaned(stage);
  stage.run_delayed();
}

constexpr std::array stages = {
    StageRow{"screen_access", access_new},
    StageRow{"screen_access_home_allowed", access_half},
    StageRow{"screen_home", home_first},
    StageRow{"screen_home_cleaned_before", home_later},
    StageRow{"screen_smart_scan_begins", scan_begins},
    StageRow{"screen_smart_scan", scan_browsers},
    StageRow{"screen_smart_clean_all", clean_all},
    StageRow{"screen_smart_clean", clean_some},
    StageRow{"screen_smart_clean_nothing", clean_nothing},
    StageRow{"screen_smart_clean_about", clean_about},
    StageRow{"screen_smart_clean_warning", clean_warning},
    StageRow{"screen_smart_cleanup", removal_runs},
    StageRow{"screen_smart_cleanup_done", removal_done},
    StageRow{"screen_cleaned", cleaned_all},
    StageRow{"screen_cleaned_left", cleaned_left},
    StageRow{"screen_cleaned_left_list", cleaned_left_list},
    StageRow{"screen_cleaned_rating", cleaned_rating},
    StageRow{"screen_cleaned_promotion", cleaned_promotion},
};

}  // namespace

std::span<const StageRow> screen_stages() {
  return stages;
}

}  // namespace tarnby
