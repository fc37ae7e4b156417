#pragma once

#include <QCache>
#include <QObject>
#include <QSet>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "app/icons/icon_reader.h"
#include "platform/queues.h"

namespace tarnby {

class Platform;

/// The icons that rows are drawn with. They are read when they are first asked for, on a thread of their own, which no
/// scan and no measurement holds up. Main thread only.
class Icons : public QObject {
  Q_OBJECT
 public:
  explicit Icons(Platform& platform) : platform_(platform) {}
  ~Icons() override;

  /// The icon for a square of that side on a display of that sharpness; null while it is being read, and `arrived` is
  /// emitted when it is there.
  QImage icon(const Image& image, int side, double sharpness);

  /// Waits until everything asked for is there.
  void finish();

 Q_SIGNALS:
  void arrived();

 private:
  struct Asked {
    QByteArray key;
    Image image;
    int side;
  };
  struct Found {
    QByteArray key;
    QImage icon;
  };
  /// What goes to the thread and comes back. A person who scrolls has long passed what was asked for first, so the last
  /// comes first, and the oldest are forgotten; a row that is drawn again asks again.
  struct Exchange {
    std::mutex mutex;
    std::deque<Asked> asked;
    std::vector<Found> found;
  };

  void ask(Asked asked);
  void read_next();
  void take_found();

  static constexpr std::size_t most_waiting = 128;
  /// Some megabytes, most of which are shared: files of one kind have one icon.
  static constexpr qsizetype most_kept = 2000;

  Platform& platform_;
  QCache<QByteArray, QImage> kept_{most_kept};
  QSet<QByteArray> waiting_keys_;
  Exchange exchange_;
  std::optional<IconReader> reader_;  // the thread's, once it has been made
  std::shared_ptr<int> here_ = std::make_shared<int>();
  std::optional<BackgroundQueue> thread_;
};

}  // namespace tarnby
