// What the process that decodes pictures is sent: a request and a file of a format that bundles carry. The first four
// bytes are the request, the others the file.

#include <QImageReader>
#include <new>

#include "fuzz/fuzzer.h"
#include "pictures/decoder.h"

using namespace tarnby;

// Files may claim to hold gigabytes. The process has a limit, at which its decoders give up; here a lower one is the
// sanitizer's.
extern "C" const char* __asan_default_options();   // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" const char* __asan_default_options() {  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
  return "max_allocation_size_mb=256:allocator_may_return_null=1";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t head = 4;
  if (size <= head) return 0;
  const PictureRequest request = {static_cast<PictureRequest::Shape>(data[0] % 3),
                                  data[1] | static_cast<std::uint32_t>(data[2] << 8),
                                  static_cast<std::uint32_t>(size - head)};
  if (!request.is_sound()) return 0;
  QImageReader::setAllocationLimit(64);  // megabytes; larger pictures take long and tell nothing more
  const auto bytes =
      QByteArray::fromRawData(reinterpret_cast<const char*>(data) + head, static_cast<qsizetype>(size - head));
  QImage picture;
  try {
    picture = decode_picture(bytes, request, {"icns", "png", "jpeg"});
  } catch (const std::bad_alloc&) {
    return 0;  // of which the process may die: that is what it is for
  }
  if (picture.isNull()) return 0;
  const PictureAnswer answer = {static_cast<std::uint32_t>(picture.width()),
                                static_cast<std::uint32_t>(picture.height())};
  fuzz::check(answer.answers(request), "a picture is as large as it was asked for");
  fuzz::check(picture.format() == QImage::Format_ARGB32_Premultiplied, "its pixels are as they are sent");
  fuzz::check(picture.sizeInBytes() == qsizetype{4} * picture.width() * picture.height(), "no gap is between its rows");
  return 0;
}
