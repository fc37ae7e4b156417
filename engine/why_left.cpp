#include "engine/why_left.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "files/mount_points.h"
#include "text/localization.h"

namespace tarnby {

namespace {

struct ReasonText {
  LeftReason reason;
  const char* text;
};

constexpr ReasonText texts[] = {
    {LeftReason::outside_grants, english("it lies outside the folders that you gave access to")},
    {LeftReason::never_whole, english("it is never removed whole")},
    {LeftReason::not_attempted, english("the removal was stopped before it")},
    {LeftReason::stopped_within, english("the removal was stopped in the middle of it")},
    {LeftReason::changed_kind, english("it has become something else since it was listed")},
    {LeftReason::other_disk, english("another disk is mounted there")},
    {LeftReason::no_permission, english("permission denied")},
    {LeftReason::guarded, english("it is protected")},
    {LeftReason::read_only_disk, english("the disk is write-protected")},
    {LeftReason::in_use, english("it is in use")},
    {LeftReason::added_to, english("something was added meanwhile")},
    {LeftReason::failing_disk, english("the disk reported an error")},
    {LeftReason::full_disk, english("the disk is full")},
    {LeftReason::too_many_open, english("too many files are open")},
    {LeftReason::no_memory, english("there is not enough memory")},
    {LeftReason::refused, english("the system refused it")},
    {LeftReason::came_back, english("it came back")},
    {LeftReason::owner_runs, english("the program that uses it is running")},
    {LeftReason::owner_unknown, english("nobody can tell whether the program that uses it is running")},
    {LeftReason::other_stays, english("what belongs to it could not be removed")},
};

struct ErrorReason {
  int error;
  LeftReason reason;
};

constexpr ErrorReason error_reasons[] = {
    {ECANCELED, LeftReason::stopped_within},
    {ESTALE, LeftReason::changed_kind},
    {EXDEV, LeftReason::other_disk},
    {EACCES, LeftReason::no_permission},
    {EPERM, LeftReason::guarded},
    {EROFS, LeftReason::read_only_disk},
    {EBUSY, LeftReason::in_use},
    {ETXTBSY, LeftReason::in_use},
    {ENOTEMPTY, LeftReason::added_to},
    {EEXIST, LeftReason::added_to},
    {EIO, LeftReason::failing_disk},
    {ENXIO, LeftReason::failing_disk},
    {ENODEV, LeftReason::failing_disk},
    {ENOSPC, LeftReason::full_disk},
    {EDQUOT, LeftReason::full_disk},
    {EMFILE, LeftReason::too_many_open},
    {ENFILE, LeftReason::too_many_open},
    {ENOMEM, LeftReason::no_memory},
};

struct RefusalReason {
  RemovalRefusal refusal;
  LeftReason reason;
};

constexpr RefusalReason refusal_reasons[] = {
    {RemovalRefusal::owner_runs, LeftReason::owner_runs},
    {RemovalRefusal::owner_unknown, LeftReason::owner_unknown},
    {RemovalRefusal::other_stays, LeftReason::other_stays},
};

/// Where the system tells nothing after the removal, what was said before counts: the listing's word that there was
/// something, and the removal's that it is gone.
bool may_be_there(const Url& url, const Status& after, const Removal& removal) {
  if (after.kind != EntryKind::none) return true;
  const bool is_said_to_be_gone = removal.attempted && !removal.error;
  const bool tells_nothing = is_failure(after.error) || (after.error == EACCES && url.listed_kind() != EntryKind::none);
  return tells_nothing && !is_said_to_be_gone;
}

/// The mount points at or inside the locations of a list.
class MountsInside {
 public:
  explicit MountsInside(std::span<const Url> urls) {
    for (const Url& url : urls) points_[url.path()];
    std::vector<Url> all = mount_points();
    std::ranges::sort(all);
    for (const Url& point : all) note(point);
  }

  /// In byte order of their paths; what is mounted inside one of them is not told as well.
  std::span<const Url> inside(const Url& url) const { return points_.find(url.path())->second; }

 private:
  void note(const Url& point) {
    for (std::string_view path = point.path(); !path.empty(); path = path.substr(0, path.rfind('/'))) {
      const auto listed = points_.find(path);
      if (listed == points_.end()) continue;
      auto& known = listed->second;
      const bool is_told = std::ranges::any_of(known, [&](const Url& other) { return point.is_within(other); });
      if (!is_told) known.push_back(point);
    }
  }

  std::unordered_map<std::string_view, std::vector<Url>> points_;
};

}  // namespace

LeftReason why_left(const Removal& removal, bool refused) {
  for (const auto& [refusal, reason] : refusal_reasons) {
    if (removal.error == refusal) return reason;
  }
  if (refused) return LeftReason::never_whole;
  if (!removal.attempted) return LeftReason::not_attempted;
  if (!removal.error) return LeftReason::came_back;
  const auto* row = std::ranges::find(error_reasons, removal.error.value(), &ErrorReason::error);
  return row == std::end(error_reasons) ? LeftReason::refused : row->reason;
}

const char* left_reason_text(LeftReason reason) {
  return std::ranges::find(texts, reason, &ReasonText::reason)->text;
}

std::vector<LeftEntry> left_of(const FileManager& files, std::span<const Url> urls, std::span<const Removal> removals) {
  const std::vector<Status> after = files.statuses(urls);
  std::unordered_set<Url> met;
  std::vector<Url> there;
  std::vector<const Removal*> passes;
  for (std::size_t at = 0; at < urls.size(); ++at) {
    if (!may_be_there(urls[at], after[at], removals[at]) || !met.insert(urls[at]).second) continue;
    there.push_back(urls[at]);
    passes.push_back(&removals[at]);
  }
  const std::vector<bool> refused = files.refuses_to_remove(there);
  std::vector<LeftEntry> left;
  for (std::size_t at = 0; at < there.size(); ++at) {
    const bool is_within = files.granted().holds(there[at]);
    left.push_back({there[at], is_within ? why_left(*passes[at], refused[at]) : LeftReason::outside_grants});
  }
  return left;
}

std::vector<LeftEntry> known_to_stay(const FileManager& files, std::span<const Url> urls) {
  const std::vector<bool> refused = files.refuses_to_remove(urls);
  const MountsInside mounts(urls);
  std::unordered_set<Url> met;
  std::vector<LeftEntry> staying;
  const auto add = [&](const Url& url, LeftReason reason) {
    if (met.insert(url).second) staying.push_back({url, reason});
  };
  for (std::size_t at = 0; at < urls.size(); ++at) {
    if (refused[at]) {
      add(urls[at], files.granted().holds(urls[at]) ? LeftReason::never_whole : LeftReason::outside_grants);
    } else {
      for (const Url& point : mounts.inside(urls[at])) add(point, LeftReason::other_disk);
    }
  }
  return staying;
}

}  // namespace tarnby
