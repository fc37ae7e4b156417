#pragma once

#include <unordered_set>

#include "app/junk/also_listed.h"
#include "app/parts/app_context.h"
#include "app/parts/distinct_places.h"
#include "app/parts/outline_model.h"
#include "engine/large_files.h"

namespace tarnby {

/// Groups of large files, some of them ticked.
class LargeFilesModel : public OutlineModel {
  Q_OBJECT
 public:
  using Ticked = std::unordered_set<const LargeFile*>;

  /// @param rows,ticked what is shown and ticked; whoever changes the rows calls `reload` around it.
  LargeFilesModel(AppContext& context, const LargeFileRows& rows, const Ticked& ticked, QObject* parent);

  /// Runs `change`, which puts other rows in place.
  void reload(const std::function<void()>& change);
  /// Names the other categories beside the files that they list. Rows that come later are told of as well.
  void show_also_listed(AlsoListed also);

  /// The file of a row; null for a group.
  std::shared_ptr<LargeFile> file_at(const QModelIndex& index) const;

 protected:
  std::size_t groups() const override { return rows_.size(); }
  std::size_t entries(std::size_t group) const override { return rows_[group]->items.size(); }
  QVariant group_data(std::size_t group, int role) const override;
  QVariant entry_data(std::size_t group, std::size_t entry, int role) const override;

 private:
  Qt::CheckState state_of(const OutlineItem& group) const;
  /// Bytes of the files in a group; of the ticked ones where some are.
  std::int64_t size_of(const OutlineItem& group) const;
  QString note_of(std::size_t group, std::size_t entry) const;
  void find_equal_names();

  AppContext& context_;
  const LargeFileRows& rows_;
  const Ticked& ticked_;
  AlsoListed also_listed_;
  std::vector<EqualNames> equal_names_;  // one a group
};

}  // namespace tarnby
