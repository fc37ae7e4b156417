#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tarnby {

/// One value of a property list, with everything below it.
///
/// The format is the one of the PropertyList-1.0 document type and of the binary form that begins with "bplist00".
/// A plain value: copies are deep, any thread may use its own.
class PropertyList {
 public:
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList, std::less<>>;
  using Date = std::chrono::sys_seconds;
  /// Bytes that are no text.
  struct Data {
    std::string bytes;
    friend bool operator==(const Data&, const Data&) = default;
  };

  // Implicit on purpose: a list is written down as the values it holds.
  PropertyList(bool value) : value_(value) {}
  PropertyList(int value) : value_(std::int64_t{value}) {}
  PropertyList(std::int64_t value) : value_(value) {}
  PropertyList(double value) : value_(value) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Array value) : value_(std::move(value)) {}
  PropertyList(Dictionary value) : value_(std::move(value)) {}

  // In one place instead of in every caller: they branch over all kinds, call themselves, and are long.
  PropertyList(const PropertyList& other);
  PropertyList(PropertyList&& other) noexcept;
  PropertyList& operator=(const PropertyList& other);
  PropertyList& operator=(PropertyList&& other) noexcept;
  ~PropertyList();

  /// The value as one kind, or null when it is of another kind: bool, std::int64_t, double, std::string, Data, Date,
  /// Array or Dictionary.
  template <typename T>
  const T* as() const {
    return std::get_if<T>(&value_);
  }
  template <typename T>
  T* as() {
    return std::get_if<T>(&value_);
  }

  /// Calls `visitor` with the value as the kind it is.
  template <typename Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), value_);
  }

  /// The value under `key`, or null when this is no dictionary or has no such key.
  const PropertyList* find(std::string_view key) const;

  friend bool operator==(const PropertyList&, const PropertyList&) = default;

 private:
  std::variant<bool, std::int64_t, double, std::string, Data, Date, Array, Dictionary> value_;
};

/// Reads an XML list (any encoding XML allows, byte order mark or not, white space before the declaration) or a binary
/// list. None when the bytes are not a whole, sound list: a broken node anywhere makes all of it unreadable, and so do
/// containers nested deeper than 64, more than 100,000 nodes or 64 MB, a text or key above 256 KB (UTF-8), more than
/// 100 attributes and markup above 256 KB, since lists come from strangers. What a binary list refers to several times
/// counts each time, and all texts and data may come to 64 MB. An old-style ASCII list is unreadable too, but no
/// number is too large: an integer that is becomes a real one. The last one of several equal keys counts. Never throws
/// on input; any thread may call.
std::optional<PropertyList> parse_property_list(std::string_view bytes);

/// The XML form, UTF-8, dictionary keys in byte order. Texts that are not UTF-8 or hold characters XML forbids are
/// written with U+FFFD in their place. The form has four digits for a year: a date before the year 0 or after 9999 is
/// written as the first or last that there is.
std::string write_xml_property_list(const PropertyList& list);

}  // namespace tarnby
