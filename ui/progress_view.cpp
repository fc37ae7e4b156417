#include "ui/progress_view.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int thickness = 6;
constexpr int usual_width = 240;

}  // namespace

void draw_bar(QPainter& painter, const QRectF& bar, double part, Qt::LayoutDirection direction) {
  painter.fillPath(rounded_path(bar, bar.height()), theme::track);
  if (part <= 0) return;
  QRectF filled = bar;
  filled.setWidth(std::max(bar.height(), bar.width() * std::min(part, 1.0)));
  const bool from_the_right = direction == Qt::RightToLeft;
  if (from_the_right) filled.moveRight(bar.right());
  QLinearGradient gradient(bar.topLeft(), bar.topRight());
  if (from_the_right) gradient = QLinearGradient(bar.topRight(), bar.topLeft());
  gradient.setColorAt(0, theme::gradient_start);
  gradient.setColorAt(1, theme::gradient_end);
  painter.fillPath(rounded_path(filled, bar.height()), gradient);
}

ProgressView::ProgressView(AnimationClock& clock, QWidget* parent)
    : Drawing(parent), progress_(clock, 0, [this] { update(); }) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ProgressView::set_progress(double progress) {
  animate_progress(progress, 0);
}

void ProgressView::animate_progress(double progress, int milliseconds, Animation::Done done) {
  progress_.move_to(std::clamp(progress, 0.0, 1.0), milliseconds, QEasingCurve::Linear, std::move(done));
  tell_change(this);
}

QSize ProgressView::sizeHint() const {
  return {usual_width, thickness};
}

QSize ProgressView::minimumSizeHint() const {
  return {usual_width / 4, thickness};
}

Spoken ProgressView::spoken() const {
  const QString text = QStringLiteral("%1 %").arg(std::lround(progress() * 100));
  return {.role = QAccessible::ProgressBar, .text = text, .part = progress()};
}

void ProgressView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_bar(painter, QRectF(0, (height() - thickness) / 2.0, width(), thickness), progress(), layoutDirection());
}

}  // namespace tarnby
