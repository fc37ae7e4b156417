#include "text/property_list.h"

#include <algorithm>

#include "text/encodings.h"
#include "text/property_list_readers.h"

namespace tarnby {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::string_view xml_space = " \t\r\n";

struct Signature {
  std::string_view begins_with;
  const char* encoding;
};

// The mark of UTF-32LE begins with the one of UTF-16LE, so it is looked for first.
constexpr Signature byte_order_marks[] = {
    {"\xEF\xBB\xBF"sv, "UTF-8"}, {"\x00\x00\xFE\xFF"sv, "UTF-32BE"}, {"\xFF\xFE\x00\x00"sv, "UTF-32LE"},
    {"\xFE\xFF"sv, "UTF-16BE"},  {"\xFF\xFE"sv, "UTF-16LE"},
};

/// Which of the first four bytes are 0 ('.': not 0, '?': either) when the first character is ASCII, as in every list.
constexpr Signature zero_patterns[] = {
    {"000."sv, "UTF-32BE"}, {".000"sv, "UTF-32LE"}, {"0.??"sv, "UTF-16BE"}, {".0??"sv, "UTF-16LE"}};

bool has_zeros_as(std::string_view pattern, std::string_view bytes) {
  if (bytes.size() < pattern.size()) return false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '?' && (pattern[i] == '0') != (bytes[i] == '\0')) return false;
  }
  return true;
}

std::string_view trim_front(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(xml_space), text.size()));
}

/// Takes `part` and the white space around it off the front of `text`.
bool skip(std::string_view& text, std::string_view part) {
  text = trim_front(text);
  if (!text.starts_with(part)) return false;
  text = trim_front(text.substr(part.size()));
  return true;
}

/// The encoding that the XML declaration names. One that is malformed is left for the XML parser to refuse.
std::string declared_encoding(std::string_view text) {
  std::string none = "UTF-8";
  text = trim_front(text);
  if (!text.starts_with("<?xml")) return none;
  text = text.substr(0, text.find("?>"));
  text = text.substr(std::min(text.find("encoding"), text.size()));
  if (!skip(text, "encoding") || !skip(text, "=") || text.empty()) return none;
  const char quote = text.front();
  const std::string_view name = text.substr(1, text.find(quote, 1) - 1);
  // Converters take options after a comma, which are no part of a name.
  return name.find(',') == std::string_view::npos ? std::string(name) : std::string();
}

/// The bytes decide before the declaration does: a list saved as UTF-16 from a UTF-8 template still says UTF-8.
std::string encoding_of(std::string_view bytes) {
  for (const Signature& mark : byte_order_marks) {
    if (bytes.starts_with(mark.begins_with)) return mark.encoding;
  }
  for (const Signature& pattern : zero_patterns) {
    if (has_zeros_as(pattern.begins_with, bytes)) return pattern.encoding;
  }
  // "<?xm" in EBCDIC, whose variants agree on the letters of the declaration.
  if (bytes.starts_with("\x4C\x6F\xA7\x94"))
    return declared_encoding(to_utf8(bytes.substr(0, 256), "IBM037").value_or(""));
  return declared_encoding(bytes);
}

/// However it is written: "utf8", "UTF_8".
bool is_utf8(std::string_view encoding) {
  std::string letters;
  for (const char c : encoding) {
    if (c != '-' && c != '_' && c != ' ') letters += c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  }
  return letters == "utf8";
}

std::optional<PropertyList> read_document(std::string_view utf8) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (utf8.starts_with(mark)) utf8.remove_prefix(mark.size());
  // XML wants its declaration first; lists pasted together by installers have blank lines before it.
  return property_list::read_xml(trim_front(utf8));
}

}  // namespace

PropertyList::PropertyList(const PropertyList& other) = default;
PropertyList::PropertyList(PropertyList&& other) noexcept = default;
PropertyList& PropertyList::operator=(const PropertyList& other) = default;
PropertyList& PropertyList::operator=(PropertyList&& other) noexcept = default;
PropertyList::~PropertyList() = default;

const PropertyList* PropertyList::find(std::string_view key) const {
  const auto* dictionary = as<Dictionary>();
  if (dictionary == nullptr) return nullptr;
  const auto found = dictionary->find(key);
  return found == dictionary->end() ? nullptr : &found->second;
}

std::optional<PropertyList> parse_property_list(std::string_view bytes) {
  if (bytes.size() > property_list::max_file_bytes) return std::nullopt;
  if (bytes.starts_with("bplist00")) return property_list::read_binary(bytes);
  const std::string encoding = encoding_of(bytes);
  if (is_utf8(encoding)) return read_document(bytes);
  const std::optional<std::string> utf8 = to_utf8(bytes, encoding);
  return utf8 ? read_document(*utf8) : std::nullopt;
}

}  // namespace tarnby
