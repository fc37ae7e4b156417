#include "ui/freed_view.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "ui/motion.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

constexpr int thickness = 6;
constexpr int usual_width = 320;

}  // namespace

FreedView::FreedView(AnimationClock& clock, QWidget* parent) : Drawing(parent), used_(clock, 0, [this] { update(); }) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FreedView::show_parts(double used_before, double used_after) {
  used_before_ = std::clamp(used_before, 0.0, 1.0);
  used_.jump_to(used_before_);
  used_.move_to(std::clamp(used_after, 0.0, used_before_), motion::glide_ms, QEasingCurve::InOutQuad);
}

QSize FreedView::sizeHint() const {
  return {usual_width, thickness};
}

void FreedView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setClipPath(rounded_path(QRectF(rect()), thickness / 2.0));
  painter.fillRect(rect(), theme::track);
  const auto part = [&](double from, double to, const QColor& color) {
    painter.fillRect(mirrored(*this, QRectF(width() * from, 0, width() * (to - from), height())), color);
  };
  part(0, used_.value(), theme::secondary);
  part(used_.value(), used_before_, theme::accent);
}

}  // namespace tarnby
