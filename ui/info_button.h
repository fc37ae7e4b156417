#pragma once

#include <QPushButton>

#include "ui/button_look.h"

namespace tarnby {

/// A small circled "i" that explains what stands beside it. Its accessible name says what it explains.
class InfoButton : public Pressable<QPushButton> {
  Q_OBJECT
 public:
  InfoButton(const QString& name, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// The circle alone, for lists that draw their rows themselves. `circle` is its outer edge.
void draw_info_mark(QPainter& painter, const QRectF& circle, const QColor& color);

}  // namespace tarnby
