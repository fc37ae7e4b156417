#pragma once

#include <thread>

namespace tarnby {

/// Reads the desktop's fonts while the program connects to the display. The toolkit would read them after that, on the
/// main thread: an eighth of the time until the window is seen. The destructor waits until they are read.
///
/// To be made before the application. Failures are left to the toolkit, which meets them again.
class FontPreloader {
 public:
  FontPreloader();
  FontPreloader(const FontPreloader&) = delete;
  FontPreloader& operator=(const FontPreloader&) = delete;
  ~FontPreloader();

 private:
  std::thread reader_;
};

}  // namespace tarnby
