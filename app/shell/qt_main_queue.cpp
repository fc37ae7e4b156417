#include "app/shell/qt_main_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

namespace tarnby {

void QtMainQueue::async(Work work) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
  }
  QCoreApplication::postEvent(&receiver_, new QEvent(QEvent::User));  // which Qt owns
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
