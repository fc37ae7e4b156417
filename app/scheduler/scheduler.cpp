#include "app/scheduler/scheduler.h"

#include <QPointer>
#include <QWidget>

#include "app/parts/notice.h"
#include "platform/platform.h"

namespace tarnby {

void enable_scheduler(AppContext& context, bool enabled, QWidget* window) {
  context.settings().set_boolean("Scheduler", enabled);
  const auto tell = [&context, over = QPointer(window)] {
    const QString folder = QString::fromStdString(context.session().autostart_folder.path());
    Notice::present(context, context.text("The scheduler could not be switched"),
                    context.text("What starts when you log in is kept in %@, and nothing could be written there. When "
                                 "that is mended, switch the scheduler off and on again in the preferences.",
                                 {folder}),
                    over);
  };
  context.io_queue.async([&platform = context.platform, enabled, tell] {
    const bool done = platform.login_items.set_enabled(scheduler_identifier, enabled);
    (void)platform.app_settings.synchronize();
    if (!done) platform.main_queue.async(tell);
  });
}

}  // namespace tarnby
