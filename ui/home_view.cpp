#include "ui/home_view.h"

#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <algorithm>

#include "ui/drawing.h"
#include "ui/figures.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int side = 264;
constexpr double disc = 0.667;
constexpr double inner_ring = 0.818;
constexpr double outer_ring = 0.955;
constexpr double most_widening = 0.035;
constexpr int widening_ms = 200;
constexpr QColor inner_shade = QColor(0xFF, 0xFF, 0xFF, 14);
constexpr QColor outer_shade = QColor(0xFF, 0xFF, 0xFF, 9);

}  // namespace

HomeView::HomeView(const QString& text, AnimationClock& clock, QWidget* parent)
    : Pressable(parent), widening_(clock, 0, [this] { update(); }) {
  setText(text);
  setFont(theme::font(theme::Type::heading, theme::Weight::strong));
}

QSize HomeView::sizeHint() const {
  return {side, side};
}

QSize HomeView::minimumSizeHint() const {
  return {side / 2, side / 2};
}

QRectF HomeView::circle(double diameter) const {
  const double size = diameter * std::min(width(), height());
  return {(width() - size) / 2, (height() - size) / 2, size, size};
}

bool HomeView::event(QEvent* event) {
  const bool comes = event->type() == QEvent::HoverEnter;
  if (comes || event->type() == QEvent::HoverLeave) {
    widening_.move_to(comes && isEnabled() ? 1 : 0, widening_ms, QEasingCurve::InOutQuad);
  }
  return Pressable::event(event);
}

bool HomeView::hitButton(const QPoint& at) const {
  QPainterPath shape;
  shape.addEllipse(circle(disc));
  return shape.contains(at);
}

void HomeView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabled_opacity);
  painter.setPen(Qt::NoPen);
  painter.setBrush(outer_shade);
  painter.drawEllipse(circle(outer_ring + most_widening * widening_.value()));
  painter.setBrush(inner_shade);
  painter.drawEllipse(circle(inner_ring + most_widening * widening_.value()));

  const QRectF middle = circle(disc);
  QPainterPath shape;
  shape.addEllipse(middle);
  painter.fillPath(shape, ring_gradient(middle));
  shade_state(painter, this, shape);
  painter.setOpacity(1);
  painter.setPen(isEnabled() ? theme::on_gradient : theme::text);
  painter.setFont(fitted(font(), text(), middle.width() * 0.8));
  painter.drawText(middle, Qt::AlignCenter, text());
  QPainterPath around;
  constexpr double away = 4;
  around.addEllipse(middle.adjusted(-away, -away, away, away));
  if (shows_focus()) draw_focus_ring(painter, around);
}

}  // namespace tarnby
