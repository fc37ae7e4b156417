#include "text/macos/core_foundation.h"

#include "text/text.h"

namespace tarnby {

Owned<CFStringRef> cf_string(std::string_view text) {
  const std::string utf8 = to_valid_utf8(text);
  return Owned<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(utf8.data()),
                                                    static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

std::string utf8_of(CFStringRef text) {
  if (!text) return {};
  const CFRange whole = CFRangeMake(0, CFStringGetLength(text));
  CFIndex size = 0;
  CFStringGetBytes(text, whole, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  CFStringGetBytes(text, whole, kCFStringEncodingUTF8, '?', false, reinterpret_cast<UInt8*>(utf8.data()), size, &size);
  utf8.resize(static_cast<std::size_t>(size));
  return utf8;
}

Owned<CFURLRef> cf_folder_url(std::string_view path) {
  if (!path.starts_with('/')) return {};
  return Owned<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), true));
}

}  // namespace tarnby
