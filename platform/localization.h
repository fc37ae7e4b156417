#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>

namespace tarnby {

/// The texts that people read, in their language. The key of a text is its English; a text that no table has is shown
/// in English. Immutable; any thread may use it.
class Localization {
 public:
  using Table = std::map<std::string, std::string, std::less<>>;

  /// English.
  Localization() = default;
  explicit Localization(Table table) : table_(std::move(table)) {}

  const std::string& text(const std::string& english) const;

  /// The text with its "%@" replaced, in order, by the values. A translation that needs another order writes "%1$@",
  /// "%2$@". What has no value stays.
  std::string text(const std::string& english, std::span<const std::string> values) const;

 private:
  Table table_;
};

}  // namespace tarnby
