#include "ui/text_label.h"

#include <QGuiApplication>
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

QString path_in_words(const QString& path) {
  // Isolated, so that nothing around it takes its slashes for a part of the sentence.
  return QGuiApplication::isRightToLeft() && !path.isEmpty() ? QChar(0x2066) + path + QChar(0x2069) : path;
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
