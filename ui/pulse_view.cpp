#include "ui/pulse_view.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <cmath>

#include "ui/motion.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int rings = 3;
constexpr double core = 0.26;  // the still disc in the middle, as a part of the diameter
constexpr double resting_opacity = 0.5;

}  // namespace

PulseView::PulseView(AnimationClock& clock, QWidget* parent)
    : Drawing(parent), phase_(clock, 0.2, [this] { update(); }) {}

void PulseView::set_pulsing(bool pulsing) {
  pulsing_ = pulsing;
  run_or_rest();
  tell_change(this);
  update();
}

void PulseView::run_or_rest() {
  const bool runs = pulsing_ && isVisible();
  if (runs && !phase_.moving()) phase_.repeat(motion::pulse_ms);
  if (!runs) phase_.stop();
}

Spoken PulseView::spoken() const {
  QAccessible::State state;
  state.busy = pulsing_;
  return {.role = QAccessible::Animation, .state = state};
}

void PulseView::showEvent(QShowEvent*) {
  run_or_rest();
}

void PulseView::hideEvent(QHideEvent*) {
  run_or_rest();
}

void PulseView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF whole = square(2);
  const auto circle = [&](double part) {
    QRectF rect(0, 0, whole.width() * part, whole.height() * part);
    rect.moveCenter(whole.center());
    return rect;
  };
  for (int i = 0; pulsing_ && i < rings; ++i) {
    const double way = std::fmod(phase_.value() + static_cast<double>(i) / rings, 1.0);
    painter.setOpacity((1 - way) * 0.8);
    stroke_ring(painter, circle(core + (1 - core) * way), 0, 1, QPen(ring_gradient(whole), 2));
  }
  painter.setOpacity(pulsing_ ? 1 : resting_opacity);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ring_gradient(circle(core)));
  painter.drawEllipse(circle(core));
}

}  // namespace tarnby
