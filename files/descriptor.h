#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace tarnby {

/// Repeats a system call that a signal interrupted. Folders on other machines and in user space can be interrupted
/// where those on a disk cannot.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Owns one open file descriptor and closes it at the end. Holds none while its number is negative, which is what a
/// failed open(2) returns, so the result of a call can be handed over unchecked.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() { reset(); }

  Descriptor(Descriptor&& other) noexcept : descriptor_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    reset(other.release());
    return *this;
  }

  explicit operator bool() const { return descriptor_ >= 0; }
  /// The number for system calls; still owned here.
  int get() const { return descriptor_; }

  /// Gives the descriptor away without closing it.
  [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }

  /// Closes what is held, and holds `descriptor` from now on.
  void reset(int descriptor = -1) {
    const int old = std::exchange(descriptor_, descriptor);
    // The result says nothing that a caller could act on: the number is free again even after an error, and a second
    // call could close what another thread has opened meanwhile.
    if (old >= 0 && old != descriptor) (void)::close(old);
  }

 private:
  int descriptor_ = -1;
};

}  // namespace tarnby
