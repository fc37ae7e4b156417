#pragma once

#include <QListView>
#include <vector>

#include "app/parts/app_context.h"
#include "ui/push_button.h"

namespace tarnby {

/// A list of entries that are still there, a row each: its icon, its name, where it lies and why it is still there. The
/// row under the pointer, or else the one the keyboard is on, has the buttons that show it and copy its path; Ctrl and
/// C copies, too. Main thread.
class NotRemovedList : public QListView {
  Q_OBJECT
 public:
  struct Line {
    Url url;
    /// Why it is still there; may be empty.
    QString reason;
  };

  /// @param parent its window title says what the list is.
  NotRemovedList(AppContext& context, const QSize& size, QWidget* parent);
  ~NotRemovedList() override;

  /// To be called once; a short list takes less than its size.
  void show_lines(std::vector<Line> lines);

  PushButton* show_button;
  PushButton* copy_button;

  void show_entry();
  void copy_path();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  class Model;
  class Rows;

  /// The row that has the buttons.
  QModelIndex handled() const;
  void place_tools();

  AppContext& context_;
  Model* model_;
  QWidget* tools_;
  QPersistentModelIndex pointed_;
};

}  // namespace tarnby
