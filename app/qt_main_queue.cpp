#include "app/qt_main_queue.h"

#include <QTimer>

namespace tarnby {

void QtMainQueue::async(Work work) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
  }
  QMetaObject::invokeMethod(
      &receiver_, [this] { run_next(); }, Qt::QueuedConnection);
}

void QtMainQueue::after(std::chrono::milliseconds delay, Work work) {
  QTimer::singleShot(delay, Qt::PreciseTimer, &receiver_, std::move(work));
}

void QtMainQueue::run_next() {
  Work work;
  {
    const std::lock_guard lock(mutex_);
    work = std::move(waiting_.front());
    waiting_.pop_front();
  }
  work();
}

}  // namespace tarnby
