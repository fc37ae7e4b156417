#include "platform/property_list.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace tarnby {
namespace {

using namespace std::string_literals;
using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;
using Data = PropertyList::Data;
using Date = PropertyList::Date;

std::string xml(const std::string& root) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">" +
         root + "</plist>\n";
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

std::string binary(const std::string& object) {
  return Binary{{object}}.bytes();
}

std::string date_object(double seconds) {
  return "\x33" + big_endian(std::bit_cast<std::uint64_t>(seconds), 8);
}

TEST(PropertyList, reads_each_element_with_its_own_rules) {
  const Date date{std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + std::chrono::seconds(3661)};
  struct Case {
    const char* why;
    std::string root;
    std::optional<PropertyList> expected;
  };
  const Case cases[] = {
      {"a text keeps its white space", "<string> a\n </string>", " a\n "},
      {"references, sections and comments make one text", "<string>&lt;<![CDATA[&]]><!-- c -->&#x3b1;</string>", "<&α"},
      {"an empty text", "<string/>", ""},
      {"a sign", "<integer>-12</integer>", -12},
      {"white space around a number", "<integer>\n +7 </integer>", 7},
      {"hexadecimal", "<integer>-0xfF</integer>", -255},
      {"the least integer", "<integer>-9223372036854775808</integer>", std::numeric_limits<std::int64_t>::min()},
      {"one below", "<integer>-9223372036854775809</integer>", {}},
      {"one above the greatest", "<integer>9223372036854775808</integer>", {}},
      {"two signs", "<integer>--1</integer>", {}},
      {"no digits", "<integer></integer>", {}},
      {"digits and more", "<integer>12k</integer>", {}},
      {"a fraction is no integer", "<integer>1.5</integer>", {}},
      {"a real", "<real>+1.5e3</real>", 1500.0},
      {"a real out of range", "<real>1e999</real>", {}},
      {"a real with a comma", "<real>1,5</real>", {}},
      {"the infinite", "<real>-inf</real>", -std::numeric_limits<double>::infinity()},
      {"flags", "<array><true/><false> </false></array>", Array{true, false}},
      {"a flag with a text", "<true>yes</true>", {}},
      {"a leap day", "<date>2024-02-29T01:01:01Z</date>", date},
      {"a day that was not", "<date>2023-02-29T01:01:01Z</date>", {}},
      {"an hour that is not", "<date>2024-02-29T24:00:00Z</date>", {}},
      {"a date in another zone", "<date>2024-02-29T01:01:01+01:00</date>", {}},
      {"data, white space anywhere", "<data>\n\tAAH\n /gA== </data>", Data{"\x00\x01\xFF\x80"s}},
      {"data cut off", "<data>AAH</data>", {}},
      {"data padded too much", "<data>A===</data>", {}},
      {"data padded within", "<data>AA==AAAA</data>", {}},
      {"data with a foreign byte", "<data>AA-_</data>", {}},
      {"the last of equal keys", "<dict><key>a</key><true/><key>a</key><false/></dict>", Dictionary{{"a", false}}},
      {"containers", "<dict><key/><array/><key>d</key><dict/></dict>", Dictionary{{"", Array{}}, {"d", Dictionary{}}}},
      {"a key without a value", "<dict><key>a</key></dict>", {}},
      {"two keys in a row", "<dict><key>a</key><key>b</key><true/></dict>", {}},
      {"a value without a key", "<dict><true/></dict>", {}},
      {"a key in an array", "<array><key>a</key></array>", {}},
      {"a key as the root", "<key>a</key>", {}},
      {"stray text", "<array>x<true/></array>", {}},
      {"stray text at the root", "x<true/>", {}},
      {"an element within a text", "<string><true/></string>", {}},
      {"an unknown element", "<array><null/></array>", {}},
      {"a list within a list", "<array><plist/></array>", {}},
      {"two roots", "<true/><true/>", {}},
      {"no root", " ", {}},
      {"an entity nobody declared", "<string>&who;</string>", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(xml(c.root)), c.expected);
  }
}

TEST(PropertyList, takes_whole_documents_only) {
  const std::string sound = xml("<true/>");
  const std::string plain = "<plist><true/></plist>";
  const auto with_subset = [&](const std::string& subset, const std::string& root) {
    return "<!DOCTYPE plist [" + subset + "]><plist>" + root + "</plist>";
  };
  struct Case {
    const char* why;
    std::string bytes;
    bool readable;
  };
  const Case cases[] = {
      {"no declaration, no document type", plain, true},
      {"white space before the declaration", "\n \t\r\n" + sound, true},
      {"a byte order mark before both", "\xEF\xBB\xBF\n" + sound, true},
      {"a document type that declares an element", with_subset("<!ELEMENT plist ANY>", "<true/>"), true},
      {"an entity, even unused", with_subset("<!ENTITY a 'b'>", "<true/>"), false},
      {"a parameter entity", with_subset("<!ENTITY % a 'b'>", "<true/>"), false},
      {"a file as an entity", with_subset("<!ENTITY a SYSTEM '/etc/passwd'>", "<string>&a;</string>"), false},
      {"attributes for every element", with_subset("<!ATTLIST string a CDATA 'b'>", "<true/>"), false},
      {"a root of another kind", "<list><true/></list>", false},
      {"a value without the list around it", "<dict/>", false},
      {"cut off", sound.substr(0, sound.size() - 3), false},
      {"something after the end", sound + "x", false},
      {"tags that do not match", "<plist><array></plist></array>", false},
      {"a name in another case", "<plist><True/></plist>", false},
      {"empty", "", false},
      {"only white space", " \n", false},
      {"the old text form", "{ a = (1, 2); }", false},
      {"bytes that are no UTF-8", "<plist><string>\xFF</string></plist>", false},
      {"a NUL", "<plist><string>\0</string></plist>"s, false},
      {"64 containers", "<plist>" + repeated("<array>", 64) + repeated("</array>", 64) + "</plist>", true},
      {"65 containers", "<plist>" + repeated("<array>", 65) + repeated("</array>", 65) + "</plist>", false},
      {"100,000 nodes", "<plist><array>" + repeated("<true/>", 99'999) + "</array></plist>", true},
      {"one more", "<plist><array>" + repeated("<true/>", 100'000) + "</array></plist>", false},
      {"depth that would end a stack", "<plist>" + repeated("<array>", 1'000'000), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(c.bytes).has_value(), c.readable);
  }
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

TEST(PropertyList, reads_any_encoding_by_its_bytes_first) {
  struct Case {
    const char* why;
    std::string bytes;
    std::optional<PropertyList> expected;
  };
  const std::string mark = "\xEF\xBB\xBF";
  const Case cases[] = {
      {"UTF-16BE by its mark", encoded(mark + declaring("UTF-16", "é𝄞"), "UTF-16BE"), "é𝄞"},
      {"UTF-16LE by its mark", encoded(mark + declaring("UTF-16", "é𝄞"), "UTF-16LE"), "é𝄞"},
      {"UTF-16BE without a mark", encoded(declaring("UTF-16", "é"), "UTF-16BE"), "é"},
      {"UTF-16LE without a mark, white space first", encoded("\n" + declaring("UTF-16", "é"), "UTF-16LE"), "é"},
      {"UTF-16 that still says UTF-8", encoded(mark + declaring("UTF-8", "é"), "UTF-16LE"), "é"},
      {"UTF-32BE by its mark", encoded(mark + declaring("UTF-32", "é"), "UTF-32BE"), "é"},
      {"UTF-32LE by its mark, not taken for UTF-16", encoded(mark + declaring("UTF-32", "é"), "UTF-32LE"), "é"},
      {"UTF-32LE without a mark", encoded(declaring("UTF-32", "é"), "UTF-32LE"), "é"},
      {"UTF-8 that says Latin 1", mark + declaring("ISO-8859-1", "é"), "é"},
      {"Latin 1", declaring("iso-8859-1", "\xE9"), "é"},
      {"Windows", "\r\n" + declaring("windows-1252", "\x80"), "€"},
      {"several bytes a character", encoded(declaring("Shift_JIS", "日本"), "Shift_JIS"), "日本"},
      {"letters that are not ASCII's", encoded(declaring("ibm-37", "a"), "ibm-37"), "a"},
      {"ASCII", declaring("US-ASCII", "a"), "a"},
      {"more than ASCII", declaring("US-ASCII", "é"), {}},
      {"an unknown encoding", declaring("x-unheard-of", "a"), {}},
      {"no name", declaring("", "a"), {}},
      {"options behind the name", declaring("ibm-37,swaplfnl", "a"), {}},
      {"says UTF-16, cannot be", declaring("UTF-16", "a"), {}},
      {"a character cut in two", encoded(declaring("UTF-16", "a"), "UTF-16LE") + "\n", {}},
      {"half a surrogate pair",
       encoded("<plist><string>", "UTF-16LE") + "\x1E\xDD" + encoded("</string></plist>", "UTF-16LE"),
       {}},
      {"bytes that begin no character", declaring("Shift_JIS", "\x81"), {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(c.bytes), c.expected);
  }
}

TEST(PropertyList, reads_each_binary_object_with_its_own_rules) {
  constexpr auto quiet_nan = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    const char* why;
    std::string object;
    std::optional<PropertyList> expected;
  };
  const Case cases[] = {
      {"true", "\x09", true},
      {"false", "\x08", false},
      {"nothing is no value", "\0"s, {}},
      {"filling is no value", "\x0F", {}},
      {"one byte has no sign", "\x10\xFF", 255},
      {"four bytes have none", "\x12\xFF\xFF\xFF\xFF", std::int64_t{0xFFFFFFFF}},
      {"eight bytes have one", "\x13" + repeated("\xFF", 8), -1},
      {"sixteen bytes that fit", "\x14" + repeated("\xFF", 15) + "\xFE", -2},
      {"sixteen bytes that do not", "\x14" + repeated("\0"s, 8) + repeated("\xFF", 8), {}},
      {"thirty-two bytes", "\x15" + repeated("\0"s, 32), {}},
      {"an integer cut off", "\x13\x01", {}},
      {"a short real", "\x22" + big_endian(std::bit_cast<std::uint32_t>(0.5F), 4), 0.5},
      {"a long real", "\x23" + big_endian(std::bit_cast<std::uint64_t>(-0.1), 8), -0.1},
      {"a real of two bytes", "\x21\x01\x01", {}},
      {"a date", date_object(0), Date(std::chrono::sys_days(std::chrono::year(2001) / 1 / 1))},
      {"before 1970, rounded down", date_object(-978307200.5), Date(std::chrono::seconds(-1))},
      {"a date that is no number", date_object(quiet_nan), {}},
      {"a date beyond all years", date_object(1e300), {}},
      {"data", "\x42\x00\xFF"s, Data{"\x00\xFF"s}},
      {"data with its size apart", "\x4F\x10\x01z", Data{"z"}},
      {"data that ends too late", "\x42z", {}},
      {"a size that no memory holds", "\x4F\x13" + repeated("\xFF", 8), {}},
      {"a size that is no integer", "\x4F\x09z", {}},
      {"text", "\x52hi", "hi"},
      {"text beyond ASCII", "\x51\xE9", {}},
      {"UTF-16", "\x63\x00\xE9\xD8\x34\xDD\x1E"s, "é𝄞"},
      {"half a surrogate pair", "\x61\xD8\x34", {}},
      {"UTF-16 whose size in bytes overflows", "\x6F\x13\x80" + repeated("\0"s, 7), {}},
      {"a uid", "\x81\x01\x02", 258},
      {"a uid out of range", "\x87" + repeated("\xFF", 8), {}},
      {"an empty array", "\xA0", Array{}},
      {"an array that holds itself", "\xA1\x00"s, {}},
      {"a reference to nothing", "\xA1\x05", {}},
      {"references whose size overflows", "\xAF\x13" + repeated("\xFF", 8), {}},
      {"an empty dictionary", "\xD0", Dictionary{}},
      {"a dictionary as its own key", "\xD1\x00\x00"s, {}},
      {"a dictionary cut off", "\xD1\x00"s, {}},
      {"a set", "\xC0", {}},
      {"an unknown kind", "\x71z", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(binary(c.object)), c.expected);
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

TEST(PropertyList, believes_no_number_of_a_binary_list) {
  const std::vector<std::string> pair = {"\xD2\x01\x01\x02\x03", "\x51k", "\x09", "\x08"};
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
  const std::string megabyte = "\x4F\x12" + big_endian(1U << 20U, 4) + repeated("0123456789abcdef", 1 << 16);
  struct Case {
    const char* why;
    Binary list;
    std::optional<PropertyList> expected;
  };
  const Case cases[] = {
      {"the last of equal keys", {pair}, Dictionary{{"k", false}}},
      {"offsets of 8 bytes", {pair, 8}, Dictionary{{"k", false}}},
      {"another root", {.objects = pair, .top = 1}, "k"},
      {"a key that is no text", {{"\xD1\x01\x01", "\x09"}}, {}},
      {"references of 8 bytes", {{"\xA1" + big_endian(1, 8), "\x09"}, 1, 8}, Array{true}},
      {"offsets of no size", {pair, 0}, {}},
      {"offsets of 9 bytes", {pair, 9}, {}},
      {"references of no size", {pair, 2, 0}, {}},
      {"a root that is not there", {.objects = pair, .top = 4}, {}},
      {"no objects", {}, {}},
      {"more objects than the table has", {.objects = {"\x09"}, .count = 2}, {}},
      {"a count that overflows", {.objects = {"\x09"}, .offset_size = 8, .count = huge / 8 + 2}, {}},
      {"a table behind the end", {.objects = {"\x09"}, .table_start = huge}, {}},
      {"a table in the trailer", {.objects = {"\x09"}, .table_start = 12}, {}},
      {"a table in the header", {.objects = {"\x09"}, .table_start = 3}, {}},
      {"an object in the header", {.objects = {"\x09"}, .first_offset = 7}, {}},
      {"an object in the table", {.objects = {"\x09"}, .first_offset = 9}, {}},
      {"two that hold each other", {{"\xA1\x01", "\xA1\x00"s}}, {}},
      {"wide ones that hold each other", {{"\xA4\x01\x01\x01\x01", "\xA4\x00\x00\x00\x00"s}}, {}},
      {"a billion out of a few bytes", pyramid(5, 64, "\x09"), {}},
      {"gigabytes out of one", pyramid(2, 64, megabyte), {}},
      {"65 containers", pyramid(65, 1, "\x09"), {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(parse_property_list(c.list.bytes()), c.expected);
  }
  EXPECT_TRUE(parse_property_list(pyramid(64, 1, "\x09").bytes())) << "64 containers are within the limit";
  EXPECT_TRUE(parse_property_list(pyramid(1, 60, megabyte).bytes())) << "60 MB out of shared data are";
  const std::string sound = Binary{pair}.bytes();
  for (std::size_t size = 0; size < sound.size(); ++size) {
    EXPECT_FALSE(parse_property_list(sound.substr(0, size))) << "cut off at " << size;
  }
}

TEST(PropertyList, what_is_written_is_read_back) {
  const double reals[] = {0.1, -0.0, 1e300, 5e-324, 123456789.123456789, std::numeric_limits<double>::infinity()};
  Dictionary values = {
      {"text", " a<b>&\"'\t\r\n]]>é𝄞\u0085 "},
      {"<key>&", ""},
      {"", Array{true, false, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}},
      {"dates", Array{Date{}, Date(std::chrono::seconds(-62167219200)), Date(std::chrono::seconds(253402300799))}},
      {"nested", Dictionary{{"a", Array{Dictionary{}, Array{}}}}},
  };
  for (int size = 0; size < 5; ++size)
    values.emplace("data" + std::to_string(size), Data{"\xFF\0\x80~"s.substr(0, 4U - unsigned(size) % 5)});
  for (const double real : reals) values.emplace("real" + std::to_string(values.size()), real);
  EXPECT_EQ(parse_property_list(write_xml_property_list(values)), PropertyList(values));

  const auto nan = parse_property_list(write_xml_property_list(std::numeric_limits<double>::quiet_NaN()));
  ASSERT_TRUE(nan && nan->as<double>() != nullptr);
  EXPECT_TRUE(std::isnan(*nan->as<double>()));
}

TEST(PropertyList, what_xml_cannot_hold_is_written_as_its_nearest) {
  const auto through = [](const PropertyList& list) { return parse_property_list(write_xml_property_list(list)); };
  EXPECT_EQ(through("a\x01\x1F\0z"s), "a\uFFFD\uFFFD\uFFFDz") << "control characters";
  EXPECT_EQ(through("\xEF\xBF\xBE-\xEF\xBF\xBF-\x7F"), "\uFFFD-\uFFFD-\x7F") << "code points that are no characters";
  EXPECT_EQ(through("a\xFF-\xE2\x82-\xED\xA0\x80z"), "a\uFFFD-\uFFFD-\uFFFD\uFFFD\uFFFDz") << "no UTF-8";
  EXPECT_EQ(through(Date::max()), Date(std::chrono::seconds(253402300799)));
  EXPECT_EQ(through(Date::min()), Date(std::chrono::seconds(-62167219200)));
}

/// A few bytes of `bytes` changed, cut out, doubled or swapped for ones that mean something.
std::string mutated(std::string bytes, std::mt19937& random) {
  const auto below = [&random](std::size_t end) {
    return static_cast<std::size_t>(random() % std::max<std::size_t>(end, 1));
  };
  const std::string telling[] = {"\xFF\xFF\xFF\xFF", "\0\0\0\0"s, "\x7F", "\xAF\x13", "\xDF", "<", ">", "</", "&#0;",
                                 "<dict>",           "]]>"};
  for (auto changes = 1 + below(4); changes > 0 && !bytes.empty(); --changes) {
    const std::size_t at = below(bytes.size());
    const std::size_t length = 1 + below(std::min<std::size_t>(bytes.size() - at, 12));
    switch (below(5)) {
      case 0:
        bytes[at] = static_cast<char>(random());
        break;
      case 1:
        bytes.erase(at, length);
        break;
      case 2:
        bytes.insert(below(bytes.size()), bytes.substr(at, length));
        break;
      case 3:
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
        break;
      default:
        bytes.replace(at, std::min<std::size_t>(length, 4), telling[below(std::size(telling))]);
    }
  }
  return bytes;
}

TEST(PropertyList, survives_whatever_chance_makes_of_a_sound_list) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  RecordProperty("seed", std::to_string(seed));
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
