#include "app/shell/view_controller.h"

#include <filesystem>
#include <set>

#include "platform/settings_store.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::Layer;
using test::TestPlatform;
using test::TestWindow;

std::string class_of(const Screen* screen) {
  return screen == nullptr ? "" : std::string(screen->metaObject()->className()).substr(sizeof "tarnby::" - 1);
}

/// Where the curves are for a kind of screen.
BackgroundView::Curves curves_for(AnimationClock& clock, void (BackgroundView::*kind)()) {
  BackgroundView view(clock, nullptr);
  if (kind != nullptr) (view.*kind)();
  return view.curves();
}

TEST(ViewController, answers_each_notification_with_its_screen_in_its_layer) {
  using View = BackgroundView;
  struct Case {
    const char* notification;
    const char* shows;
    Layer layer;
    void (View::*background)();
    bool clears_other = false;
    int delay = 0;
    bool logs = false;
  };
  const Case cases[] = {
      {"sandbox_view_controller", "SandboxViewController", Layer::overlay, nullptr},
      {"home_view_controller_for_launch", "HomeViewController", Layer::content, nullptr},
      {"home_view_controller", "HomeViewController", Layer::content, &View::animation_for_home_view},
      {"scan_view_controller", "ScanViewController", Layer::overlay, &View::animation_for_scan_view, false, 100, true},
      {"page_controller", "PageController", Layer::content, &View::animation_for_page_view},
      {"delete_view_controller", "DeleteViewController", Layer::content, &View::animation_for_delete_view},
      {"cleaned_view_controller", "CleanedViewController", Layer::content, &View::animation_for_cleaned_view},
      {"smart_scan_view_controller", "SmartScanViewController", Layer::overlay, &View::animation_for_scan_view, true,
       100, true},
      {"smart_clean_view_controller", "SmartCleanViewController", Layer::content, &View::animation_for_page_view, true},
      {"smart_cleanup_view_controller", "SmartCleanupViewController", Layer::content,
       &View::animation_for_delete_view}};
  EXPECT_EQ(ViewController::navigation().size(), std::size(cases));
  for (const Case& row : cases) {
    SCOPED_TRACE(row.notification);
    TestPlatform user;
    TestWindow window(user);
    const ViewController& content = window.open();
    void (View::*before)() = &View::animation_for_page_view;
    if (row.background == before) before = &View::animation_for_scan_view;
    (content.animationView->*before)();
    window.post("sandbox_view_controller");
    const Layer other = row.layer == Layer::content ? Layer::overlay : Layer::content;
    const QPointer<Screen> replaced = window.screen(row.layer);
    const QPointer<Screen> beside = window.screen(other);
    ASSERT_TRUE(replaced && beside);

    test::HeldThread work(window.background);
    window.post(row.notification);
    EXPECT_EQ(window.screen(other), row.clears_other ? nullptr : beside) << "at once";
    if (row.delay > 0) {
      window.pass(row.delay - 1);
      EXPECT_EQ(window.screen(row.layer), replaced);
      EXPECT_EQ(content.animationView->curves(), curves_for(window.time.clock, before));
      window.pass(1);
    }
    EXPECT_EQ(class_of(window.screen(row.layer)), row.shows);
    const QWidget* layer = row.layer == Layer::content ? content.containerView : content.popview;
    EXPECT_EQ(window.screen(row.layer)->parentWidget(), layer);
    EXPECT_FALSE(layer->isHidden() || window.screen(row.layer)->isHidden());
    const auto after = row.background == nullptr ? before : row.background;
    EXPECT_EQ(content.animationView->curves(), curves_for(window.time.clock, after));
    EXPECT_THAT(window.logged, testing::ElementsAreArray(std::vector<std::string>(row.logs ? 1 : 0, "remove")));
    window.pass(0);
    EXPECT_FALSE(replaced) << "what was replaced is gone";
    EXPECT_EQ(beside.isNull(), row.clears_other);
    work.release();
    window.settle();
  }
}

