#include <gmock/gmock.h>

#include <QLabel>
#include <QSlider>
#include <filesystem>
#include <set>

#include "app/cleaned/cleaned_view_controller.h"
#include "app/home/home_view_controller.h"
#include "app/junk/applications_view_controller.h"
#include "app/junk/delete_view_controller.h"
#include "app/junk/download_helper.h"
#include "app/junk/large_files_view_controller.h"
#include "app/junk/media_view_controller.h"
#include "app/junk/page_controllers.h"
#include "app/junk/scan_view_controller.h"
#include "app/junk/select_browsers.h"
#include "app/parts/not_removed_list.h"
#include "app/smart/warning_cleanup_view_controller.h"
#include "platform/settings_store.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::HeldThread;
using test::Layer;
using test::TestPlatform;
using test::TestWindow;
using testing::ElementsAre;
using testing::IsEmpty;

/// A home with something in most categories, as far as the category pages.
struct Pages {
  explicit Pages(const std::function<void(TestPlatform&)>& more = {}) {
    user.tree.file("ada/Library/Caches/plain/x", 1'000'000).file("ada/Library/Logs/a.log", 2'000'000);
    user.tree.file("ada/Library/Safari/LocalStorage/s", 4'000'000).file("ada/.Trash/t", 8'000'000);
    user.tree.file("ada/Library/Application Support/Google/Chrome/Default/Application Cache/c", 9'000'000);
    user.tree.file("ada/Movies/long.mov", 600'000'000).file("ada/Movies/short.mov", 60'000'000);
    user.tree.file("ada/Notes/text.pdf", 20'000'000);
    if (more) more(user);
    window.delegate.applicationDidFinishLaunching();
    window.open_on_screen();
    window.settle();
    cleaner.clean_with_complete_handler([] {});
    window.post("page_controller");
    window.pass(1000);
  }

  template <class Page>
  Page& page() {
    return *window.widget()->findChild<Page*>();
  }
  std::string sum(CategoryPage& page) { return page.overall_be_cleaned_label->text().toStdString(); }
  bool setting(const char* key) { return user.settings.boolean(key); }

  TestPlatform user;
  TestWindow window{user};
  Cleaner& cleaner = window.context.sharedCleaner();
};

/// Opens the window on the screen of a junk scan, whose search is over by then.
ScanViewController& show_junk_scan(TestWindow& window) {
  window.open_on_screen();
  window.post("scan_view_controller");
  window.settle();
  window.pass(100);
  return *window.screen<ScanViewController>(Layer::overlay);
}

/// Every text that the label shows in that time.
std::set<std::string> texts_shown(TestWindow& window, const QLabel& label, int milliseconds) {
  std::set<std::string> texts;
  for (int passed = 0; passed < milliseconds; passed += 10, window.pass(10)) texts.insert(label.text().toStdString());
  return texts;
}

