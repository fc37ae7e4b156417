#include "ui/scan_views.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <cmath>
#include <numbers>

#include "ui/motion.h"
#include "ui/theme.h"

namespace tarnby {

SearchView::SearchView(AnimationClock& clock, QWidget* parent)
    : RingView(clock, parent), round_(clock, 0, [this] { update(); }) {}

void SearchView::set_searching(bool searching) {
  searching_ = searching;
  run_or_rest();
  tell_change(this);
  update();
}

void SearchView::run_or_rest() {
  constexpr int round_ms = 1600;
  const bool runs = searching_ && isVisible();
  if (runs && !round_.moving()) round_.repeat(round_ms);
  if (!runs) round_.stop();
}

Spoken SearchView::spoken() const {
  Spoken spoken = RingView::spoken();
  if (searching_) spoken.part.reset();
  spoken.state.busy = searching_;
  return spoken;
}

void SearchView::showEvent(QShowEvent*) {
  run_or_rest();
}

void SearchView::hideEvent(QHideEvent*) {
  run_or_rest();
}

void SearchView::draw_ring(QPainter& painter, const QRectF& line) {
  if (!searching_) return RingView::draw_ring(painter, line);
  constexpr double arc = 0.28;
  const double width = stroke_width();
  stroke_ring(painter, line, 0, 1, QPen(theme::track, width));
  stroke_ring(painter, line, round_.value(), round_.value() + arc,
              QPen(progress_gradient(line), width, Qt::SolidLine, Qt::RoundCap));
}

void DeleteView::draw_ring(QPainter& painter, const QRectF& line) {
  RingView::draw_ring(painter, line);
  constexpr int strokes = 72;
  const double outer = line.width() / 2 - 1.5 * stroke_width();
  const double inner = outer - stroke_width();
  for (int i = 0; i < strokes; ++i) {
    const double place = static_cast<double>(i) / strokes;
    const double angle = 2 * std::numbers::pi * place;
    const QPointF direction(std::sin(angle), -std::cos(angle));
    const bool gone = stroke_end() > 0 && place <= stroke_end();
    painter.setPen(QPen(gone ? theme::track : theme::faint, stroke_width() * 0.18, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(line.center() + direction * inner, line.center() + direction * outer);
  }
}

}  // namespace tarnby
