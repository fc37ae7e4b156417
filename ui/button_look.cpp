#include "ui/button_look.h"

#include <QPainter>
#include <QPen>

#include "ui/theme.h"

namespace tarnby {

void shade_state(QPainter& painter, const QAbstractButton* button, const QPainterPath& shape) {
  if (!button->isEnabled()) return;
  if (button->isDown()) {
    painter.fillPath(shape, theme::pressed);
  } else if (button->underMouse()) {
    painter.fillPath(shape, theme::pointed);
  }
}

void draw_focus_ring(QPainter& painter, const QPainterPath& shape) {
  painter.strokePath(shape, QPen(theme::rgb(0x1E1F26), 4));
  painter.strokePath(shape, QPen(theme::text, 2));
}

}  // namespace tarnby
