#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

namespace tarnby {

/// A text of an application's record by whose occurrence in a name an entry is known to belong to the application.
enum class Key : std::uint8_t {
  label,
  label_name,
  bundle,
  bundle_name,
  bundle_name_info,
  executable_info,
  company_name,
  /// The company with a capital; other than `company_name` it stays what it is for the maker of the system.
  company_key,
  /// The letters of the label.
  name_key,
  log_file_name,
  optional_bundle,
  optional_developer_id,
  /// The identifiers of the helpers that the application starts at login.
  login_items,
};

inline constexpr Key all_keys[] = {Key::label,         Key::label_name,       Key::bundle,
                                   Key::bundle_name,   Key::bundle_name_info, Key::executable_info,
                                   Key::company_name,  Key::company_key,      Key::name_key,
                                   Key::log_file_name, Key::optional_bundle,  Key::optional_developer_id,
                                   Key::login_items};

/// Some of the keys.
class Keys {
 public:
  constexpr Keys() = default;
  constexpr Keys(std::initializer_list<Key> keys) {
    for (const Key key : keys) bits_ |= bit(key);
  }
  constexpr bool holds(Key key) const { return (bits_ & bit(key)) != 0; }

 private:
  static constexpr std::uint32_t bit(Key key) { return 1U << static_cast<unsigned>(key); }
  std::uint32_t bits_ = 0;
};

/// What a location lies beneath. The granted disk is searched only when the user opened the whole of it ("AllowAny").
enum class Base : std::uint8_t { library, home, disk, bundle, around_bundle };

/// How a location is read. Hidden entries are passed over.
enum class Reading : std::uint8_t {
  /// Its immediate entries.
  list,
  /// Everything below it.
  walk,
  /// The location itself, when it exists, whatever the names.
  place,
  /// Its applications, whose identifiers become the keys `login_items`.
  identifiers,
};

/// Which words tell editions apart: an entry whose name has one belongs to an application whose `bundle_name` has it,
/// too, and to no other.
enum class Editions : std::uint8_t { pro, pro_and_plus };

/// Which applications have something in a location. How each is recognised stands in inventory/related_files.cpp.
enum class Owners : std::uint8_t { all, in_adobe_folder, outlook, xcode };

/// What most locations have alike.
struct LocationTraits {
  /// Keys tried besides, but only when files are shown and not for removal.
  Keys shown_keys = {};
  Editions editions = Editions::pro;
  /// Which names are taken at all; null: every one.
  bool (*takes)(std::string_view name) = nullptr;
  /// An entry directly in the location that is passed over with all below it.
  std::string_view left_out = {};
  Owners owners = Owners::all;
  /// False for what is shown and never removed with the application.
  bool is_removed = true;
};

/// One place where files of an application may be, and how they are known. What is shown and what is removed come from
/// the same rows; where the two differ on purpose, a column says so.
struct RelatedLocation {
  /// Its place in the order in which the groups are filled. A location of two entries has two rows.
  int order;
  Base base;
  std::string_view folder;
  Reading reading;
  /// The marker before its entries.
  std::string_view group;
  /// One of them in the name suffices.
  Keys keys;
  LocationTraits traits = {};
};

/// Every location, one row or two each.
std::span<const RelatedLocation> related_locations();

/// The marker before the bundle itself.
inline constexpr std::string_view executables_group = "Executables";

}  // namespace tarnby
