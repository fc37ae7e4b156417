#pragma once

#include <QPushButton>

#include "ui/animation.h"
#include "ui/button_look.h"

namespace tarnby {

/// The big round button that starts it all, in two rings that widen a little under the pointer. Only the disc is
/// pressed.
class HomeView : public Pressable<QPushButton> {
  Q_OBJECT
 public:
  HomeView(const QString& text, AnimationClock& clock, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  bool hitButton(const QPoint& at) const override;

 private:
  /// A circle about the middle; `diameter` is a part of the largest that fits.
  QRectF circle(double diameter) const;

  Animation widening_;  // 0 at rest, 1 under the pointer
};

}  // namespace tarnby
