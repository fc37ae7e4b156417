#pragma once

#include <QAbstractButton>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainterPath>

class QPainter;

namespace tarnby {

/// The keyboard comes back to where it was before a menu, a sheet or another window; a ring is shown as before.
constexpr bool is_back_again(Qt::FocusReason reason) {
  return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}
/// The keyboard was brought by a key, or to where the next key counts: a ring shows where that is.
constexpr bool is_by_keyboard(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

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
    if (!is_back_again(event->reason())) by_keyboard_ = is_by_keyboard(event->reason());
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
