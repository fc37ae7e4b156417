#include "ui/cleaned_mark.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPen>

#include "ui/motion.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

CleanedMark::CleanedMark(AnimationClock& clock, QWidget* parent)
    : Drawing(parent), drawn_(clock, 1, [this] { update(); }) {}

void CleanedMark::draw_in() {
  drawn_.jump_to(0);
  drawn_.move_to(1, motion::push_ms, QEasingCurve::InOutQuad);
}

void CleanedMark::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF disc = square(0);
  QPainterPath shape;
  shape.addEllipse(disc);
  painter.fillPath(shape, ring_gradient(disc));
  if (drawn() <= 0) return;
  const QPainterPath mark = check_path(disc);
  QPen pen(theme::text, disc.width() * 0.08, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  if (drawn() < 1) {
    constexpr double endless = 1000;
    pen.setDashPattern({mark.length() * drawn() / pen.widthF(), endless});  // told in widths of the pen
  }
  painter.strokePath(mark, pen);
}

}  // namespace tarnby
