#include "ui/theme.h"

#include <QFontDatabase>
#include <algorithm>
#include <cmath>

namespace tarnby::theme {
namespace {

double scale_of_texts = 1;

bool has_inter() {
  static const bool installed = QFontDatabase::hasFamily(QStringLiteral("Inter"));
  return installed;
}

/// One channel's share of the light, which grows faster than its number (the sRGB curve).
double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}  // namespace

QFont font(Type type, Weight weight) {
  QFont result = has_inter() ? QFont(QStringLiteral("Inter")) : QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  result.setPixelSize(static_cast<int>(std::lround(static_cast<double>(type) * scale_of_texts)));
  result.setWeight(static_cast<QFont::Weight>(weight));
  return result;
}

double text_scale() {
  return scale_of_texts;
}

void set_text_scale(double scale) {
  scale_of_texts = std::clamp(scale, 0.5, 4.0);
}

QColor over(const QColor& top, const QColor& bottom) {
  const QColor opaque(top.red(), top.green(), top.blue());
  return blend(bottom, opaque, top.alphaF());
}

QColor blend(const QColor& from, const QColor& to, double part) {
  const auto mix = [part](float a, float b) { return static_cast<float>(a + (b - a) * std::clamp(part, 0.0, 1.0)); };
  return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()), mix(from.blueF(), to.blueF()),
                          mix(from.alphaF(), to.alphaF()));
}

double contrast(const QColor& one, const QColor& other) {
  const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

QColor readable(const QColor& wanted, const QColor& ground) {
  const QColor white(255, 255, 255);
  const QColor black(0, 0, 0);
  const QColor& goal = contrast(white, ground) >= contrast(black, ground) ? white : black;
  constexpr int steps = 20;
  for (int step = 0; step < steps; ++step) {
    const QColor tried = blend(wanted, goal, static_cast<double>(step) / steps);
    if (contrast(tried, ground) >= readable_contrast) return tried;
  }
  return goal;
}

QColor panel_ground() {
  return over(panel, background);
}

QColor disabled_text() {
  return readable(faint, over(card, background));
}

}  // namespace tarnby::theme
