#include "ui/theme.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>

#include "ui/figures.h"

namespace tarnby {
namespace {

TEST(Theme, puts_only_readable_texts_on_its_grounds) {
  struct Pair {
    const char* why;
    QColor text;
    QColor ground;
  };
  const QColor panel = theme::panel_ground();
  const QColor plain_button = theme::over(QColor(255, 255, 255, 31), theme::background);
  const Pair pairs[] = {
      {"text", theme::text, theme::background},
      {"text on the brightest curve under lines", theme::text, theme::wave_ground},
      {"secondary", theme::secondary, theme::background},
      {"secondary on a panel", theme::secondary, panel},
      {"a plain button under the pointer", theme::text, theme::over(theme::pointed, plain_button)},
      {"the accent button held down", theme::on_accent, theme::over(theme::pressed, theme::accent)},
      {"the removing button held down", theme::on_destructive, theme::over(theme::pressed, theme::destructive)},
      {"the dark end of the gradient", theme::on_gradient, theme::gradient_end},
      {"a disabled button", theme::disabled_text(), theme::over(theme::card, theme::background)},
      {"the light window", theme::light_secondary, theme::light_background},
  };
  for (const Pair& pair : pairs) EXPECT_GE(theme::contrast(pair.text, pair.ground), 4.5) << pair.why;
}

TEST(Theme, moves_a_color_just_until_it_can_be_read) {
  EXPECT_EQ(theme::readable(theme::text, theme::background), theme::text) << "what can be read stays";
  const QColor lifted = theme::readable(theme::faint, theme::wave_ground);
  EXPECT_GE(theme::contrast(lifted, theme::wave_ground), 4.5) << "lighter on dark";
  EXPECT_NE(lifted, theme::text) << "but no lighter than it takes";
  const QColor darkened = theme::readable(theme::faint, theme::light_background);
  EXPECT_GE(theme::contrast(darkened, theme::light_background), 4.5) << "darker on light";
}

TEST(Figures, stand_at_one_width_and_fit_their_place) {
  QFont font(QStringLiteral("Inter"));
  font.setPixelSize(52);
  EXPECT_EQ(figures_width(font, QStringLiteral("111.11")), figures_width(font, QStringLiteral("888.88")))
      << "a number that changes does not move its neighbours, whatever the font";

  const QString long_number = QStringLiteral("1,234.56 GB");
  const QFont small = fitted(font, long_number, 150);
  EXPECT_LE(figures_width(small, long_number), 150) << "made as small as it takes";
  EXPECT_EQ(fitted(font, QStringLiteral("1"), 150).pixelSize(), 52) << "what fits stays";
  EXPECT_EQ(fitted(font, long_number, 1).pixelSize(), 11) << "never too small to read";
}

}  // namespace
}  // namespace tarnby
