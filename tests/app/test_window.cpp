#include "tests/app/test_window.h"

#include <atomic>

#include "platform/platform.h"

namespace tarnby::test {

TestWindow::TestWindow(TestPlatform& owner)
    : user(owner),
      platform(owner.platform),
      time{owner.main_queue},
      delegate(user.settings, [this] { context.flush_settings(); }),
      context{platform, time.clock, delegate, background, io_queue, workspace, chooser, [this]() -> Cleaner& {
                if (!engine) engine.emplace(user);
                return engine->cleaner;
              }} {
  motion::set_reduced(false);
  user.tree.folder("Applications/Any.app");  // else nobody would take that for an Applications folder
  platform.system_log = [this](std::string_view line) { logged.emplace_back(line); };
}

TestWindow::~TestWindow() {
  close();
  background.finish();
  io_queue.finish();
  motion::set_reduced(false);
}

ViewController& TestWindow::open() {
  window_ = std::make_unique<CleanerWindowController>(context);
  window_->load();
  window_->ensurePolished();
  return content();
}

ViewController& TestWindow::open_on_screen() {
  open();
  window_->show();
  QApplication::setActiveWindow(window_.get());
  EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  return content();
}

void TestWindow::close() {
  window_.reset();
}

void TestWindow::settle() {
  for (BackgroundQueue* queue : {&background, context.consent.get(), &io_queue}) {
    if (queue == nullptr) continue;
    std::promise<void> idle;
    queue->async([&] { idle.set_value(); });
    idle.get_future().wait();
    user.main_queue.run_pending();
  }
  context.icons.finish();
}

void TestWindow::pass(int milliseconds) {
  time.pass(milliseconds);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestWindow::scan() {
  post("smart_scan_view_controller");
  pass(100);
  settle();
  constexpr int every_step_shown = 1200;
  pass(every_step_shown);
}

HeldThread::HeldThread(BackgroundQueue& queue) {
  queue.async([place = place_] { place->stop_here(); });
}

HeldThread::HeldThread(HandMainQueue& queue) {
  queue.when_handed_over = [place = place_, handed = std::make_shared<std::atomic<int>>(0)] {
    if (++*handed == 2) place->stop_here();
  };
}

HeldThread::~HeldThread() {
  release();
}

void HeldThread::release() {
  if (std::exchange(held_, false)) place_->go.set_value();
}

void HeldThread::Place::stop_here() {
  there.set_value();
  go.get_future().wait();
}

}  // namespace tarnby::test
