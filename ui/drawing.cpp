#include "ui/drawing.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QStyle>
#include <algorithm>

#include "ui/theme.h"

namespace tarnby {

Drawing::Drawing(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

QRectF Drawing::square(double margin) const {
  const double side = std::max(1.0, std::min(width(), height()) - 2 * margin);
  return QRectF((width() - side) / 2, (height() - side) / 2, side, side);
}

QRectF mirrored(const QWidget& widget, const QRectF& place) {
  if (!widget.isRightToLeft()) return place;
  return {widget.width() - place.right(), place.top(), place.width(), place.height()};
}

int line_alignment(const QWidget& widget) {
  return static_cast<int>(QStyle::visualAlignment(widget.layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter));
}

QLinearGradient ring_gradient(const QRectF& rect) {
  QLinearGradient gradient(rect.topLeft(), rect.bottomRight());
  gradient.setColorAt(0, theme::gradient_start);
  gradient.setColorAt(1, theme::gradient_end);
  return gradient;
}

QLinearGradient progress_gradient(const QRectF& rect) {
  QLinearGradient gradient(rect.bottomLeft(), rect.topRight());
  gradient.setColorAt(0, theme::gradient_start);
  gradient.setColorAt(1, theme::gradient_end);
  return gradient;
}

void stroke_ring(QPainter& painter, const QRectF& rect, double begin, double end, const QPen& pen) {
  if (end <= begin) return;
  constexpr double turn = 360;
  constexpr double top = 90;
  QPainterPath path;
  path.arcMoveTo(rect, top - begin * turn);
  path.arcTo(rect, top - begin * turn, -(end - begin) * turn);
  painter.strokePath(path, pen);
}

}  // namespace tarnby
