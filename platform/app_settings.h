#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "files/url.h"
#include "platform/settings_store.h"

namespace tarnby {

/// The kind of value that a setting has. A location is kept as the text of its path.
enum class SettingType { boolean, integer, date, data, location };

/// One row of the table of settings.
struct SettingRow {
  std::string_view key;
  SettingType type;
  /// What every launch writes for the category flags; none for the other keys. It is also what such a flag reads as
  /// where no launch has written it yet.
  std::optional<bool> launch_default;
  /// A count: whatever is written there, less than 0 reads as 0.
  bool is_sum = false;
};

/// Every key of the standard store, in the order in which settings are listed.
std::span<const SettingRow> setting_rows();

/// The row of a key, or null when there is no such setting.
const SettingRow* setting_row(std::string_view key);

/// The user's standard settings, read by their types. Any thread may call.
class AppSettings {
 public:
  explicit AppSettings(SettingsStore& store) : store_(store) {}

  /// False when never written or of another kind, but a category flag then reads as its launch default. A whole number
  /// counts as true when it is not 0, as in property lists written by hand.
  bool boolean(std::string_view key) const;
  /// 0 when never written or of another kind; true counts as 1.
  std::int64_t integer(std::string_view key) const;

  /// Nowhere when never written or no absolute path.
  Url location(std::string_view key) const;

  // As those of SettingsStore: seen at once, on the disk after `synchronize`.

  void set_boolean(std::string_view key, bool value) { store_.set(key, value); }
  void set_integer(std::string_view key, std::int64_t value) { store_.set(key, value); }
  void add_integer(std::string_view key, std::int64_t amount) { store_.add(key, amount); }
  /// Brings what was set to the disk; false when that failed, and the next call tries again.
  bool synchronize() { return store_.synchronize(); }
  /// For values of other kinds, and for all keys at once.
  SettingsStore& store() { return store_; }
  const SettingsStore& store() const { return store_; }

  /// Writes the launch defaults of the seven category flags over what is stored: what the user chose on a category
  /// screen lasts until the next launch, so that no launch begins with a forgotten choice. Pinned by
  /// AppSettings.a_launch_is_counted_and_forgets_the_choice_of_categories.
  void initialize_applications_settings();

  /// The settings side of a launch, in order: the category flags, "appLaunchCount" + 1, "UOLaunchCount" + 1 unless
  /// "Uninstaller Orvane" is true. The caller brings it to the disk.
  void count_launch();

 private:
  SettingsStore& store_;
};

}  // namespace tarnby
