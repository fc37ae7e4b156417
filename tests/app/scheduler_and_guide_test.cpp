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
    TestPlatform ada;
    AppSettings& settings = ada.settings;
    ada.tree.file("programs/tarnby-cleaner-scheduler", 1).mode("programs/tarnby-cleaner-scheduler", 0755);
    settings.set_integer("appLaunchCount", 4);
    TestWindow at(ada);
    at.open_on_screen();
    at.pass(2000);
    EXPECT_EQ(at.card(), nullptr) << "not at the fourth";
    settings.set_integer("appLaunchCount", 5);
    at.post("home_view_controller");
    at.pass(1490);
    EXPECT_EQ(at.card(), nullptr);
    at.pass(10);
    const auto* offer = at.card<EnableSchedulerViewController>();
    ASSERT_NE(offer, nullptr);
    (accepts ? offer->enable_button : offer->cancel_button)->click();
    at.settle();
    EXPECT_EQ(at.card(), nullptr);
    EXPECT_TRUE(settings.boolean("EnableScheduler"));
    EXPECT_EQ(settings.boolean("Scheduler"), accepts);
    const auto date = ada.platform.group_settings.value("Date");
    EXPECT_EQ(date.has_value(), accepts);
    EXPECT_EQ(date.value_or(ada.platform.now()), PropertyList(ada.platform.now()));
    at.post("home_view_controller");
    at.pass(2000);
    EXPECT_EQ(at.card(), nullptr) << "never again";

    PreferencesViewController preferences(at.context);
    EXPECT_EQ(preferences.scheduler_button->isChecked(), accepts);
    for (const bool on : {!accepts, accepts}) {
      preferences.scheduler_button->click();
      at.settle();
      EXPECT_EQ(settings.boolean("Scheduler"), on);
    }
    EXPECT_TRUE(settings.boolean("EnableScheduler"));
  }
}

TEST(Scheduler, is_not_offered_over_another_sheet_or_beside_another_window) {
  TestPlatform ada;
  ada.tree.file("programs/tarnby-cleaner-scheduler", 1).mode("programs/tarnby-cleaner-scheduler", 0755);
  ada.settings.set_integer("appLaunchCount", 5);
  TestWindow at(ada);
  at.open_on_screen();
  Sheet* sheet = Sheet::present(std::make_unique<Notice>(at.context, "About", "."), at.window());
  at.pass(3000);
  EXPECT_EQ(at.card<EnableSchedulerViewController>(), nullptr);
  sheet->close_overlay();
  auto guide = std::make_unique<GuideWindow>(at.context, at.window());
  guide->show();
  at.pass(1500);
  EXPECT_EQ(at.card(), nullptr);
  guide.reset();
  at.pass(1500);
  EXPECT_NE(at.card<EnableSchedulerViewController>(), nullptr) << "put off, not forgotten";
}

TEST(Scheduler, is_neither_offered_nor_switched_where_its_program_is_not_installed) {
  TestPlatform ada;
  ada.tree.file("programs/tarnby-cleaner-scheduler", 1);  // nothing that can be started
  ada.settings.set_integer("appLaunchCount", 5);
  TestWindow at(ada);
  at.open_on_screen();
  at.pass(5000);
  EXPECT_EQ(at.card(), nullptr);
  EXPECT_EQ(PreferencesViewController(at.context).scheduler_button, nullptr);
}

TEST(Preferences, take_back_what_was_not_to_be_asked_again) {
  TestPlatform ada;
  AppSettings& settings = ada.settings;
  TestWindow at(ada);
  for (const bool skips : {true, false}) {
    settings.set_boolean("SkipWarning", skips);
    PreferencesViewController preferences(at.context);
    EXPECT_EQ(preferences.ask_button->isChecked(), !skips);
    preferences.ask_button->click();
    at.settle();
    const auto stored = open_settings_file(ada.url("settings/settings.plist"));
    EXPECT_EQ(AppSettings(*stored).boolean("SkipWarning"), !skips) << "at once, on the disk";
  }
}

