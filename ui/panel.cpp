#include "ui/panel.h"

#include <QPainter>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {

void Panel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(rounded_path(rect(), theme::panel_radius), theme::panel);
}

void Bar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::panel);
}

}  // namespace tarnby
