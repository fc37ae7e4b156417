#include "app/parts/outline_model.h"

namespace tarnby {

std::size_t OutlineModel::group_of(const QModelIndex& index) {
  return is_group(index) ? static_cast<std::size_t>(index.row()) : static_cast<std::size_t>(index.internalId() - 1);
}

// The internal number of an entry's index is its group's row and 1, that of a group's index 0.
QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row() + 1) : 0);
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || is_group(child)) return {};
  return createIndex(static_cast<int>(child.internalId() - 1), 0, quintptr{0});
}

int OutlineModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(groups());
  return is_group(parent) ? static_cast<int>(entries(group_of(parent))) : 0;
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const std::size_t group = group_of(index);
  return is_group(index) ? group_data(group, role) : entry_data(group, static_cast<std::size_t>(index.row()), role);
}

bool OutlineModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole) return false;
  Q_EMIT tick_asked(index, value.toInt() == Qt::Checked);
  return true;
}

void OutlineModel::group_changed(std::size_t group) {
  const QModelIndex row = index(static_cast<int>(group), 0);
  Q_EMIT dataChanged(row, row);
}

}  // namespace tarnby
