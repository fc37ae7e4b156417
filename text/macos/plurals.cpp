#include <algorithm>
#include <iterator>

#include "text/localization.h"

namespace tarnby {

// The system's frameworks choose forms for their own string tables only, so the languages that the tables are in have
// their rules here.

namespace {

/// Which whole numbers take the form "one"; all others take "other".
struct PluralRow {
  std::string_view language;
  bool zero_is_one;
  bool one_is_one;
};

constexpr PluralRow plural_rows[] = {
    {"fr", true, true},
    {"ja", false, false},
    {"zh", false, false},
};
constexpr PluralRow usual_plural = {"", false, true};

}  // namespace

std::string_view plural_category(std::string_view language, std::int64_t count) {
  const std::string_view main_part = language.substr(0, language.find('-'));
  const PluralRow* row = std::find_if(std::begin(plural_rows), std::end(plural_rows),
                                      [&](const PluralRow& one) { return one.language == main_part; });
  const PluralRow& rule = row == std::end(plural_rows) ? usual_plural : *row;
  const bool is_one = (count == 0 && rule.zero_is_one) || (count == 1 && rule.one_is_one);
  return is_one ? "one" : "other";
}

}  // namespace tarnby
