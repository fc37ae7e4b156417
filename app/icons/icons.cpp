#include "app/icons/icons.h"

#include <cmath>
#include <future>

#include "platform/platform.h"

namespace tarnby {

Icons::~Icons() {
  {
    const std::lock_guard lock(exchange_.mutex);
    exchange_.asked.clear();
  }
  thread_.reset();  // finishes the one in hand
}

QImage Icons::icon(const Image& image, int side, double sharpness) {
  const int pixels = static_cast<int>(std::lround(side * sharpness));
  QByteArray key = QByteArray::number(static_cast<int>(image.kind)) + ' ' + QByteArray::number(pixels) + ' ';
  key += QByteArray::fromStdString(image.url.path());
  if (const QImage* known = kept_.object(key)) return *known;
  if (!waiting_keys_.contains(key)) ask({std::move(key), image, pixels});
  return {};
}

void Icons::ask(Asked asked) {
  if (!thread_) {
    reader_.emplace(platform_.files);
    thread_.emplace();
  }
  waiting_keys_.insert(asked.key);
  {
    const std::lock_guard lock(exchange_.mutex);
    exchange_.asked.push_back(std::move(asked));
    if (exchange_.asked.size() > most_waiting) {
      waiting_keys_.remove(exchange_.asked.front().key);
      exchange_.asked.pop_front();
      return;  // the thread takes this one at the turn of the one forgotten
    }
  }
  thread_->async([this] { read_next(); });
}

void Icons::read_next() {
  std::unique_lock lock(exchange_.mutex);
  if (exchange_.asked.empty()) return;
  const Asked asked = std::move(exchange_.asked.back());
  exchange_.asked.pop_back();
  lock.unlock();
  QImage icon = reader_->read(asked.image, asked.side);
  lock.lock();
  exchange_.found.push_back({asked.key, std::move(icon)});
  lock.unlock();
  platform_.main_queue.async([this, here = std::weak_ptr(here_)] {
    if (!here.expired()) take_found();
  });
}

void Icons::take_found() {
  std::vector<Found> found;
  {
    const std::lock_guard lock(exchange_.mutex);
    found.swap(exchange_.found);
  }
  for (const Found& one : found) {
    waiting_keys_.remove(one.key);
    kept_.insert(one.key, new QImage(one.icon));
  }
  if (!found.empty()) Q_EMIT arrived();
}

void Icons::finish() {
  if (!thread_) return;
  std::promise<void> idle;
  thread_->async([&] { idle.set_value(); });
  idle.get_future().wait();
  take_found();
}

}  // namespace tarnby
