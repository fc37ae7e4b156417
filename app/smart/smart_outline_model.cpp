#include "app/smart/smart_outline_model.h"

#include <QAccessible>

#include "app/parts/category_look.h"
#include "app/smart/offer_text.h"
#include "engine/cleaner.h"
#include "engine/entry_text.h"
#include "engine/smart_selection.h"
#include "text/localization.h"
#include "ui/qt_text.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

Qt::CheckState check_state(SmartCleanLists::Ticked ticked) {
  switch (ticked) {
    case SmartCleanLists::Ticked::none:
      return Qt::Unchecked;
    case SmartCleanLists::Ticked::some:
      return Qt::PartiallyChecked;
    case SmartCleanLists::Ticked::all:
      return Qt::Checked;
  }
  return Qt::Unchecked;
}

}  // namespace

SmartOutlineModel::SmartOutlineModel(AppContext& context, SmartCleanLists& lists, QObject* parent)
    : OutlineModel(parent), context_(context), lists_(lists) {
  find_headers();
}

/// A header of the menu stands above the group that follows it there.
void SmartOutlineModel::find_headers() {
  headers_.assign(lists_.count(), {});
  equal_names_.assign(lists_.count(), {});
  QString header;
  for (const SmartMenuItem& item : context_.sharedCleaner().smart_menu_items) {
    if (const auto* text = std::get_if<std::string>(&item)) {
      header = context_.text(text->c_str());
      continue;
    }
    const auto group = std::find(lists_.outlineItems.begin(), lists_.outlineItems.end(),
                                 std::get<std::shared_ptr<SmartOutlineItem>>(item));
    if (group == lists_.outlineItems.end()) continue;
    const auto at = static_cast<std::size_t>(group - lists_.outlineItems.begin());
    if (!is_hidden(at)) headers_[at] = std::exchange(header, {});
  }
}

/// A Linux home need not have anything of a category, and then nothing is said of it.
bool SmartOutlineModel::is_hidden(std::size_t group) const {
  const Cleaner& cleaner = context_.sharedCleaner();
  return cleaner.layout() == HomeKind::linux_desktop && lists_.entries(group).empty() &&
         !cleaner.problem_of(lists_.outlineItems[group]->type);
}

const CleanerEntry* SmartOutlineModel::entry_at(const QModelIndex& index) const {
  if (!index.isValid() || is_group(index)) return nullptr;
  return &lists_.entries(group_of(index))[static_cast<std::size_t>(index.row())];
}

Qt::ItemFlags SmartOutlineModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags both = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
  return is_group(index) ? both : both | Qt::ItemNeverHasChildren;
}

QVariant SmartOutlineModel::group_data(std::size_t group, int role) const {
  const SmartOutlineItem& item = *lists_.outlineItems[group];
  const bool empty = lists_.entries(group).empty();
  const auto label = [&] { return context_.text(item.label.c_str()); };
  const auto state = [&] { return check_state(lists_.ticked(group)); };
  switch (role) {
    case Qt::DisplayRole:
      return label();
    case Qt::CheckStateRole:
      return empty ? QVariant() : state();  // there is nothing to tick
    case Qt::AccessibleTextRole:
      return empty ? context_.text("%@, %@", {label(), note_of_group(group)})
                   : spoken(label(), lists_.size_shown(group), state());
    case Qt::AccessibleDescriptionRole:
      return empty ? QString() : note_of_group(group);
    case size_text_role:
      return context_.byte_count(lists_.size_shown(group));
    case color_role:
      return look_of(item.type).color;
    case header_role:
      return headers_[group];
    case about_role:
      return true;
    case note_role:
      return note_of_group(group);
    case Qt::ToolTipRole:
      return problem_of(group);
    case alarm_role:
      return !problem_of(group).isEmpty();
    default:
      return {};
  }
}

QString SmartOutlineModel::problem_of(std::size_t group) const {
  const auto problem = context_.sharedCleaner().problem_of(lists_.outlineItems[group]->type);
  if (!problem) return {};
  return context_.text(look_problem_text(*problem), {path_in_words(one_line(problem->name))});
}

