#include "text/property_list.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <bit>
#include <limits>
#include <random>

#include "tests/support/seed.h"

namespace tarnby {
namespace {

using namespace std::string_literals;
using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;
using Data = PropertyList::Data;
using Date = PropertyList::Date;

std::string xml(const std::string& root) {
  return "<?xml version='1.0' encoding='UTF-8'?>\n<!DOCTYPE plist><plist version='1.0'>" + root + "</plist>\n";
}

std::string repeated(const std::string& part, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += part;
  return all;
}

std::string big_endian(std::uint64_t value, int size) {
  std::string bytes;
  for (int i = size - 1; i >= 0; --i)
    bytes += i < 8 ? static_cast<char>(value >> (8 * static_cast<unsigned>(i))) : '\0';
  return bytes;
}

/// A binary list written down object by object, so that each part of it can be wrong on its own.
struct Binary {
  std::vector<std::string> objects = {};
  int offset_size = 2;
  int reference_size = 1;
  std::uint64_t top = 0;
  std::optional<std::uint64_t> count = {};
  std::optional<std::uint64_t> table_start = {};
  std::optional<std::uint64_t> first_offset = {};

  std::string bytes() const {
    std::string all = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
      const std::uint64_t offset = table.empty() ? first_offset.value_or(all.size()) : all.size();
      table += big_endian(offset, offset_size);
      all += object;
    }
    const std::uint64_t start = all.size();
    return all + table + "\0\0\0\0\0\0"s + static_cast<char>(offset_size) + static_cast<char>(reference_size) +
           big_endian(count.value_or(objects.size()), 8) + big_endian(top, 8) +
           big_endian(table_start.value_or(start), 8);
  }
};

std::string date_object(double seconds) {
  return "\x33" + big_endian(std::bit_cast<std::uint64_t>(seconds), 8);
}

std::string encoded(const std::string& utf8, const char* encoding) {
  std::string bytes(utf8.size() * 4 + 8, '\0');
  UErrorCode error = U_ZERO_ERROR;
  const auto size = ucnv_convert(encoding, "UTF-8", bytes.data(), static_cast<std::int32_t>(bytes.size()), utf8.data(),
                                 static_cast<std::int32_t>(utf8.size()), &error);
  EXPECT_TRUE(U_SUCCESS(error)) << encoding;
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::string declaring(const std::string& encoding, const std::string& text) {
  return "<?xml version='1.0' encoding = '" + encoding + "'?><plist><string>" + text + "</string></plist>";
}

std::string attributes(int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += " a" + std::to_string(i) + "=''";
  return all;
}

TEST(PropertyList, reads_sound_xml_and_nothing_else) {
  const Date date{std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + std::chrono::seconds(3661)};
  const std::string mark = "\xEF\xBB\xBF";
  const std::string longest(256 << 10, 'a');
  struct Case {
    const char* why;
    std::string bytes;
    std::optional<PropertyList> expected;
  };
  const Case cases[] = {
      {"one text of all parts", xml("<string> a&lt;<![CDATA[&]]><!-- c -->&#x3b1;\n</string>"), " a<&α\n"},
      {"hexadecimal with a sign", xml("<integer>\n -0xfF </integer>"), -255},
      {"an integer as large as there is", xml("<integer>-9223372036854775808</integer>"),
       std::numeric_limits<std::int64_t>::min()},
      {"one larger than any", xml("<array><integer>9223372036854775808</integer><true/></array>"),
       Array{9223372036854775808.0, true}},
      {"a larger one, hexadecimal", xml("<integer>-0x1Ffffffffffffffff</integer>"), -36893488147419103231.0},
      {"a larger one that is none", xml("<integer>99999999999999999999z</integer>"), {}},
      {"a real larger than any", xml("<real>1e999</real>"), std::numeric_limits<double>::infinity()},
      {"a real", xml("<real>+1.5e3</real>"), 1500.0},
      {"a real with a comma", xml("<real>1,5</real>"), {}},
      {"a leap day", xml("<date>2024-02-29T01:01:01Z</date>"), date},
      {"data, white space anywhere", xml("<data>\n\tAAH\n /gA== </data>"), Data{"\x00\x01\xFF\x80"s}},
      {"data cut off", xml("<data>AAH</data>"), {}},
      {"the last of equal keys", xml("<dict><key>a</key><true/><key>a</key><array/></dict>"),
       Dictionary{{"a", Array{}}}},
      {"a key without a value", xml("<dict><key>a</key></dict>"), {}},
      {"an element within a text", xml("<string><true/></string>"), {}},
      {"a file as an entity", "<!DOCTYPE p [<!ENTITY a SYSTEM '/etc/passwd'>]><plist><string>&a;</string></plist>", {}},
      {"an entity, even unused", "<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><true/></plist>", {}},
      {"a byte order mark, white space", mark + "\n" + xml("<true/>"), true},
      {"something after the end", xml("<true/>") + "x", {}},
      {"empty", "", {}},
      {"a NUL", "<plist><string>\0</string></plist>"s, {}},
      {"65 containers", xml(repeated("<array>", 65) + repeated("</array>", 65)), {}},
      {"100,001 nodes", xml("<array>" + repeated("<true/>", 100'000) + "</array>"), {}},
      {"a text as long as any may be", xml("<string>" + longest + "</string>"), longest},
      {"a longer one, in parts", xml("<string>" + longest + "<!-- -->a</string>"), {}},
      {"a longer key", xml("<dict><key>" + longest + "a</key><true/></dict>"), {}},
      {"white space without end around a number", xml("<integer>" + longest + " 1</integer>"), {}},
      {"data may be longer", xml("<data>" + repeated("AAAA", 100'000) + "</data>"), Data{std::string(300'000, '\0')}},
      {"a comment of some length", xml("<!--" + repeated(" licence", 20'000) + "--><true/>"), true},
      {"a comment that does not end soon", xml("<!--" + repeated(" licence", 60'000) + "--><true/>"), {}},
      {"900,000 attributes of one element", "<plist" + attributes(900'000) + "><true/></plist>", {}},
      {"a few more attributes than any list has", "<plist" + attributes(101) + "><true/></plist>", {}},
      {"the same, each of another element", xml("<array>" + repeated("<true a=''/>", 101) + "</array>"), {}},
      {"depth that would end a stack", "<plist>" + repeated("<array>", 1'000'000), {}},
      {"UTF-16LE by its mark", encoded(mark + declaring("UTF-16", "é𝄞"), "UTF-16LE"), "é𝄞"},
      {"UTF-32LE by its mark, not taken for UTF-16", encoded(mark + declaring("UTF-32", "é"), "UTF-32LE"), "é"},
      {"Latin 1", declaring("iso-8859-1", "\xE9"), "é"},
      {"several bytes a character", encoded(declaring("Shift_JIS", "日本"), "Shift_JIS"), "日本"},
      {"options behind the name", declaring("ibm-37,swaplfnl", "a"), {}},
      {"says UTF-16, cannot be", declaring("UTF-16", "a"), {}},
      {"bytes that begin no character", declaring("Shift_JIS", "\x81"), {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(c.bytes), c.expected);
  }
}

/// Each object holds the next one `width` times; the last one is `last`.
Binary pyramid(int levels, int width, const std::string& last) {
  Binary list;
  for (int level = 1; level <= levels; ++level) {
    list.objects.push_back("\xAF\x10" + big_endian(static_cast<unsigned>(width), 1) +
                           repeated(big_endian(static_cast<unsigned>(level), 1), width));
  }
  list.objects.push_back(last);
  return list;
}

TEST(PropertyList, checks_every_number_of_a_binary_list) {
  const std::vector<std::string> pair = {"\xD2\x01\x01\x02\x03", "\x51k", "\x09", "\x08"};
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
  constexpr int longest = (256 << 10) + 1;
  const std::string megabyte = "\x4F\x12" + big_endian(1U << 20U, 4) + repeated("0123456789abcdef", 1 << 16);
  struct Case {
    const char* why;
    Binary list;
    std::optional<PropertyList> expected;
  };
  const Case cases[] = {
      {"the last of equal keys, offsets of 8 bytes", {pair, 8}, Dictionary{{"k", false}}},
      {"one byte has no sign", {{"\x10\xFF"}}, 255},
      {"eight bytes have one", {{"\x13" + repeated("\xFF", 8)}}, -1},
      {"before 1970, rounded down", {{date_object(-978307200.5)}}, Date(std::chrono::seconds(-1))},
      {"a date beyond all years", {{date_object(1e300)}}, {}},
      {"a size that no memory holds", {{"\x4F\x13" + repeated("\xFF", 8)}}, {}},
      {"UTF-16", {{"\x63\x00\xE9\xD8\x34\xDD\x1E"s}}, "é𝄞"},
      {"UTF-16 whose size in bytes overflows", {{"\x6F\x13\x80" + repeated("\0"s, 7)}}, {}},
      {"an array that holds itself", {{"\xA1\x00"s}}, {}},
      {"references whose size overflows", {{"\xAF\x13" + repeated("\xFF", 8)}}, {}},
      {"references of 8 bytes", {{"\xA1" + big_endian(1, 8), "\x09"}, 1, 8}, Array{true}},
      {"offsets of no size", {pair, 0}, {}},
      {"a root that is not there", {.objects = pair, .top = 4}, {}},
      {"a count that overflows", {.objects = {"\x09"}, .offset_size = 8, .count = huge / 8 + 2}, {}},
      {"a table behind the end", {.objects = {"\x09"}, .table_start = huge}, {}},
      {"an object in the table", {.objects = {"\x09"}, .first_offset = 9}, {}},
      {"wide ones that hold each other", {{"\xA4\x01\x01\x01\x01", "\xA4\x00\x00\x00\x00"s}}, {}},
      {"a billion out of a few bytes", pyramid(5, 64, "\x09"), {}},
      {"gigabytes out of one", pyramid(2, 64, megabyte), {}},
      {"65 containers", pyramid(65, 1, "\x09"), {}},
      {"a text that is too long", {{"\x5F\x12" + big_endian(longest, 4) + std::string(longest, 'a')}}, {}},
      {"a key that is too long as UTF-8",
       {{"\xD1\x02\x01", "\x09", "\x6F\x12" + big_endian(longest / 2, 4) + repeated("\x20\xAC", longest / 2)}},
       {}},
      {"data of that length",
       {{"\x4F\x12" + big_endian(longest, 4) + std::string(longest, 'a')}},
       Data{std::string(longest, 'a')}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(c.list.bytes()), c.expected);
  }
}

TEST(PropertyList, what_is_written_is_read_back_or_its_nearest) {
  const Dictionary values = {
      {"<key>&", " a<b>&\"'\t\r\n]]>é𝄞\u0085 "},
      {"", Array{true, std::numeric_limits<std::int64_t>::min(), Dictionary{}, Array{}}},
      {"dates", Array{Date(std::chrono::seconds(-62167219200)), Date(std::chrono::seconds(253402300799))}},
      {"data", Array{Data{""}, Data{"\xFF"}, Data{"\xFF\0"s}, Data{"\xFF\0~"s}}},
      {"reals", Array{0.1, 1e300, 5e-324, 123456789.123456789, std::numeric_limits<double>::infinity()}},
  };
  EXPECT_EQ(parse_property_list(write_xml_property_list(values)), PropertyList(values));
  const auto through = [](const PropertyList& list) { return parse_property_list(write_xml_property_list(list)); };
  EXPECT_EQ(through("a\x01\0z\xEF\xBF\xBE"s), "a\uFFFD\uFFFDz\uFFFD") << "what XML cannot hold";
  EXPECT_EQ(through("a\xFF-\xE2\x82-\xED\xA0\x80z"), "a\uFFFD-\uFFFD-\uFFFD\uFFFD\uFFFDz") << "no UTF-8";
  EXPECT_EQ(through(Date::max()), Date(std::chrono::seconds(253402300799)));
}

/// A few bytes changed, cut out or doubled.
std::string mutated(std::string bytes, std::mt19937& random) {
  for (auto changes = 1 + random() % 4; changes > 0 && !bytes.empty(); --changes) {
    const std::size_t at = random() % bytes.size();
    const auto choice = random() % 4;
    if (choice == 0) bytes[at] = static_cast<char>(random());
    if (choice == 1) bytes[at] = static_cast<char>(bytes[at] ^ (1 << random() % 8));
    if (choice == 2) bytes.erase(at, 1 + random() % 12);
    if (choice == 3) bytes.insert(random() % bytes.size(), bytes.substr(at, 1 + random() % 12));
  }
  return bytes;
}

TEST(PropertyList, survives_random_changes_of_a_sound_list) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  const std::string text =
      xml("<dict><key>a</key><array><integer>1</integer><real>2.5</real><data>AAEC</data></array>"
          "<key>b</key><date>2001-01-01T00:00:00Z</date><key>c</key><string>x&amp;y</string></dict>");
  const std::string sound[] = {
      text, encoded(text, "UTF-16"), encoded(declaring("Shift_JIS", "日本"), "Shift_JIS"),
      Binary{{"\xD3\x01\x02\x03\x04\x05\x06", "\x51k", "\x61\x00\xE9"s, "\x5F\x10\x03key", "\xA3\x07\x07\x08",
              date_object(1), "\x42zz", "\x13\x01\x02\x03\x04\x05\x06\x07\x08", "\x80\x01"}}
          .bytes()};
  for (const std::string& list : sound) {
    ASSERT_TRUE(parse_property_list(list));
    for (int i = 0; i < 3000; ++i) {
      const auto read = parse_property_list(mutated(list, random));
      if (!read) continue;
      // Texts and keys that XML cannot hold change on the way there, but only once.
      const auto written = parse_property_list(write_xml_property_list(*read));
      ASSERT_TRUE(written) << write_xml_property_list(*read);
      ASSERT_EQ(parse_property_list(write_xml_property_list(*written)), written);
    }
  }
}

}  // namespace
}  // namespace tarnby
