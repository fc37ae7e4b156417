#include "ui/space_view.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/figures.h"
#include "ui/motion.h"
#include "ui/progress_view.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int thickness = 12;
constexpr int usual_width = 320;

QFont lettering() {
  return theme::font(theme::Type::detail);
}

}  // namespace

SpaceView::SpaceView(AnimationClock& clock, QWidget* parent) : Drawing(parent), used_(clock, 0, [this] { update(); }) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SpaceView::show_space(double used, const QString& used_text, const QString& free_text) {
  used_text_ = used_text;
  free_text_ = free_text;
  const double part = std::isfinite(used) ? std::clamp(used, 0.0, 1.0) : 0;
  used_.move_to(part, isVisible() ? motion::glide_ms : 0, QEasingCurve::InOutQuad);
  update();
  tell_change(this);
}

QSize SpaceView::sizeHint() const {
  return {usual_width, thickness + theme::grid + QFontMetrics(lettering()).height()};
}

QSize SpaceView::minimumSizeHint() const {
  return {usual_width / 2, sizeHint().height()};
}

Spoken SpaceView::spoken() const {
  return {.role = QAccessible::ProgressBar,
          .text = QStringLiteral("%1, %2").arg(used_text_, free_text_),
          .part = used_.target()};
}

void SpaceView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_bar(painter, QRectF(0, 0, width(), thickness), filled(), layoutDirection());
  const QFont font = fitted(lettering(), used_text_ + QStringLiteral("    ") + free_text_, width());
  const QFontMetricsF metrics(font);
  const double baseline = thickness + theme::grid + metrics.ascent();
  painter.setPen(theme::text);
  const double end_of_used = width() - figures_width(font, used_text_);
  const double end_of_free = width() - figures_width(font, free_text_);
  draw_figures(painter, font, {isRightToLeft() ? end_of_used : 0, baseline}, used_text_);
  painter.setPen(theme::secondary);
  draw_figures(painter, font, {isRightToLeft() ? 0 : end_of_free, baseline}, free_text_);
}

}  // namespace tarnby
