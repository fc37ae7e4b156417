#pragma once

#include <QAbstractButton>
#include <QFocusEvent>
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

  /// True when the keyboard is on this button and is being used: a ring after every click, or on a screen that has just
  /// appeared, would distract.
  bool shows_focus() const { return this->hasFocus() && by_keyboard_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    by_keyboard_ = true;
    this->update();
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return Base::keyPressEvent(event);
    if (!event->isAutoRepeat()) this->click();
  }
  void focusInEvent(QFocusEvent* event) override {
    const Qt::FocusReason reason = event->reason();
    const bool back_again = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    if (!back_again) {
      by_keyboard_ =
          reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    }
    Base::focusInEvent(event);
  }
  bool hitButton(const QPoint& at) const override { return this->rect().contains(at); }

 private:
  bool by_keyboard_ = false;  // the focus came with a key, or a key has been used since
};

/// Lays the pointer's and the finger's shade over what `button` has drawn within `shape`.
void shade_state(QPainter& painter, const QAbstractButton* button, const QPainterPath& shape);

/// A focus ring around `shape`, white beside dark, so that it is seen on every ground.
void draw_focus_ring(QPainter& painter, const QPainterPath& shape);

/// How strongly a disabled control is drawn.
inline constexpr double disabled_opacity = 0.45;

}  // namespace tarnby
