#include "app/scheduler/scheduler.h"

namespace tarnby {

void enable_scheduler(AppContext& context, bool enabled) {
  context.platform.app_settings.set_boolean("Scheduler", enabled);
  context.errands.async([&platform = context.platform, enabled] {
    platform.login_items.set_enabled(scheduler_identifier, enabled);
    (void)platform.app_settings.synchronize();
  });
}

}  // namespace tarnby
