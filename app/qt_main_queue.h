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
  void run_next();

  QObject receiver_;
  std::mutex mutex_;
  std::deque<Work> waiting_;
};

}  // namespace tarnby
