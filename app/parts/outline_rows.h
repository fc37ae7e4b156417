#pragma once

#include <QModelIndex>
#include <QRect>
#include <QStyledItemDelegate>

namespace tarnby {

class Icons;

/// Where the parts of one row of the outline stand.
struct OutlineRow {
  enum class Part { none, disclosure, check, info };

  QRect header;  // above a group that begins a section
  QRect line;    // the row itself
  QRect disclosure;
  QRect check;
  QRect tag;
  QRect icon;
  QRect label;
  QRect info;
  QRect note;
  QRect size;

  /// @param rect the whole place of the row in the view.
  OutlineRow(const QModelIndex& index, const QRect& rect, Qt::LayoutDirection direction);

  /// The control at a point.
  Part part_at(const QPoint& point) const;

  static int height_of(const QModelIndex& index);
};

/// Draws the rows of the outline.
class OutlineRows : public QStyledItemDelegate {
  Q_OBJECT
 public:
  OutlineRows(Icons& icons, QObject* parent) : QStyledItemDelegate(parent), icons_(icons) {}

  /// A row that stands out while its menu is open.
  QPersistentModelIndex marked_row;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void draw_ground(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                   const OutlineRow& row) const;
  void draw_icon(QPainter& painter, const QModelIndex& index, const OutlineRow& row) const;

  Icons& icons_;
};

}  // namespace tarnby
