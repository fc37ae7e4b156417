#include "inventory/folder_matches.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>

#include "files/traversal.h"

namespace tarnby {

namespace {

/// Searches by their indices in the list.
using Searches = std::vector<std::size_t>;

/// No task: the folder is not entered.
constexpr std::size_t nowhere = SIZE_MAX;

/// What is done in a folder: which searches look at its entries, and which task its subfolders get. Folders with the
/// same task share one, stored in Plan; the index of the task there is the traversal's tag.
struct FolderTask {
  /// An entry that is looked at by other searches, or that gets another task, than the rest of the folder.
  struct SpecialEntry {
    Searches searches;
    std::size_t task = nowhere;
  };
  Searches searches;
  std::size_t below = nowhere;
  std::map<std::string, SpecialEntry, std::less<>> special_entries;
};

/// Where the traversal starts, and the tasks of all folders it may come to. With search 0 walking Logs and search 1
/// listing Logs/CSXS, as in the header's example:
///
///     task 3   Logs         searches {0}      subfolders: task 0, but CSXS: task 2
///     task 0   below Logs   searches {0}      subfolders: task 0
///     task 2   Logs/CSXS    searches {0, 1}   subfolders: task 1
///     task 1   below CSXS   searches {0}      subfolders: task 1
class Plan {
 public:
  explicit Plan(std::span<const FolderSearch> searches) : all_(searches) {
    for (std::size_t at = 0; at < all_.size(); ++at) {
      if (all_[at].folder.is_file_url() && !all_[at].keys.empty()) unplanned_[all_[at].folder.path()].push_back(at);
    }
    // In the map's order a folder comes before what lies below it. So a folder that a walk from above reaches is
    // planned with that walk, and only what no walk reaches becomes a start.
    while (!unplanned_.empty()) {
      const std::string path = unplanned_.begin()->first;
      starts_.push_back({path, task_at(path, {})});
    }
  }

  std::span<const TraversalStart> starts() const { return starts_; }
  const FolderTask& task(std::size_t tag) const { return tasks_[tag]; }

 private:
  Searches walking(const Searches& searches) const {
    Searches result;
    std::copy_if(searches.begin(), searches.end(), std::back_inserter(result),
                 [&](std::size_t search) { return all_[search].walks; });
    return result;
  }

  /// The searches without those that begin in this folder and leave out the entry of this name.
  Searches without_left_out(Searches searches, const Url& folder, std::string_view name) const {
    std::erase_if(searches,
                  [&](std::size_t search) { return all_[search].left_out == name && all_[search].folder == folder; });
    return searches;
  }

  std::size_t add(FolderTask task) {
    tasks_.push_back(std::move(task));
    return tasks_.size() - 1;
  }

  /// Plans a folder and everything below it that differs; returns the folder's task. Removes what it has planned from
  /// `unplanned_`. In the example: task_at("Logs", {}) adds task 0, calls add_special_entries, which calls
  /// task_at("Logs/CSXS", {0}), which adds tasks 1 and 2, and adds task 3.
  /// @param from_above the walks that reach this folder from the folder that holds it.
  std::size_t task_at(const std::string& path, const Searches& from_above) {
    FolderTask here;
    here.searches = from_above;
    if (const auto begun = unplanned_.extract(path)) {
      here.searches.insert(here.searches.end(), begun.mapped().begin(), begun.mapped().end());
    }
    const Searches walks = walking(here.searches);
    if (!walks.empty()) {
      here.below = add({walks, tasks_.size(), {}});
      add_special_entries(here, Url::file(path), walks);
    }
    return add(std::move(here));
  }

