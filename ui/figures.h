#pragma once

#include <QFont>
#include <QPointF>
#include <QString>

class QPainter;

namespace tarnby {

/// Texts with figures of one width, whatever the font: sizes below each other line up, and a growing number does not
/// tremble. Not every font has such figures by itself, and asking it for them needs a newer Qt.
double figures_width(const QFont& font, const QString& text);

/// Draws `text` from `baseline` (its left end) with the painter's pen.
void draw_figures(QPainter& painter, const QFont& font, QPointF baseline, const QString& text);

/// `font`, made as small as `text` needs to be no wider than `width`; not below a readable size.
QFont fitted(const QFont& font, const QString& text, double width);

}  // namespace tarnby
