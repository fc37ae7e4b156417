// Decodes pictures from strangers, and can do nothing else: bytes come through a pipe, pixels go through another.
//   tarnby-cleaner-pictures FORMAT...
// Started by the window. Status 0 when there are no more requests, 1 when it cannot be confined or is asked nonsense.

#include <unistd.h>

#include <QCoreApplication>
#include <cerrno>
#include <cstddef>

#include "pictures/confinement.h"
#include "pictures/decoder.h"

namespace tarnby {

namespace {

/// The whole of so many bytes through a pipe, by as many calls as that takes; false when the pipe ends before.
/// @param call moves some of the bytes, from the one with that number on.
template <typename Call>
bool transfer(std::size_t size, Call call) {
  for (std::size_t done = 0; done < size;) {
    const ssize_t count = call(done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

bool take(void* bytes, std::size_t size) {
  return transfer(
      size, [&](std::size_t done) { return ::read(STDIN_FILENO, static_cast<char*>(bytes) + done, size - done); });
}

bool give(const void* bytes, std::size_t size) {
  return transfer(size, [&](std::size_t done) {
    return ::write(STDOUT_FILENO, static_cast<const char*>(bytes) + done, size - done);
  });
}

bool give(const QImage& picture) {
  const PictureAnswer answer = {static_cast<std::uint32_t>(picture.width()),
                                static_cast<std::uint32_t>(picture.height())};
  // Four bytes a pixel leave no gap between rows.
  return give(&answer, sizeof answer) && give(picture.constBits(), static_cast<std::size_t>(picture.sizeInBytes()));
}

/// 0 at the end of what is asked.
int serve(const PictureFormats& formats) {
  PictureRequest request{};
  while (take(&request, sizeof request)) {
    if (!request.is_sound()) return 1;
    QByteArray bytes(static_cast<qsizetype>(request.length), Qt::Uninitialized);
    if (!take(bytes.data(), request.length) || !give(decode_picture(bytes, request, formats))) return 1;
  }
  return 0;
}

/// The toolkit scales large pictures on many threads, which this process may not start, unless the program is about to
/// end. It is, as far as the toolkit knows, once an application object has gone.
void keep_to_one_thread(int& count, char** words) {
  const QCoreApplication gone(count, words);
}

}  // namespace

}  // namespace tarnby

int main(int count, char** words) {
  const tarnby::PictureFormats formats(words + 1, words + count);
  tarnby::keep_to_one_thread(count, words);
  tarnby::load_decoders(formats);
  const bool ready = tarnby::confine_to_pipes() && tarnby::give(&tarnby::pictures_ready, 1);
  // Without the ends of all objects: some of the toolkit's would ask for more than is left.
  _exit(ready ? tarnby::serve(formats) : 1);
}
