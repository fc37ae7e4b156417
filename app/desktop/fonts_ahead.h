#pragma once

#include <thread>

namespace tarnby {

/// Reads the desktop's fonts while the program connects to the display. The toolkit would read them after that, on the
/// main thread: an eighth of the time until the window is seen. They are read when this is gone.
///
/// To be made before the application. Failures are left to the toolkit, which meets them again.
class FontsAhead {
 public:
  FontsAhead();
  FontsAhead(const FontsAhead&) = delete;
  FontsAhead& operator=(const FontsAhead&) = delete;
  ~FontsAhead();

 private:
  std::thread reader_;
};

}  // namespace tarnby
