#include <QDir>
#include <QFile>
#include <QMenu>
#include <array>

#include "app/access/sandbox_view_controller.h"
#include "app/cleaned/cleaned_view_controller.h"
#include "app/home/home_view_controller.h"
#include "app/junk/category_about.h"
#include "app/junk/delete_view_controller.h"
#include "app/junk/download_helper.h"
#include "app/junk/large_files_view_controller.h"
#include "app/junk/page_controllers.h"
#include "app/junk/scan_view_controller.h"
#include "app/parts/notice.h"
#include "app/parts/overlay.h"
#include "app/privacy/privacy_disk_access_view_controller.h"
#include "app/shell/about_program.h"
#include "app/smart/smart_clean_view_controller.h"
#include "app/smart/smart_cleanup_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "platform/platform.h"
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

void access_wrong(Stage& stage) {
  stage.context().platform.bookmarks.store(Grant::home, stage.home().parent());
  stage.context().platform.bookmarks.store(Grant::applications, stage.home());
  stage.show<SandboxViewController>(main_screens(), "Sandbox", nullptr);
}

void access_changes(Stage& stage) {
  const Url applications = stage.home().appending("Applications");
  QDir().mkpath(QString::fromStdString(applications.appending("Any.app").path()));
  stage.context().platform.bookmarks.store(Grant::home, stage.home());
  stage.context().platform.bookmarks.store(Grant::applications, applications);
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
  stage.run_main_queue();  // the scan is over; its steps are shown one after the other
  for (int step = 0; step < 3; ++step) stage.run_delayed();
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
  for (int entry = 0; entry < 38; ++entry) {
    stage.cleaner().files.push_back(stage.home().appending("Library/Caches/" + std::to_string(entry)));
  }
  return stage.show<SmartCleanupViewController>(smart_screens(), "SmartCleanup",
                                                &BackgroundView::animation_for_delete_view);
}

