#include <gmock/gmock.h>

#include <QLabel>
#include <algorithm>
#include <future>

#include "app/home/home_view_controller.h"
#include "app/parts/notice.h"
#include "app/parts/overlay.h"
#include "app/privacy/privacy_disk_access_view_controller.h"
#include "app/scheduler/enable_scheduler_view_controller.h"
#include "app/scheduler/preferences_view_controller.h"
#include "platform/platform.h"
#include "platform/settings_store.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;

TEST(Scheduler, is_offered_from_the_fifth_launch_until_it_was_answered) {
  for (const bool accepts : {true, false}) {
    TestPlatform user;
    AppSettings& settings = user.settings;
    user.tree.file("programs/tarnby-cleaner-scheduler", 1).mode("programs/tarnby-cleaner-scheduler", 0755);
    settings.set_integer("appLaunchCount", 4);
    TestWindow window(user);
    window.open_on_screen();
    window.pass(2000);
    EXPECT_EQ(window.card(), nullptr) << "not at the fourth";
    settings.set_integer("appLaunchCount", 5);
    window.post("home_view_controller");
    window.pass(1490);
    EXPECT_EQ(window.card(), nullptr);
    window.pass(10);
    const auto* offer = window.card<EnableSchedulerViewController>();
    ASSERT_NE(offer, nullptr);
    (accepts ? offer->enable_button : offer->cancel_button)->click();
    window.settle();
    EXPECT_EQ(window.card(), nullptr);
    EXPECT_TRUE(settings.boolean("EnableScheduler"));
    EXPECT_EQ(settings.boolean("Scheduler"), accepts);
    const auto date = user.platform.group_settings.value("Date");
    EXPECT_EQ(date.has_value(), accepts);
    EXPECT_EQ(date.value_or(user.platform.now()), PropertyList(user.platform.now()));
    window.post("home_view_controller");
    window.pass(2000);
    EXPECT_EQ(window.card(), nullptr) << "never again";

    PreferencesViewController preferences(window.context);
    EXPECT_EQ(preferences.scheduler_button->isChecked(), accepts);
    for (const bool on : {!accepts, accepts}) {
      preferences.scheduler_button->click();
      window.settle();
      EXPECT_EQ(settings.boolean("Scheduler"), on);
    }
    EXPECT_TRUE(settings.boolean("EnableScheduler"));
  }
}

TEST(Scheduler, is_not_offered_over_another_sheet_or_beside_another_window) {
  TestPlatform user;
  user.tree.file("programs/tarnby-cleaner-scheduler", 1).mode("programs/tarnby-cleaner-scheduler", 0755);
  user.settings.set_integer("appLaunchCount", 5);
  TestWindow window(user);
  window.open_on_screen();
  Sheet* sheet = Sheet::present(std::make_unique<Notice>(window.context, "About", "."), window.widget());
  window.pass(3000);
  EXPECT_EQ(window.card<EnableSchedulerViewController>(), nullptr);
  sheet->close_overlay();
  auto guide = std::make_unique<GuideWindow>(window.context, window.widget());
  guide->show();
  window.pass(1500);
  EXPECT_EQ(window.card(), nullptr);
  guide.reset();
  window.pass(1500);
  EXPECT_NE(window.card<EnableSchedulerViewController>(), nullptr) << "put off, not forgotten";
}

TEST(Scheduler, is_neither_offered_nor_switched_where_its_program_is_not_installed) {
  TestPlatform user;
  user.tree.file("programs/tarnby-cleaner-scheduler", 1);  // nothing that can be started
  user.settings.set_integer("appLaunchCount", 5);
  TestWindow window(user);
  window.open_on_screen();
  window.pass(5000);
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_EQ(PreferencesViewController(window.context).scheduler_button, nullptr);
}

TEST(Preferences, take_back_what_was_not_to_be_asked_again) {
  TestPlatform user;
  AppSettings& settings = user.settings;
  TestWindow window(user);
  for (const bool skips : {true, false}) {
    settings.set_boolean("SkipWarning", skips);
    PreferencesViewController preferences(window.context);
    EXPECT_EQ(preferences.ask_button->isChecked(), !skips);
    preferences.ask_button->click();
    window.settle();
    const auto stored = open_settings_file(user.url("settings/settings.plist"));
    EXPECT_EQ(AppSettings(*stored).boolean("SkipWarning"), !skips) << "at once, on the disk";
  }
}