  /// Adds the entries of a folder that its task does not treat alike: those that a search leaves out, and those in
  /// which another search begins. In the example, for Logs: CSXS, looked at by {0}, entered with task 2.
  /// @param walks the searches of this folder that go on below it.
  void add_special_entries(FolderTask& here, const Url& folder, const Searches& walks) {
    std::vector<std::string> names;
    for (const std::size_t search : here.searches) {
      if (all_[search].folder == folder && !all_[search].left_out.empty()) names.emplace_back(all_[search].left_out);
    }
    for (const auto& [path, searches] : unplanned_) {
      const Url begun = Url::file(path);
      // Walks skip what is hidden: a search that begins in a hidden folder is a start of its own.
      const std::string_view name = begun.last_path_component();
      if (begun.parent() == folder && begun != folder && !is_hidden(name)) names.emplace_back(name);
    }
    for (const std::string& name : names) {
      if (here.special_entries.contains(name)) continue;
      const std::string path = folder.appending(name).path();
      const Searches from_here = without_left_out(walks, folder, name);
      const bool is_entered = !from_here.empty() || unplanned_.contains(path);
      here.special_entries[name] = {without_left_out(here.searches, folder, name),
                                    is_entered ? task_at(path, from_here) : nowhere};
    }
  }

  std::span<const FolderSearch> all_;
  /// By folder, the searches that begin in it and are not part of a task yet.
  std::map<std::string, Searches> unplanned_;
  std::vector<FolderTask> tasks_;
  std::vector<TraversalStart> starts_;
};

/// Keeps what the searches find, with whole paths.
class SearchJob final : public TraversalJob {
 public:
  SearchJob(const GrantedFolders& granted, std::span<const FolderSearch> searches, const Plan& plan)
      : granted_(granted), searches_(searches), plan_(plan), found_(searches.size()) {}

  Descriptor open_start(const TraversedFolder& folder) override {
    return granted_.open_folder(Url::file(folder.name()));
  }

  void visit(const TraversedFolder& folder, int /*handle*/, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    const FolderTask& task = plan_.task(folder.tag());
    Batch batch;
    for (const RawEntry& entry : entries) {
      if (is_hidden(entry.name)) continue;
      const auto special =
          task.special_entries.empty() ? task.special_entries.end() : task.special_entries.find(entry.name);
      const bool is_special = special != task.special_entries.end();
      look(is_special ? special->second.searches : task.searches, folder, entry, batch);
      const std::size_t next = is_special ? special->second.task : task.below;
      if (entry.kind == EntryKind::folder && next != nowhere) enter.add(entry.name, next);
    }
    if (batch.found.empty()) return;
    const std::lock_guard lock(mutex_);
    for (auto& [search, match] : batch.found) found_[search].push_back(std::move(match));
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override { missed_.note(folder.error(), folder); }

  Missed missed() const { return missed_.missed(); }

  std::vector<Url> found(std::size_t search) {
    const auto before = [](const Match& a, const Match& b) { return walks_before(a.path, b.path); };
    std::sort(found_[search].begin(), found_[search].end(), before);
    std::vector<Url> urls;
    for (const Match& match : found_[search]) urls.push_back(Url::file(match.path).listed_as(match.kind));
    return urls;
  }

 private:
  struct Match {
    std::string path;
    EntryKind kind;
  };
  struct Batch {
    std::string folder;
    std::vector<std::pair<std::size_t, Match>> found;
  };

  void look(const Searches& looking, const TraversedFolder& folder, const RawEntry& entry, Batch& batch) const {
    if (looking.empty()) return;
    const FoldedText folded(entry.name);
    for (const std::size_t at : looking) {
      const FolderSearch& search = searches_[at];
      const auto is_in_name = [&](const FoldedText& key) { return folded.contains(key); };
      if (std::none_of(search.keys.begin(), search.keys.end(), is_in_name)) continue;
      if (search.takes && !search.takes(entry.name)) continue;
      if (batch.folder.empty()) batch.folder = folder.path() + "/";
      batch.found.emplace_back(at, Match{batch.folder + std::string(entry.name), entry.kind});
    }
  }

  const GrantedFolders& granted_;
  std::span<const FolderSearch> searches_;
  const Plan& plan_;
  MissedByWorkers missed_;
  std::mutex mutex_;
  std::vector<std::vector<Match>> found_;
};

}  // namespace

std::vector<std::vector<Url>> find_in_folders(FileManager& files, std::span<const FolderSearch> searches) {
  const Plan plan(searches);
  SearchJob job(files.granted(), searches, plan);
  files.traversal().run(job, plan.starts());
  note_missed(job.missed());
  std::vector<std::vector<Url>> found;
  for (std::size_t at = 0; at < searches.size(); ++at) found.push_back(job.found(at));
  return found;
}

}  // namespace tarnby
