#include "ui/ring_view.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int side = 272;
constexpr int least_side = 160;
constexpr double stroke_part = 10.0 / side;
constexpr double margin = 3;

void color_text(QLabel* label, const QColor& color) {
  QPalette colors = label->palette();
  colors.setColor(QPalette::WindowText, color);
  label->setPalette(colors);
}

}  // namespace

RingView::RingView(AnimationClock& clock, QWidget* parent)
    : Drawing(parent),
      stroke_(clock, 0, [this] { update(); }),
      number_(new NumberLabel(clock, this)),
      caption_(new FadingLabel(clock, this)) {
  number_->setObjectName(QStringLiteral("ring_number"));
  caption_->setObjectName(QStringLiteral("ring_caption"));
  caption_->setFont(theme::font(theme::Type::detail));
  color_text(caption_, theme::readable(theme::secondary, theme::wave_ground));
}

void RingView::set_stroke_end(double end) {
  stroke_.jump_to(std::clamp(end, 0.0, 1.0));
  tell_change(this);
}

void RingView::animate_stroke_end(double end, int milliseconds, Animation::Done done) {
  stroke_.move_to(std::clamp(end, 0.0, 1.0), milliseconds, QEasingCurve::Linear, std::move(done));
  tell_change(this);
}

void RingView::show_number(const QString& number) {
  number_->show_text(number);
  tell_change(this);
}

void RingView::show_caption(const QString& caption) {
  caption_->show_text(caption);
  tell_change(this);
}

QSize RingView::sizeHint() const {
  return {side, side};
}

QSize RingView::minimumSizeHint() const {
  return {least_side, least_side};
}

Spoken RingView::spoken() const {
  const QString text = number_->text().isEmpty() ? caption_->text() : number_->text() + u' ' + caption_->text();
  return {.role = QAccessible::ProgressBar, .text = text.trimmed(), .part = stroke_.value()};
}

double RingView::stroke_width() const {
  return square(margin).width() * stroke_part;
}

void RingView::resizeEvent(QResizeEvent*) {
  // The number stands a little above the middle, the caption below it.
  const QRectF inner = square(margin + 2 * stroke_width());
  const int number_height = QFontMetrics(number_->font()).height();
  const int caption_height = QFontMetrics(caption_->font()).height() + 2;
  const double chord = inner.width() * text_room();
  const int left = static_cast<int>(std::lround(inner.center().x() - chord / 2));
  const int top = static_cast<int>(std::lround(inner.center().y() - number_height * 0.78));
  number_->setGeometry(left, top, static_cast<int>(chord), number_height);
  caption_->setGeometry(left, top + number_height, static_cast<int>(chord), caption_height);
}

void RingView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_ring(painter, square(margin + stroke_width() / 2));
}

void RingView::draw_ring(QPainter& painter, const QRectF& line) {
  const double width = stroke_width();
  stroke_ring(painter, line, 0, 1, QPen(theme::track, width));
  stroke_ring(painter, line, 0, stroke_end(), QPen(progress_gradient(line), width, Qt::SolidLine, Qt::RoundCap));
}

}  // namespace tarnby
