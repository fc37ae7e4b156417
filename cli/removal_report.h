#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "cli/context.h"

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
  /// Listed paths that are never removed whole.
  std::vector<Url> refused;
};

/// Whether the user agrees; also true with `--yes`. Throws CommandError with `wrong_usage` when nobody can be asked, so
/// call it before any work.
void need_somebody_to_ask(const Context& context);
/// Asks on the terminal; `what` is a question without its end ("Remove 6.2 GB for good").
bool user_agrees(Context& context, const std::string& what);

RemovalPreview preview_removal(Context& context, std::span<const Url> urls);

/// Takes the listed paths away with `remove` and reports what went. Ctrl-C stops it after the entry in hand.
RemovalReport run_removal(Context& context, std::span<const Url> urls,
                          const std::function<std::vector<Removal>(const std::atomic<bool>*)>& remove);

/// Prints what went and, path by path, what was left and why.
void print_removal(Context& context, const RemovalReport& report);

/// How a removing command ends after this.
ExitStatus status_of_removal(const RemovalReport& report);

}  // namespace tarnby::cli
