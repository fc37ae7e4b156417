#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "app/parts/screen.h"

namespace tarnby {

/// One screen that a catalogue can make.
struct ScreenRow {
  std::string_view identifier;
  std::function<std::unique_ptr<Screen>(AppContext& context)> make;
};

/// Makes screens by their identifiers. Asking for one that it does not have is a programming error and ends the
/// program.
class ScreenCatalogue {
 public:
  /// The catalogue of the window itself.
  static const ScreenCatalogue& main();
  /// The one named "SmartClean": the road of the smart scan. Its About panels tell of the same categories in other
  /// words than those of the main one, under the same identifiers.
  static const ScreenCatalogue& smart_clean();

  std::string_view name() const { return name_; }
  std::span<const ScreenRow> rows() const { return rows_; }
  std::unique_ptr<Screen> make(std::string_view identifier, AppContext& context) const;

 private:
  ScreenCatalogue(std::string_view name, std::vector<ScreenRow> rows) : name_(name), rows_(std::move(rows)) {}

  std::string_view name_;
  std::vector<ScreenRow> rows_;
};

}  // namespace tarnby
