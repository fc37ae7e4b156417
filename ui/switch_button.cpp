#include "ui/switch_button.h"

#include <QPainter>
#include <QPen>

#include "ui/motion.h"
#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

constexpr double track_width = 44;
constexpr double track_height = 24;
constexpr int margin = 4;  // room for the focus ring
constexpr double mark_side = 18;
constexpr double mark_edge = 4;

}  // namespace

SwitchButton::SwitchButton(AnimationClock& clock, QWidget* parent)
    : Pressable(parent), knob_(clock, 0, [this] { update(); }) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(this, &QCheckBox::toggled, this, [this](bool on) {
    // Set up before it is shown, it stands where it belongs; only a person's change is seen moving.
    knob_.move_to(on ? 1 : 0, isVisible() ? motion::fade_ms : 0, QEasingCurve::InOutQuad);
  });
}

QSize SwitchButton::sizeHint() const {
  return {static_cast<int>(track_width) + 2 * margin, static_cast<int>(track_height) + 2 * margin};
}

Spoken SwitchButton::spoken() const {
  QAccessible::State state;
  state.checkable = true;
  state.checked = isChecked();
  return {.role = QAccessible::CheckBox, .state = state};
}

void SwitchButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabled_opacity);
  const QRectF track((width() - track_width) / 2, (height() - track_height) / 2, track_width, track_height);
  const QPainterPath shape = rounded_path(track, track_height / 2);
  painter.fillPath(shape, theme::blend(theme::rgb(0x7A7D8C), theme::accent, knob_.value()));
  shade_state(painter, this, shape);
  const bool to_the_left = isRightToLeft();
  if (isChecked()) {
    const QRectF mark(to_the_left ? track.right() - mark_edge - mark_side : track.left() + mark_edge,
                      track.top() + (track_height - mark_side) / 2, mark_side, mark_side);
    painter.strokePath(check_path(mark), QPen(theme::on_accent, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  }
  constexpr double inset = 2;
  const double knob = track_height - 2 * inset;
  const double part = to_the_left ? 1 - knob_.value() : knob_.value();
  const double left = track.left() + inset + part * (track_width - track_height);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::text);
  painter.drawEllipse(QRectF(left, track.top() + inset, knob, knob));
  if (shows_focus()) draw_focus_ring(painter, rounded_path(track.adjusted(-2, -2, 2, 2), track_height));
}

}  // namespace tarnby
