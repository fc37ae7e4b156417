#include "app/cleaned/cleaned_view_controller.h"

#include <QLabel>
#include <set>

#include "app/cleaned/download_uninstaller_orvane.h"
#include "app/cleaned/not_removed_panel.h"
#include "app/cleaned/rate_on_app_store.h"
#include "app/home/home_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "platform/settings_store.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::Layer;
using test::TestPlatform;
using test::TestWindow;

TEST(CleanedViewController, brings_its_sheets_at_their_counts_only) {
  TestPlatform user;
  AppSettings& settings = user.settings;
  const auto due = [&](std::int64_t launches, std::int64_t promotions) {
    settings.set_integer("appLaunchCount", launches);
    settings.set_integer("UOLaunchCount", promotions);
    return due_sheet(settings);
  };
  const std::set<std::int64_t> rating = {10, 15, 20, 25}, promotion = {4, 10, 15, 20, 25};
  for (std::int64_t count = 0; count < 28; ++count) {
    EXPECT_EQ(due(count, 0), rating.contains(count) ? CleanedSheet::rating : CleanedSheet::none) << count;
    EXPECT_EQ(due(0, count), promotion.contains(count) ? CleanedSheet::promotion : CleanedSheet::none) << count;
  }
  EXPECT_EQ(due(10, 10), CleanedSheet::promotion) << "which goes first";
  settings.set_integer("UOAppearence", 2);
  EXPECT_EQ(due(10, 4), CleanedSheet::promotion);
  settings.set_integer("UOAppearence", 3);
  EXPECT_EQ(due(10, 4), CleanedSheet::rating);
  EXPECT_EQ(due(11, 4), CleanedSheet::none);
  settings.set_integer("UOAppearence", 0);
  settings.set_boolean("Uninstaller Orvane", true);
  EXPECT_EQ(due(10, 4), CleanedSheet::rating);
  settings.set_boolean("RateOnStore", true);
  EXPECT_EQ(due(10, 4), CleanedSheet::none);
}

TEST(CleanedViewController, adds_up_once_a_showing_and_asks_for_a_rating_later) {
  TestPlatform user;
  AppSettings& settings = user.settings;
  settings.set_integer("appLaunchCount", 10);
  settings.set_integer("TotallyCleaned", 1'000'000);
  TestWindow window(user);
  window.open_on_screen();
  const auto on_disk = [&] {
    window.settle();
    return open_settings_file(user.url("settings/settings.plist"));
  };
  window.context.sharedCleaner().wasCleaned = 500'000;
  window.post("cleaned_view_controller");
  EXPECT_EQ(window.screen<CleanedViewController>()->was_cleaned_size->text(), "500 KB");
  EXPECT_EQ(AppSettings(*on_disk()).integer("TotallyCleaned"), 1'500'000);
  window.pass(1490);
  EXPECT_EQ(window.card(), nullptr);
  window.pass(10);
  auto* rate = window.card<RateOnAppStore>();
  ASSERT_NE(rate, nullptr);
  EXPECT_EQ(rate->label->text(), "For all time used of Tarnby cleaner you cleaned up 1.5 MB.");
  rate->later_button->click();
  EXPECT_FALSE(window.card() != nullptr || settings.boolean("RateOnStore"));

  EXPECT_EQ(window.context.sharedCleaner().wasCleaned, 0);
  window.context.sharedCleaner().wasCleaned = 250'000;
  window.post("cleaned_view_controller");  // the same launch, once more
  window.screen<CleanedViewController>()->show_left();
  window.pass(1500);
  auto* list = window.card<NotRemovedPanel>();
  ASSERT_NE(list, nullptr) << "it comes over no sheet that was asked for";
  list->escaped();
  window.pass(1500);
  rate = window.card<RateOnAppStore>();
  ASSERT_NE(rate, nullptr);
  rate->rate_button->click();
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_THAT(window.workspace.asked, testing::ElementsAre("open appstream://com.corvash.tarnby-cleaner"));
  EXPECT_TRUE(AppSettings(*on_disk()).boolean("RateOnStore"));

  window.post("cleaned_view_controller");
  EXPECT_EQ(window.screen<CleanedViewController>()->was_cleaned_size->text(), "Zero KB");
  window.pass(5000);
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_EQ(AppSettings(*on_disk()).integer("TotallyCleaned"), 1'750'000) << "nothing twice";
}

TEST(CleanedViewController, counts_a_promotion_also_when_the_screen_is_left_before_it_comes) {
  TestPlatform user;
  AppSettings& settings = user.settings;
  settings.set_integer("UOLaunchCount", 4);
  TestWindow window(user);
  window.open_on_screen();
  window.post("cleaned_view_controller");
  window.screen<CleanedViewController>()->done_button->click();
  EXPECT_NE(window.screen<HomeViewController>(), nullptr);
  window.pass(5000);
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_EQ(settings.integer("UOAppearence"), 1);

  window.post("cleaned_view_controller");
  window.pass(1500);
  ASSERT_NE(window.card<UninstallerOrvaneViewcontroller>(), nullptr);
  EXPECT_EQ(settings.integer("UOAppearence"), 2);
  window.card<UninstallerOrvaneViewcontroller>()->download_button->click();
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_THAT(window.workspace.asked, testing::ElementsAre("open appstream://com.corvash.uninstaller-orvane"));

  const test::HeldThread scan(window.background);
  window.screen<CleanedViewController>()->search_button->click();
  EXPECT_EQ(window.screen(), nullptr);
  window.pass(100);
  EXPECT_NE(window.screen<SmartScanViewController>(Layer::overlay), nullptr);
}

}  // namespace
}  // namespace tarnby