void removal_runs(Stage& stage) {
  SmartCleanupViewController* screen = removal(stage);
  screen->progressView->set_stroke_end(0.4);
  screen->smart_size->setText(stage.context().byte_count(2'470'000'000));
  screen->entries_label->setText(
      stage.context().plural(2140, "One file or folder is gone", "%@ files and folders are gone"));
}

void removal_done(Stage& stage) {
  removal(stage);
  stage.finish_background();
  stage.run_main_queue();
  stage.run_delayed();
}

void removal_question(Stage& stage) {
  removal_runs(stage);
  stage.context().may_close(*stage.window());
}

CleanedViewController* cleaned(Stage& stage) {
  stage.cleaner().wasCleaned = 6'180'000'000;
  RemovalOutcome& outcome = stage.context().removal.outcome;
  outcome.space_before = DiskSpace{128'000'000'000, 512'000'000'000};
  outcome.space_after = DiskSpace{134'180'000'000, 512'000'000'000};
  return stage.show<CleanedViewController>(main_screens(), "Cleaned", &BackgroundView::animation_for_cleaned_view);
}

void cleaned_all(Stage& stage) {
  cleaned(stage);
}

void leave_some(Stage& stage) {
  const Url logs = stage.home().appending("Library/Logs");
  RemovalOutcome& outcome = stage.context().removal.outcome;
  outcome.left = {{logs.appending("DiagnosticReports"), LeftReason::no_permission},
                  {logs.appending("Sketchbook"), LeftReason::in_use}};
  outcome.left_bytes = 2'100'000;
}

void cleaned_left(Stage& stage) {
  leave_some(stage);
  cleaned(stage);
}

void cleaned_not_removed_list(Stage& stage) {
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

/// The engine as after a junk scan and, when asked, after a choice of large files.
void pretend_junk_scan(Stage& stage) {
  Cleaner& cleaner = stage.cleaner();
  const auto item = [&](std::int64_t megabytes, std::vector<Url> files = {}) {
    auto made = std::make_shared<CleanerItem>();
    made->size = megabytes * 1'000'000;
    made->string_size = stage.context().platform.text.byte_count(made->size);
    made->files = std::move(files);
    return made;
  };
  const Url logs = stage.home().appending("Library/Logs");
  cleaner.apps_caches_item = item(2910);
  cleaner.apps_logs_item = item(413, {logs.appending("one.log"), logs.appending("Sketchbook/sync.log")});
  cleaner.apps_remainders_item = item(0);
  cleaner.browser_chrome_item = item(433);
  cleaner.browser_safari_item = item(300);
  cleaner.browser_item = item(733);
  cleaner.trash_item = item(1800);
  cleaner.mails_item = item(680);
  cleaner.downloads_item = item(0);
  cleaner.apps_junk_size = 4'056'000'000;
  cleaner.media_junk_size = 2'480'000'000;
  cleaner.apps_junk_search_complete = true;
  cleaner.media_search_coomplete = true;
  stage.context().platform.app_settings.initialize_applications_settings();
}

void junk_scan(Stage& stage) {
  pretend_junk_scan(stage);
  stage.show<ScanViewController>(main_screens(), "Scan", &BackgroundView::animation_for_scan_view);
}

void junk_scan_ends(Stage& stage) {
  pretend_junk_scan(stage);
  stage.show<ScanViewController>(main_screens(), "Scan", &BackgroundView::animation_for_scan_view)->scan_complete();
}

PageController* pages(Stage& stage) {
  pretend_junk_scan(stage);
  return stage.show<PageController>(main_screens(), "PageController", &BackgroundView::animation_for_page_view);
}

void pages_applications(Stage& stage) {
  pages(stage);
}

void pages_browsers(Stage& stage) {
  PageController* screen = pages(stage);
  stage.context().platform.notifications.post("move_browsers");
  stage.pass(500);
  for (CategoryAbout* about : screen->findChildren<CategoryAbout*>()) {
    if (about->isVisible()) about->show_category();
  }
}

void pages_media(Stage& stage) {
  pages(stage);
  for (const char* move : {"navigate_forward", "move_media_trash"}) stage.context().platform.notifications.post(move);
  stage.pass(500);
}

LargeFilesViewController* large_files(Stage& stage) {
  Cleaner& cleaner = stage.cleaner();
  const Url home = stage.home();
  const auto file = [&](const char* path, std::int64_t megabytes, const char* type) {
    const Url url = home.appending(path);
    return LargeFile::init_with_file_url(url, std::string(url.last_path_component()), megabytes * 1'000'000, type);
  };
  cleaner.largeFiles = {file("Movies/Holiday.mov", 2300, "movie"), file("Documents/Thesis/scans.pdf", 84, "document"),
                        file("Projects/backup-2019.zip", 640, "archive"), file("Movies/Wedding.mp4", 1450, "movie")};
  const LargeFileSelection all = large_files_of_at_least(0, cleaner.largeFiles);
  cleaner.outlineItems = all.rows;
  cleaner.totalLargeFilesSize = all.total;
  stage.pass(100);
  Sheet* sheet = Sheet::present(main_screens().make("LargeFiles", stage.context()), stage.window());
  return static_cast<LargeFilesViewController*>(&sheet->content());
}

void large_files_search(Stage& stage) {
  pages_media(stage);
  large_files(stage);
}

void large_files_found(Stage& stage) {
  pages_media(stage);
  LargeFilesViewController* sheet = large_files(stage);
  stage.finish_background();
  stage.run_main_queue();
  const auto* model = sheet->outlineview->model();
  sheet->select_file(model->index(0, 0, model->index(0, 0)), true);
}

void delete_runs(Stage& stage) {
  pretend_junk_scan(stage);
  stage.show<DeleteViewController>(main_screens(), "Delete", &BackgroundView::animation_for_delete_view)
      ->deleteView->set_stroke_end(0.6);
}

void delete_left(Stage& stage) {
  delete_runs(stage);
  stage.finish_background();
  const Url trash = stage.home().appending(".Trash");
  stage.cleaner().remainder_urls = {trash.appending("Old system files"), trash.appending("Shared drafts")};
  static std::unique_ptr<HandOff> hand_off;
  hand_off = std::make_unique<HandOff>(stage.context().platform, stage.cleaner(), [](const Url&) {});
  Sheet::present(std::make_unique<DownloadHelper>(stage.context(), *hand_off), stage.window());
}

/// Without its program the scheduler is neither offered nor switched.
void install_scheduler(const Stage& stage) {
  const QString folder = QString::fromStdString(stage.home().parent().appending("programs").path());
  QDir().mkpath(folder);
  QFile program(folder + QStringLiteral("/tarnby-cleaner-scheduler"));
  if (program.open(QIODevice::WriteOnly)) program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
}

void home_offer(Stage& stage) {
  install_scheduler(stage);
  stage.context().platform.app_settings.set_integer("appLaunchCount", 5);
  home_first(stage);
  stage.run_delayed();
}

void preferences(Stage& stage) {
  install_scheduler(stage);
  home_first(stage);
  Sheet::present(main_screens().make("Preferences", stage.context()), stage.window());
}

void about_program(Stage& stage) {
  home_first(stage);
  Sheet::present(std::make_unique<AboutProgram>(stage.context()), stage.window());
}

void notice(Stage& stage) {
  home_first(stage);
  AppContext& context = stage.context();
  Notice::present(context, context.text("This could not be opened"),
                  context.text("Nothing on this desktop opens %@.", {QStringLiteral("/srv/0815")}), stage.window());
}

/// The guide is a window of its own; here it lies in the middle of an empty stage.
void guide(Stage& stage, int page) {
  stage.window()->show();
  auto* window = new GuideWindow(stage.context(), stage.window());
  window->setWindowFlags(Qt::Widget);
  window->move(200, 110);
  window->show();
  for (int turned = 0; turned < page; ++turned) {
    stage.context().platform.notifications.post("navigate_next_in_privacy_full_disk");
  }
  if (page == 2) window->content->shake_window();
}

void guide_first(Stage& stage) {
  guide(stage, 0);
}

void guide_last(Stage& stage) {
  guide(stage, 2);
  stage.pass(1000);
}

constexpr std::array stages = {
    StageRow{"screen_access", access_new},
    StageRow{"screen_access_home_allowed", access_half},
    StageRow{"screen_access_wrong", access_wrong},
    StageRow{"screen_access_changes", access_changes},
    StageRow{"screen_home", home_first},
    StageRow{"screen_home_cleaned_before", home_later},
    StageRow{"screen_home_offer", home_offer},
    StageRow{"screen_preferences", preferences},
    StageRow{"screen_about", about_program},
    StageRow{"screen_notice", notice},
    StageRow{"screen_guide", guide_first},
    StageRow{"screen_guide_last", guide_last},
    StageRow{"screen_smart_scan_begins", scan_begins},
    StageRow{"screen_smart_scan", scan_browsers},
    StageRow{"screen_smart_clean_all", clean_all},
    StageRow{"screen_smart_clean", clean_some},
    StageRow{"screen_smart_clean_nothing", clean_nothing},
    StageRow{"screen_smart_clean_about", clean_about},
    StageRow{"screen_smart_clean_warning", clean_warning},
    StageRow{"screen_smart_cleanup", removal_runs},
    StageRow{"screen_smart_cleanup_done", removal_done},
    StageRow{"screen_smart_cleanup_question", removal_question},
    StageRow{"screen_junk_scan", junk_scan},
    StageRow{"screen_junk_scan_ends", junk_scan_ends},
    StageRow{"screen_categories_applications", pages_applications},
    StageRow{"screen_categories_browsers", pages_browsers},
    StageRow{"screen_categories_media", pages_media},
    StageRow{"screen_large_files_search", large_files_search},
    StageRow{"screen_large_files", large_files_found},
    StageRow{"screen_delete", delete_runs},
    StageRow{"screen_delete_left", delete_left},
    StageRow{"screen_cleaned", cleaned_all},
    StageRow{"screen_cleaned_left", cleaned_left},
    StageRow{"screen_cleaned_not_removed_list", cleaned_not_removed_list},
    StageRow{"screen_cleaned_rating", cleaned_rating},
    StageRow{"screen_cleaned_promotion", cleaned_promotion},
};

}  // namespace

std::span<const StageRow> screen_stages() {
  return stages;
}

}  // namespace tarnby
