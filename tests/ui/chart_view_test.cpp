#include "ui/chart_view.h"

#include <cmath>
#include <random>

#include "tests/support/seed.h"
#include "tests/ui/widget_test.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

class ChartViewTest : public test::WidgetTest {};

TEST(ChartArcs, make_the_whole_turn_whatever_the_values) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  for (int round = 0; round < 500; ++round) {
    std::vector<double> values(1 + random() % 12);
    for (double& value : values) value = random() % 3 == 0 ? 0 : std::pow(10.0, static_cast<double>(random() % 13));
    values.back() = 1;  // at least one that is there
    const std::vector<ChartArc> arcs = chart_arcs(values);
    ASSERT_EQ(arcs.size(), values.size());
    EXPECT_NEAR(arcs.back().end, 1, 1e-9);
    for (std::size_t i = 0; i < arcs.size(); ++i) {
      EXPECT_EQ(arcs[i].begin, i == 0 ? 0 : arcs[i - 1].end) << "side by side";
      EXPECT_EQ(arcs[i].size() > 0, values[i] > 0) << "what is there has an arc, what is not has none";
      EXPECT_TRUE(values[i] == 0 || arcs[i].size() > 0.0159) << "and one that can be seen";
      for (std::size_t k = 0; k < i; ++k) {
        EXPECT_TRUE(values[k] <= values[i] || arcs[k].size() > arcs[i].size() - 1e-12) << "more is never less";
      }
    }
  }
}

TEST(ChartArcs, cope_with_nothing_bad_and_many) {
  EXPECT_TRUE(chart_arcs({}).empty());
  EXPECT_EQ(chart_arcs({0, 0})[1].end, 0) << "all empty";
  EXPECT_DOUBLE_EQ(chart_arcs({-5, std::nan(""), 2})[2].size(), 1) << "what is no size counts as none";
  EXPECT_DOUBLE_EQ(chart_arcs({1, 1, 2})[2].size(), 0.5) << "without tiny ones, in proportion";
  const std::vector<ChartArc> many = chart_arcs(std::vector<double>(200, 1));
  EXPECT_NEAR(many.back().end, 1, 1e-9) << "too many for the least size of each";
}

TEST_F(ChartViewTest, glides_from_the_old_values_to_the_new_ones) {
  auto* chart = shown<ChartView>(clock_);
  const auto caches = [](double value) { return ChartSegment{"Caches", theme::blue, value, "2.91 GB"}; };
  const auto logs = [](double value) { return ChartSegment{"Logs", theme::violet, value, "412.7 MB"}; };
  chart->set_segments({caches(50), logs(50)});
  clock_.pass(600);
  EXPECT_TRUE(clock_.idle());
  EXPECT_DOUBLE_EQ(chart->arcs()[0].size(), 0.5);

  chart->set_segments({caches(150), logs(50)});
  EXPECT_DOUBLE_EQ(chart->arcs()[0].size(), 0.5) << "begins where it was";
  clock_.pass(300);
  EXPECT_DOUBLE_EQ(chart->arcs()[0].size(), 100.0 / 150);
  clock_.pass(300);
  EXPECT_DOUBLE_EQ(chart->arcs()[0].size(), 0.75);

  chart->set_segments({logs(50)});
  EXPECT_EQ(chart->arcs().size(), 2U) << "what goes shrinks away";
  clock_.pass(600);
  ASSERT_EQ(chart->arcs().size(), 1U);
  EXPECT_DOUBLE_EQ(chart->arcs()[0].size(), 1);
}

TEST_F(ChartViewTest, says_its_values) {
  auto* chart = shown<ChartView>(clock_);
  chart->show_total("3.32 GB", "selected");
  EXPECT_EQ(said(chart, QAccessible::Value), "3.32 GB selected");
  chart->set_segments({{"Caches", theme::blue, 2910, "2.91 GB"}, {"Logs", theme::violet, 413, "412.7 MB"}});
  EXPECT_EQ(said(chart, QAccessible::Value), "3.32 GB selected: Caches 2.91 GB, Logs 412.7 MB");
  EXPECT_EQ(said(chart, QAccessible::Description), said(chart, QAccessible::Value));
  EXPECT_EQ(accessible(chart).role(), QAccessible::Chart);
}

}  // namespace
}  // namespace tarnby
