#pragma once

#include "ui/animation.h"
#include "ui/drawing.h"

namespace tarnby {

/// A check mark in a bright disc.
class CleanedMark : public Drawing {
  Q_OBJECT
 public:
  CleanedMark(AnimationClock& clock, QWidget* parent);

  /// Draws the mark anew, from its short end to its long one.
  void draw_in();
  /// How much of the mark is drawn, 0 to 1.
  double drawn() const { return drawn_.value(); }

  QSize sizeHint() const override { return {side, side}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  static constexpr int side = 112;

  Animation drawn_;
};

}  // namespace tarnby