TEST(Sheets, leave_the_keyboard_to_the_one_above_them_and_the_menu_opens_none_over_another) {
  TestPlatform user;
  TestWindow window(user);
  window.open_on_screen();
  QWidget* const below = window.widget()->focusWidget();
  ASSERT_NE(below, nullptr);
  Sheet* lower = Sheet::present(std::make_unique<Notice>(window.context, "Lower", "."), window.widget());
  Sheet* upper = Sheet::present(std::make_unique<Notice>(window.context, "Upper", "."), window.widget());
  QWidget* const button = window.widget()->focusWidget();
  QTest::keyClick(window.widget(), Qt::Key_Comma, Qt::ControlModifier);
  lower->close_overlay();
  EXPECT_EQ(window.widget()->focusWidget(), button);
  upper->close_overlay();
  EXPECT_EQ(window.widget()->focusWidget(), below);
  EXPECT_EQ(window.card(), nullptr);
}

/// A user of a system whose privacy switches guard folders.
struct Guarded {
  explicit Guarded(TestPlatform& platform) : user(platform), window(platform) {
    window.open_on_screen();
    window.settle();
  }
  GuideWindow* guide() { return window.screen<HomeViewController>()->privacy_windowcontroller; }

  TestPlatform& user;
  TestWindow window;
};

TEST(Guide, comes_when_access_is_missing_and_goes_when_it_is_there) {
  TestPlatform user;
  user.tree.file("ada/Library/Safari/CloudTabs.db", 3).mode("ada/Library/Safari/CloudTabs.db", 0);
  const_cast<Session&>(user.platform.session).system_version = SystemVersion{10, 15};
  test::as_plain_user(user.tree, [&] {  // nothing is unreadable for root
    Guarded guarded(user);
    AppSettings& settings = guarded.user.settings;
    EXPECT_TRUE(settings.boolean("PrivacyAccess")) << "touched once";
    guarded.window.pass(3990);
    EXPECT_EQ(guarded.guide(), nullptr) << "the system's own questions go first";
    guarded.window.pass(10);
    ASSERT_TRUE(guarded.guide());
    auto* content = guarded.guide()->content;
    const PageTurner* pages = content->pages->pages;
    for (const int page : {1, 2}) {
      qobject_cast<GuidePage*>(pages->page(page - 1))->next_button->click();
      EXPECT_EQ(pages->current(), page);
    }
    qobject_cast<GuidePage*>(pages->page(2))->back_button->click();
    EXPECT_EQ(pages->current(), 1);

    content->open_settings();
    EXPECT_THAT(guarded.window.workspace.asked,
                testing::ElementsAre("open x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
    content->confirm_button->click();
    guarded.window.settle();
    EXPECT_EQ(content->missing_label->text(), "Access is still missing.");
    EXPECT_FALSE(settings.boolean("PrivacyFullDisk"));
    const QPoint rest = guarded.guide()->pos();
    guarded.window.pass(100);
    EXPECT_NE(guarded.guide()->pos(), rest) << "it shakes";
    guarded.window.pass(1000);
    EXPECT_EQ(guarded.guide()->pos(), rest);

    guarded.window.post("home_view_controller");
    guarded.window.settle();
    guarded.window.pass(10);
    EXPECT_NE(guarded.guide(), nullptr) << "at once, now that the folders have been touched";
    const auto guides = guarded.window.widget()->findChildren<GuideWindow*>();
    EXPECT_EQ(std::ranges::count_if(guides, [](const QWidget* guide) { return guide->isVisible(); }), 1)
        << "the earlier one serves";
    guarded.user.tree.mode("ada/Library/Safari/CloudTabs.db", 0600);
    guarded.guide()->content->confirm_button->click();
    guarded.window.settle();
    guarded.window.pass(10);
    EXPECT_EQ(guarded.guide(), nullptr);
    EXPECT_TRUE(settings.boolean("PrivacyFullDisk"));
  });
}

TEST(Guide, does_not_block_other_work_while_the_system_asks_the_person) {
  TestPlatform user;
  user.tree.file("ada/Library/Safari/CloudTabs.db", 3);
  const_cast<Session&>(user.platform.session).system_version = SystemVersion{10, 15};
  TestWindow window(user);
  window.context.consent = std::make_unique<BackgroundQueue>();
  test::HeldThread question(*window.context.consent);
  window.open_on_screen();
  std::promise<void> went_on;
  window.io_queue.async([&] { went_on.set_value(); });
  went_on.get_future().wait();
  const AppSettings& settings = user.settings;
  EXPECT_TRUE(settings.boolean("PrivacyFullDisk")) << "looked at meanwhile";
  EXPECT_FALSE(settings.boolean("PrivacyAccess"));
  EXPECT_EQ(window.context.consents_asked, 1) << "or the program's end would wait";
  question.release();
  window.settle();
  EXPECT_TRUE(settings.boolean("PrivacyAccess"));
  EXPECT_EQ(window.context.consents_asked, 0);
}

}  // namespace
}  // namespace tarnby
