#include "engine/why_left.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <unordered_set>

#include "platform/localization.h"

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

/// Where the system tells nothing after the removal, what was said before counts: the listing's word that there was
/// something, and the removal's that it is gone.
bool may_be_there(const Url& url, const Status& after, const Removal& removal) {
  if (after.kind != EntryKind::none) return true;
  const bool is_said_to_be_gone = removal.attempted && !removal.error;
  const bool tells_nothing = is_failure(after.error) || (after.error == EACCES && url.listed_kind() != EntryKind::none);
  return tells_nothing && !is_said_to_be_gone;
}

}  // namespace

LeftReason why_left(const Removal& removal, bool refused) {
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

}  // namespace tarnby
