#include "platform/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <numeric>
#include <string>
#include <thread>
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
      {"neighbours of the letters are no letters", "@[", "`{", false},
      {"a mark in the text is ignored", "R\u00e9sum\u00e9.pdf", "resume", true},
      {"a mark in the part is ignored", "resume.pdf", "R\u00c9SUM\u00c9", true},
      {"a decomposed name, as disks keep them, is the same", "re\u0301sume\u0301", "r\u00e9sum\u00e9", true},
      {"the order of several marks is no difference", "q\u0307\u0323", "q\u0323\u0307", true},
      {"sharp s is ss", "Stra\u00dfe", "STRASSE", true},
      {"and the other way round", "STRASSE", "stra\u00dfe", true},
      {"o with stroke is a letter of its own", "Sm\u00f8r", "smor", false},
      {"ae is two letters, the ligature one", "\u00e6on", "ae", false},
      {"dotted capital I is an i with a mark", "\u0130stanbul", "istanbul", true},
      {"final sigma is sigma", "\u039f\u0394\u039f\u03a3", "\u03bf\u03b4\u03cc\u03c2", true},
      {"beyond the basic plane", "a\U00010400b", "\U00010428", true},
      {"the part must stand in a row", "abxc", "abc", false},
      {"an empty part is nowhere", "abc", "", false},
      {"a part of marks alone is nowhere", "e\u0301", "\u0301", false},
      {"a stray byte matches itself", "a\xFFz", "\xFFZ", true},
      {"a stray byte matches no other", "a\xFE", "\xFF", false},
      {"a stray byte matches no replacement character", "a\xFF", "\uFFFD", false},
      {"half of a letter is not in the letter", "\u00f8", "\xB8", false},
      {"nor its lead byte", "\u00f8", "\xC3", false},
      {"a cut-off sequence matches itself after a letter", "x\u00e9\xE2\x82", "e\xE2\x82", true},
      {"and not the whole one", "\u20ac", "\xE2\x82", false},
      {"the code of a stray byte, written out, is four stray bytes", "\xFF", "\xF4\x90\x83\xBF", false},
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

TEST(Text, letter_case_follows_no_language) {
  EXPECT_EQ(upper_first("editor"), "Editor");
  EXPECT_EQ(upper_first("\u00e9diteur"), "\u00c9diteur");
  EXPECT_EQ(upper_first("\u00dfa"), "SSa") << "one letter may become two";
  EXPECT_EQ(upper_first("istanbul"), "Istanbul") << "no dotted capital, in Turkish neither";
  EXPECT_EQ(upper_first(""), "");
  EXPECT_EQ(upper_first("\xFFx"), "\xFFx");
  EXPECT_EQ(lower_case("ExAMPLE \u00c9\u00d8"), "example \u00e9\u00f8");
  EXPECT_EQ(lower_case("\u039f\u03a3"), "\u03bf\u03c2") << "the last sigma of a word";
  EXPECT_EQ(lower_case("A\xFF\xC3Z"), "a\xFF\xC3z");
}

TEST(Text, comparison_ignores_case_and_counts_accents) {
  const Text root("C", "C");
  EXPECT_EQ(root.compare("resume", "RESUME"), 0);
  EXPECT_LT(root.compare("resume", "r\u00e9sum\u00e9"), 0);
  EXPECT_EQ(root.compare("re\u0301sume\u0301", "R\u00c9SUM\u00c9"), 0);
  EXPECT_LT(root.compare("apple", "Banana"), 0) << "not the order of bytes";
  EXPECT_LT(root.compare("\u00e4", "z"), 0);
  EXPECT_EQ(root.compare("a\xFF", "a\uFFFD"), 0) << "bytes that are not UTF-8";
  EXPECT_GT(Text("sv_SE.UTF-8", "C").compare("\u00e4", "z"), 0) << "in Swedish it comes after z";
  EXPECT_GT(Text("sv_SE@euro", "C").compare("\u00e4", "z"), 0);
  for (const char* name : {"", "POSIX", "C.UTF-8", "xx_YY.UTF-8", "no such locale"}) {
    EXPECT_LT(Text(name, name).compare("\u00e4", "z"), 0) << name;
  }
}

