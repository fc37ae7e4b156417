#include "ui/chart_view.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "ui/motion.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int side = 192;
constexpr double line_part = 0.115;  // the segments' thickness as a part of the diameter
constexpr double gap = 3;
constexpr double least_arc = 0.016;  // of the turn: clearly wider than the gap beside it

constexpr double tag = 10;
constexpr int legend_gap = 2 * theme::grid;

int legend_row() {
  return std::max(3 * theme::grid, QFontMetrics(theme::font(theme::Type::note)).height() + theme::grid);
}

/// Values as parts of the whole, of which none that is there is smaller than `least`: the others give in proportion to
/// what they have above it.
std::vector<double> visible_parts(std::vector<double> values) {
  for (double& value : values) value = std::isfinite(value) ? std::max(value, 0.0) : 0;
  const double whole = std::accumulate(values.begin(), values.end(), 0.0);
  if (whole <= 0) return std::vector<double>(values.size(), 0.0);
  const auto present = static_cast<double>(std::count_if(values.begin(), values.end(), [](double v) { return v > 0; }));
  const double least = std::min(least_arc, 1 / present);
  double lacking = 0;
  double spare = 0;
  for (double& value : values) {
    value /= whole;
    if (value > 0) (value < least ? lacking : spare) += std::abs(value - least);
  }
  const double keep = spare > 0 ? 1 - lacking / spare : 1;
  for (double& value : values) {
    if (value > 0) value = least + std::max(0.0, value - least) * keep;
  }
  return values;
}

}  // namespace

std::vector<ChartArc> chart_arcs(const std::vector<double>& values) {
  std::vector<ChartArc> arcs;
  double begin = 0;
  for (const double part : visible_parts(values)) {
    arcs.push_back({begin, begin + part});
    begin += part;
  }
  return arcs;
}

ChartView::ChartView(AnimationClock& clock, QWidget* parent)
    : Drawing(parent),
      glide_(clock, 1, [this] { update(); }),
      total_(new NumberLabel(clock, this)),
      caption_(new FadingLabel(clock, this)) {
  total_->setObjectName(QStringLiteral("chart_total"));
  caption_->setObjectName(QStringLiteral("chart_caption"));
  total_->setFont(theme::font(theme::Type::large, theme::Weight::strong));
  caption_->setFont(theme::font(theme::Type::note));
}

void ChartView::set_segments(std::vector<ChartSegment> segments) {
  const auto same_label = [](const QString& label) {
    return [&label](const Shown& shown) { return shown.segment.label == label; };
  };
  std::vector<Shown> next;
  for (ChartSegment& segment : segments) {
    const auto old = std::find_if(shown_.begin(), shown_.end(), same_label(segment.label));
    const double from = old == shown_.end() ? 0 : value_now(*old);
    next.push_back({std::move(segment), from});
  }
  // What is no longer there shrinks away where it was, as nearly as its place can be kept.
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const double from = value_now(shown_[i]);
    if (from <= 0 || std::any_of(next.begin(), next.end(), same_label(shown_[i].segment.label))) continue;
    Shown leaving{shown_[i].segment, from, true};
    leaving.segment.value = 0;
    next.insert(next.begin() + static_cast<std::ptrdiff_t>(std::min(i, next.size())), std::move(leaving));
  }
  shown_ = std::move(next);
  glide_.jump_to(0);
  glide_.move_to(1, isVisible() ? motion::glide_ms : 0, QEasingCurve::InOutQuad,
                 [this] { std::erase_if(shown_, [](const Shown& shown) { return shown.leaving; }); });
  updateGeometry();
  place_texts();
  tell_change(this);
}

void ChartView::show_total(const QString& total, const QString& caption) {
  total_->show_text(total);
  caption_->show_text(caption);
  tell_change(this);
}

double ChartView::value_now(const Shown& shown) const {
  return shown.from + (shown.segment.value - shown.from) * glide_.value();
}

std::vector<ChartArc> ChartView::arcs() const {
  std::vector<double> values;
  for (const Shown& shown : shown_) values.push_back(value_now(shown));
  return chart_arcs(values);
}

