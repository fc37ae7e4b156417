#pragma once

#include <QColor>

#include "ui/drawing.h"

namespace tarnby {

/// A small square in the colour of one kind of thing.
class ColorTag : public Drawing {
  Q_OBJECT
 public:
  ColorTag(const QColor& color, QWidget* parent, int side = 10);

  QSize sizeHint() const override { return {side_, side_}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor color_;
  int side_;
};

}  // namespace tarnby
