#include "ui/paths.h"

#include <QTransform>
#include <algorithm>

namespace tarnby {
namespace {

/// Where the five heights stand, as parts of the width.
constexpr std::array<double, 5> wave_places = {0, 0.125, 0.5, 0.865, 1};

}  // namespace

QPainterPath rounded_path(const QRectF& rect, double radius) {
  QPainterPath path;
  const double cut = std::clamp(radius, 0.0, std::min(rect.width(), rect.height()) / 2);
  path.addRoundedRect(rect, cut, cut);
  return path;
}

QPainterPath wave_path(const QRectF& rect, const WaveHeights& heights) {
  const auto point = [&](std::size_t i) {
    return QPointF(rect.left() + wave_places[i] * rect.width(), rect.top() + heights[i] * rect.height());
  };
  QPainterPath path(point(0));
  for (std::size_t i = 1; i < heights.size(); ++i) {
    const QPointF from = point(i - 1);
    const QPointF to = point(i);
    // Level at crests and trough; at the edges a piece of a parabola, as if the curve went on outside.
    const bool first = i == 1;
    const bool last = i + 1 == heights.size();
    const double reach = (to.x() - from.x()) * (first || last ? 1.0 / 3 : 0.42);
    const double first_lift = first ? (to.y() - from.y()) * 2 / 3 : 0;
    const double last_lift = last ? (from.y() - to.y()) * 2 / 3 : 0;
    path.cubicTo(from + QPointF(reach, first_lift), to + QPointF(-reach, last_lift), to);
  }
  path.lineTo(rect.right(), std::max(rect.bottom(), point(4).y()));
  path.lineTo(rect.left(), std::max(rect.bottom(), point(0).y()));
  path.closeSubpath();
  return path;
}

QPainterPath check_path(const QRectF& box) {
  const auto at = [&](double x, double y) {
    return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
  };
  QPainterPath path(at(0.25, 0.53));
  path.lineTo(at(0.43, 0.70));
  path.lineTo(at(0.76, 0.34));
  return path;
}

QPainterPath pointer_path(const QRectF& box, double degrees) {
  const QPointF middle = box.center();
  QPainterPath path;
  path.moveTo(-0.32 * box.width(), -0.5 * box.height());
  path.lineTo(0.5 * box.width(), 0);
  path.lineTo(-0.32 * box.width(), 0.5 * box.height());
  path.closeSubpath();
  return QTransform().translate(middle.x(), middle.y()).rotate(degrees).map(path);
}

}  // namespace tarnby
