#pragma once

#include <optional>
#include <vector>

#include "app/parts/app_context.h"
#include "app/parts/distinct_places.h"
#include "app/parts/outline_model.h"
#include "app/smart/smart_clean_lists.h"

namespace tarnby {

/// The groups of a smart scan and their entries, as two levels of one column. It keeps no copy of a record; a row's
/// texts are made when it is asked for.
class SmartOutlineModel : public OutlineModel {
  Q_OBJECT
 public:
  /// @param lists what is shown and ticked; a change is told by `group_changed`.
  SmartOutlineModel(AppContext& context, SmartCleanLists& lists, QObject* parent);

  /// Whether a group has no row.
  bool is_hidden(std::size_t group) const;
  /// The entry of a row; null for a group.
  const CleanerEntry* entry_at(const QModelIndex& index) const;

  Qt::ItemFlags flags(const QModelIndex& index) const override;

 protected:
  std::size_t groups() const override { return lists_.count(); }
  std::size_t entries(std::size_t group) const override { return lists_.entries(group).size(); }
  QVariant group_data(std::size_t group, int role) const override;
  QVariant entry_data(std::size_t group, std::size_t entry, int role) const override;

 private:
  QString label(const CleanerEntry& entry) const;
  Image image_of(const CleanerEntry& entry) const;
  QString note_of_group(std::size_t group) const;
  /// Why something may be missing in a group, in words; empty when nothing is.
  QString problem_of(std::size_t group) const;
  QString note_of_entry(std::size_t group, std::size_t entry) const;
  std::string folder_of(const CleanerEntry& entry) const;
  const EqualNames& equal_names_of(std::size_t group) const;
  QString spoken(const QString& label, std::int64_t size, Qt::CheckState state) const;
  void find_headers();

  AppContext& context_;
  SmartCleanLists& lists_;
  std::vector<QString> headers_;  // one a group
  /// One a group; found out when the first of its entries is drawn.
  mutable std::vector<std::optional<EqualNames>> equal_names_;
};

}  // namespace tarnby
