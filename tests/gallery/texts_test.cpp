#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "tools/gallery/languages.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

constexpr const char* languages[] = {"de", "es", "fr", "ja", "zh-Hans"};

/// Collects the texts that a source looks up: the literals in `context.text(…)`, `english(…)` and, in its last place
/// before the values, `context.plural(…)`. What stands in deeper brackets is somebody else's.
class KeyReader {
 public:
  KeyReader(const std::string& source, std::set<std::string>& keys) : source_(source) {
    static const std::regex call(R"(\b(?:(?:context_?|context\(\)|localization)\.(text|plural)|english)\()");
    for (auto found = std::sregex_iterator(source.begin(), source.end(), call); found != std::sregex_iterator();
         ++found) {
      read_call(static_cast<std::size_t>(found->position() + found->length()), (*found)[1] == "plural", keys);
    }
  }

 private:
  void read_call(std::size_t at, bool plural, std::set<std::string>& keys) {
    std::vector<std::string> literals;
    int depth = 0;
    for (bool first = true; at < source_.size() && depth >= 0; ++at) {
      const char c = source_[at];
      if (c == '"') {
        const std::string literal = read_literals(at);
        if (depth == 0 && (first || plural)) literals.push_back(literal);
      }
      if (c == ',' && depth == 0) first = false;
      depth += std::string_view("([{").find(c) != std::string_view::npos ? 1 : 0;
      depth -= std::string_view(")]}").find(c) != std::string_view::npos ? 1 : 0;
    }
    if (plural && literals.size() > 1) literals = {literals[1] + "|other"};
    keys.insert(literals.begin(), literals.end());
  }

  /// One literal and those that follow it with nothing but space between, which the compiler makes one. Ends on the
  /// last one's closing mark.
  std::string read_literals(std::size_t& at) {
    std::string text;
    while (true) {
      for (++at; source_[at] != '"'; ++at) {
        if (source_[at] == '\\') ++at;
        text += source_[at];
      }
      const std::size_t next = source_.find_first_not_of(" \n", at + 1);
      if (next == std::string::npos || source_[next] != '"') return text;
      at = next;
    }
  }

  const std::string& source_;
};

std::string content_of(const fs::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> keys_in_the_sources() {
  std::set<std::string> keys;
  for (const char* folder : {"app", "ui", "engine", "leftovers", "inventory", "places", "platform", "text", "files"}) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(TARNBY_SOURCES) / folder)) {
      const fs::path kind = entry.path().extension();
      if (kind == ".cpp" || kind == ".h") KeyReader(content_of(entry.path()), keys);
    }
  }
  return keys;
}

std::ptrdiff_t placeholders(const std::string& text) {
  static const std::regex placeholder(R"(%([1-9]\$)?@)");
  return std::distance(std::sregex_iterator(text.begin(), text.end(), placeholder), {});
}

/// A table knows the forms of a plural; the sources only that there are some.
std::string without_form(const std::string& key) {
  return key.ends_with("|one") ? key.substr(0, key.rfind('|')) + "|other" : key;
}

TEST(Texts, every_table_has_exactly_the_texts_that_the_program_says) {
  const std::set<std::string> said = keys_in_the_sources();
  ASSERT_GT(said.size(), 100U) << "the sources were not found";
  for (const char* language : languages) {
    SCOPED_TRACE(language);
    const Localization localization = in_language(language);
    std::set<std::string> known;
    for (const auto& [key, text] : localization.table()) known.insert(without_form(key));
    for (const std::string& key : said) EXPECT_TRUE(known.contains(key)) << "missing: " << key;
    for (const std::string& key : known) EXPECT_TRUE(said.contains(key)) << "nobody says: " << key;
  }
}

TEST(Texts, translations_say_something_take_the_same_values_and_have_the_forms_of_their_language) {
  for (const char* language : languages) {
    const Localization localization = in_language(language);
    for (const auto& [key, text] : localization.table()) {
      SCOPED_TRACE(std::string(language) + ": " + key);
      EXPECT_FALSE(text.empty());
      const bool needs_no_figure = key.ends_with("|one");  // "one entry"
      EXPECT_TRUE(needs_no_figure || placeholders(text) == placeholders(key));
      if (!key.ends_with("|other")) continue;
      for (const std::int64_t count : {0, 1, 2}) {
        const auto form = key.substr(0, key.rfind('|') + 1).append(plural_category(language, count));
        EXPECT_TRUE(localization.table().contains(form)) << form;
      }
    }
  }
}

}  // namespace
}  // namespace tarnby
