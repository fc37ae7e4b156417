#pragma once

#include <QCheckBox>

#include "ui/button_look.h"
#include "ui/spoken.h"

namespace tarnby {

/// A box that is off (empty), on (a check mark) or mixed (a bar), with an optional text beside it.
///
/// Mixed is what its data says, by `setCheckState`; a person only turns on and off, and turns a mixed box on.
class CheckButton : public Pressable<QCheckBox>, public Speaks {
  Q_OBJECT
 public:
  explicit CheckButton(QWidget* parent, const QString& text = {});

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  Spoken spoken() const override;

 protected:
  void nextCheckState() override;
  void paintEvent(QPaintEvent* event) override;
};

/// The box alone, for lists that draw their rows themselves. `box` is its outer edge.
void draw_check_box(QPainter& painter, const QRectF& box, Qt::CheckState state);

/// The side of a check box, which grows with the texts.
double check_box_side();

}  // namespace tarnby
