#include "ui/step_slider.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/button_look.h"
#include "ui/drawing.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int usual_stop_width = 80;
constexpr int least_stop_width = 56;
constexpr double track_height = 4;
constexpr double thumb = 20;
constexpr double halo = 5;
constexpr double dot = 6;
constexpr double line_middle = thumb / 2 + halo + 1;
constexpr QColor thumb_halo = QColor(0x3E, 0xC6, 0xB4, 102);

QFont lettering(bool chosen) {
  return theme::font(theme::Type::note, chosen ? theme::Weight::strong : theme::Weight::regular);
}

}  // namespace

StepSlider::StepSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  setPageStep(1);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StepSlider::set_stops(const QStringList& names) {
  names_ = names;
  setRange(1, static_cast<int>(names.size()));
  updateGeometry();
  update();
}

QSize StepSlider::sizeHint() const {
  const int words = QFontMetrics(lettering(true)).height();
  return {static_cast<int>(usual_stop_width * names_.size()),
          static_cast<int>(2 * line_middle) + theme::grid / 2 + words};
}

QSize StepSlider::minimumSizeHint() const {
  return {static_cast<int>(least_stop_width * names_.size()), sizeHint().height()};
}

/// Half of the widest name stands out beside the first and the last stop.
double StepSlider::edge() const {
  int widest = static_cast<int>(thumb + 2 * halo);
  for (const QString& name : names_) widest = std::max(widest, QFontMetrics(lettering(true)).horizontalAdvance(name));
  return widest / 2.0 + 1;
}

double StepSlider::place_of(int stop) const {
  const double steps = std::max(1, maximum() - minimum());
  const double x = edge() + (width() - 2 * edge()) * (stop - minimum()) / steps;
  return isRightToLeft() ? width() - x : x;
}

void StepSlider::go_to(double x) {
  int nearest = minimum();
  for (int stop = minimum(); stop <= maximum(); ++stop) {
    if (std::abs(place_of(stop) - x) < std::abs(place_of(nearest) - x)) nearest = stop;
  }
  setValue(nearest);
}

void StepSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  by_keyboard_ = false;
  setSliderDown(true);
  go_to(event->position().x());
}

void StepSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) go_to(event->position().x());
}

void StepSlider::mouseReleaseEvent(QMouseEvent*) {
  setSliderDown(false);
}

void StepSlider::focusInEvent(QFocusEvent* event) {
  if (!is_back_again(event->reason())) by_keyboard_ = is_by_keyboard(event->reason());
  QSlider::focusInEvent(event);
}

void StepSlider::keyPressEvent(QKeyEvent* event) {
  by_keyboard_ = true;
  update();
  QSlider::keyPressEvent(event);
}

void StepSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_names(painter);
  if (!isEnabled()) painter.setOpacity(disabled_opacity);
  draw_track(painter);
  draw_thumb(painter);
}

void StepSlider::draw_track(QPainter& painter) const {
  const auto line = [&](int from, int to) {
    const double left = std::min(place_of(from), place_of(to));
    const double right = std::max(place_of(from), place_of(to));
    return QRectF(left, line_middle - track_height / 2, right - left, track_height);
  };
  painter.fillPath(rounded_path(line(minimum(), maximum()), track_height / 2), theme::track);
  const QRectF kept = line(value(), maximum());
  if (kept.width() > 0) painter.fillPath(rounded_path(kept, track_height / 2), ring_gradient(kept));
  painter.setPen(Qt::NoPen);
  for (int stop = minimum(); stop <= maximum(); ++stop) {
    painter.setBrush(stop < value() ? theme::faint : theme::text);
    painter.drawEllipse(QPointF(place_of(stop), line_middle), dot / 2, dot / 2);
  }
}

void StepSlider::draw_thumb(QPainter& painter) const {
  const QPointF middle(place_of(value()), line_middle);
  painter.setPen(Qt::NoPen);
  painter.setBrush(thumb_halo);
  painter.drawEllipse(middle, thumb / 2 + halo, thumb / 2 + halo);
  painter.setBrush(theme::text);
  painter.drawEllipse(middle, thumb / 2, thumb / 2);
  if (!hasFocus() || !by_keyboard_) return;
  QPainterPath around;
  around.addEllipse(middle, thumb / 2 + halo - 2, thumb / 2 + halo - 2);
  draw_focus_ring(painter, around);
}

void StepSlider::draw_names(QPainter& painter) const {
  const double top = 2 * line_middle + theme::grid / 2.0;
  for (int stop = minimum(); stop <= maximum(); ++stop) {
    const bool chosen = stop == value();
    painter.setFont(lettering(chosen));
    painter.setPen(chosen && isEnabled() ? theme::text : theme::readable(theme::faint, theme::sheet));
    const QRectF place(place_of(stop) - edge(), top, 2 * edge(), height() - top);
    painter.drawText(place, Qt::AlignHCenter | Qt::AlignTop, names_[stop - minimum()]);
  }
}

}  // namespace tarnby
