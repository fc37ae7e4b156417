#include "ui/disclosure_button.h"

#include <QPainter>

#include "ui/motion.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr int side = 24;
constexpr double triangle = 8;

}  // namespace

DisclosureButton::DisclosureButton(const QString& name, AnimationClock& clock, QWidget* parent)
    : Pressable(parent), turn_(clock, 0, [this] { update(); }) {
  setAccessibleName(name);
  setCheckable(true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(this, &QAbstractButton::toggled, this, [this](bool open) {
    turn_.move_to(open ? 1 : 0, isVisible() ? motion::fade_ms : 0, QEasingCurve::InOutQuad);
    tell_change(this);
  });
}

QSize DisclosureButton::sizeHint() const {
  return {side, side};
}

Spoken DisclosureButton::spoken() const {
  QAccessible::State state;
  state.expandable = true;
  state.expanded = isChecked();
  state.collapsed = !isChecked();
  return {.role = QAccessible::Button, .state = state};
}

void DisclosureButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabled_opacity);
  const QPainterPath around = rounded_path(QRectF(rect()).adjusted(2, 2, -2, -2), 6);
  shade_state(painter, this, around);
  QRectF box(0, 0, triangle, triangle);
  box.moveCenter(QRectF(rect()).center());
  painter.fillPath(pointer_path(box, isRightToLeft() ? 180 - 90 * turn_.value() : 90 * turn_.value()),
                   theme::secondary);
  if (shows_focus()) draw_focus_ring(painter, around);
}

}  // namespace tarnby
