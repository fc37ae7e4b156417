#include "app/junk/category_row.h"

#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

CategoryRow::CategoryRow(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_Hover);
  setCursor(Qt::PointingHandCursor);
}

void CategoryRow::set_current(bool current) {
  current_ = current;
  update();
}

void CategoryRow::mousePressEvent(QMouseEvent* event) {
  held_ = event->button() == Qt::LeftButton;
}

void CategoryRow::mouseReleaseEvent(QMouseEvent* event) {
  const bool released = event->button() == Qt::LeftButton && std::exchange(held_, false);
  if (released && rect().contains(event->position().toPoint())) Q_EMIT pressed();
}

void CategoryRow::paintEvent(QPaintEvent*) {
  if (!current_ && !underMouse()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(rounded_path(QRectF(rect()), theme::grid + 2), current_ ? theme::card : theme::hover);
}

}  // namespace tarnby
