#pragma once

#include "ui/animation.h"
#include "ui/drawing.h"

namespace tarnby {

/// Rings that widen from the middle and fade, to say that something is going on. With reduced motion they stand still.
class PulseView : public Drawing {
  Q_OBJECT
 public:
  PulseView(AnimationClock& clock, QWidget* parent);

  bool pulsing() const { return pulsing_; }
  /// It moves only while it is seen.
  void set_pulsing(bool pulsing);

  QSize sizeHint() const override { return {side, side}; }
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  static constexpr int side = 160;

  void run_or_rest();

  Animation phase_;
  bool pulsing_ = false;
};

}  // namespace tarnby