TEST(ScanViewController, tells_each_step_at_its_moment_and_waits_for_the_scan_twice) {
  TestPlatform user;
  user.tree.file("ada/Library/Logs/a.log", 2'000'000).file("ada/Library/Logs/b.log").file("ada/.Trash/t", 8'000'000);
  TestWindow window(user);
  window.open_on_screen();
  window.settle();
  HeldThread scan(window.background);
  window.screen<HomeViewController>()->categories_button->click();
  window.pass(99);
  EXPECT_EQ(window.screen(Layer::overlay), nullptr);
  window.pass(1);
  auto* screen = window.screen<ScanViewController>(Layer::overlay);
  ASSERT_NE(screen, nullptr);
  const auto says = [&] { return screen->scan_label->text().toStdString(); };
  EXPECT_EQ(screen->path->text(), "Wait...");
  EXPECT_EQ(says(), "Scan in \"Applications caches\"");
  window.pass(1990);
  EXPECT_EQ(says(), "Scan in \"Applications caches\"");
  window.pass(10);
  EXPECT_EQ(says(), "Scan in \"Applications logs\"");
  EXPECT_EQ(window.screen(), nullptr) << "the home screen has gone meanwhile";
  window.pass(2000);
  EXPECT_EQ(says(), "Scan in \"Applications remainders\"");
  window.pass(3000);
  EXPECT_EQ(says(), "Scan in \"Browsers\"");
  window.pass(9000);
  EXPECT_EQ(says(), "Scan in \"Browsers\"") << "the scan still runs";
  EXPECT_DOUBLE_EQ(screen->scanView->stroke_end(), 0.5);
  EXPECT_EQ(screen->path->text(), "Wait...") << "nothing is read before it is there";
  scan.release();
  window.settle();
  window.pass(500);
  EXPECT_EQ(says(), "Scan in \"Trash Bin\"");
  EXPECT_EQ(screen->scan_size->text(), "2 MB");
  EXPECT_EQ(screen->path->text(), "Wait...") << "the last who spoke had no files";
  window.pass(1500);
  EXPECT_EQ(says(), "Scan in \"Mail attachments\"");
  window.pass(1290);
  EXPECT_EQ(says(), "Scan in \"Mail attachments\"");
  window.pass(10);
  EXPECT_EQ(says(), "Scan complete...");
  EXPECT_EQ(screen->text->text(), "Tarnby cleaner...");
  EXPECT_EQ(screen->scan_size->text(), "10 MB");
  window.pass(1490);
  EXPECT_EQ(window.screen(), nullptr);
  window.pass(10);
  EXPECT_NE(window.screen<PageController>(), nullptr);
  EXPECT_EQ(window.screen(Layer::overlay), nullptr);
}

TEST(ScanViewController, shows_the_files_of_a_category_but_never_the_first) {
  TestPlatform user;
  for (const char* name : {"a", "b", "c"}) user.tree.file(std::string("ada/Library/Caches/") + name, 1);
  TestWindow window(user);
  const QLabel* path = show_junk_scan(window).path;
  std::vector<std::string> shown;
  for (int tick = 0; tick < 10; ++tick) {
    window.pass(30);
    shown.push_back(path->text().toStdString());
  }
  EXPECT_TRUE(shown[0].ends_with("/Caches/b")) << shown[0];
  EXPECT_TRUE(shown[1].ends_with("/Caches/c") && shown[9].ends_with("/Caches/c")) << shown[1];
}

TEST(ScanViewController, counts_up_with_the_names_that_flicker_by) {
  TestPlatform user;
  for (const char* name : {"a", "b", "c", "d"}) user.tree.file(std::string("ada/Library/Caches/") + name, 1'000'000);
  user.tree.file("ada/Library/Logs/l", 2'000'000).file("ada/.Trash/t", 8'000'000).file("ada/.Trash/u", 8'000'000);
  TestWindow window(user);
  const QLabel* size = show_junk_scan(window).scan_size;
  std::vector<std::string> told;
  const auto listen = [&](int until) {
    for (; until > 0; until -= 10, window.pass(10)) {
      if (told.empty() || told.back() != size->text().toStdString()) told.push_back(size->text().toStdString());
    }
  };
  listen(1900);
  EXPECT_THAT(std::exchange(told, {}), ElementsAre("Zero KB", "1 MB", "2 MB", "3 MB", "4 MB"));
  listen(7000);
  EXPECT_THAT(std::exchange(told, {}), ElementsAre("4 MB", "6 MB", "14 MB", "22 MB"));
  listen(2000);
  EXPECT_THAT(told, ElementsAre("22 MB")) << "the sum of both scans";
}

