#pragma once

#include "ui/animation.h"
#include "ui/changing_label.h"
#include "ui/drawing.h"

namespace tarnby {

/// A ring that fills clockwise from the top, with a big number and a line below it in the middle.
///
/// The stroke's end runs at an even pace to where it is sent. See `Animation` for what `done` promises.
class RingView : public Drawing {
  Q_OBJECT
 public:
  RingView(AnimationClock& clock, QWidget* parent);

  /// How much of the ring is filled now, 0 to 1.
  double stroke_end() const { return stroke_.value(); }
  void set_stroke_end(double end);
  void animate_stroke_end(double end, int milliseconds, Animation::Done done = nullptr);

  void show_number(const QString& number);
  void show_caption(const QString& caption);
  NumberLabel* number() const { return number_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

  /// Draws the ring's line; `line` is the middle of its stroke.
  virtual void draw_ring(QPainter& painter, const QRectF& line);
  /// How wide the texts may be, as a part of the ring's inner diameter.
  virtual double text_room() const { return 0.86; }
  /// The width of the ring's stroke at the present size.
  double stroke_width() const;

 private:
  Animation stroke_;
  NumberLabel* number_;
  FadingLabel* caption_;
};

}  // namespace tarnby
