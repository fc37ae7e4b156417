// A record of the Trash of any bytes: it gives a path or none, and what it gives can be written and read again.

#include "fuzz/fuzzer.h"
#include "places/trash_info.h"

using namespace tarnby;

namespace {

std::string percent_encoded(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    text += {'%', digits[byte / 16U], digits[byte % 16U]};
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const TrashInfo info = read_trash_info(fuzz::text_of(data, size));
  fuzz::check(info.original.empty() || info.original.is_file_url(), "a relative path is none");
  fuzz::check(info.original.path().find('\0') == std::string::npos, "no path has a NUL in it");
  fuzz::check(info.original.path().size() <= size, "it is no longer than the record");
  const std::string path = percent_encoded(info.original.path());
  const TrashInfo again = read_trash_info("[Trash Info]\nPath=" + path + "\nDeletionDate=2024-02-29T12:00:00\n");
  fuzz::check(path.size() > 60'000 || again.original == info.original, "no byte of a path is lost");
  return 0;
}