TEST(Sheets, leave_the_keyboard_to_the_one_above_them_and_the_menu_opens_none_over_another) {
  TestPlatform ada;
  TestWindow at(ada);
  at.open_on_screen();
  QWidget* const below = at.window()->focusWidget();
  ASSERT_NE(below, nullptr);
  Sheet* lower = Sheet::present(std::make_unique<Notice>(at.context, "Lower", "."), at.window());
  Sheet* upper = Sheet::present(std::make_unique<Notice>(at.context, "Upper", "."), at.window());
  QWidget* const button = at.window()->focusWidget();
  QTest::keyClick(at.window(), Qt::Key_Comma, Qt::ControlModifier);
  lower->close_overlay();
  EXPECT_EQ(at.window()->focusWidget(), button);
  upper->close_overlay();
  EXPECT_EQ(at.window()->focusWidget(), below);
  EXPECT_EQ(at.card(), nullptr);
}

/// A user of a system whose privacy switches guard folders.
struct Guarded {
  explicit Guarded(TestPlatform& platform) : ada(platform), at(platform) {
    at.open_on_screen();
    at.settle();
  }
  GuideWindow* guide() { return at.screen<HomeViewController>()->privacy_windowcontroller; }

  TestPlatform& ada;
  TestWindow at;
};

TEST(Guide, comes_when_access_is_missing_and_goes_when_it_is_there) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Safari/CloudTabs.db", 3).mode("ada/Library/Safari/CloudTabs.db", 0);
  const_cast<Session&>(ada.platform.session).system_version = SystemVersion{10, 15};
  test::as_plain_user(ada.tree, [&] {  // nothing is unreadable for root
    Guarded user(ada);
    AppSettings& settings = user.ada.settings;
    EXPECT_TRUE(settings.boolean("PrivacyAccess")) << "touched once";
    user.at.pass(3990);
    EXPECT_EQ(user.guide(), nullptr) << "the system's own questions go first";
    user.at.pass(10);
    ASSERT_TRUE(user.guide());
    auto* content = user.guide()->content;
    const PageTurner* pages = content->pages->pages;
    for (const int page : {1, 2}) {
      qobject_cast<GuidePage*>(pages->page(page - 1))->next_button->click();
      EXPECT_EQ(pages->current(), page);
    }
    qobject_cast<GuidePage*>(pages->page(2))->back_button->click();
    EXPECT_EQ(pages->current(), 1);

    content->open_settings();
    EXPECT_THAT(user.at.workspace.asked,
                testing::ElementsAre("open x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
    content->confirm_button->click();
    user.at.settle();
    EXPECT_EQ(content->missing_label->text(), "Access is still missing.");
    EXPECT_FALSE(settings.boolean("PrivacyFullDisk"));
    const QPoint rest = user.guide()->pos();
    user.at.pass(100);
    EXPECT_NE(user.guide()->pos(), rest) << "it shakes";
    user.at.pass(1000);
    EXPECT_EQ(user.guide()->pos(), rest);

    user.at.post("home_view_controller");
    user.at.settle();
    user.at.pass(10);
    EXPECT_NE(user.guide(), nullptr) << "at once, now that the folders have been touched";
    const auto guides = user.at.window()->findChildren<GuideWindow*>();
    EXPECT_EQ(std::ranges::count_if(guides, [](const QWidget* guide) { return guide->isVisible(); }), 1)
        << "the earlier one serves";
    user.ada.tree.mode("ada/Library/Safari/CloudTabs.db", 0600);
    user.guide()->content->confirm_button->click();
    user.at.settle();
    user.at.pass(10);
    EXPECT_EQ(user.guide(), nullptr);
    EXPECT_TRUE(settings.boolean("PrivacyFullDisk"));
  });
}

TEST(Guide, lets_nothing_wait_for_the_persons_answer_to_the_system) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Safari/CloudTabs.db", 3);
  const_cast<Session&>(ada.platform.session).system_version = SystemVersion{10, 15};
  TestWindow at(ada);
  at.context.consent = std::make_unique<BackgroundQueue>();
  test::Hold question(*at.context.consent);
  at.open_on_screen();
  std::promise<void> went_on;
  at.io_queue.async([&] { went_on.set_value(); });
  went_on.get_future().wait();
  const AppSettings& settings = ada.settings;
  EXPECT_TRUE(settings.boolean("PrivacyFullDisk")) << "looked at meanwhile";
  EXPECT_FALSE(settings.boolean("PrivacyAccess"));
  EXPECT_EQ(at.context.consents_asked, 1) << "or the program's end would wait";
  question.release();
  at.settle();
  EXPECT_TRUE(settings.boolean("PrivacyAccess"));
  EXPECT_EQ(at.context.consents_asked, 0);
}

}  // namespace
}  // namespace tarnby