Spoken ChartView::spoken() const {
  QStringList parts;
  for (const Shown& shown : shown_) {
    if (!shown.leaving) parts << shown.segment.label + u' ' + shown.segment.value_text;
  }
  const QString total = QStringLiteral("%1 %2").arg(total_->text(), caption_->text()).trimmed();
  if (parts.isEmpty()) return {.role = QAccessible::Chart, .text = total};
  const QString values = parts.join(QStringLiteral(", "));
  return {.role = QAccessible::Chart, .text = total.isEmpty() ? values : total + QStringLiteral(": ") + values};
}

int ChartView::legend_width() const {
  const QFontMetrics metrics(theme::font(theme::Type::note));
  int widest = 0;
  for (const Shown& shown : shown_) widest = std::max(widest, metrics.horizontalAdvance(shown.segment.label));
  return widest + static_cast<int>(tag) + theme::grid + 1;
}

bool ChartView::in_legend(const Shown& shown) {
  return shown.segment.value > 0;
}

QSize ChartView::sizeHint() const {
  const auto rows = static_cast<int>(std::count_if(shown_.begin(), shown_.end(), in_legend));
  return {std::max(side, legend_width()) + 2 * theme::grid, side + (rows == 0 ? 0 : legend_gap + rows * legend_row())};
}

QSize ChartView::minimumSizeHint() const {
  return {side / 2, sizeHint().height() - side / 3};
}

QRectF ChartView::donut() const {
  const double legend = sizeHint().height() - side;
  const double diameter = std::max(1.0, std::min<double>(width(), height() - legend));
  return {(width() - diameter) / 2, 0, diameter, diameter};
}

void ChartView::resizeEvent(QResizeEvent*) {
  place_texts();
}

void ChartView::place_texts() {
  const QRectF ring = donut();
  const double inner = ring.width() * (1 - 2 * line_part) * 0.88;
  const int number_height = QFontMetrics(total_->font()).height();
  const int left = static_cast<int>(ring.center().x() - inner / 2);
  const int top = static_cast<int>(ring.center().y() - number_height * 0.72);
  total_->setGeometry(left, top, static_cast<int>(inner), number_height);
  caption_->setGeometry(left, top + number_height, static_cast<int>(inner),
                        QFontMetrics(caption_->font()).height() + 2);
}

void ChartView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_donut(painter);
  draw_legend(painter);
}

void ChartView::draw_donut(QPainter& painter) const {
  const QRectF ring = donut();
  const double width = ring.width() * line_part;
  const QRectF line = ring.adjusted(width / 2, width / 2, -width / 2, -width / 2);
  const std::vector<ChartArc> all = arcs();
  const auto present = std::count_if(all.begin(), all.end(), [](const ChartArc& arc) { return arc.size() > 0; });
  if (present == 0) return stroke_ring(painter, line, 0, 1, QPen(theme::track, width));
  const double half_gap = present < 2 ? 0 : gap / 2 / (line.width() * std::numbers::pi);
  for (std::size_t i = 0; i < all.size(); ++i) {
    const QPen pen(shown_[i].segment.color, width, Qt::SolidLine, Qt::FlatCap);
    stroke_ring(painter, line, all[i].begin + half_gap, all[i].end - half_gap, pen);
  }
}

void ChartView::draw_legend(QPainter& painter) const {
  const QFont lettering = theme::font(theme::Type::note);
  const QFontMetrics metrics(lettering);
  painter.setFont(lettering);
  double top = donut().bottom() + legend_gap;
  for (const Shown& shown : shown_) {
    if (!in_legend(shown)) continue;
    const QRectF row(theme::grid, top, width() - 2 * theme::grid, legend_row());
    const QRectF sign(row.left(), row.center().y() - tag / 2, tag, tag);
    painter.fillPath(rounded_path(mirrored(*this, sign), 3), shown.segment.color);
    const QRectF text = row.adjusted(tag + theme::grid, 0, 0, 0);
    painter.setPen(theme::text);
    painter.drawText(mirrored(*this, text), line_alignment(*this),
                     metrics.elidedText(shown.segment.label, Qt::ElideRight, static_cast<int>(text.width())));
    top += legend_row();
  }
}

}  // namespace tarnby
