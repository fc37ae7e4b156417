#pragma once

#include <string_view>

#include "cli/context.h"

namespace tarnby::cli {

/// One line on standard error that is written over as work goes on and is gone at the end. Only for people who watch: a
/// terminal, and no --quiet.
class Progress {
 public:
  explicit Progress(Context& context);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Writes the line over the one before. Main thread only.
  void show(std::string_view line);

 private:
  std::ostream& err_;
  const bool shown_;
};

}  // namespace tarnby::cli
