#include "ui/info_button.h"

#include <QPainter>
#include <QPen>

#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr double diameter = 18;
constexpr int side = 26;  // larger than the circle, to be easily met

}  // namespace

void draw_info_mark(QPainter& painter, const QRectF& circle, const QColor& color) {
  const double unit = circle.width() / diameter;
  painter.setPen(QPen(color, 1.25 * unit));
  painter.setBrush(Qt::NoBrush);
  const double half_line = 0.625 * unit;
  painter.drawEllipse(circle.adjusted(half_line, half_line, -half_line, -half_line));
  const QPointF middle = circle.center();
  painter.setPen(QPen(color, 1.5 * unit, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(middle + QPointF(0, -0.6) * unit, middle + QPointF(0, 4) * unit);
  painter.drawPoint(middle + QPointF(0, -3.6) * unit);
}

InfoButton::InfoButton(const QString& name, QWidget* parent) : Pressable(parent) {
  setAccessibleName(name);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize InfoButton::sizeHint() const {
  return {side, side};
}

void InfoButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabled_opacity);
  const QRectF circle((width() - diameter) / 2, (height() - diameter) / 2, diameter, diameter);
  QPainterPath shape;
  shape.addEllipse(circle);
  shade_state(painter, this, shape);
  draw_info_mark(painter, circle, underMouse() && isEnabled() ? theme::text : theme::secondary);
  QPainterPath around;
  around.addEllipse(circle.adjusted(-2, -2, 2, 2));
  if (shows_focus()) draw_focus_ring(painter, around);
}

}  // namespace tarnby
