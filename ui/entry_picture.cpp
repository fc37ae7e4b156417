#include "ui/entry_picture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

// Everything below is drawn into a square of this side.
constexpr double side = 16;

constexpr QColor paper = theme::rgb(0xE6E8F0);
constexpr QColor fold = theme::rgb(0xA9ACBA);
constexpr QColor ink = theme::rgb(0x5B5D6A);

QPen line(const QColor& color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void draw_page(QPainter& painter) {
  QPainterPath page(QPointF(4, 1));
  page.lineTo(9.5, 1);
  page.lineTo(13.5, 5);
  page.lineTo(13.5, 14);
  page.arcTo(11.5, 13, 2, 2, 0, -90);
  page.lineTo(3.5, 15);
  page.arcTo(2.5, 13, 2, 2, -90, -90);
  page.lineTo(2.5, 2);
  page.arcTo(2.5, 1, 2, 2, 180, -90);
  page.closeSubpath();
  painter.fillPath(page, paper);
  QPainterPath corner(QPointF(9.5, 1));
  corner.lineTo(13.5, 5);
  corner.lineTo(9.5, 5);
  corner.closeSubpath();
  painter.fillPath(corner, fold);
}

void draw_lines(QPainter& painter) {
  painter.setPen(line(ink, 1));
  for (const double y : {7.5, 9.75, 12.0}) painter.drawLine(QPointF(5, y), QPointF(y > 11 ? 9 : 11, y));  // NOLINT
}

void draw_hills(QPainter& painter) {
  QPainterPath hills(QPointF(4, 13));
  hills.lineTo(6.75, 8.5);
  hills.lineTo(8.5, 11);
  hills.lineTo(9.75, 9.5);
  hills.lineTo(12, 13);
  hills.closeSubpath();
  painter.fillPath(hills, theme::green);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::orange);
  painter.drawEllipse(QPointF(10.25, 7.5), 1, 1);
}

void draw_note(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::pink);
  painter.drawEllipse(QPointF(6.25, 12), 1.5, 1.25);
  painter.drawEllipse(QPointF(10.25, 11.25), 1.5, 1.25);
  painter.setPen(line(theme::pink, 1));
  painter.drawPolyline(QPolygonF({{7.25, 12}, {7.25, 7.75}, {11.25, 7}, {11.25, 11.25}}));
}

void draw_zip(QPainter& painter) {
  for (int tooth = 0; tooth < 5; ++tooth) {
    painter.fillRect(QRectF(tooth % 2 == 0 ? 6.5 : 8, 2 + 1.5 * tooth, 1.5, 1.5), theme::orange);  // NOLINT
  }
  painter.fillPath(rounded_path({6.5, 10, 3, 3.5}, 0.75), theme::orange);
}

void draw_folder(QPainter& painter) {
  QPainterPath back = rounded_path({1, 2.5, 7, 5}, 1.25);
  back.addPath(rounded_path({1, 4, 14, 8}, 1.25));
  back.setFillRule(Qt::WindingFill);
  painter.fillPath(back, theme::rgb(0x3F7FD0));
  painter.fillPath(rounded_path({1, 5.5, 14, 8.5}, 1.25), theme::azure);
}

void draw_box(QPainter& painter) {
  painter.fillPath(rounded_path({2, 5, 12, 9.5}, 1), theme::amber);
  painter.fillPath(rounded_path({1, 2, 14, 4}, 1), theme::rgb(0xD99A0F));
  painter.fillPath(rounded_path({6, 8, 4, 1.5}, 0.75), theme::rgb(0x7A5200));
}

void draw_tiles(QPainter& painter) {
  QLinearGradient ground(QPointF(1, 1), QPointF(15, 15));
  ground.setColorAt(0, theme::gradient_start);
  ground.setColorAt(1, theme::gradient_end);
  painter.fillPath(rounded_path({1, 1, 14, 14}, 3.25), ground);
  for (const QPointF at : {QPointF(4.25, 4.25), QPointF(8.75, 4.25), QPointF(4.25, 8.75), QPointF(8.75, 8.75)}) {
    painter.fillPath(rounded_path({at, QSizeF(3, 3)}, 0.75), theme::text);
  }
}

struct Drawing {
  bool on_page;
  void (*draw)(QPainter& painter);
};

/// In the order of the pictures.
constexpr Drawing drawings[] = {
    {true, nullptr},
    {true, draw_lines},
    {true, draw_hills},
    {true,
     [](QPainter& painter) {
       painter.fillPath(pointer_path({5.25, 6.75, 6, 6}, 0), theme::violet);
     }},
    {true, draw_note},
    {true, draw_zip},
    {false, draw_box},
    {false, draw_folder},
    {false, draw_tiles},
};

}  // namespace

void draw_entry_picture(QPainter& painter, const QRectF& box, EntryPicture what) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(box.topLeft());
  painter.scale(box.width() / side, box.height() / side);
  const Drawing& drawing = drawings[static_cast<std::size_t>(what)];
  if (drawing.on_page) draw_page(painter);
  if (drawing.draw != nullptr) drawing.draw(painter);
  painter.restore();
}

}  // namespace tarnby
