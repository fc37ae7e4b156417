#pragma once

#include <QWidget>

namespace tarnby {

/// The line of one category: all of it is a target, also beside the controls that stand in it. It is lifted a little
/// under the pointer, and while its category is the one that is told about.
class CategoryRow : public QWidget {
  Q_OBJECT
 public:
  explicit CategoryRow(QWidget* parent);

  bool is_current() const { return current_; }
  void set_current(bool current);

 Q_SIGNALS:
  /// Pressed anywhere but on a control.
  void pressed();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool current_ = false;
  bool held_ = false;
};

}  // namespace tarnby
