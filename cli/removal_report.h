#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/interrupt.h"
#include "cli/json.h"

namespace tarnby::cli {

/// What a removing command was asked to take, and what became of it. Every listed path that existed stands once, in
/// list order, either among the removed or among the left.
struct RemovalReport {
  struct Left {
    Url url;
    std::string why;
  };
  std::vector<Url> removed;
  std::vector<Left> left;
  bool was_interrupted = false;
};

/// What `--dry-run` tells: the listed paths that exist and may be removed, each once, in list order.
struct RemovalPreview {
  std::vector<Url> would_remove;
  /// Those that exist and are never removed whole.
  std::vector<Url> refused;
};

/// Throws CommandError with `wrong_usage` when --yes was not given and nobody can be asked; call it before any work.
void need_somebody_to_ask(const Context& context);

RemovalPreview preview_removal(Context& context, std::span<const Url> urls);

/// The result of `--dry-run`: what would go, what would stay, and the bytes.
void print_preview(Context& context, const RemovalPreview& preview, std::int64_t bytes);

/// Asks on the terminal whether to remove what the preview tells, after `show` has shown it; true without asking with
/// `--yes`, and when there is nothing that anybody could agree to. A no is told on standard error.
bool removal_is_agreed(Context& context, const RemovalPreview& preview, std::int64_t bytes,
                       const std::function<void()>& show);

/// The report when nothing was touched, as the user wished.
RemovalReport declined_removal(const RemovalPreview& preview);

using RemoveListed = std::function<std::vector<Removal>(const RemovalOptions& options)>;

/// Takes the listed paths away with `remove` and reports what went. An interrupt stops it after the entry in hand; the
/// caller keeps `stop` until nothing may get lost any more.
RemovalReport run_removal(Context& context, std::span<const Url> urls, const StopOnInterrupt& stop,
                          const RemoveListed& remove);

/// Prints what went and, path by path, what was left and why.
void print_removal(Context& context, const RemovalReport& report);

/// {"removed", "left"}.
Json json_removal(const RemovalReport& report);

/// How a removing command ends after this.
ExitStatus status_of_removal(const RemovalReport& report);

/// "1 entry", "53 entries".
std::string entries_text(std::size_t count);

}  // namespace tarnby::cli
