#include "app/scheduler/enable_scheduler_view_controller.h"

#include "app/parts/question.h"
#include "app/scheduler/scheduler.h"
#include "platform/platform.h"

namespace tarnby {

EnableSchedulerViewController::EnableSchedulerViewController(AppContext& context) : Screen(context) {
  setWindowTitle(context.text("Keep your disk clean?"));
  const Question question =
      ask(*this,
          context.text("The scheduler starts when you log in and reminds you when it is time to clean. You can switch "
                       "it off in the preferences."),
          context.text("No, thanks"), context.text("Enable"));
  cancel_button = question.refuse;
  enable_button = question.accept;
  disconnect(cancel_button, nullptr, this, nullptr);
  connect(cancel_button, &QAbstractButton::clicked, this, &EnableSchedulerViewController::cancel);
  connect(enable_button, &QAbstractButton::clicked, this, &EnableSchedulerViewController::enable);
}

void EnableSchedulerViewController::enable() {
  Platform& platform = context_.platform;
  platform.app_settings.set_boolean("EnableScheduler", true);
  platform.group_settings.set("Date", platform.now());
  enable_scheduler(context_, true, window());
  context_.io_queue.async([&platform] { (void)platform.group_settings.synchronize(); });
  Q_EMIT dismissed();
}

void EnableSchedulerViewController::cancel() {
  context_.settings().set_boolean("EnableScheduler", true);
  context_.flush_settings();
  Q_EMIT dismissed();
}

}  // namespace tarnby
