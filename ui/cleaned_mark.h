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

  QSize sizeHint() const override { return {112, 112}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Animation drawn_;
};

}  // namespace tarnby
