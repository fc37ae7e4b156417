#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "files/url.h"

namespace tarnby {

class Cleaner;
class Platform;

// How files are handed to the outside helper
//
// What this program may not remove is left to a program of its own. The two talk through one property list in the
// application-support folder:
//
//     this program      writes {"Store": [paths]}, launches the helper, and looks every half second
//     the helper        removes, and adds "Complete" or "Cancel"
//     "Complete"        the cleaned screen is next
//     "Cancel"          all over again: the file is written again, which drops "Cancel", and the helper launched again
//
// The file is written in place and not at once, so either side may see a part of it, which is no answer.

/// One screen's hand-off. For the main thread. Owns no timer: the screen calls it from its own.
class HandOff {
 public:
  /// Opens the application at this location, as a click on it would.
  using Launch = std::function<void(const Url& application)>;

  /// How often `helper_timer_proc` is to be called while it waits.
  static constexpr std::chrono::milliseconds timer_interval{500};

  /// Takes `helper_url` and `application_support_url` from the settings of these names; without them there is no
  /// hand-off. They may be set to other places before it begins.
  HandOff(Platform& platform, Cleaner& cleaner, Launch launch);

  /// The hand-off file; nowhere before the first hand-off.
  Url store_url;
  /// The folder that holds this program's folder "Tarnby cleaner", which is made when it is missing.
  Url application_support_url;
  Url helper_url;

  /// Writes the paths of the cleaner's `remainder_urls` and launches the helper. Nothing happens when there is no
  /// helper or when the file cannot be written: an older list must not be worked off in its place.
  /// @return true when the timer is to be started, false when it is to be stopped.
  bool delete_files_with_helper();

  /// Looks for the helper's answer. With "Complete" posts "cleaned_view_controller"; with "Cancel" begins again. A file
  /// that is damaged, written by half, or none is no answer.
  /// @return true while the timer is to go on.
  bool helper_timer_proc();

  /// The panel that lists what is left was cancelled and closes: posts "cleanup_with_file_exist" when any of it is
  /// still there, else "cleaned_view_controller".
  void cancel();

 private:
  Platform& platform_;
  Cleaner& cleaner_;
  const Launch launch_;
};

}  // namespace tarnby
