#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "files/entry_kind.h"

namespace tarnby {

/// What follows the last dot of a file name; empty when there is no dot, when the only dot is the first character, or
/// when the name ends in a dot.
std::string_view path_extension_of(std::string_view name);

/// An ASCII letter in lower case; any other character as it is.
constexpr char ascii_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The part of a path after its last "/"; the whole path when it has none.
std::string_view last_component_of(std::string_view path);

/// A location: a file URL (an absolute path, kept as the bytes the file system gave), a bare relative text (a group
/// marker, a web address), or nothing at all.
///
/// A file URL has no empty and no "." components and no "/" at its end; ".." is kept; functions that open a location
/// refuse it. Copies are independent values; any thread may use its own.
class Url {
 public:
  /// Nowhere: not a file URL, and whatever is appended to it stays nowhere.
  Url() = default;

  /// The file URL of an absolute path; nowhere when the path is empty, relative or holds a NUL.
  static Url file(std::string_view absolute_path);

  /// A text that names no file.
  static Url text(std::string_view text);

  bool is_file_url() const { return !text_.empty() && text_.front() == '/'; }
  bool empty() const { return text_.empty(); }

  /// The absolute path of a file URL, otherwise the text itself.
  const std::string& path() const { return text_; }

  /// The name of the entry; empty for "/". Valid as long as this Url does not change.
  std::string_view last_path_component() const;
  std::string_view path_extension() const { return path_extension_of(last_path_component()); }

  /// This location with one or more components after it ("Library/Caches"); nowhere when this is not a file URL.
  Url appending(std::string_view components) const;

  /// The folder that holds this entry; "/" is its own parent.
  Url parent() const;

  /// True when this location is `folder` or lies below it, by the components of the two paths.
  bool is_within(const Url& folder) const;

  /// This location with the kind of entry that a listing found there, which a removal compares with what is there by
  /// then. The kind takes no part in comparisons, and `appending`, `parent` and Url::file(path()) drop it.
  Url listed_as(EntryKind kind) const {
    Url url = *this;
    url.listed_kind_ = kind;
    return url;
  }
  /// EntryKind::none when this location does not come from a listing.
  EntryKind listed_kind() const { return listed_kind_; }

  friend bool operator==(const Url& a, const Url& b) { return a.text_ == b.text_; }
  friend std::strong_ordering operator<=>(const Url& a, const Url& b) { return a.text_ <=> b.text_; }

 private:
  explicit Url(std::string text) : text_(std::move(text)) {}
  std::string text_;
  EntryKind listed_kind_ = EntryKind::none;
};

/// Orders paths as a pre-order walk meets them: component by component, each in byte order.
bool walks_before(std::string_view a, std::string_view b);

}  // namespace tarnby

template <>
struct std::hash<tarnby::Url> {
  std::size_t operator()(const tarnby::Url& url) const noexcept { return std::hash<std::string>{}(url.path()); }
};
