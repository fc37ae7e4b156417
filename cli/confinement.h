#pragma once

#include "cli/context.h"

namespace tarnby::cli {

// What the kernel takes from this process before it makes any thread, see give_up_changing. Where the kernel cannot,
// the program runs all the same.

/// Takes what the command has no need of: every socket that is not local, and all changing but that of the settings by
/// a command that stores some. One that removes keeps its rights until its folders are known.
void confine_to_command(const Invocation& asked, const Session& session);

/// Leaves a command that removes the right to remove below the folders that are accessed, and to write the settings;
/// its threads keep less, see FileManager::confine_threads.
void confine_to_grants(const Context& context);

}  // namespace tarnby::cli
