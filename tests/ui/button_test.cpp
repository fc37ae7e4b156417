#include <QSignalSpy>
#include <array>

#include "tests/ui/widget_test.h"
#include "ui/check_button.h"
#include "ui/disclosure_button.h"
#include "ui/home_view.h"
#include "ui/info_button.h"
#include "ui/push_button.h"
#include "ui/switch_button.h"

namespace tarnby {
namespace {

class ButtonTest : public test::WidgetTest {
 protected:
  /// One of each kind, each found by its object name.
  void make_all() {
    shown<PushButton>(QStringLiteral("Remove"), ButtonKind::destructive)->setObjectName("push");
    shown<PushButton>(QStringLiteral("&Why && how?"), ButtonKind::link)->setObjectName("link");
    shown<CheckButton>()->setObjectName("check");
    shown<SwitchButton>(clock_)->setObjectName("switch");
    shown<InfoButton>(QStringLiteral("About caches"))->setObjectName("info");
    shown<DisclosureButton>(QStringLiteral("Caches"), clock_)->setObjectName("disclosure");
    shown<HomeView>(QStringLiteral("Scan"), clock_)->setObjectName("home");
    find("check")->setAccessibleName("Firefox");
    find("switch")->setAccessibleName("Scheduler");
  }
  QAbstractButton* find(const char* name) { return window_.findChild<QAbstractButton*>(name); }

  static constexpr std::array names = {"push", "link", "check", "switch", "info", "disclosure", "home"};
};

TEST_F(ButtonTest, every_button_is_pressed_by_pointer_keys_and_screen_reader_unless_disabled) {
  make_all();
  for (const char* name : names) {
    SCOPED_TRACE(name);
    QAbstractButton* button = find(name);
    QSignalSpy clicks(button, &QAbstractButton::clicked);
    const auto press_in_every_way = [&] {
      QTest::mouseClick(button, Qt::LeftButton);
      for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) QTest::keyClick(button, key);
      const QString action = accessible(button).actionInterface()->actionNames().value(0);
      accessible(button).actionInterface()->doAction(action);
    };
    button->setFocus(Qt::TabFocusReason);
    press_in_every_way();
    EXPECT_TRUE(QTest::qWaitFor([&] { return clicks.count() == 5; })) << clicks.count();
    button->setEnabled(false);
    press_in_every_way();
    EXPECT_EQ(clicks.count(), 5) << "disabled, it does nothing";
    EXPECT_TRUE(accessible(button).state().disabled);
  }
}

TEST_F(ButtonTest, every_button_says_what_it_is) {
  struct Row {
    const char* name;
    const char* said;
    QAccessible::Role role;
  };
  make_all();
  for (const Row& row :
       {Row{"push", "Remove", QAccessible::Button}, Row{"link", "Why & how?", QAccessible::Link},
        Row{"check", "Firefox", QAccessible::CheckBox}, Row{"switch", "Scheduler", QAccessible::CheckBox},
        Row{"info", "About caches", QAccessible::Button}, Row{"disclosure", "Caches", QAccessible::Button},
        Row{"home", "Scan", QAccessible::Button}}) {
    EXPECT_EQ(said(find(row.name), QAccessible::Name), row.said);
    EXPECT_EQ(accessible(find(row.name)).role(), row.role) << row.name;
    EXPECT_TRUE(accessible(find(row.name)).state().focusable) << row.name;
  }
}

TEST_F(ButtonTest, the_focus_is_seen_on_every_button_when_it_comes_by_key_and_not_when_by_click) {
  make_all();
  for (const char* name : names) {
    SCOPED_TRACE(name);
    QAbstractButton* button = find(name);
    button->raise();
    window_.setFocus(Qt::OtherFocusReason);
    const QImage without = button->grab().toImage();
    button->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(button->grab().toImage(), without) << "a click alone draws no ring";
    button->clearFocus();
    button->setFocus(Qt::TabFocusReason);
    EXPECT_NE(button->grab().toImage(), without);
  }
}

TEST_F(ButtonTest, a_check_button_is_mixed_only_by_its_data) {
  auto* check = shown<CheckButton>();
  check->setFocus();
  struct Case {
    const char* why;
    Qt::CheckState before;
    Qt::CheckState after;
  };
  const Case cases[] = {{"off turns on", Qt::Unchecked, Qt::Checked},
                        {"on turns off, even after it was mixed once", Qt::Checked, Qt::Unchecked},
                        {"mixed turns on", Qt::PartiallyChecked, Qt::Checked}};
  for (int round = 0; round < 2; ++round) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.why);
      check->setCheckState(c.before);
      EXPECT_EQ(accessible(check).state().checked, c.before == Qt::Checked);
      EXPECT_EQ(accessible(check).state().checkStateMixed, c.before == Qt::PartiallyChecked);
      QTest::mouseClick(check, Qt::LeftButton);
      EXPECT_EQ(check->checkState(), c.after) << "by pointer";
      check->setCheckState(c.before);
      QTest::keyClick(check, Qt::Key_Space);
      EXPECT_EQ(check->checkState(), c.after) << "by key";
    }
  }
}

TEST_F(ButtonTest, the_three_states_of_a_check_box_differ_without_colours) {
  auto* check = shown<CheckButton>();
  std::vector<QImage> looks;
  for (const Qt::CheckState state : {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked}) {
    check->setCheckState(state);
    looks.push_back(check->grab().toImage().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither));
  }
  EXPECT_NE(looks[0], looks[1]);
  EXPECT_NE(looks[1], looks[2]);
  EXPECT_NE(looks[0], looks[2]);
}

TEST_F(ButtonTest, a_disclosure_button_tells_whether_it_is_open) {
  auto* button = shown<DisclosureButton>(QStringLiteral("Caches"), clock_);
  EXPECT_TRUE(accessible(button).state().expandable);
  EXPECT_TRUE(accessible(button).state().collapsed);
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_TRUE(accessible(button).state().expanded);
  EXPECT_FALSE(accessible(button).state().collapsed);
  EXPECT_FALSE(clock_.idle()) << "the triangle turns";
  clock_.pass(1000);
  EXPECT_TRUE(clock_.idle());
}

TEST_F(ButtonTest, only_the_disc_of_the_home_view_is_pressed) {
  auto* home = shown<HomeView>(QStringLiteral("Scan"), clock_);
  QSignalSpy clicks(home, &QAbstractButton::clicked);
  QTest::mouseClick(home, Qt::LeftButton, {}, QPoint(4, 4));
  QTest::mouseClick(home, Qt::LeftButton, {}, QPoint(home->width() / 2, 20));
  EXPECT_EQ(clicks.count(), 0) << "corner and rings";
  QTest::mouseClick(home, Qt::LeftButton, {}, home->rect().center());
  EXPECT_EQ(clicks.count(), 1);
}

}  // namespace
}  // namespace tarnby