TEST(ViewController, clears_a_layer_when_told) {
  TestPlatform user;
  TestWindow window(user);
  const ViewController& content = window.open_on_screen();
  const test::HeldThread scan(window.background);
  window.post("smart_scan_view_controller");
  window.pass(100);
  EXPECT_TRUE(window.logged.empty()) << "it took nobody's place";
  EXPECT_EQ(window.screen(Layer::overlay)->size(), content.size());
  window.widget()->resize(1000, 700);
  EXPECT_EQ(window.screen(Layer::overlay)->size(), content.size()) << "and stays as large as the window";
  window.post("home_view_controller");
  window.post("scan_end_anim_complete");
  EXPECT_FALSE(window.screen(Layer::overlay) || content.popview->isVisible());
  EXPECT_TRUE(window.screen() && content.containerView->isVisible());
  window.post("sandbox_view_controller");
  window.post("sandbox_end_anim_complete");
  EXPECT_FALSE(window.screen(Layer::overlay) || content.popview->isVisible());
  window.post("home_end_anim");
  window.pass(290);
  EXPECT_TRUE(window.screen()) << "still on its way out";
  window.pass(10);
  EXPECT_FALSE(window.screen() || content.containerView->isVisible());
}

TEST(ScreenCatalogue, makes_every_screen_it_names_and_no_other) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  TestPlatform user;
  TestWindow window(user);
  window.open();
  window.scan();
  for (const ScreenCatalogue* catalogue : {&ScreenCatalogue::main(), &ScreenCatalogue::smart_clean()}) {
    std::set<std::string_view> identifiers;
    for (const ScreenRow& row : catalogue->rows()) {
      EXPECT_TRUE(identifiers.insert(row.identifier).second) << row.identifier << " twice";
      EXPECT_NE(catalogue->make(row.identifier, window.context), nullptr) << row.identifier;
      window.settle();  // what the screen had begun, before the next one reads of it
    }
    for (const auto& row : ViewController::navigation()) {
      EXPECT_TRUE(&row.catalogue() != catalogue || identifiers.count(row.identifier) == 1) << row.notification;
    }
    EXPECT_DEATH(catalogue->make("Nowhere", window.context), "no screen Nowhere") << catalogue->name();
  }
}

TEST(Launch, counts_and_sets_the_category_flags_on_the_disk) {
  TestPlatform user;
  AppSettings& settings = user.settings;
  for (const bool promotes : {true, false}) {
    settings.set_boolean("Browsers", true);
    settings.set_boolean("Caches", false);
    settings.set_boolean("LargeFiles", true);
    settings.set_boolean("Uninstaller Orvane", !promotes);
    TestWindow window(user);
    window.delegate.applicationDidFinishLaunching();
    window.settle();
    const auto stored = open_settings_file(user.url("settings/settings.plist"));
    const AppSettings on_disk(*stored);
    for (const char* flag : {"Caches", "Logs", "Remainders", "Mails", "Trash", "LargeFiles"}) {
      EXPECT_TRUE(on_disk.boolean(flag)) << flag;
    }
    for (const char* flag : {"Browsers", "Downloads"}) EXPECT_FALSE(on_disk.boolean(flag)) << flag;
    EXPECT_EQ(on_disk.integer("appLaunchCount"), promotes ? 1 : 2);
    EXPECT_EQ(on_disk.integer("UOLaunchCount"), 1) << "only while it may be shown";
    EXPECT_TRUE(window.delegate.applicationShouldTerminateAfterLastWindowClosed());
  }
}

TEST(Launch, begins_at_home_only_when_both_grants_lead_to_a_folder) {
  for (const char* gone : {"", "ada", "Applications"}) {
    SCOPED_TRACE(gone);
    TestPlatform user;
    TestWindow window(user);
    if (*gone != '\0') std::filesystem::remove_all(user.tree.path(gone));
    const ViewController& content = window.open_on_screen();
    EXPECT_EQ(class_of(window.screen()), *gone == '\0' ? "HomeViewController" : "");
    EXPECT_EQ(class_of(window.screen(Layer::overlay)), *gone == '\0' ? "" : "SandboxViewController");
    window.pass(1000);
    EXPECT_EQ(content.animationView->curves(), curves_for(window.time.clock, nullptr));
  }
}

TEST(Launch, starts_with_damaged_settings_and_sets_them_aside) {
  TestPlatform user(TestPlatform::Grants::none);
  user.tree.content("settings/settings.plist", "<plist><dict><key>home</key>");
  TestWindow window(user);
  window.delegate.applicationDidFinishLaunching();
  window.open();
  window.settle();
  EXPECT_EQ(class_of(window.screen(Layer::overlay)), "SandboxViewController");
  EXPECT_TRUE(user.tree.exists("settings/settings.plist.damaged"));
  const auto stored = open_settings_file(user.url("settings/settings.plist"));
  EXPECT_EQ(AppSettings(*stored).integer("appLaunchCount"), 1);
}

}  // namespace
}  // namespace tarnby
