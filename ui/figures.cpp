#include "ui/figures.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "ui/theme.h"

namespace tarnby {
namespace {

bool is_figure(QChar c) {
  return c >= u'0' && c <= u'9';
}

double figure_advance(const QFontMetricsF& metrics) {
  double widest = 0;
  for (char16_t c = u'0'; c <= u'9'; ++c) widest = std::max(widest, metrics.horizontalAdvance(QChar(c)));
  return widest;
}

/// Calls `piece(text, offset, width)` for every figure and for every run without one; returns the width of the whole.
template <class Piece>
double for_each_piece(const QFontMetricsF& metrics, const QString& text, Piece piece) {
  const double figure = figure_advance(metrics);
  double offset = 0;
  for (qsizetype begin = 0; begin < text.size();) {
    qsizetype end = begin + 1;
    if (!is_figure(text[begin])) {
      while (end < text.size() && !is_figure(text[end])) ++end;
    }
    const QString part = text.mid(begin, end - begin);
    const double width = is_figure(text[begin]) ? figure : metrics.horizontalAdvance(part);
    piece(part, offset, width);
    offset += width;
    begin = end;
  }
  return offset;
}

}  // namespace

double figures_width(const QFont& font, const QString& text) {
  return for_each_piece(QFontMetricsF(font), text, [](const QString&, double, double) {});
}

void draw_figures(QPainter& painter, const QFont& font, QPointF baseline, const QString& text) {
  painter.setFont(font);
  const QFontMetricsF metrics(font);
  for_each_piece(metrics, text, [&](const QString& part, double offset, double width) {
    const double centred = is_figure(part[0]) ? (width - metrics.horizontalAdvance(part)) / 2 : 0;
    painter.drawText(baseline + QPointF(offset + centred, 0), part);
  });
}

QFont fitted(const QFont& font, const QString& text, double width) {
  QFont result = font;
  const int smallest = std::min(font.pixelSize(), static_cast<int>(theme::Type::tiny));
  for (int size = font.pixelSize(); size >= smallest; --size) {
    result.setPixelSize(size);
    if (figures_width(result, text) <= width) break;
  }
  return result;
}

}  // namespace tarnby
