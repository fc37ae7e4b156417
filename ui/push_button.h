#pragma once

#include <QPushButton>

#include "ui/button_look.h"
#include "ui/spoken.h"

namespace tarnby {

/// What a push button is for; see the table in the source for its look.
enum class ButtonKind {
  plain,
  accent,       // the one thing to do here
  destructive,  // only what removes
  shaded,       // plain, on coloured or bright ground, where a lighter fill would make white text hard to read
  light,        // plain, on the light ground of a window with dark text
  link,         // a text that leads somewhere
};

/// A button with a text and fully round ends. Read out as a button (a link for `link`) under its text.
class PushButton : public Pressable<QPushButton>, public Speaks {
  Q_OBJECT
 public:
  PushButton(const QString& text, ButtonKind kind, QWidget* parent);

  ButtonKind kind() const { return kind_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void draw_fill(QPainter& painter, const QPainterPath& shape) const;
  void draw_text(QPainter& painter) const;

  ButtonKind kind_;
};

}  // namespace tarnby
