#include "ui/color_tag.h"

#include <QPainter>

#include "ui/paths.h"

namespace tarnby {

ColorTag::ColorTag(const QColor& color, QWidget* parent, int side) : Drawing(parent), color_(color), side_(side) {
  setFixedSize(side, side);
}

void ColorTag::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(rounded_path(rect(), side_ * 0.27), color_);
}

}  // namespace tarnby
