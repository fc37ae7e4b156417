#include "ui/text_label.h"

#include <algorithm>

namespace tarnby {

QLabel* text_label(const QString& text, theme::Type type, const QColor& color, QWidget* parent, theme::Weight weight) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setFont(theme::font(type, weight));
  QPalette colors = label->palette();
  colors.setColor(QPalette::WindowText, color);
  label->setPalette(colors);
  return label;
}

void align_at_beginning(QLabel* label, Qt::Alignment vertical) {
  const Qt::Alignment side = label->isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
  label->setAlignment(side | Qt::AlignAbsolute | vertical);
}

QLabel* paragraph(const QString& text, theme::Type type, const QColor& color, int most_width, QWidget* parent) {
  QLabel* label = text_label(text, type, color, parent);
  label->setWordWrap(true);
  const int width = static_cast<int>(most_width * std::max(1.0, theme::text_scale()));
  label->setFixedWidth(width);
  label->setMinimumHeight(label->heightForWidth(width));
  return label;
}

}  // namespace tarnby
