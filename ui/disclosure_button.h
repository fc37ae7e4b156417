#pragma once

#include <QAbstractButton>

#include "ui/animation.h"
#include "ui/button_look.h"
#include "ui/spoken.h"

namespace tarnby {

/// A small triangle that points right when closed and down when open. Checked means open.
class DisclosureButton : public Pressable<QAbstractButton>, public Speaks {
  Q_OBJECT
 public:
  DisclosureButton(const QString& name, AnimationClock& clock, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Animation turn_;  // 0 closed, 1 open
};

}  // namespace tarnby
