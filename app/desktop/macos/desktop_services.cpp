#include "app/desktop/desktop_services.h"

#include "app/desktop/macos/macos_workspace.h"
#include "ui/motion.h"

namespace tarnby {

namespace {

class MacosServices final : public DesktopServices {
 public:
  bool is_first_window() const override { return true; }  // the system starts a program but once

  void apply_motion() override { motion::set_reduced(wants_reduced_motion()); }

  std::unique_ptr<Workspace> make_workspace(Platform& /*platform*/, BackgroundQueue& /*io_queue*/) override {
    return std::make_unique<MacosWorkspace>();
  }

  /// The system's own panels belong to the window that is in front, and it tells by itself what nothing opens.
  void serve(QWidget& /*window*/, std::function<void(const QString&)> /*nothing_opens*/) override {}

  void ask_for_motion() override {}
};

}  // namespace

std::unique_ptr<DesktopServices> desktop_services(const Session& /*session*/) {
  return std::make_unique<MacosServices>();
}

std::shared_ptr<void> work_beside_the_start() {
  return nullptr;
}

}  // namespace tarnby
