#include "text/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace tarnby {
namespace {

TEST(Text, containment_ignores_case_and_marks_and_nothing_else) {
  struct Case {
    const char* why;
    std::string text;
    std::string part;
    bool contained;
  };
  const Case cases[] = {
      {"letter case is ignored in ASCII", "Library/Caches/com.Example.Tool", "EXAMPLE.tool", true},
      {"a decomposed name, as disks keep them, is the same", "re\u0301sume\u0301", "r\u00e9sum\u00e9", true},
      {"sharp s is ss", "Stra\u00dfe", "STRASSE", true},
      {"o with stroke is a letter of its own", "Sm\u00f8r", "smor", false},
      {"dotted capital I is an i with a mark", "\u0130stanbul", "istanbul", true},
      {"beyond the basic plane", "a\U00010400b", "\U00010428", true},
      {"an empty part is nowhere", "abc", "", false},
      {"a part of marks alone is nowhere", "e\u0301", "\u0301", false},
      {"a stray byte matches itself", "a\xFFz", "\xFFZ", true},
      {"a stray byte matches no replacement character", "a\xFF", "\uFFFD", false},
      {"half of a letter is not in the letter", "\u00f8", "\xB8", false},
      {"a cut-off sequence matches itself after a letter", "x\u00e9\xE2\x82", "e\xE2\x82", true},
      {"a lone surrogate is no UTF-8, and still finds itself", "a\xED\xA0\x80z", "\xED\xA0\x80", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.why) + ": " + c.part + " in " + c.text);
    EXPECT_EQ(contains_folded(c.text, c.part), c.contained);
  }
}

TEST(Text, ill_formed_bytes_become_replacement_characters) {
  struct Case {
    const char* why;
    std::string bytes;
    std::string text;
  };
  const Case cases[] = {
      {"sound text stays", "a\u00e9\u20ac\U0001F600", "a\u00e9\u20ac\U0001F600"},
      {"the ends of the ranges are sound", "\u0080\u07ff\u0800\ud7ff\ue000\U00010000\U0010ffff",
       "\u0080\u07ff\u0800\ud7ff\ue000\U00010000\U0010ffff"},
      {"one for a cut-off sequence", "a\xE2\x82", "a\uFFFD"},
      {"one for each overlong byte", "\xC0\x80\xE0\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"a surrogate is three", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
      {"above the last code point", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"what follows a broken sequence is not eaten", "\xE2\x82z\xFF\u00e9", "\uFFFDz\uFFFD\u00e9"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(to_valid_utf8(c.bytes), c.text);
  }
}

TEST(Text, sorting_compares_by_language_and_gives_the_order_of_comparing) {
  std::vector<std::string> names = {"b", "A", "\u00e4", "a", "B", "10", "z", "a\xFF", "a-b", "\u65e5", "\u00df"};
  const auto sorted = [&](const char* locale) {
    const Text text(locale, locale);
    for (const std::string& a : names) {
      for (const std::string& b : names) {
        EXPECT_EQ(text.order_of({a, b}).front() == 1, text.compare(a, b) > 0) << a << " and " << b << " " << locale;
      }
    }
    std::vector<std::string> labels = {"z", "b", "A", "\u00e4", "a", "10"};
    text.sort_by_label(labels, [](const std::string& name) { return name; });
    return labels;
  };
  using Labels = std::vector<std::string>;
  EXPECT_EQ(sorted("no such locale"), (Labels{"10", "A", "a", "\u00e4", "b", "z"})) << "equal ones keep their order";
  EXPECT_EQ(sorted("sv_SE.UTF-8"), (Labels{"10", "A", "a", "b", "z", "\u00e4"}));
}

TEST(Text, byte_counts_round_by_unit_and_use_the_numbers_of_the_locale) {
  const std::pair<std::int64_t, const char*> cases[] = {
      {0, "Zero KB"},
      {1, "1 byte"},
      {999, "999 bytes"},
      {1'499, "1 KB"},
      {1'500, "2 KB"},
      {999'499, "999 KB"},
      {999'500, "1 MB"},
      {1'050'000, "1.1 MB"},
      {999'949'999, "999.9 MB"},
      {999'950'000, "1 GB"},
      {1'005'000'000, "1.01 GB"},
      {999'994'999'999, "999.99 GB"},
      {999'995'000'000, "1 TB"},
      {std::numeric_limits<std::int64_t>::max(), "9.22 EB"},
      {std::numeric_limits<std::int64_t>::min(), "-9.22 EB"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(Text("C", "C").byte_count(bytes), text);
  EXPECT_EQ(Text("C", "de_DE@euro").byte_count(1'500'000'000), "1,5 GB");
  EXPECT_EQ(Text("C", "pt_PT").byte_count(1'500'000'000), "1,5 GB") << "a region of its own";
}

TEST(Text, a_locale_nobody_has_is_the_root_locale) {
  // What the environment says is input: names of no language, of the tables that the Unicode library keeps beside its
  // locales, and with options nobody knows.
  for (const char* name : {"xx_YY", "root", "zoneinfo64", "units", "plurals", "pool", "metadata", "icuver", "icustd",
                           "res_index", "supplementalData", "currencyNumericCodes", "a", "_DE", "-", "d\xC3\xA9_DE",
                           "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"}) {
    const Text text(name, name);
    EXPECT_EQ(text.byte_count(1'500'000'000), "1.5 GB") << name;
    EXPECT_EQ(text.order_of({"z", "\u00e4", "a"}), (std::vector<std::size_t>{2, 1, 0})) << name;
  }
  EXPECT_EQ(Text("de-u-co-none", "de-u-nu-none").byte_count(1'500'000'000), "1,5 GB");
  EXPECT_LT(Text("de-u-co-none", "C").compare("a", "\u00e4"), 0);
}

TEST(Text, counts_letters_of_every_script_and_nothing_else) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"", 0},         {".", 0},           {"a1-_ ", 1}, {"\u00e9\u03a9", 2}, {"e\u0301", 1}, {"\u65e5\u672c", 2},
      {"\xff\xe9", 0}, {"\u0664\u20ac", 0}};
  for (const auto& [text, letters] : cases) EXPECT_EQ(letters_in(text), letters) << text;
}

}  // namespace
}  // namespace tarnby
