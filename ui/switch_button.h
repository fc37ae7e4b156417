#pragma once

#include <QCheckBox>

#include "ui/animation.h"
#include "ui/button_look.h"
#include "ui/spoken.h"

namespace tarnby {

/// A two-state switch: a knob at the left (off) or at the right (on, with a check mark beside it, so that the state
/// is not told by colour alone). Its signals and state are those of a check box.
class SwitchButton : public Pressable<QCheckBox>, public Speaks {
  Q_OBJECT
 public:
  SwitchButton(AnimationClock& clock, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Animation knob_;  // 0 at the left, 1 at the right
};

}  // namespace tarnby
