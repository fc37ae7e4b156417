#pragma once

#include <QObject>
#include <deque>
#include <mutex>

#include "platform/queues.h"

namespace tarnby {

/// The main queue of a program with a window: its work runs in Qt's event loop. Made on the main thread. What is still
/// waiting when it goes is dropped.
class QtMainQueue final : public MainQueue {
 public:
  void async(Work work) override;
  void after(std::chrono::milliseconds delay, Work work) override;

 private:
  /// Is told that there is work. Nothing but the news goes through Qt, whose own locks a thread checker does not see;
  /// the work goes through the list.
  class Receiver final : public QObject {
   public:
    explicit Receiver(QtMainQueue& queue) : queue_(queue) {}

   protected:
    void customEvent(QEvent*) override { queue_.run_next(); }

   private:
    QtMainQueue& queue_;
  };

  void run_next();

  Receiver receiver_{*this};
  std::mutex mutex_;
  std::deque<Work> waiting_;
};

}  // namespace tarnby
