#pragma once

#include <QLabel>

#include "ui/theme.h"

namespace tarnby {

/// A line or paragraph of plain text in one of the theme's sizes and colours, centred.
QLabel* text_label(const QString& text, theme::Type type, const QColor& color, QWidget* parent,
                   theme::Weight weight = theme::Weight::regular);

/// Lets the lines begin where the window's lines do, also those of a text in another direction, such as a name.
void align_at_beginning(QLabel* label, Qt::Alignment vertical = Qt::AlignVCenter);

/// A path as it stands among other words: in a window that is read from right to left it still begins on its left.
QString path_in_words(const QString& path);

/// A paragraph: wraps, and is at most this many pixels wide at text scale 1.
QLabel* paragraph(const QString& text, theme::Type type, const QColor& color, int most_width, QWidget* parent);

}  // namespace tarnby
