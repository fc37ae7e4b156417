#include "app/desktop/linux/font_preloader.h"

#include <fontconfig/fontconfig.h>

#include <clocale>
#include <cstdlib>

namespace tarnby {

FontPreloader::FontPreloader() {
  // The toolkit takes this one out of the environment when it has read it (startup notification), and nobody may read
  // the environment meanwhile, as fontconfig does: setenv(3).
  if (std::getenv("DESKTOP_STARTUP_ID") != nullptr) return;  // NOLINT(concurrency-mt-unsafe): no thread yet
  reader_ = std::thread([] {
    // The application sets the process's locale meanwhile, and fontconfig asks for its decimal point at every number.
    uselocale(newlocale(LC_ALL_MASK, "C", nullptr));
    (void)FcInit();
  });
}

FontPreloader::~FontPreloader() {
  if (reader_.joinable()) reader_.join();
}

}  // namespace tarnby
