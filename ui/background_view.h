#pragma once

#include <array>

#include "ui/animation.h"
#include "ui/drawing.h"
#include "ui/paths.h"

namespace tarnby {

/// The window's ground: one colour and three curves, which glide to another place for each kind of screen and turn
/// greener when something was cleaned. The first change finds them where they belong if nobody has seen them yet.
/// Screens are its children; it stays behind them.
class BackgroundView : public Drawing {
  Q_OBJECT
 public:
  struct Curve {
    WaveHeights heights = {};
    QColor color;
    friend bool operator==(const Curve&, const Curve&) = default;
  };
  using Curves = std::array<Curve, 3>;  // back to front

  BackgroundView(AnimationClock& clock, QWidget* parent);

  void animation_for_home_view();
  void animation_for_scan_view();
  void animation_for_page_view();
  void animation_for_delete_view();
  void animation_for_cleaned_view();

  /// The curves as they are drawn at this moment.
  Curves curves() const;

  Spoken spoken() const override { return {.role = QAccessible::Pane}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void glide_to(const Curves& curves);

  Animation glide_;  // 0 where they came from, 1 where they go
  Curves from_;
  Curves to_;
};

}  // namespace tarnby
