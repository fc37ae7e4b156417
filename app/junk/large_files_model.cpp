#include "app/junk/large_files_model.h"

#include "engine/entry_text.h"
#include "platform/bytes.h"
#include "ui/text_label.h"

namespace tarnby {

LargeFilesModel::LargeFilesModel(AppContext& context, const LargeFileRows& rows, const Ticked& ticked, QObject* parent)
    : OutlineModel(parent), context_(context), rows_(rows), ticked_(ticked) {}

void LargeFilesModel::reload(const std::function<void()>& change) {
  beginResetModel();
  change();
  endResetModel();
}

std::shared_ptr<LargeFile> LargeFilesModel::file_at(const QModelIndex& index) const {
  if (!index.isValid() || is_group(index)) return nullptr;
  return rows_[group_of(index)]->items[static_cast<std::size_t>(index.row())];
}

QVariant LargeFilesModel::group_data(std::size_t group, int role) const {
  const OutlineItem& row = *rows_[group];
  if (role == Qt::DisplayRole) return context_.text(row.label.c_str());
  if (role == note_role) return context_.number(static_cast<std::int64_t>(row.items.size()));
  if (role != size_text_role && role != Qt::AccessibleTextRole) return {};
  std::int64_t bytes = 0;
  for (const auto& file : row.items) bytes = add_bytes(bytes, file->size);
  if (role == size_text_role) return context_.byte_count(bytes);
  return context_.text("%@, %@", {context_.text(row.label.c_str()), context_.byte_count(bytes)});
}

QVariant LargeFilesModel::entry_data(std::size_t group, std::size_t entry, int role) const {
  const LargeFile& file = *rows_[group]->items[entry];
  const QString name = QString::fromStdString(file.name);
  const bool ticked = ticked_.contains(&file);
  switch (role) {
    case Qt::DisplayRole:
      return name;
    case Qt::CheckStateRole:
      return ticked ? Qt::Checked : Qt::Unchecked;
    case Qt::AccessibleTextRole:
      return context_.text(ticked ? "%@, %@, ticked" : "%@, %@, not ticked", {name, context_.byte_count(file.size)});
    case Qt::ToolTipRole:
      return path_in_words(QString::fromStdString(file.url_file.path()));
    case size_text_role:
      return context_.byte_count(file.size);
    case icon_role:
      return QVariant::fromValue(Image::icon_of(file.url_file));
    case note_role:
      return path_in_words(
          QString::fromStdString(short_path(file.url_file.parent(), context_.sharedCleaner().url_home)));
    default:
      return {};
  }
}

}  // namespace tarnby
