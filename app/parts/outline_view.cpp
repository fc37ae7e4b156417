#include "app/parts/outline_view.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>

#include "app/icons/icons.h"
#include "ui/button_look.h"
#include "ui/motion.h"
#include "ui/scroller.h"
#include "ui/theme.h"

namespace tarnby {

OutlineView::OutlineView(Icons& icons, QWidget* parent) : QTreeView(parent), rows_(new OutlineRows(icons, this)) {
  setItemDelegate(rows_);
  setHeaderHidden(true);
  header()->setStretchLastSection(true);
  setIndentation(0);
  setRootIsDecorated(false);
  setMouseTracking(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAnimated(!motion::reduced());
  use_scrollers(this);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // its place is kept, or every size would jump when a group opens
  verticalScrollBar()->setSingleStep(theme::file_row_height);
  connect(&icons, &Icons::arrived, viewport(), qOverload<>(&QWidget::update));
}

/// A cell reaches from one side of the view to the other.
QRect OutlineView::whole_row(const QModelIndex& index) const {
  const QRect cell = visualRect(index);
  return {0, cell.top(), viewport()->width(), cell.height()};
}

QRect OutlineView::info_place(const QModelIndex& group) const {
  return OutlineRow(group, whole_row(group), layoutDirection()).info;
}

void OutlineView::mark_row(const QModelIndex& index) {
  rows_->marked_row = index;
  viewport()->update();
}

OutlineView::Hit OutlineView::hit_at(const QPoint& point) const {
  const QModelIndex index = indexAt(point);
  if (!index.isValid()) return {};
  return {index, OutlineRow(index, whole_row(index), layoutDirection()).part_at(point)};
}

void OutlineView::tick(const QModelIndex& index) {
  if (!index.data(Qt::CheckStateRole).isValid()) return;
  // A box that is on in part turns fully on first.
  const bool on = index.data(Qt::CheckStateRole).value<Qt::CheckState>() == Qt::Checked;
  model()->setData(index, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void OutlineView::press(const Hit& hit) {
  const QModelIndex index = hit.index;
  switch (hit.part) {
    case OutlineRow::Part::check:
      return tick(index);
    case OutlineRow::Part::disclosure:
      Q_EMIT disclosure_asked(index);
      return;
    case OutlineRow::Part::info:
      Q_EMIT about_asked(index);
      return;
    case OutlineRow::Part::none:
      return;
  }
}

void OutlineView::mousePressEvent(QMouseEvent* event) {
  by_keyboard_ = false;
  pressed_ = event->button() == Qt::LeftButton ? hit_at(event->position().toPoint()) : Hit();
  QTreeView::mousePressEvent(event);
}

/// A control is pressed when the button goes down and up over it.
void OutlineView::mouseReleaseEvent(QMouseEvent* event) {
  const Hit hit = event->button() == Qt::LeftButton ? hit_at(event->position().toPoint()) : Hit();
  QTreeView::mouseReleaseEvent(event);
  if (hit.index.isValid() && hit == pressed_) press(hit);
  pressed_ = {};
}

void OutlineView::keyboardSearch(const QString& typed) {
  if (!since_typed_.isValid() || since_typed_.hasExpired(QApplication::keyboardInputInterval())) typed_.clear();
  since_typed_.start();
  typed_ += typed;
  QTreeView::keyboardSearch(typed);
}

/// True in the middle of typing the current row's name, where a space follows.
bool OutlineView::is_typing_on() const {
  if (!since_typed_.isValid() || since_typed_.hasExpired(QApplication::keyboardInputInterval())) return false;
  return currentIndex().data().toString().startsWith(typed_ + u' ', Qt::CaseInsensitive);
}

void OutlineView::keyPressEvent(QKeyEvent* event) {
  by_keyboard_ = true;
  const QModelIndex index = currentIndex();
  const bool group = OutlineModel::is_group(index);
  switch (event->key()) {
    case Qt::Key_Space:
      if (!index.isValid()) break;
      if (is_typing_on()) return keyboardSearch(event->text());
      if ((event->modifiers() & Qt::ShiftModifier) == 0) return tick(index);
      if (!group) Q_EMIT preview_asked(index);
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (group) Q_EMIT disclosure_asked(index);
      return;
    case Qt::Key_F1:
      if (index.data(OutlineModel::about_role).toBool()) Q_EMIT about_asked(index);
      return;
    case Qt::Key_F10:  // for keyboards without a menu key
      if ((event->modifiers() & Qt::ShiftModifier) == 0) break;
      return ask_menu_by_keyboard();
    default:
      break;
  }
  QTreeView::keyPressEvent(event);
}

void OutlineView::ask_menu_by_keyboard() {
  const QModelIndex index = currentIndex();
  if (!index.isValid() || OutlineModel::is_group(index)) return;
  scrollTo(index);
  const QRect row = visualRect(index);
  Q_EMIT menu_asked(index, viewport()->mapToGlobal(QPoint(row.center().x(), row.bottom())));
}

void OutlineView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) return ask_menu_by_keyboard();
  const QModelIndex index = indexAt(event->pos());
  if (index.isValid() && !OutlineModel::is_group(index)) Q_EMIT menu_asked(index, event->globalPos());
}

void OutlineView::focusInEvent(QFocusEvent* event) {
  if (!is_back_again(event->reason())) by_keyboard_ = is_by_keyboard(event->reason());
  if (!currentIndex().isValid()) setCurrentIndex(model()->index(0, 0));
  QTreeView::focusInEvent(event);
}

/// Asks for the height of every row. What is told of a row's look for that takes most of the time with hundreds of
/// thousands of rows, and no height depends on it.
void OutlineView::updateGeometries() {
  measuring_ = true;
  QTreeView::updateGeometries();
  measuring_ = false;
}

void OutlineView::initViewItemOption(QStyleOptionViewItem* option) const {
  if (measuring_) return;
  QTreeView::initViewItemOption(option);
  option->state.setFlag(QStyle::State_KeyboardFocusChange, by_keyboard_);
}

}  // namespace tarnby
