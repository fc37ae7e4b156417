#include "ui/changing_label.h"

#include "tests/ui/widget_test.h"

namespace tarnby {
namespace {

class ChangingLabelTest : public test::WidgetTest {};

TEST_F(ChangingLabelTest, says_the_new_text_at_once_and_draws_it_by_and_by) {
  auto* line = shown<FadingLabel>(clock_);
  auto* number = shown<NumberLabel>(clock_);
  struct Row {
    ChangingLabel* label;
    int milliseconds;
  };
  for (const Row& row : {Row{line, 100}, Row{number, 300}}) {
    SCOPED_TRACE(row.milliseconds);
    row.label->resize(200, 80);
    row.label->show_text("3.41 GB");
    clock_.pass(row.milliseconds);
    const QImage before = row.label->grab().toImage();
    row.label->show_text("9.87 GB");
    EXPECT_EQ(said(row.label, QAccessible::Name), "9.87 GB") << "a screen reader waits for no drawing";
    EXPECT_EQ(row.label->grab().toImage(), before) << "it begins with the old one";
    clock_.pass(row.milliseconds - 1);
    EXPECT_FALSE(clock_.idle());
    clock_.pass(1);
    EXPECT_TRUE(clock_.idle());
    EXPECT_NE(row.label->grab().toImage(), before);
    row.label->show_text("9.87 GB");
    EXPECT_TRUE(clock_.idle()) << "the same text is no change";
  }
}

TEST_F(ChangingLabelTest, ends_with_the_last_of_several_quick_changes) {
  auto* number = shown<NumberLabel>(clock_);
  number->resize(200, 80);
  number->show_text("3");
  clock_.pass(300);
  const QImage three = number->grab().toImage();
  number->show_text("1");
  clock_.pass(100);
  number->show_text("2");
  number->show_text("3");
  EXPECT_EQ(number->text(), "3");
  clock_.pass(300);
  EXPECT_TRUE(clock_.idle());
  EXPECT_EQ(number->grab().toImage(), three);
}

TEST_F(ChangingLabelTest, does_not_move_while_nobody_sees_it) {
  NumberLabel hidden(clock_, nullptr);
  hidden.show_text("1 GB");
  auto* seen = shown<FadingLabel>(clock_);
  motion::set_reduced(true);
  seen->show_text("Wait...");
  EXPECT_TRUE(clock_.idle());
}

}  // namespace
}  // namespace tarnby
