#include "text/encodings.h"

#include "text/macos/core_foundation.h"

namespace tarnby {

std::optional<std::string> to_utf8(std::string_view bytes, const std::string& encoding) {
  if (encoding.empty()) return std::nullopt;
  const CFStringEncoding known = CFStringConvertIANACharSetNameToEncoding(cf_string(encoding).get());
  if (known == kCFStringEncodingInvalidId) return std::nullopt;
  const Owned<CFStringRef> text(CFStringCreateWithBytes(kCFAllocatorDefault,
                                                        reinterpret_cast<const UInt8*>(bytes.data()),
                                                        static_cast<CFIndex>(bytes.size()), known, false));
  if (!text) return std::nullopt;
  const CFRange whole = CFRangeMake(0, CFStringGetLength(text.get()));
  // Half a surrogate pair is no text: it is not converted, and then the count falls short.
  if (CFStringGetBytes(text.get(), whole, kCFStringEncodingUTF8, 0, false, nullptr, 0, nullptr) != whole.length) {
    return std::nullopt;
  }
  return utf8_of(text.get());
}

}  // namespace tarnby