TEST(Text, sort_keys_give_the_order_of_the_comparison) {
  const std::string samples[] = {"",
                                 "a",
                                 "A",
                                 "\u00e4",
                                 "ab",
                                 "a b",
                                 "a-b",
                                 "z",
                                 "\u00df",
                                 "ss",
                                 "10",
                                 "9",
                                 "\u65e5\u672c",
                                 "\xFF",
                                 "\xE2\x82",
                                 std::string("a\0b", 3),
                                 "\U0001F600",
                                 std::string(5000, 'x')};
  for (const char* locale : {"C", "de_DE.UTF-8", "sv_SE.UTF-8"}) {
    const Text text(locale, locale);
    for (const std::string& a : samples) {
      for (const std::string& b : samples) {
        const int by_key = text.sort_key(a).compare(text.sort_key(b));
        const int by_text = text.compare(a, b);
        EXPECT_EQ(by_key < 0, by_text < 0) << a << " and " << b;
        EXPECT_EQ(by_key == 0, by_text == 0) << a << " and " << b;
      }
    }
  }
}

TEST(Text, sorting_keeps_the_order_of_equal_labels) {
  std::vector<std::string> names = {"b", "A", "\u00e4", "a", "B", "10", "a"};
  Text("C", "C").sort_by_label(names, [](const std::string& name) { return name; });
  EXPECT_EQ(names, (std::vector<std::string>{"10", "A", "a", "a", "\u00e4", "b", "B"}));
}

TEST(Text, one_text_serves_many_threads) {
  const Text text("de_DE.UTF-8", "de_DE.UTF-8");
  std::vector<int> wrong(4, 0);
  std::vector<std::thread> threads;
  threads.reserve(wrong.size());
  for (int& count : wrong) {
    threads.emplace_back([&text, &count] {
      for (int round = 0; round < 200; ++round) {
        count += text.compare("stra\u00dfe", "STRA\u00dfE") == 0 ? 0 : 1;
        count += text.sort_key("a") < text.sort_key("b") ? 0 : 1;
        count += text.byte_count(1'500'000) == "1,5 MB" ? 0 : 1;
        count += contains_folded("Caf\u00e9", "cafe") ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::accumulate(wrong.begin(), wrong.end(), 0), 0);
}

TEST(Text, byte_counts_round_by_unit) {
  struct Case {
    std::int64_t bytes;
    const char* text;
  };
  const Case cases[] = {
      {0, "Zero KB"},
      {1, "1 byte"},
      {2, "2 bytes"},
      {999, "999 bytes"},
      {1'000, "1 KB"},
      {1'499, "1 KB"},
      {1'500, "2 KB"},
      {12'345, "12 KB"},
      {999'499, "999 KB"},
      {999'500, "1 MB"},
      {999'999, "1 MB"},
      {1'049'999, "1 MB"},
      {1'050'000, "1.1 MB"},
      {10'000'000, "10 MB"},
      {999'949'999, "999.9 MB"},
      {999'950'000, "1 GB"},
      {1'004'999'999, "1 GB"},
      {1'005'000'000, "1.01 GB"},
      {1'500'000'000, "1.5 GB"},
      {2'250'000'000, "2.25 GB"},
      {999'994'999'999, "999.99 GB"},
      {999'995'000'000, "1 TB"},
      {1'234'567'890'123'456, "1.23 PB"},
      {999'994'999'999'999'999, "999.99 PB"},
      {999'995'000'000'000'000, "1 EB"},
      {std::numeric_limits<std::int64_t>::max(), "9.22 EB"},
      {-1, "-1 byte"},
      {-1'500'000, "-1.5 MB"},
      {std::numeric_limits<std::int64_t>::min(), "-9.22 EB"},
  };
  const Text text("C", "C");
  for (const Case& c : cases) EXPECT_EQ(text.byte_count(c.bytes), c.text) << c.bytes;
}

TEST(Text, byte_counts_use_the_numbers_of_the_locale) {
  struct Case {
    const char* locale;
    const char* text;
  };
  const Case cases[] = {
      {"en_US.UTF-8", "1.5 GB"}, {"de_DE.UTF-8", "1,5 GB"},          {"de_DE@euro", "1,5 GB"},
      {"de_CH.UTF-8", "1.5 GB"}, {"fa_IR", "\u06f1\u066b\u06f5 GB"}, {"C.UTF-8", "1.5 GB"},
      {"xx_YY", "1.5 GB"},
  };
  for (const Case& c : cases) EXPECT_EQ(Text("C", c.locale).byte_count(1'500'000'000), c.text) << c.locale;
}

}  // namespace
}  // namespace tarnby
