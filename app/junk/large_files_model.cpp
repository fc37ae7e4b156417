#include "app/junk/large_files_model.h"

#include <algorithm>

#include "engine/cleaner.h"
#include "engine/entry_text.h"
#include "engine/smart_selection.h"
#include "files/bytes.h"
#include "text/localization.h"
#include "ui/qt_text.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

const char* spoken_text(Qt::CheckState state) {
  return state == Qt::Checked            ? english("%@, %@, ticked")
         : state == Qt::PartiallyChecked ? english("%@, %@, partly ticked")
                                         : english("%@, %@, not ticked");
}

}  // namespace

LargeFilesModel::LargeFilesModel(AppContext& context, const LargeFileRows& rows, const Ticked& ticked, QObject* parent)
    : OutlineModel(parent), context_(context), rows_(rows), ticked_(ticked) {
  find_equal_names();
}

void LargeFilesModel::reload(const std::function<void()>& change) {
  beginResetModel();
  change();
  find_equal_names();
  endResetModel();
}

void LargeFilesModel::show_also_listed(AlsoListed also) {
  also_listed_ = std::move(also);
  for (std::size_t group = 0; group < rows_.size(); ++group) group_changed(group);
}

std::shared_ptr<LargeFile> LargeFilesModel::file_at(const QModelIndex& index) const {
  if (!index.isValid() || is_group(index)) return nullptr;
  return rows_[group_of(index)]->items[static_cast<std::size_t>(index.row())];
}

Qt::CheckState LargeFilesModel::state_of(const OutlineItem& group) const {
  const auto ticked =
      std::ranges::count_if(group.items, [&](const auto& file) { return ticked_.contains(file.get()); });
  if (ticked == 0) return Qt::Unchecked;
  return static_cast<std::size_t>(ticked) == group.items.size() ? Qt::Checked : Qt::PartiallyChecked;
}

std::int64_t LargeFilesModel::size_of(const OutlineItem& group) const {
  const bool all = state_of(group) == Qt::Unchecked;
  std::int64_t bytes = 0;
  for (const auto& file : group.items) {
    if (all || ticked_.contains(file.get())) bytes = add_bytes(bytes, file->size);
  }
  return bytes;
}

QVariant LargeFilesModel::group_data(std::size_t group, int role) const {
  const OutlineItem& row = *rows_[group];
  const QString label = context_.text(row.label.c_str());
  switch (role) {
    case Qt::DisplayRole:
      return label;
    case Qt::CheckStateRole:
      return state_of(row);
    case Qt::AccessibleTextRole:
      return context_.text(spoken_text(state_of(row)), {label, context_.byte_count(size_of(row))});
    case note_role:
      return context_.plural(static_cast<std::int64_t>(row.items.size()), "one file", "%@ files");
    case size_text_role:
      return context_.byte_count(size_of(row));
    default:
      return {};
  }
}

QVariant LargeFilesModel::entry_data(std::size_t group, std::size_t entry, int role) const {
  const LargeFile& file = *rows_[group]->items[entry];
  const auto state = [&] { return ticked_.contains(&file) ? Qt::Checked : Qt::Unchecked; };
  switch (role) {
    case Qt::DisplayRole:
      return one_line(file.name);
    case Qt::CheckStateRole:
      return state();
    case Qt::AccessibleTextRole:
      return context_.text(spoken_text(state()), {one_line(file.name), context_.byte_count(file.size)});
    case Qt::AccessibleDescriptionRole:
      return note_of(group, entry);
    case Qt::ToolTipRole:
      return path_in_words(one_line(file.url_file.path()));
    case size_text_role:
      return context_.byte_count(file.size);
    case icon_role:
      return QVariant::fromValue(Image::icon_of(file.url_file));
    case note_role:
      return note_of(group, entry);
    default:
      return {};
  }
}

/// What decides goes first, since the end is left out where there is no room.
QString LargeFilesModel::note_of(std::size_t group, std::size_t entry) const {
  const LargeFile& file = *rows_[group]->items[entry];
  const auto equal = equal_names_[group].find(entry);
  const std::string place = equal == equal_names_[group].end()
                                ? short_path(file.url_file.parent(), context_.sharedCleaner().url_home)
                                : equal->second;
  QString folder = path_in_words(one_line(place));
  const auto also = also_listed_.find(&file);
  if (also == also_listed_.end()) return folder;
  QStringList categories;
  for (const char* label : also->second) categories << context_.text("“%@”", {context_.text(label)});
  return context_.text("also in %@", {categories.join(QStringLiteral(", "))}) + QStringLiteral(" · ") + folder;
}

void LargeFilesModel::find_equal_names() {
  equal_names_.clear();
  equal_names_.reserve(rows_.size());
  const Url& home = context_.sharedCleaner().url_home;
  for (const auto& row : rows_) {
    equal_names_.push_back(equal_names(
        row->items.size(), [&](std::size_t at) { return row->items[at]->name; },
        [&](std::size_t at) { return short_path(row->items[at]->url_file.parent(), home); }));
  }
}

}  // namespace tarnby
