#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "app/parts/screen.h"
#include "ui/spoken.h"

namespace tarnby {

/// A card that lies over the whole window and is dealt with first: nothing below it is reached, the keyboard stays in
/// it, Escape closes it. It owns itself and goes when it is closed or its window goes; then the keyboard is back where
/// it was.
class Overlay : public QWidget, public Speaks {
  Q_OBJECT
 public:
  ~Overlay() override;

  Screen& content() { return *content_; }
  Spoken spoken() const override { return {.role = QAccessible::Dialog, .text = accessibleDescription()}; }

  /// Shows it; called once, when it is complete.
  void open();
  void close_overlay();

 protected:
  Overlay(std::unique_ptr<Screen> content, QWidget* window);

  /// Puts the content where it belongs; called whenever the window's size has changed.
  virtual void place_content() = 0;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool focusNextPrevChild(bool next) override;

  /// A press beside the content.
  virtual void pressed_beside() {}

 private:
  bool holds(const QWidget* widget) const;

  Screen* content_;  // a child
  QPointer<QWidget> focus_before_;
};

/// A card in the middle of the window that wants an answer. Escape is no answer.
class Sheet : public Overlay {
  Q_OBJECT
 public:
  static Sheet* present(std::unique_ptr<Screen> content, QWidget* window);

 protected:
  void place_content() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  using Overlay::Overlay;
};

/// A small card with a pointer to what it tells about. Goes with the next press elsewhere.
class Popover : public Overlay {
  Q_OBJECT
 public:
  enum class Place { beside, below };
  /// @param anchor what it points to, in the window.
  /// @param place where it is in respect of that, as far as there is room.
  static Popover* present(std::unique_ptr<Screen> content, QWidget* window, const QRect& anchor,
                          Place place = Place::beside);

 protected:
  void place_content() override;
  void pressed_beside() override { close_overlay(); }
  void paintEvent(QPaintEvent* event) override;

 private:
  using Overlay::Overlay;
  QPoint place_beside(QSize size) const;
  QPoint place_below(QSize size) const;

  QRect anchor_;
  Place place_ = Place::beside;
};

}  // namespace tarnby
