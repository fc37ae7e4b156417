#pragma once

#include <QAbstractItemModel>

#include "platform/image.h"

namespace tarnby {

/// What an outline shows: groups and their entries, as two levels of one column. Rows are told apart by `is_group`; a
/// control that a row has no data for is not drawn.
class OutlineModel : public QAbstractItemModel {
  Q_OBJECT
 public:
  enum Role {
    size_text_role = Qt::UserRole,
    /// An entry's icon, as an Image.
    icon_role,
    /// The colour of a group's tag.
    color_role,
    /// The header that stands above a group.
    header_role,
    /// A few words beside the label.
    note_role,
    /// True when these words say that something went wrong.
    alarm_role,
    /// True for a group that something can be told about.
    about_role,
  };

  using QAbstractItemModel::QAbstractItemModel;

  static bool is_group(const QModelIndex& index) { return index.isValid() && index.internalId() == 0; }
  /// The group of a row: itself, or the one it belongs to.
  static std::size_t group_of(const QModelIndex& index);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& = {}) const override { return 1; }
  bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) > 0; }
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// Something in the group has changed that its row shows. Told as a change of that row alone: a view asks anew for
  /// the rows below it when it draws them, and walking over hundreds of thousands of them for one tick would be felt.
  void group_changed(std::size_t group);

 Q_SIGNALS:
  /// A person asks for this row to be ticked or unticked.
  void tick_asked(const QModelIndex& index, bool on);

 protected:
  virtual std::size_t groups() const = 0;
  virtual std::size_t entries(std::size_t group) const = 0;
  virtual QVariant group_data(std::size_t group, int role) const = 0;
  virtual QVariant entry_data(std::size_t group, std::size_t entry, int role) const = 0;
};

}  // namespace tarnby
