#include <unicode/plurrule.h>
#include <unicode/unistr.h>

#include <memory>
#include <string>

#include "text/localization.h"

namespace tarnby {

namespace {

constexpr std::string_view categories[] = {"zero", "one", "two", "few", "many"};

/// The rules that a thread asked last; making them reads data.
struct LastRules {
  std::string language;
  std::unique_ptr<icu::PluralRules> rules;
};

const icu::PluralRules* rules_of(std::string_view language) {
  thread_local LastRules last;
  if (!last.rules || last.language != language) {
    UErrorCode status = U_ZERO_ERROR;
    last.language = language;
    last.rules.reset(icu::PluralRules::forLocale(icu::Locale(last.language.c_str()), status));
    if (U_FAILURE(status)) last.rules.reset();
  }
  return last.rules.get();
}

}  // namespace

std::string_view plural_category(std::string_view language, std::int64_t count) {
  const icu::PluralRules* rules = rules_of(language);
  if (!rules) return "other";
  const icu::UnicodeString chosen = rules->select(static_cast<double>(count));
  for (const std::string_view category : categories) {
    if (chosen == icu::UnicodeString::fromUTF8(icu::StringPiece(category.data(), static_cast<int>(category.size())))) {
      return category;
    }
  }
  return "other";
}

}  // namespace tarnby
