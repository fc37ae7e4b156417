#pragma once

#include "app/parts/app_context.h"

namespace tarnby {

/// The separate program that is started at login and reminds of cleaning.
inline constexpr std::string_view scheduler_identifier = "com.corvash.tarnby-cleaner-scheduler";

/// Registers the scheduler as a login item or takes it back, and keeps that in "Scheduler". The disk is written in the
/// background. "Scheduler" keeps what the user wants even where the disk did not take it: the window only says so.
void enable_scheduler(AppContext& context, bool enabled, QWidget* window);

}  // namespace tarnby
