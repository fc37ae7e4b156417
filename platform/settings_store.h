#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "files/url.h"
#include "text/property_list.h"

namespace tarnby {

/// A persistent key/value store. Any thread may call.
///
/// What is set is seen by readers of this object at once and reaches the disk with `synchronize`.
class SettingsStore {
 public:
  using Values = PropertyList::Dictionary;

  virtual ~SettingsStore() = default;

  /// The value under a key; none when it was never written.
  virtual std::optional<PropertyList> value(std::string_view key) const = 0;
  /// Replaces the value under a key, whatever kind it was.
  virtual void set(std::string_view key, PropertyList value) = 0;
  /// Adds to a whole number (absent or of another kind counts as 0) and saturates. Two processes that add both count:
  /// the sum is made when the store is written, from what the file holds then.
  virtual void add(std::string_view key, std::int64_t amount) = 0;
  /// From now on the key reads as one that was never written.
  virtual void remove(std::string_view key) = 0;
  /// Everything written so far.
  virtual Values all() const = 0;

  /// Brings what was set to the disk. False when that failed: the old content is still there, this object keeps
  /// what was set, and the next call tries again. True when there was nothing to write.
  virtual bool synchronize() = 0;

  /// False when stored settings exist but could not be read: what the user chose is unknown then.
  virtual bool is_readable() const { return true; }
};

/// The value of a key after `add`. `held` is the value before, null when there is none; a negative one counts as 0. The
/// sum saturates.
PropertyList sum_of(const PropertyList* held, std::int64_t amount);

/// A store kept in one XML property-list file.
///
/// The file is written whole to a temporary file beside it, flushed to the disk and renamed over the old one, so that a
/// crash or a full disk at any moment leaves the old or the new content. Writers take turns on a lock file and merge
/// only the keys they changed into what the file holds by then, so two processes that write different keys both keep
/// their values. A writer waits three seconds for the lock at most; then the file stays as it is. A file that cannot be
/// parsed is set aside under its name with ".damaged" (".damaged-2" and so on when that is taken) before a new one is
/// written. A file that is there but cannot be read is never replaced.
///
/// A store without a file, or in a folder where nothing can be written, keeps its values in memory.
std::unique_ptr<SettingsStore> open_settings_file(const Url& file);

/// From now on this process waits at most 200 ms for others that hold the settings lock. A signal handler may call.
void hurry_settings();

/// Where the settings file really is when its path is a link; nowhere when that cannot be found out.
Url place_of_settings(const Url& file);

/// A layer over another store for one run. Keys set with `set_for_this_run` are seen instead of the store's own, and
/// what is written to them later stays in memory too; other writes go through, unless the whole layer is told to keep
/// everything in memory.
class RunSettings final : public SettingsStore {
 public:
  explicit RunSettings(std::unique_ptr<SettingsStore> below) : below_(std::move(below)) {}

  /// The value that the key has from now on; it is never written below.
  void set_for_this_run(std::string_view key, PropertyList value);
  /// From now on nothing is written below: a dry run.
  void keep_in_memory();

  std::optional<PropertyList> value(std::string_view key) const override;
  void set(std::string_view key, PropertyList value) override;
  void add(std::string_view key, std::int64_t amount) override;
  void remove(std::string_view key) override;
  Values all() const override;
  bool synchronize() override;
  bool is_readable() const override { return below_->is_readable(); }

 private:
  bool stays_here(std::string_view key) const;

  mutable std::mutex mutex_;
  std::unique_ptr<SettingsStore> below_;
  bool all_in_memory_ = false;
  /// Absent value: removed for this run.
  std::map<std::string, std::optional<PropertyList>, std::less<>> here_;
};

}  // namespace tarnby
