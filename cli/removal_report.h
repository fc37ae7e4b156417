#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/interrupt.h"
#include "cli/json.h"
#include "engine/why_left.h"

namespace tarnby::cli {

/// What a removing command was asked to take, and what became of it. Every listed path that existed stands at most
/// once, in list order, among the removed or among the left; other programs took the rest meanwhile.
struct RemovalReport {
  std::vector<Url> removed;
  std::vector<LeftEntry> left;
  std::size_t taken_by_others = 0;
  /// The results of the removal, for counting.
  std::vector<Removal> removals;
  /// Free on the disk that holds the home, before and after; none when the system does not tell.
  std::optional<std::int64_t> free_before;
  std::optional<std::int64_t> free_after;
  bool was_interrupted = false;
};

/// What `--dry-run` tells: the listed paths that exist and may be removed, each once, in list order.
struct RemovalPreview {
  std::vector<Url> would_remove;
  /// What is known to stay: listed paths that exist and are refused, and what is mounted at or inside the others.
  std::vector<LeftEntry> staying;
};

/// Throws CommandError with `wrong_usage` when --yes was not given and nobody can be asked; call it before any work.
void need_somebody_to_ask(const Context& context);

/// Looks at each listed path and at what is mounted; removes nothing.
RemovalPreview preview_removal(Context& context, std::span<const Url> urls);

/// Bytes of what is mounted in what would go, and of what is refused when `with_refused`. Measures it.
std::int64_t bytes_staying(Context& context, const RemovalPreview& preview, bool with_refused);

/// The bytes that a preview tells.
struct PreviewBytes {
  /// As the engine counts.
  std::int64_t counted = 0;
  /// Of what would really go, each location once: what people read.
  std::int64_t would_free = 0;
};

/// The result of `--dry-run`: what would go, what would stay and why, and the bytes.
void print_preview(Context& context, const RemovalPreview& preview, const PreviewBytes& bytes);

/// Asks on the terminal whether to remove what the preview tells, after `show` has shown it; true without asking with
/// `--yes`, and when nothing can be removed. A no is told on standard error.
bool removal_is_agreed(Context& context, const RemovalPreview& preview, std::int64_t bytes,
                       const std::function<void()>& show);

/// The report when nothing was touched, as the user wished.
RemovalReport declined_removal(Context& context, const RemovalPreview& preview);

/// Removes a list that it knows, watched and ended as the options say; one result for each entry.
using RemoveListed = std::function<std::vector<Removal>(const RemovalOptions& options)>;

/// Takes the listed paths away with `remove` and reports what went. An interrupt stops it after the entry in hand; the
/// caller keeps `stop` until nothing may get lost any more.
RemovalReport run_removal(Context& context, std::span<const Url> urls, const StopOnInterrupt& stop,
                          const RemoveListed& remove);

/// Prints what went and, path by path, what was left and why.
void print_removal(Context& context, const RemovalReport& report);

/// {"removed", "left", "left_reasons", "freed", "free_before", "free_after"}.
Json json_removal(const RemovalReport& report);

/// How a removing command ends after this.
ExitStatus status_of_removal(const RemovalReport& report);

/// "1 entry", "53 entries".
std::string entries_text(std::size_t count);

}  // namespace tarnby::cli
