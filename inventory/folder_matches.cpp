#include "inventory/folder_matches.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>

#include "files/traversal.h"

namespace tarnby {

namespace {

/// Searches by their places in the list.
using Searches = std::vector<std::size_t>;

constexpr std::size_t nowhere = SIZE_MAX;

/// What is to be done in a folder. Folders that are alike share one errand; its number is the account of a traversal.
struct Errand {
  /// An entry that is not like the others.
  struct Turn {
    Searches searches;
    std::size_t errand = nowhere;
  };
  /// Those that look at the entries.
  Searches searches;
  /// Where it goes on in a folder among them.
  std::size_t below = nowhere;
  std::map<std::string, Turn, std::less<>> turns;
};

/// Where the traversal starts, and every errand that it may come to.
class Plan {
 public:
  explicit Plan(std::span<const FolderSearch> searches) : all_(searches) {
    for (std::size_t at = 0; at < all_.size(); ++at) {
      if (all_[at].folder.is_file_url() && !all_[at].keys.empty()) places_[all_[at].folder.path()].push_back(at);
    }
    // A path comes before what lies below it, so what a walk reaches is taken before it could be a start.
    while (!places_.empty()) {
      const std::string path = places_.begin()->first;
      starts_.push_back({path, errand_at(path, {})});
    }
  }

  std::span<const TraversalStart> starts() const { return starts_; }
  const Errand& errand(std::size_t account) const { return errands_[account]; }

 private:
  Searches walking(const Searches& searches) const {
    Searches result;
    std::copy_if(searches.begin(), searches.end(), std::back_inserter(result),
                 [&](std::size_t search) { return all_[search].walks; });
    return result;
  }

  /// The searches without those that begin in this folder and pass an entry of it over.
  Searches without_left_out(Searches searches, const Url& folder, std::string_view name) const {
    std::erase_if(searches,
                  [&](std::size_t search) { return all_[search].left_out == name && all_[search].folder == folder; });
    return searches;
  }

  std::size_t add(Errand errand) {
    errands_.push_back(std::move(errand));
    return errands_.size() - 1;
  }

  /// The errand of a folder to which walks come from above, and which itself may be where searches begin.
  std::size_t errand_at(const std::string& path, const Searches& from_above) {
    Errand here;
    here.searches = from_above;
    if (const auto place = places_.extract(path)) {
      here.searches.insert(here.searches.end(), place.mapped().begin(), place.mapped().end());
    }
    const Searches walks = walking(here.searches);
    if (!walks.empty()) {
      here.below = add({walks, errands_.size(), {}});
      add_turns(here, Url::file(path), walks);
    }
    return add(std::move(here));
  }

  void add_turns(Errand& here, const Url& folder, const Searches& walks) {
    std::vector<std::string> names;
    for (const std::size_t search : here.searches) {
      if (all_[search].folder == folder && !all_[search].left_out.empty()) names.emplace_back(all_[search].left_out);
    }
    for (const auto& [path, searches] : places_) {
      const Url place = Url::file(path);
      // A walk does not come to what is hidden: whoever begins there starts there.
      const std::string_view name = place.last_path_component();
      if (place.parent() == folder && place != folder && !name.starts_with('.')) names.emplace_back(name);
    }
    for (const std::string& name : names) {
      if (here.turns.contains(name)) continue;
      const std::string path = folder.appending(name).path();
      const Searches from_here = without_left_out(walks, folder, name);
      const bool is_entered = !from_here.empty() || places_.contains(path);
      here.turns[name] = {without_left_out(here.searches, folder, name),
                          is_entered ? errand_at(path, from_here) : nowhere};
    }
  }

  std::span<const FolderSearch> all_;
  /// By folder, those that have no errand yet.
  std::map<std::string, Searches> places_;
  std::vector<Errand> errands_;
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
    const Errand& errand = plan_.errand(folder.account());
    Batch batch;
    for (const RawEntry& entry : entries) {
      if (entry.name.starts_with('.')) continue;
      const auto turn = errand.turns.empty() ? errand.turns.end() : errand.turns.find(entry.name);
      const bool turns = turn != errand.turns.end();
      look(turns ? turn->second.searches : errand.searches, folder, entry, batch);
      const std::size_t next = turns ? turn->second.errand : errand.below;
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
