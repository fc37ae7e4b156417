#pragma once

#include <QWidget>
#include <memory>
#include <span>

#include "tests/support/hand_animation_clock.h"

class QGridLayout;

namespace tarnby {

/// A board of widgets in their states, each with a word on its state below.
class Board {
 public:
  Board();

  test::HandAnimationClock& clock() { return clock_; }
  QWidget* ground() { return ground_.get(); }

  /// Puts `widget` into the next cell; a row has as many as `set_columns` says.
  template <class Widget>
  Widget* add(Widget* widget, const QString& state) {
    place(widget, state);
    return widget;
  }
  void set_columns(int columns) { columns_ = columns; }
  void show();

 private:
  void place(QWidget* widget, const QString& state);

  test::HandAnimationClock clock_;
  std::unique_ptr<QWidget> ground_;
  QGridLayout* grid_;
  int columns_ = 5;
  int count_ = 0;
};

struct BoardRow {
  const char* name;
  void (*fill)(Board& board);
};

/// Every component, one a board.
std::span<const BoardRow> component_boards();

}  // namespace tarnby
