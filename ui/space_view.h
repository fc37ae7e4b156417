#pragma once

#include "ui/animation.h"
#include "ui/drawing.h"

namespace tarnby {

/// A disk as a bar: what is used, what is free, each with its words below.
class SpaceView : public Drawing {
  Q_OBJECT
 public:
  SpaceView(AnimationClock& clock, QWidget* parent);

  /// `used` is a part of the whole, 0 to 1; the texts say both sides ("312 GB used", "188 GB free").
  void show_space(double used, const QString& used_text, const QString& free_text);
  /// How much of the bar is filled at this moment.
  double filled() const { return used_.value(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Animation used_;
  QString used_text_;
  QString free_text_;
};

}  // namespace tarnby
