#pragma once

#include <QElapsedTimer>
#include <QTreeView>

#include "app/parts/outline_model.h"
#include "app/parts/outline_rows.h"

namespace tarnby {

/// An outline of groups and entries. Space ticks the row that the keyboard is on, Shift and Space previews it, Return
/// opens a group, F1 tells about it, the menu key or Shift and F10 asks for its menu, typing finds a row; a space
/// within a row's name is part of what is typed.
class OutlineView : public QTreeView {
  Q_OBJECT
 public:
  OutlineView(Icons& icons, QWidget* parent);

  /// Where the info mark of a group is, in the viewport.
  QRect info_place(const QModelIndex& group) const;
  /// Lets a row stand out while its menu is open; an invalid index ends that.
  void mark_row(const QModelIndex& index);

  void keyboardSearch(const QString& typed) override;

 Q_SIGNALS:
  void about_asked(const QModelIndex& group);
  void disclosure_asked(const QModelIndex& group);
  void preview_asked(const QModelIndex& entry);
  void menu_asked(const QModelIndex& entry, const QPoint& at);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}
  void initViewItemOption(QStyleOptionViewItem* option) const override;
  void updateGeometries() override;

 private:
  struct Hit {
    QPersistentModelIndex index;
    OutlineRow::Part part = OutlineRow::Part::none;
    friend bool operator==(const Hit& a, const Hit& b) { return a.index == b.index && a.part == b.part; }
  };
  Hit hit_at(const QPoint& point) const;
  void press(const Hit& hit);
  void tick(const QModelIndex& index);
  bool is_typing_on() const;
  void ask_menu_by_keyboard();
  QRect whole_row(const QModelIndex& index) const;

  OutlineRows* rows_;
  Hit pressed_;
  bool by_keyboard_ = false;
  bool measuring_ = false;
  QString typed_;
  QElapsedTimer since_typed_;
};

}  // namespace tarnby
