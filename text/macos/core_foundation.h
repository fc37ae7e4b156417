#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <utility>

namespace tarnby {

/// Owns one reference to an object that a function with Create or Copy in its name returned; or none.
template <typename Ref>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Ref ref) : ref_(ref) {}
  ~Owned() {
    if (ref_) CFRelease(ref_);
  }
  Owned(Owned&& other) noexcept : ref_(std::exchange(other.ref_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(ref_, other.ref_);
    return *this;
  }

  explicit operator bool() const { return ref_ != nullptr; }
  Ref get() const { return ref_; }

 private:
  Ref ref_ = nullptr;
};

/// The text as an object; bytes that are not UTF-8 become U+FFFD.
Owned<CFStringRef> cf_string(std::string_view text);

/// An object's text; empty for none.
std::string utf8_of(CFStringRef text);

/// A file URL as an object; none for anything else. The path is taken as bytes.
Owned<CFURLRef> cf_folder_url(std::string_view path);

}  // namespace tarnby
