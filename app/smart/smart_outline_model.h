#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "app/app_context.h"
#include "app/smart/smart_clean_lists.h"

namespace tarnby {

/// The groups of a smart scan and their entries, as two levels of one column. It keeps no copy of a record; a row's
/// texts are made when it is asked for.
class SmartOutlineModel : public QAbstractItemModel {
  Q_OBJECT
 public:
  enum Role {
    size_text_role = Qt::UserRole,
    color_role,
    /// The header that stands above a group, or nothing.
    header_role,
    /// A few words beside the label: where an entry lies, or that a group is clean.
    note_role,
  };

  /// @param lists what is shown and ticked; the model tells of changes made through it, other ones are told by
  ///   `group_changed`.
  SmartOutlineModel(AppContext& context, SmartCleanLists& lists, QObject* parent);

  /// Shows what the lists hold now.
  void reload();
  /// Something in the group was ticked or unticked.
  void group_changed(std::size_t group);

  static bool is_group(const QModelIndex& index) { return index.isValid() && index.internalId() == 0; }
  /// The group of a row: itself, or the one it belongs to.
  static std::size_t group_of(const QModelIndex& index);
  /// The entry of a row; null for a group.
  const CleanerEntry* entry_at(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& = {}) const override { return 1; }
  bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) > 0; }
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 Q_SIGNALS:
  /// A person asks for this row to be ticked or unticked.
  void tick_asked(const QModelIndex& index, bool on);

 private:
  QVariant group_data(std::size_t group, int role) const;
  QVariant entry_data(std::size_t group, std::size_t entry, int role) const;
  QString label(const CleanerEntry& entry) const;
  QString place(const CleanerEntry& entry) const;
  QString spoken(const QString& label, std::int64_t size, Qt::CheckState state) const;
  void find_headers();

  AppContext& context_;
  SmartCleanLists& lists_;
  std::vector<QString> headers_;  // one a group
};

}  // namespace tarnby
