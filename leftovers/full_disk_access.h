#pragma once

#include <optional>
#include <string_view>

#include "platform/session.h"

namespace tarnby {

class Platform;

/// What a look at the probe file says of the access that this program has.
enum class DiskAccess {
  /// The file is there and can be read.
  granted,
  /// It is there and cannot be read.
  denied,
  /// There is no such file: the browser it belongs to was never used.
  unknown,
};

/// Whether the system lets this program read what its privacy switches guard: browser data and mail.
///
/// The system cannot be asked; it shows when a guarded file is read. A system without such switches denies nothing, so
/// an unreadable probe file says nothing there.
class FullDiskAccess {
 public:
  /// @param version of the system; none where no switches are. The session's, except in tests.
  FullDiskAccess(Platform& platform, std::optional<SystemVersion> version) : platform_(platform), version_(version) {}
  explicit FullDiskAccess(Platform& platform);

  /// False on versions from before the switches: nothing here is called then.
  bool is_guarded() const;

  /// The probe file, relative to the granted home folder.
  std::string_view probe_file() const;

  /// Looks at the probe file, and when that tells something writes "PrivacyFullDisk" and brings it to the disk. Without
  /// a home folder nothing is known.
  DiskAccess test();

  /// Lists the personal folders one after the other, so that the system asks the user for consent to each, then writes
  /// "PrivacyAccess" and brings it to the disk. Waits while the user is asked: for a background queue.
  void privacy_for_directories();

 private:
  Platform& platform_;
  const std::optional<SystemVersion> version_;
};

}  // namespace tarnby
