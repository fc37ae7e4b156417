#include "ui/shadow_label.h"

#include <QPainter>
#include <array>

#include "ui/theme.h"

namespace tarnby {
namespace {

struct Shade {
  QPointF offset;
  int alpha;
};
// Three faint copies look like a blur at any scale and cost no image.
constexpr std::array shades = {Shade{{0, 2.5}, 18}, Shade{{0, 1.75}, 28}, Shade{{0, 1}, 46}};

}  // namespace

ShadowLabel::ShadowLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setFont(theme::font(theme::Type::large, theme::Weight::strong));
  setAlignment(Qt::AlignCenter);
  setTextFormat(Qt::PlainText);
  setContentsMargins(0, 0, 0, 3);  // the shadow's room
}

void ShadowLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(font());
  const QRectF box = contentsRect();
  const int flags = static_cast<int>(alignment()) | (wordWrap() ? Qt::TextWordWrap : 0);
  for (const Shade& shade : shades) {
    painter.setPen(QColor(0, 0, 0, shade.alpha));
    painter.drawText(box.translated(shade.offset), flags, text());
  }
  painter.setPen(isEnabled() ? theme::text : theme::disabled_text());
  painter.drawText(box, flags, text());
}

}  // namespace tarnby
