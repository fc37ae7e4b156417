#pragma once

#include <QtGlobal>

namespace tarnby {

/// While it lives, a toolkit that finds no display to open windows on ends the program with one line on what to do
/// instead, and status 1, where it would abort. What else it says then is kept and told when this goes. Main thread,
/// one at a time.
class NeedsDisplay {
 public:
  NeedsDisplay();
  ~NeedsDisplay();
  NeedsDisplay(const NeedsDisplay&) = delete;
  NeedsDisplay& operator=(const NeedsDisplay&) = delete;

 private:
  QtMessageHandler before_;
};

}  // namespace tarnby
