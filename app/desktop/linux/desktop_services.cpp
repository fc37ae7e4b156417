#include "app/desktop/desktop_services.h"

#include <QApplication>
#include <QWidget>
#include <utility>

#include "app/desktop/linux/desktop_portal.h"
#include "app/desktop/linux/desktop_workspace.h"
#include "app/desktop/linux/font_preloader.h"
#include "app/desktop/linux/single_window.h"
#include "platform/session.h"

namespace tarnby {

namespace {

void bring_to_front(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

/// Those of a freedesktop.org desktop.
class LinuxServices final : public DesktopServices {
 public:
  explicit LinuxServices(const Session& session) : single_(session.settings_folder) {}

  bool is_first_window() const override { return single_.is_first(); }

  void apply_motion() override {}  // the look has read it from the desktop's files

  std::unique_ptr<Workspace> make_workspace(Platform& platform, BackgroundQueue& io_queue) override {
    auto made = std::make_unique<DesktopWorkspace>(platform, io_queue);
    workspace_ = made.get();
    return made;
  }

  void serve(QWidget& window, std::function<void(const QString&)> nothing_opens) override {
    workspace_->set_window(&window);
    workspace_->when_nothing_opens(std::move(nothing_opens));
    single_.when_asked_to_front([&window] { bring_to_front(window); });
  }

  void ask_for_motion() override { ask_portal_for_stillness(*qApp); }

 private:
  SingleWindow single_;
  DesktopWorkspace* workspace_ = nullptr;
};

}  // namespace

std::unique_ptr<DesktopServices> desktop_services(const Session& session) {
  return std::make_unique<LinuxServices>(session);
}

std::shared_ptr<void> work_beside_the_start() {
  return std::make_shared<FontPreloader>();
}

}  // namespace tarnby
