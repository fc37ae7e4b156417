#pragma once

#include "cli/context.h"

namespace tarnby::cli {

// One function a command, see command_rows for what each is for. Each runs to its end on the main thread, prints its
// result and returns how the program ends; it throws CommandError for what went wrong before there was a result.

ExitStatus run_scan(Context& context);
ExitStatus run_clean(Context& context);
ExitStatus run_junk(Context& context);
ExitStatus run_cleanup(Context& context);
ExitStatus run_large(Context& context);
ExitStatus run_apps(Context& context);
ExitStatus run_app(Context& context);
ExitStatus run_uninstall(Context& context);
ExitStatus run_unused(Context& context);
ExitStatus run_languages(Context& context);
ExitStatus run_grant(Context& context);
ExitStatus run_settings(Context& context);

}  // namespace tarnby::cli
