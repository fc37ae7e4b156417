#include "app/access/folder_card.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/paths.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int card_width = 300;
constexpr int text_width = 236;
constexpr int picture_side = 36;
constexpr int picture_top = 32;

QPainterPath house_path(const QRectF& box) {
  const auto at = [&](double x, double y) { return QPointF(box.x() + x * box.width(), box.y() + y * box.height()); };
  QPainterPath path(at(0.04, 0.5));
  path.lineTo(at(0.5, 0.08));
  path.lineTo(at(0.96, 0.5));
  path.moveTo(at(0.17, 0.42));
  path.lineTo(at(0.17, 0.92));
  path.lineTo(at(0.83, 0.92));
  path.lineTo(at(0.83, 0.42));
  path.moveTo(at(0.42, 0.92));
  path.lineTo(at(0.42, 0.64));
  path.lineTo(at(0.58, 0.64));
  path.lineTo(at(0.58, 0.92));
  return path;
}

QPainterPath tiles_path(const QRectF& box) {
  constexpr int rows = 3;
  const double tile = box.width() * 0.24;
  const double step = (box.width() - tile) / (rows - 1);
  QPainterPath path;
  for (int at = 0; at < rows * rows; ++at) {
    const QRectF square(box.x() + (at % rows) * step, box.y() + (at / rows) * step, tile, tile);  // NOLINT: whole rows
    path.addPath(rounded_path(square, 2.5));
  }
  return path;
}

QColor ground() {
  return theme::over(theme::card, theme::background);
}

}  // namespace

FolderCard::FolderCard(Picture picture, const QString& title, const QString& why, QAbstractButton* button,
                       QWidget* parent)
    : QWidget(parent), picture_(picture), button_(button) {
  setFixedWidth(static_cast<int>(card_width * std::max(1.0, theme::text_scale())));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(3 * theme::grid, picture_top + picture_side + 2 * theme::grid, 3 * theme::grid,
                             3 * theme::grid);
  layout->setSpacing(theme::grid);
  layout->addWidget(text_label(title, theme::Type::title, theme::text, this, theme::Weight::strong));
  layout->addWidget(paragraph(why, theme::Type::note, theme::readable(theme::secondary, ground()), text_width, this), 0,
                    Qt::AlignHCenter);
  state = paragraph(QStringLiteral(" "), theme::Type::note, theme::text, text_width, this);
  layout->addWidget(state, 0, Qt::AlignHCenter);
  layout->addStretch();
  layout->addSpacing(theme::grid);
  layout->addWidget(button, 0, Qt::AlignHCenter);
}

void FolderCard::show_state(const QString& words, Tone tone) {
  QPalette colors = state->palette();
  colors.setColor(QPalette::WindowText,
                  theme::readable(tone == Tone::quiet ? theme::secondary : theme::amber, ground()));
  state->setPalette(colors);
  state->setText(words);
  state->setMinimumHeight(std::max(0, state->heightForWidth(state->width())));
  button_->setAccessibleDescription(words);
}

QString FolderCard::line_of(const QString& path) const {
  QString line = state->fontMetrics().elidedText(path, Qt::ElideMiddle, state->width());
  line.replace(u'/', QStringLiteral("/\u2060"));  // or a line of text would end behind it
  return path_in_words(line);
}

void FolderCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(rounded_path(rect(), theme::panel_radius), theme::card);
  const QRectF box((width() - picture_side) / 2.0, picture_top, picture_side, picture_side);
  if (picture_ == Picture::applications) return painter.fillPath(tiles_path(box), theme::text);
  painter.strokePath(house_path(box), QPen(theme::text, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

}  // namespace tarnby
