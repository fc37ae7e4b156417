#pragma once

#include "ui/animation.h"
#include "ui/drawing.h"

namespace tarnby {

/// A disk as a slim bar: what is used, and behind it what has become free just now.
class FreedView : public Drawing {
  Q_OBJECT
 public:
  FreedView(AnimationClock& clock, QWidget* parent);

  /// Parts of the whole, 0 to 1; what lies between them glides away.
  void show_parts(double used_before, double used_after);
  double used_after() const { return used_.target(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Animation used_;
  double used_before_ = 0;
};

}  // namespace tarnby
