#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QImage>
#include <QList>
#include <chrono>
#include <optional>

#include "files/descriptor.h"
#include "pictures/exchange.h"

namespace tarnby {

/// Has pictures that strangers made decoded by a process of ours that can do nothing else. It may die of a picture or
/// lose itself in one: then there is none, and another process decodes the next. It is started when the first picture
/// is asked for. Any thread may ask, but one at a time; it waits for the answer, some seconds at most.
class PictureProcess {
 public:
  /// Longer than any picture that somebody drew takes.
  static constexpr std::chrono::milliseconds usual_patience{10'000};

  /// @param formats that it is to know, by the toolkit's names.
  /// @param program the path of the program, when it is not our own.
  explicit PictureProcess(QList<QByteArray> formats, QByteArray program = {},
                          std::chrono::milliseconds patience = usual_patience)
      : formats_(std::move(formats)), program_(std::move(program)), patience_(patience) {}
  ~PictureProcess() { end(); }
  PictureProcess(const PictureProcess&) = delete;
  PictureProcess& operator=(const PictureProcess&) = delete;

  /// The picture in the bytes of an image file, as large as it fits into the middle of a transparent square of that
  /// many pixels; null when there is none. Of the many sizes that an icon file has the one that suits.
  QImage square(const QByteArray& bytes, int side);

  /// The picture as it is, but no wider and no higher than any display; null when there is none.
  QImage whole(const QByteArray& bytes);

  /// The number of the process that decodes at this moment; 0 when there is none.
  pid_t process() const { return process_; }

 private:
  using Deadline = std::chrono::steady_clock::time_point;

  QImage ask(const PictureRequest& request, const QByteArray& bytes);
  std::optional<QImage> answer_to(const PictureRequest& request, const QByteArray& bytes);
  std::optional<QImage> picture_from_pipe(const PictureRequest& request, Deadline deadline) const;
  bool is_there();
  bool start();
  void end();

  QList<QByteArray> formats_;
  QByteArray program_;
  std::chrono::milliseconds patience_;
  pid_t process_ = 0;
  Descriptor to_;
  Descriptor from_;
  /// What the process has been asked since it was started.
  int asked_ = 0;
  /// How often in a row it ended before it was ready.
  int failed_starts_ = 0;
};

}  // namespace tarnby
