#pragma once

#include <QLabel>

#include "ui/animation.h"

namespace tarnby {

/// A line of text that changes before the eye. What it says (its text, its accessible name) is the new text at once;
/// only the drawing follows. Of several changes in quick succession the last one stays. While it is hidden nothing
/// moves.
class ChangingLabel : public QLabel {
  Q_OBJECT
 public:
  ChangingLabel(AnimationClock& clock, int milliseconds, QWidget* parent);

  void show_text(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;
  /// Draws `before` going and `now` coming; `part` runs from 0 to 1.
  virtual void draw_change(QPainter& painter, const QString& before, const QString& now, double part) = 0;
  /// Draws one text at a distance below its place.
  void draw_line(QPainter& painter, const QString& text, double below) const;

 private:
  Animation change_;
  int milliseconds_;
  QString before_;
};

/// Fades from one line to the next.
class FadingLabel : public ChangingLabel {
  Q_OBJECT
 public:
  FadingLabel(AnimationClock& clock, QWidget* parent);

 protected:
  void draw_change(QPainter& painter, const QString& before, const QString& now, double part) override;
};

/// Pushes the old number up and out by the new one. A number too long for its place is drawn smaller.
class NumberLabel : public ChangingLabel {
  Q_OBJECT
 public:
  NumberLabel(AnimationClock& clock, QWidget* parent);

 protected:
  void draw_change(QPainter& painter, const QString& before, const QString& now, double part) override;
};

}  // namespace tarnby
