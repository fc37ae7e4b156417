#include "ui/changing_label.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include "ui/figures.h"
#include "ui/motion.h"
#include "ui/theme.h"

namespace tarnby {

ChangingLabel::ChangingLabel(AnimationClock& clock, int milliseconds, QWidget* parent)
    : QLabel(parent), change_(clock, 1, [this] { update(); }), milliseconds_(milliseconds) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, theme::text);
  setPalette(colors);
}

void ChangingLabel::show_text(const QString& new_text) {
  if (new_text == text()) return;
  before_ = text();
  setText(new_text);
  change_.jump_to(0);
  change_.move_to(1, isVisible() ? milliseconds_ : 0, QEasingCurve::InOutQuad);
}

void ChangingLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setClipRect(rect());
  painter.setPen(palette().color(QPalette::WindowText));
  if (change_.moving()) return draw_change(painter, before_, text(), change_.value());
  draw_line(painter, text(), 0);
}

void ChangingLabel::draw_line(QPainter& painter, const QString& line, double below) const {
  const QRectF box = contentsRect();
  const QFont small_enough = fitted(font(), line, box.width());
  const QFontMetricsF metrics(small_enough);
  const double spare = box.width() - figures_width(small_enough, line);
  const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), alignment());
  const double left = side & Qt::AlignHCenter ? spare / 2 : side & Qt::AlignRight ? spare : 0;
  const double baseline = box.center().y() + (metrics.ascent() - metrics.descent()) / 2;
  draw_figures(painter, small_enough, {box.left() + left, baseline + below}, line);
}

FadingLabel::FadingLabel(AnimationClock& clock, QWidget* parent) : ChangingLabel(clock, motion::fade_ms, parent) {
  setFont(theme::font(theme::Type::title));
}

void FadingLabel::draw_change(QPainter& painter, const QString& before, const QString& now, double part) {
  painter.setOpacity(1 - part);
  draw_line(painter, before, 0);
  painter.setOpacity(part);
  draw_line(painter, now, 0);
}

NumberLabel::NumberLabel(AnimationClock& clock, QWidget* parent) : ChangingLabel(clock, motion::push_ms, parent) {
  setFont(theme::font(theme::Type::huge, theme::Weight::strong));
}

void NumberLabel::draw_change(QPainter& painter, const QString& before, const QString& now, double part) {
  painter.setOpacity(1 - part);
  draw_line(painter, before, -part * height());
  painter.setOpacity(part);
  draw_line(painter, now, (1 - part) * height());
}

}  // namespace tarnby
