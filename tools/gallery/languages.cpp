#include "tools/gallery/languages.h"

#include <string>
#include <vector>

namespace tarnby {

namespace {

const Url& tables() {
  static const Url folder = Url::file(TARNBY_TABLES);
  return folder;
}

constexpr std::string_view letters = "AEIOUYaeiouycdnrstz";
constexpr const char* accented[] = {"À", "Ë", "Î", "Õ", "Ü", "Ý", "à", "ë", "î", "õ",
                                    "ü", "ý", "ç", "ð", "ñ", "ŕ", "š", "ť", "ž"};

/// The length of the placeholder that a text begins with.
std::size_t placeholder_length(std::string_view text) {
  if (text.starts_with("%@")) return 2;
  return text.size() >= 4 && text[0] == '%' && text[2] == '$' && text[3] == '@' ? 4 : 0;
}

}  // namespace

Localization in_language(std::string_view language) {
  const std::string preferred[] = {std::string(language)};
  return Localization::for_languages(preferred, tables());
}

std::string pseudo_text(std::string_view english) {
  std::string text = "[";
  std::size_t length = 0;
  while (!english.empty()) {
    if (const std::size_t placeholder = placeholder_length(english)) {
      text += english.substr(0, placeholder);
      english.remove_prefix(placeholder);
      continue;
    }
    const auto letter = letters.find(english.front());
    letter == std::string_view::npos ? text += english.front() : text += accented[letter];
    english.remove_prefix(1);
    ++length;
  }
  // In words, which a paragraph can break.
  for (std::size_t added = 0; added < length / 2; ++added) text += added % 6 == 0 && length > 12 ? " " : "ō";
  return text + "]";
}

Localization in_pseudo_language() {
  // The keys are those of any table, since all have the same.
  const Localization any = in_language("ja");
  Localization::Table table;
  for (const auto& [key, text] : any.table()) table[key] = pseudo_text(key.substr(0, key.rfind("|other")));
  return Localization(std::move(table), "x");
}

}  // namespace tarnby
