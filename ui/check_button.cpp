#include "ui/check_button.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "ui/drawing.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr double usual_side = 18;
constexpr double radius = 4.5;
constexpr int text_gap = theme::grid;
constexpr int margin = 4;  // room for the focus ring

void draw_mark(QPainter& painter, const QRectF& box, Qt::CheckState state) {
  const QPen pen(theme::on_accent, box.width() * 0.12, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  if (state == Qt::Checked) return painter.strokePath(check_path(box), pen);
  QPainterPath bar(box.center() - QPointF(box.width() * 0.22, 0));
  bar.lineTo(box.center() + QPointF(box.width() * 0.22, 0));
  painter.strokePath(bar, pen);
}

}  // namespace

double check_box_side() {
  return std::round(usual_side * std::max(1.0, theme::text_scale()));
}

void draw_check_box(QPainter& painter, const QRectF& box, Qt::CheckState state) {
  if (state == Qt::Unchecked) {
    constexpr double half_line = 0.75;
    const QRectF line = box.adjusted(half_line, half_line, -half_line, -half_line);
    return painter.strokePath(rounded_path(line, radius), QPen(theme::secondary, 2 * half_line));
  }
  painter.fillPath(rounded_path(box, radius), theme::accent);
  draw_mark(painter, box, state);
}

CheckButton::CheckButton(QWidget* parent, const QString& text) : Pressable(parent) {
  setText(text);
  setFont(theme::font(theme::Type::body));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CheckButton::sizeHint() const {
  const QFontMetrics metrics(font());
  const int box = static_cast<int>(check_box_side()) + 2 * margin;
  const int beside = text().isEmpty() ? 0 : text_gap + metrics.horizontalAdvance(text()) + margin;
  return {box + beside, std::max(box, metrics.height() + margin)};
}

Spoken CheckButton::spoken() const {
  QAccessible::State state;
  state.checkable = true;
  state.checked = checkState() == Qt::Checked;
  state.checkStateMixed = checkState() == Qt::PartiallyChecked;
  return {.role = QAccessible::CheckBox, .state = state};
}

void CheckButton::nextCheckState() {
  setCheckState(checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void CheckButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabled_opacity);
  const double side = check_box_side();
  const QRectF box = mirrored(*this, QRectF(margin, (height() - side) / 2, side, side));
  draw_check_box(painter, box, checkState());
  shade_state(painter, this, rounded_path(box, radius));
  painter.setOpacity(1);
  painter.setFont(font());
  painter.setPen(isEnabled() ? theme::text : theme::disabled_text());
  const QRectF beside = QRectF(rect()).adjusted(margin + side + text_gap, 0, 0, 0);
  painter.drawText(mirrored(*this, beside), line_alignment(*this), text());
  constexpr double away = 2;
  if (shows_focus()) draw_focus_ring(painter, rounded_path(box.adjusted(-away, -away, away, away), radius + away));
}

}  // namespace tarnby
