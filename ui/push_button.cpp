#include "ui/push_button.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <array>

#include "ui/paths.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

struct KindLook {
  ButtonKind kind;
  QColor fill;
  QColor text;
  theme::Weight weight;
  int side_space;  // left and right of the text
};

// Short names keep the columns together.
constexpr auto strong = theme::Weight::strong;
constexpr auto regular = theme::Weight::regular;
constexpr QColor nothing = QColor(0, 0, 0, 0);
constexpr QColor lighter = QColor(255, 255, 255, 31);
constexpr QColor darker = QColor(0, 0, 0, 20);

constexpr std::array looks = {
    KindLook{ButtonKind::plain, lighter, theme::text, strong, 24},
    KindLook{ButtonKind::accent, theme::accent, theme::on_accent, strong, 24},
    KindLook{ButtonKind::destructive, theme::destructive, theme::on_destructive, strong, 24},
    KindLook{ButtonKind::shaded, theme::panel, theme::text, strong, 24},
    KindLook{ButtonKind::light, darker, theme::light_text, strong, 24},
    KindLook{ButtonKind::link, nothing, theme::rgb(0x7FE7D8), regular, 8},
};

const KindLook& look_of(ButtonKind kind) {
  return *std::find_if(looks.begin(), looks.end(), [kind](const KindLook& look) { return look.kind == kind; });
}

}  // namespace

PushButton::PushButton(const QString& text, ButtonKind kind, QWidget* parent) : Pressable(parent), kind_(kind) {
  setText(text);
  setFont(theme::font(theme::Type::body, look_of(kind).weight));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PushButton::sizeHint() const {
  const QFontMetrics metrics(font());
  const int height = std::max(theme::button_height, metrics.height() + 2 * theme::grid);
  return {std::max(height, metrics.horizontalAdvance(text()) + 2 * look_of(kind_).side_space), height};
}

Spoken PushButton::spoken() const {
  return {.role = kind_ == ButtonKind::link ? QAccessible::Link : QAccessible::Button};
}

void PushButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPainterPath shape = rounded_path(rect(), height() / 2.0);
  draw_fill(painter, shape);
  draw_text(painter);
  if (!shows_focus()) return;
  // Within the button and in its text's colour, which is always seen on its fill.
  constexpr double inset = 3;
  const QRectF inner = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
  painter.strokePath(rounded_path(inner, inner.height() / 2), QPen(look_of(kind_).text, 2));
}

void PushButton::draw_fill(QPainter& painter, const QPainterPath& shape) const {
  if (kind_ == ButtonKind::link) return;
  painter.fillPath(shape, isEnabled() ? look_of(kind_).fill : theme::card);
  shade_state(painter, this, shape);
}

void PushButton::draw_text(QPainter& painter) const {
  QFont lettering = font();
  lettering.setUnderline(kind_ == ButtonKind::link && underMouse() && isEnabled());
  painter.setFont(lettering);
  painter.setPen(isEnabled()                  ? look_of(kind_).text
                 : kind_ == ButtonKind::light ? theme::light_secondary
                                              : theme::disabled_text());
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

}  // namespace tarnby