TEST(ScanViewController, counts_once_what_two_categories_list) {
  TestPlatform user;
  for (const char* name : {"com.gone.tool/x", "kept/x"}) {
    user.tree.file(std::string("ada/Library/Caches/") + name, 24'000'000);
  }
  user.tree.file("ada/.Trash/t", 1'000'000);
  TestWindow window(user);
  const QLabel* size = show_junk_scan(window).scan_size;
  EXPECT_THAT(texts_shown(window, *size, 10'900), ElementsAre("24 MB", "48 MB", "49 MB", "Zero KB"))
      << "and not the leftover's 24 MB again";
}

TEST(ScanViewController, says_of_which_categories_everything_is_clean) {
  struct Case {
    std::vector<std::string> files;
    const char* clean;
  };
  const Case cases[] = {{{"ada/Library/Logs/.hidden"}, "In \"Applications logs\" everything is clean"},
                        {{"ada/Library/Logs/l", "ada/.Trash/"}, "In \"Trash Bin\" everything is clean"},
                        {{"ada/song.mp3"}, "Not looked for: none of its places is in ada"},
                        {{"ada/Library/Logs/l", "ada/.Trash/t", "ada/Library/Containers/com.apple.mail/x"},
                         "In \"Mail attachments\" everything is clean"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.clean);
    TestPlatform user;
    for (const std::string& file : c.files) file.ends_with('/') ? user.tree.folder(file) : user.tree.file(file, 1);
    TestWindow window(user);
    const QLabel* path = show_junk_scan(window).path;
    EXPECT_THAT(texts_shown(window, *path, 10'500), testing::Contains(c.clean));
  }
}

TEST(ScanViewController, fills_its_ring_in_8_seconds_and_2_8_more) {
  TestPlatform user;
  TestWindow window(user);
  const ScanView* ring = show_junk_scan(window).scanView;
  window.pass(4000);
  EXPECT_NEAR(ring->stroke_end(), 0.25, 0.01);
  window.pass(4000);
  EXPECT_NEAR(ring->stroke_end(), 0.5, 0.01);
  window.pass(1400);
  EXPECT_NEAR(ring->stroke_end(), 0.75, 0.01);
  window.pass(1400);
  EXPECT_NEAR(ring->stroke_end(), 1, 0.01);
}

TEST(ScanViewController, that_is_stopped_leads_home_even_before_its_scan_has_begun) {
  TestPlatform user;
  user.tree.file("ada/Library/Logs/a.log", 2'000'000);
  TestWindow window(user);
  window.open_on_screen();
  window.settle();
  HeldThread before(window.background);
  window.screen<HomeViewController>()->categories_button->click();
  window.pass(500);
  auto* screen = window.screen<ScanViewController>(Layer::overlay);
  ASSERT_NE(screen, nullptr);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(window.screen(Layer::overlay), nullptr);
  ASSERT_NE(window.screen<HomeViewController>(), nullptr);
  before.release();
  window.settle();
  EXPECT_FALSE(window.engine->cleaner.search_is_complete) << "nobody waits for it";
  window.pass(15'000);
  window.screen<HomeViewController>()->categories_button->click();
  window.pass(500);
  window.settle();
  window.pass(12'000);
  EXPECT_NE(window.screen<PageController>(), nullptr) << "the next one is looked for as usual";
}

TEST(CategoryPages, tick_and_untick_what_will_be_cleaned) {
  Pages pages;
  auto& applications = pages.page<ApplicationsViewController>();
  auto& media = pages.page<MediaViewController>();
  EXPECT_EQ(pages.sum(applications), "11 MB") << "caches, logs and the Trash; browsers are off at launch";
  EXPECT_EQ(pages.sum(media), "11 MB") << "one sum for both pages";
  EXPECT_EQ(applications.overall_be_cleaned, 3'000'000);
  EXPECT_TRUE(applications.category("remainders").button->isHidden()) << "nothing to tick";
  const auto* inner = applications.findChild<ApplicationsPageController*>();
  const auto on_disk = [&](const char* key) {
    pages.window.settle();
    return AppSettings(*open_settings_file(pages.user.url("settings/settings.plist"))).boolean(key);
  };
  applications.category("logs").button->click();
  EXPECT_TRUE(pages.sum(applications) == "9 MB" && pages.sum(media) == "9 MB");
  EXPECT_FALSE(pages.setting("Logs") || on_disk("Logs"));
  EXPECT_EQ(inner->pages->current(), 1);
  const CategoryRow* logs = applications.category("logs").line;
  EXPECT_TRUE(logs->is_current() && !applications.category("caches").line->is_current());
  QTest::mouseClick(applications.category("logs").line, Qt::LeftButton, {}, {logs->width() / 2, logs->height() / 2});
  EXPECT_EQ(pages.sum(applications), "11 MB") << "the whole line is a target";
  EXPECT_TRUE(pages.setting("Logs") && on_disk("Logs"));
  applications.category("browsers").info->click();
  EXPECT_EQ(inner->pages->current(), 3);
  EXPECT_EQ(pages.sum(applications), "11 MB") << "only told about";

  applications.category("browsers").button->click();
  EXPECT_EQ(pages.sum(applications), "24 MB");
  SelectBrowsers browsers(pages.window.context);
  EXPECT_TRUE(browsers.chrome_button->isChecked() && browsers.safari_button->isChecked());
  EXPECT_FALSE(browsers.mozilla_button->isEnabled()) << "nothing found of it";
  browsers.chrome_button->click();
  EXPECT_EQ(pages.sum(media), "15 MB");
  EXPECT_EQ(applications.category("browsers").size_label->text(), "4 MB");
  EXPECT_EQ(pages.user.relative(pages.cleaner.browser_item->files),
            std::vector<std::string>{"ada/Library/Safari/LocalStorage"});
  EXPECT_FALSE(SelectBrowsers(pages.window.context).chrome_button->isChecked()) << "the choice is kept";
  browsers.chrome_button->click();
  EXPECT_EQ(pages.sum(applications), "24 MB");

  const PageTurner* turner = pages.window.screen<PageController>()->pages;
  applications.next_button->click();
  EXPECT_EQ(turner->current(), 1);
  media.back_button->click();
  EXPECT_EQ(turner->current(), 0);
  applications.back_button->click();
  EXPECT_NE(pages.window.screen<HomeViewController>(), nullptr);
}

TEST(CategoryPages, count_once_what_is_listed_twice_and_say_so) {
  Pages pages([](TestPlatform& user) { user.tree.file("ada/Library/Caches/com.gone.tool/x", 30'000'000); });
  auto& applications = pages.page<ApplicationsViewController>();
  auto& media = pages.page<MediaViewController>();
  EXPECT_EQ(pages.sum(media), "41 MB");
  EXPECT_EQ(applications.other_page->text(), "On the other page: 8 MB");
  EXPECT_EQ(applications.counted_once->text(), "What is listed twice is counted once: 30 MB less.");
  EXPECT_EQ(media.other_page->text(), "On the other page: 33 MB");
  EXPECT_EQ(media.counted_once->text(), "") << "33 and 8 are 41";
  applications.category("remainders").button->click();
  EXPECT_EQ(applications.counted_once->text(), "");
  EXPECT_EQ(media.other_page->text(), "On the other page: 33 MB");
}

TEST(CategoryPages, tell_what_could_not_be_looked_at) {
  EXPECT_TRUE(Pages().page<ApplicationsViewController>().problems->isHidden());
  Pages pages([](TestPlatform& user) { std::filesystem::remove_all(user.tree.path("ada/Library")); });
  const QLabel* told = pages.page<MediaViewController>().problems;
  EXPECT_EQ(told->text(), "Mail attachments: Not looked for: none of its places is in ada") << "but there is a Trash";
  EXPECT_FALSE(told->isHidden());
  EXPECT_EQ(pages.page<ApplicationsViewController>().problems->text().count(u'\n'), 3);
}

TEST(CategoryPages, take_large_files_that_were_chosen) {
  Pages pages;
  auto& media = pages.page<MediaViewController>();
  CheckButton* box = media.category("large-files").button;
  EXPECT_EQ(pages.sum(media), "11 MB");
  EXPECT_EQ(media.category("large-files").size_label->text(), "Choose…");
  pages.window.screen<PageController>()->pages->turn_to(1);
  pages.window.pass(500);
  box->click();
  EXPECT_FALSE(box->isChecked() || pages.setting("LargeFiles")) << "until something is chosen";
  pages.window.settle();
  auto* sheet = pages.window.card<LargeFilesViewController>();
  ASSERT_NE(sheet, nullptr);
  EXPECT_EQ(sheet->overall_larges_label->text(), "680 MB");
  const auto labels = [&] {
    std::vector<std::string> names;
    for (const auto& row : sheet->outline_items) names.push_back(row->label);
    return names;
  };
  EXPECT_THAT(labels(), ElementsAre("Documents", "Movies"));
  const auto* model = sheet->outlineview->model();
  sheet->select_file(model->index(1, 0, model->index(1, 0)), true);
  EXPECT_EQ(sheet->selected_larges_label->text(), "Selected: 60 MB");
  sheet->slider->setValue(3);
  EXPECT_THAT(labels(), ElementsAre("Movies"));
  EXPECT_EQ(sheet->overall_larges_label->text(), "600 MB");
  EXPECT_TRUE(sheet->selected_files.empty() && !sheet->submitt_button->isEnabled()) << "another choice begins";
  sheet->select_file(model->index(0, 0, model->index(0, 0)), true);
  sheet->submitt_button->click();
  EXPECT_EQ(pages.sum(media), "611 MB");
  EXPECT_TRUE(box->isChecked() && pages.setting("LargeFiles"));

  media.show_large_files();
  pages.window.settle();
  sheet = pages.window.card<LargeFilesViewController>();
  model = sheet->outlineview->model();
  sheet->select_file(model->index(0, 0, model->index(0, 0)), true);
  sheet->submit();
  EXPECT_EQ(pages.sum(media), "31 MB") << "20 MB in the place of 600 MB";
  EXPECT_EQ(pages.user.relative(pages.cleaner.large_files_item->files), std::vector<std::string>{"ada/Notes/text.pdf"});
  media.show_large_files();
  pages.window.card<LargeFilesViewController>()->submit();
  EXPECT_EQ(pages.sum(media), "31 MB") << "nothing ticked changes nothing";
}

TEST(CategoryPages, ask_about_both_pages_before_they_clean) {
  Pages pages([](TestPlatform& user) { user.tree.file("ada/Downloads/kept", 70'000'000); });
  auto& media = pages.page<MediaViewController>();
  const auto sheet = [&] { return pages.window.card<WarningCleanupViewController>(); };
  pages.window.screen<PageController>()->pages->turn_to(1);
  pages.window.pass(500);
  media.next_button->click();
  ASSERT_NE(sheet(), nullptr);
  EXPECT_EQ(sheet()->windowTitle(), "Remove 11 MB for good?");
  std::vector<std::string> words;
  for (const QLabel* label : sheet()->findChildren<QLabel*>()) words.push_back(label->text().toStdString());
  EXPECT_THAT(words, testing::IsSupersetOf({"Applications caches", "1 MB", "Applications logs", "2 MB", "Trash Bin",
                                            "8 MB", "Trash Bin: what you threw away cannot be put back."}));
  sheet()->dont_show_button->click();
  sheet()->cancel_button->click();
  EXPECT_FALSE(pages.setting("SkipWarning")) << "who cancels has not answered anything";
  EXPECT_NE(pages.window.screen<PageController>(), nullptr);

  for (const char* type : {"caches", "logs"}) pages.page<ApplicationsViewController>().category(type).button->click();
  media.category("trash").button->click();
  EXPECT_EQ(pages.sum(media), "Zero KB");
  EXPECT_FALSE(media.next_button->isEnabled()) << "nothing is ticked";
  media.category("trash").button->click();
  media.next_button->click();
  EXPECT_EQ(sheet()->windowTitle(), "Remove 8 MB for good?");
  sheet()->dont_show_button->click();
  sheet()->cleanup_button->click();
  EXPECT_NE(pages.window.screen<DeleteViewController>(), nullptr);
  EXPECT_TRUE(pages.setting("SkipWarning") && pages.setting("CleanupReady"));
}

TEST(CategoryPages, lead_to_the_downloads_and_never_tick_them) {
  Pages pages([](TestPlatform& user) { user.tree.file("ada/Downloads/kept", 70'000'000); });
  auto& media = pages.page<MediaViewController>();
  EXPECT_EQ(media.category("downloads").size_label->text(), "") << "nobody has measured them";
  pages.user.settings.set_boolean("Downloads", true);
  pages.cleaner.downloads_item = std::make_shared<CleanerItem>();
  pages.cleaner.downloads_item->size = 70'000'000;
  pages.window.post("page_controller");
  pages.window.screen<PageController>()->pages->turn_to(1);
  pages.window.pass(500);
  auto& measured = pages.page<MediaViewController>();
  const CategoryPage::ShownCategory& downloads = measured.category("downloads");
  EXPECT_EQ(downloads.size_label->text(), "70 MB");
  EXPECT_TRUE(downloads.button->isHidden() && !downloads.button->isChecked());
  EXPECT_EQ(pages.sum(measured), "11 MB");
  downloads.line->findChild<PushButton*>()->click();
  pages.window.settle();
  EXPECT_THAT(pages.window.workspace.asked, ElementsAre("reveal " + pages.user.tree.path("ada/Downloads")));
}

TEST(LargeFiles, are_at_least_what_the_slider_says) {
  const std::int64_t MB = 1'000'000;
  const std::int64_t expected[] = {10, 10, 50, 100, 500, 1000, 2000, 2000, 10};
  for (int position = 0; position < 9; ++position) {
    EXPECT_EQ(large_file_size_at_index(position), expected[position] * MB) << position;
  }
}

TEST(LargeFiles, of_a_search_that_was_given_up_are_not_kept) {
  Pages pages;
  auto& media = pages.page<MediaViewController>();
  HeldThread search(pages.window.background);
  media.show_large_files();
  pages.window.card<LargeFilesViewController>()->cancel();
  search.release();
  pages.window.settle();
  EXPECT_EQ(pages.cleaner.totalLargeFilesSize, 0);
  media.show_large_files();
  pages.window.settle();
  EXPECT_EQ(pages.window.card<LargeFilesViewController>()->overall_larges_label->text(), "680 MB");
}

TEST(DeleteViewController, tells_each_step_and_waits_for_ring_and_removal) {
  Pages pages;
  pages.user.settings.set_boolean("Downloads", true);
  pages.user.settings.set_boolean("Trash", false);
  HeldThread removal(pages.window.background);
  pages.window.post("delete_view_controller");
  const auto* screen = pages.window.screen<DeleteViewController>();
  ASSERT_NE(screen, nullptr);
  struct Step {
    int until;
    const char* text;
  };
  int now = 0;
  for (const Step& step :
       {Step{790, "Cleanup in \"Applications caches\""}, Step{800, "Cleanup in \"Applications logs\""},
        Step{1500, "Cleanup in \"Applications remainders\""}, Step{1800, "Cleanup in \"Downloads\""},
        Step{2690, "Cleanup in \"Downloads\""}, Step{2700, "Cleanup in \"Mail attachments\""},
        Step{3290, "Cleanup in \"Mail attachments\""}, Step{6000, "Cleanup in \"Mail attachments\""}}) {
    pages.window.pass(step.until - std::exchange(now, step.until));
    EXPECT_EQ(screen->clean_label->text().toStdString(), step.text) << step.until;
  }
  EXPECT_EQ(screen->deleteView->stroke_end(), 0) << "the removal still runs";
  removal.release();
  pages.window.settle();
  EXPECT_EQ(screen->clean_label->text(), "Cleanup complete...");
  pages.window.pass(200);
  EXPECT_EQ(pages.window.screen<DeleteViewController>(), nullptr);
  EXPECT_FALSE(pages.user.tree.exists("ada/Library/Logs/a.log"));
  EXPECT_TRUE(pages.user.tree.exists("ada/.Trash/t")) << "switched off";
  EXPECT_EQ(pages.window.screen<CleanedViewController>()->was_cleaned_size->text(), "3 MB");
  EXPECT_EQ(pages.cleaner.wasCleaned, 0);
}

TEST(DeleteViewController, takes_its_time_where_the_removal_needs_none) {
  Pages pages;
  pages.cleaner.search_large_files_with_complete_handler([](auto&&...) {});
  pages.cleaner.large_files_item = std::make_shared<CleanerItem>();
  pages.cleaner.large_files_item->files = {pages.user.url("ada/Movies/short.mov")};
  pages.cleaner.large_files_item->size = 60'000'000;
  for (const char* on : {"Caches", "Logs", "Trash"}) pages.user.settings.set_boolean(on, false);
  pages.user.settings.set_boolean("LargeFiles", true);
  pages.window.post("delete_view_controller");
  const auto* screen = pages.window.screen<DeleteViewController>();
  EXPECT_EQ(screen->clean_label->text(), "Clean up...") << "where there are no caches to begin with";
  pages.window.settle();
  EXPECT_EQ(pages.cleaner.large_files_item, nullptr) << "what is gone is not chosen any more";
  EXPECT_EQ(pages.cleaner.totalLargeFilesSize, 0) << "nor listed";
  pages.window.pass(2700);
  EXPECT_DOUBLE_EQ(screen->deleteView->stroke_end(), 0.5) << "of 5.4 s";
  pages.window.pass(600);
  EXPECT_EQ(screen->clean_label->text(), "Cleanup complete...");
  pages.window.pass(2590);
  EXPECT_EQ(pages.window.screen(), screen);
  pages.window.pass(10);
  ASSERT_NE(pages.window.screen<CleanedViewController>(), nullptr);
  EXPECT_EQ(pages.window.screen<CleanedViewController>()->was_cleaned_size->text(), "60 MB");
}

TEST(DeleteViewController, gives_what_is_left_to_the_helper_or_lists_it) {
  Pages pages([](TestPlatform& user) { user.tree.file("helper").file("outside/kept", 5).folder("support"); });
  // Nothing outside the grants is ever removed, whoever puts it into the list.
  pages.cleaner.trash_item->files = {pages.user.url("outside/kept")};
  const auto run = [&] {
    pages.window.post("delete_view_controller");
    pages.window.settle();
    pages.window.pass(5900);
  };
  run();
  auto* panel = pages.window.card<DownloadHelper>();
  ASSERT_NE(panel, nullptr);
  EXPECT_TRUE(panel->download_button->isHidden()) << "nobody hands one out yet";
  const QModelIndex row = panel->findChild<NotRemovedList*>()->model()->index(0, 0);
  EXPECT_THAT(row.data(Qt::AccessibleTextRole).toString().toStdString(), testing::HasSubstr("outside/kept: ")) << "why";
  panel->show_button->click();
  EXPECT_THAT(pages.window.workspace.asked, ElementsAre("reveal " + pages.user.tree.path("outside/kept")));
  QTest::keyClick(panel, Qt::Key_Escape);
  EXPECT_EQ(pages.window.screen<DeleteViewController>(), nullptr) << "goes on to what was cleaned";

  SettingsStore& settings = pages.user.settings.store();
  settings.set("helper_url", pages.user.tree.path("helper"));
  settings.set("application_support_url", pages.user.tree.path("support"));
  pages.window.workspace.asked.clear();
  run();
  EXPECT_THAT(pages.window.workspace.asked, ElementsAre("launch " + pages.user.tree.path("helper")));
  const auto answers = [&](const char* key) {
    pages.user.tree.content("support/Tarnby cleaner/Store.plist",
                            std::string("<plist><dict><key>") + key + "</key><true/></dict></plist>");
    pages.window.pass(500);
  };
  pages.user.tree.content("support/Tarnby cleaner/Store.plist", "<plist><dict><key>Comp");
  pages.window.pass(2000);
  EXPECT_NE(pages.window.screen<DeleteViewController>(), nullptr) << "half an answer is none";
  answers("Cancel");
  EXPECT_EQ(pages.window.workspace.asked.size(), 2) << "and all over again";
  EXPECT_EQ(pages.window.context.removal.outcome.left.size(), 1);
  std::filesystem::remove_all(pages.user.tree.path("outside/kept"));
  answers("Complete");
  const auto* cleaned = pages.window.screen<CleanedViewController>();
  ASSERT_NE(cleaned, nullptr);
  EXPECT_FALSE(cleaned->left_button->isVisible()) << "nobody knows yet what the helper has taken";
  pages.window.settle();
  EXPECT_FALSE(cleaned->left_button->isVisible()) << "it has taken all";
  EXPECT_TRUE(pages.window.context.removal.outcome.left.empty());
}

}  // namespace
}  // namespace tarnby
