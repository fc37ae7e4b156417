#pragma once

#include <QRectF>
#include <QWidget>

#include "ui/spoken.h"

class QLinearGradient;
class QPen;

namespace tarnby {

/// A widget that only shows: it takes no focus and no clicks, scales with its size and says what it shows.
class Drawing : public QWidget, public Speaks {
  Q_OBJECT
 public:
  explicit Drawing(QWidget* parent);

  Spoken spoken() const override { return {}; }

 protected:
  /// The largest centred square, less `margin` at each side.
  QRectF square(double margin) const;
};

/// A place in a widget; where lines begin at the right it is on the other side.
QRectF mirrored(const QWidget& widget, const QRectF& place);
/// How a painter aligns a line in the middle of its height, at the side where lines begin.
int line_alignment(const QWidget& widget);

/// From the top left to the bottom right of `rect`, the colours of rings and marks.
QLinearGradient ring_gradient(const QRectF& rect);

/// The same, laid along a ring that fills from the top: its growing end is the light one.
QLinearGradient progress_gradient(const QRectF& rect);

/// A part of a ring, clockwise from the top; `begin` and `end` are parts of the whole turn. `rect` is the line's
/// middle.
void stroke_ring(class QPainter& painter, const QRectF& rect, double begin, double end, const QPen& pen);

}  // namespace tarnby
