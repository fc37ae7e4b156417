#pragma once

#include "ui/animation.h"
#include "ui/drawing.h"

namespace tarnby {

/// A slim bar that fills from the side where lines begin.
class ProgressView : public Drawing {
  Q_OBJECT
 public:
  ProgressView(AnimationClock& clock, QWidget* parent);

  double progress() const { return progress_.value(); }
  void set_progress(double progress);
  void animate_progress(double progress, int milliseconds, Animation::Done done = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Animation progress_;
};

/// A bar with round ends, filled by `part` from the side where lines begin; what is filled is never shorter than a dot,
/// unless nothing is.
void draw_bar(QPainter& painter, const QRectF& bar, double part, Qt::LayoutDirection direction);

}  // namespace tarnby
