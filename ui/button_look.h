#pragma once

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPainterPath>

class QPainter;

namespace tarnby {

/// A button of the base class `Base` that Enter presses like Space, that is pressed anywhere within it, and that is
/// drawn anew when the pointer comes and goes.
template <class Base>
class Pressable : public Base {
 public:
  explicit Pressable(QWidget* parent) : Base(parent) {
    this->setAttribute(Qt::WA_Hover);
    this->setFocusPolicy(Qt::StrongFocus);
    this->setCursor(Qt::PointingHandCursor);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return Base::keyPressEvent(event);
    if (!event->isAutoRepeat()) this->click();
  }
  bool hitButton(const QPoint& at) const override { return this->rect().contains(at); }
};

/// True when the keyboard is on this widget and the person uses the keyboard: a ring after every click would only
/// distract.
bool shows_focus(const QWidget* widget);

/// Lays the pointer's and the finger's shade over what `button` has drawn within `shape`.
void shade_state(QPainter& painter, const QAbstractButton* button, const QPainterPath& shape);

/// A focus ring around `shape`, white beside dark, so that it is seen on every ground.
void draw_focus_ring(QPainter& painter, const QPainterPath& shape);

/// How strongly a disabled control is drawn.
inline constexpr double disabled_opacity = 0.45;

}  // namespace tarnby