/// A group of which something was not seen is never called clean.
QString SmartOutlineModel::note_of_group(std::size_t group) const {
  QString problem = problem_of(group);
  if (!problem.isEmpty()) return problem;
  return lists_.entries(group).empty() ? context_.text("everything is clean") : QString();
}

QVariant SmartOutlineModel::entry_data(std::size_t group, std::size_t entry, int role) const {
  const CleanerEntry& record = lists_.entries(group)[entry];
  const auto state = [&] { return lists_.is_ticked(group, entry) ? Qt::Checked : Qt::Unchecked; };
  switch (role) {
    case Qt::DisplayRole:
      return label(record);
    case Qt::CheckStateRole:
      return may_go(record) ? QVariant(state()) : QVariant();  // what may not go has no box
    case Qt::AccessibleTextRole:
      return spoken(label(record), size_of(record), state());
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole: {
      const auto urls = locations_of(record);
      return urls.empty() ? QString() : path_in_words(one_line(urls.front().path()));
    }
    case size_text_role:
      return context_.byte_count(size_of(record));
    case icon_role:
      return QVariant::fromValue(image_of(record));
    case note_role:
      return note_of_entry(group, entry);
    case alarm_role:
      return !may_go(record);
    case about_role:
      return std::holds_alternative<std::shared_ptr<OfferedItem>>(record);
    default:
      return {};
  }
}

QString SmartOutlineModel::label(const CleanerEntry& entry) const {
  const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry);
  return offered ? label_of_offer(context_, (*offered)->offer) : one_line(label_of(entry));
}

/// What a removed application has left shows none, as does a client that is not installed: the icon of any application
/// stands for it.
Image SmartOutlineModel::image_of(const CleanerEntry& entry) const {
  if (const auto* cache = std::get_if<std::shared_ptr<CacheItem>>(&entry)) return (*cache)->image;
  if (const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry)) return (*offered)->image;
  if (const auto* file = std::get_if<std::shared_ptr<LargeFile>>(&entry)) return Image::icon_of((*file)->url_file);
  if (!std::holds_alternative<std::shared_ptr<CleanerItem>>(entry)) return {};
  return context_.sharedCleaner().icon_of_application(label_of(entry));
}

/// Caches often carry one name in several places, and what removing takes should be known before; what a removed
/// application has left is known by its identifier. The others lie where their group says, unless two have one name.
QString SmartOutlineModel::note_of_entry(std::size_t group, std::size_t entry) const {
  const CleanerEntry& record = lists_.entries(group)[entry];
  if (const auto* left = std::get_if<std::shared_ptr<RemainderItem>>(&record)) return one_line((*left)->bundle);
  if (const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&record))
    return note_of_offer(context_, **offered);
  const EqualNames& equal = equal_names_of(group);
  const auto place = equal.find(entry);
  if (place != equal.end()) return path_in_words(one_line(place->second));
  if (!std::holds_alternative<std::shared_ptr<CacheItem>>(record)) return {};
  return path_in_words(one_line(folder_of(record)));
}

std::string SmartOutlineModel::folder_of(const CleanerEntry& entry) const {
  const auto urls = locations_of(entry);
  return urls.empty() ? std::string() : short_path(urls.front().parent(), context_.sharedCleaner().url_home);
}

const EqualNames& SmartOutlineModel::equal_names_of(std::size_t group) const {
  std::optional<EqualNames>& known = equal_names_[group];
  if (known) return *known;
  const auto& entries = lists_.entries(group);
  // What lies in one folder has different names; there may be hundreds of thousands of it.
  const std::string& type = lists_.outlineItems[group]->type;
  const std::size_t rows = type == "caches" || type == "installs" ? entries.size() : 0;
  known = equal_names(
      rows, [&](std::size_t row) { return label_of(entries[row]); },
      [&](std::size_t row) { return folder_of(entries[row]); });
  return *known;
}

QString SmartOutlineModel::spoken(const QString& label, std::int64_t size, Qt::CheckState state) const {
  const char* said = state == Qt::Checked            ? english("%@, %@, ticked")
                     : state == Qt::PartiallyChecked ? english("%@, %@, partly ticked")
                                                     : english("%@, %@, not ticked");
  return context_.text(said, {label, context_.byte_count(size)});
}

}  // namespace tarnby
