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
    TestPlatform ada;
    TestWindow at(ada);
    const ViewController& content = at.open();
    void (View::*before)() = &View::animation_for_page_view;
    if (row.background == before) before = &View::animation_for_scan_view;
    (content.animationView->*before)();
    at.post("sandbox_view_controller");
    const Layer other = row.layer == Layer::content ? Layer::overlay : Layer::content;
    const QPointer<Screen> replaced = at.screen(row.layer);
    const QPointer<Screen> beside = at.screen(other);
    ASSERT_TRUE(replaced && beside);

    test::Hold work(at.background);
    at.post(row.notification);
    EXPECT_EQ(at.screen(other), row.clears_other ? nullptr : beside) << "at once";
    if (row.delay > 0) {
      at.pass(row.delay - 1);
      EXPECT_EQ(at.screen(row.layer), replaced);
      EXPECT_EQ(content.animationView->curves(), curves_for(at.time.clock, before));
      at.pass(1);
    }
    EXPECT_EQ(class_of(at.screen(row.layer)), row.shows);
    const QWidget* layer = row.layer == Layer::content ? content.containerView : content.popview;
    EXPECT_EQ(at.screen(row.layer)->parentWidget(), layer);
    EXPECT_FALSE(layer->isHidden() || at.screen(row.layer)->isHidden());
    const auto after = row.background == nullptr ? before : row.background;
    EXPECT_EQ(content.animationView->curves(), curves_for(at.time.clock, after));
    EXPECT_THAT(at.logged, testing::ElementsAreArray(std::vector<std::string>(row.logs ? 1 : 0, "remove")));
    at.pass(0);
    EXPECT_FALSE(replaced) << "what was replaced is gone";
    EXPECT_EQ(beside.isNull(), row.clears_other);
    work.release();
    at.settle();
  }
}

TEST(ViewController, clears_a_layer_when_told) {
  TestPlatform ada;
  TestWindow at(ada);
  const ViewController& content = at.open_on_screen();
  const test::Hold scan(at.background);
  at.post("smart_scan_view_controller");
  at.pass(100);
  EXPECT_TRUE(at.logged.empty()) << "it took nobody's place";
  EXPECT_EQ(at.screen(Layer::overlay)->size(), content.size());
  at.window()->resize(1000, 700);
  EXPECT_EQ(at.screen(Layer::overlay)->size(), content.size()) << "and stays as large as the window";
  at.post("home_view_controller");
  at.post("scan_end_anim_complete");
  EXPECT_FALSE(at.screen(Layer::overlay) || content.popview->isVisible());
  EXPECT_TRUE(at.screen() && content.containerView->isVisible());
  at.post("sandbox_view_controller");
  at.post("sandbox_end_anim_complete");
  EXPECT_FALSE(at.screen(Layer::overlay) || content.popview->isVisible());
  at.post("home_end_anim");
  at.pass(290);
  EXPECT_TRUE(at.screen()) << "still on its way out";
  at.pass(10);
  EXPECT_FALSE(at.screen() || content.containerView->isVisible());
}

TEST(ScreenCatalogue, makes_every_screen_it_names_and_no_other) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  TestPlatform ada;
  TestWindow at(ada);
  at.open();
  at.scan();
  for (const ScreenCatalogue* catalogue : {&ScreenCatalogue::main(), &ScreenCatalogue::smart_clean()}) {
    std::set<std::string_view> identifiers;
    for (const ScreenRow& row : catalogue->rows()) {
      EXPECT_TRUE(identifiers.insert(row.identifier).second) << row.identifier << " twice";
      EXPECT_NE(catalogue->make(row.identifier, at.context), nullptr) << row.identifier;
      at.settle();  // what the screen had begun, before the next one reads of it
    }
    for (const auto& row : ViewController::navigation()) {
      EXPECT_TRUE(&row.catalogue() != catalogue || identifiers.count(row.identifier) == 1) << row.notification;
    }
    EXPECT_DEATH(catalogue->make("Nowhere", at.context), "no screen Nowhere") << catalogue->name();
  }
}

TEST(Launch, counts_and_sets_the_category_flags_on_the_disk) {
  TestPlatform ada;
  AppSettings& settings = ada.settings;
  for (const bool promotes : {true, false}) {
    settings.set_boolean("Browsers", true);
    settings.set_boolean("Caches", false);
    settings.set_boolean("LargeFiles", true);
    settings.set_boolean("Uninstaller Orvane", !promotes);
    TestWindow at(ada);
    at.delegate.applicationDidFinishLaunching();
    at.settle();
    const auto stored = open_settings_file(ada.url("settings/settings.plist"));
    const AppSettings on_disk(*stored);
    for (const char* flag : {"Caches", "Logs", "Remainders", "Mails", "Trash", "LargeFiles"}) {
      EXPECT_TRUE(on_disk.boolean(flag)) << flag;
    }
    for (const char* flag : {"Browsers", "Downloads"}) EXPECT_FALSE(on_disk.boolean(flag)) << flag;
    EXPECT_EQ(on_disk.integer("appLaunchCount"), promotes ? 1 : 2);
    EXPECT_EQ(on_disk.integer("UOLaunchCount"), 1) << "only while it may be shown";
    EXPECT_TRUE(at.delegate.applicationShouldTerminateAfterLastWindowClosed());
  }
}

TEST(Launch, begins_at_home_only_when_both_grants_lead_to_a_folder) {
  for (const char* gone : {"", "ada", "Applications"}) {
    SCOPED_TRACE(gone);
    TestPlatform ada;
    TestWindow at(ada);
    if (*gone != '\0') std::filesystem::remove_all(ada.tree.path(gone));
    const ViewController& content = at.open_on_screen();
    EXPECT_EQ(class_of(at.screen()), *gone == '\0' ? "HomeViewController" : "");
    EXPECT_EQ(class_of(at.screen(Layer::overlay)), *gone == '\0' ? "" : "SandboxViewController");
    at.pass(1000);
    EXPECT_EQ(content.animationView->curves(), curves_for(at.time.clock, nullptr));
  }
}

TEST(Launch, bears_damaged_settings_and_keeps_them_aside) {
  TestPlatform ada(TestPlatform::Grants::none);
  ada.tree.content("settings/settings.plist", "<plist><dict><key>home</key>");
  TestWindow at(ada);
  at.delegate.applicationDidFinishLaunching();
  at.open();
  at.settle();
  EXPECT_EQ(class_of(at.screen(Layer::overlay)), "SandboxViewController");
  EXPECT_TRUE(ada.tree.exists("settings/settings.plist.damaged"));
  const auto stored = open_settings_file(ada.url("settings/settings.plist"));
  EXPECT_EQ(AppSettings(*stored).integer("appLaunchCount"), 1);
}

}  // namespace
}  // namespace tarnby
