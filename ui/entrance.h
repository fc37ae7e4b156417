#pragma once

#include <QPointer>

#include "ui/animation.h"

class QGraphicsOpacityEffect;
class QWidget;

namespace tarnby {

/// Lets the content of a screen come and go: it fades and slides a little. The content's layout is what moves, so the
/// widget must have one.
class Entrance {
 public:
  Entrance(AnimationClock& clock, QWidget* content);

  void open(QEasingCurve::Type easing = QEasingCurve::OutCubic);
  /// `done` is called once it is out of sight; at once with reduced motion.
  void close(Animation::Done done);

  /// 0 out of sight, 1 in place.
  double shown() const { return shown_.value(); }

  static constexpr int open_ms = 400;
  static constexpr int close_ms = 300;

 private:
  void draw();

  QPointer<QWidget> content_;
  QPointer<QGraphicsOpacityEffect> effect_;
  int top_margin_;
  Animation shown_;
};

}  // namespace tarnby
