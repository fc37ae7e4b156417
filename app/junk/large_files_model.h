#pragma once

#include <unordered_set>

#include "app/app_context.h"
#include "app/outline_model.h"
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

  /// The file of a row; null for a group.
  std::shared_ptr<LargeFile> file_at(const QModelIndex& index) const;

 protected:
  std::size_t groups() const override { return rows_.size(); }
  std::size_t entries(std::size_t group) const override { return rows_[group]->items.size(); }
  QVariant group_data(std::size_t group, int role) const override;
  QVariant entry_data(std::size_t group, std::size_t entry, int role) const override;

 private:
  AppContext& context_;
  const LargeFileRows& rows_;
  const Ticked& ticked_;
};

}  // namespace tarnby
