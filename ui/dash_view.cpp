#include "ui/dash_view.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr double dot = 9;
constexpr double dot_gap = 4;
constexpr double usual_gap = 28;
constexpr double least_gap = 10;

QFont lettering(StepState state) {
  return theme::font(theme::Type::tiny, state == StepState::now ? theme::Weight::strong : theme::Weight::regular);
}

/// The strong letters' width for every step, so that no step moves when its turn comes.
double step_width(const QString& step) {
  return dot + dot_gap + std::ceil(QFontMetricsF(lettering(StepState::now)).horizontalAdvance(step));
}

void draw_dot(QPainter& painter, const QRectF& box, StepState state, const QColor& color) {
  constexpr double half_line = 0.6;
  const QRectF line = box.adjusted(half_line, half_line, -half_line, -half_line);
  painter.setPen(QPen(color, 2 * half_line));
  painter.setBrush(state == StepState::done ? QBrush(color) : QBrush(Qt::NoBrush));
  painter.drawEllipse(line);
  if (state != StepState::now) return;
  painter.setBrush(color);
  constexpr int degree = 16;  // angles are told in sixteenths
  painter.drawPie(line, 90 * degree, 180 * degree);
}

}  // namespace

DashView::DashView(QWidget* parent) : Drawing(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void DashView::set_steps(const QStringList& steps) {
  steps_ = steps;
  updateGeometry();
  update();
}

void DashView::set_current(int step) {
  current_ = step;
  update();
  tell_change(this);
}

StepState DashView::state_of(int step) const {
  if (step == current_) return StepState::now;
  return step < current_ ? StepState::done : StepState::to_come;
}

double DashView::row_width(double gap) const {
  double width = steps_.isEmpty() ? 0 : -gap;
  for (const QString& step : steps_) width += step_width(step) + gap;
  return width;
}

QSize DashView::sizeHint() const {
  const double height = std::max(dot, QFontMetricsF(lettering(StepState::now)).height());
  return {static_cast<int>(std::ceil(row_width(usual_gap))), static_cast<int>(std::ceil(height)) + 2};
}

QSize DashView::minimumSizeHint() const {
  return {static_cast<int>(std::ceil(row_width(least_gap))), sizeHint().height()};
}

Spoken DashView::spoken() const {
  const auto count = static_cast<int>(steps_.size());
  const QString names = steps_.join(QStringLiteral(", "));
  if (current_ < 0 || current_ >= count) return {.role = QAccessible::Indicator, .text = names};
  return {.role = QAccessible::Indicator,
          .text = QStringLiteral("%1 (%2/%3): %4").arg(steps_[current_]).arg(current_ + 1).arg(count).arg(names)};
}

void DashView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto gaps = static_cast<double>(std::max<qsizetype>(1, steps_.size() - 1));
  const double spare = (width() - row_width(0)) / gaps;
  const double gap = std::clamp(spare, least_gap, usual_gap);
  double left = (width() - row_width(gap)) / 2;
  for (int i = 0; i < static_cast<int>(steps_.size()); ++i) {
    const StepState state = state_of(i);
    const QColor color = state == StepState::now ? theme::text : theme::readable(theme::faint, theme::wave_ground);
    const double step = step_width(steps_[i]);
    const QRectF words(left + dot + dot_gap, 0, step - dot - dot_gap, height());
    draw_dot(painter, mirrored(*this, {left, (height() - dot) / 2, dot, dot}), state, color);
    painter.setFont(lettering(state));
    painter.drawText(mirrored(*this, words), line_alignment(*this), steps_[i]);
    left += step + gap;
  }
}

}  // namespace tarnby
