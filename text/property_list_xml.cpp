// The XML form, read with a small stack of open containers and written back.

#include <expat.h>
#include <locale.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

#include "text/iso_date.h"
#include "text/property_list_readers.h"
#include "text/text.h"
#include "text/whole_number.h"

namespace tarnby {

namespace property_list {

namespace {

constexpr std::string_view xml_space = " \t\r\n";
constexpr std::string_view base64_digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(xml_space);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(xml_space) - first + 1);
}

bool is_blank(std::string_view text) {
  return trimmed(text).empty();
}

/// While it lives this thread reads and writes numbers with a point, whatever the user's locale. Not every C++ library
/// for the systems that are served reads and writes real numbers without a locale.
class PlainNumbers {
 public:
  PlainNumbers() : before_(uselocale(plain())) {}
  ~PlainNumbers() { uselocale(before_); }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  static locale_t plain() {
    static const locale_t numbers = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    return numbers;
  }

  locale_t before_;
};

/// In as few digits as give the same number again.
std::string written_real(double real) {
  const PlainNumbers plain;
  char digits[32];
  int length = 0;
  for (int precision = 15; precision <= 17; ++precision) {
    length = std::snprintf(digits, sizeof digits, "%.*g", precision, real);
    if (std::strtod(digits, nullptr) == real) break;
  }
  return {digits, static_cast<std::size_t>(length)};
}

std::optional<PropertyList> string_from(std::string&& text) {
  return PropertyList(std::move(text));
}

/// The negative of `size` as well, whose range is one wider on that side.
std::optional<std::int64_t> with_sign(std::uint64_t size, bool negative) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  if (size > most + (negative ? 1U : 0U)) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0U - size : size);
}

/// A number too large for an integer. It is one all the same: what else the list says must not be lost over it.
std::optional<PropertyList> large_number(std::string_view digits, int base, bool negative) {
  const std::string_view known = base == 16 ? "0123456789abcdefABCDEF" : "0123456789";
  if (digits.empty() || digits.find_first_not_of(known) != std::string_view::npos) return std::nullopt;
  const std::string terminated = (base == 16 ? "0x" : "") + std::string(digits);
  const PlainNumbers plain;
  const double value = std::strtod(terminated.c_str(), nullptr);
  return PropertyList(negative ? -value : value);
}

std::optional<PropertyList> integer_from(std::string&& text) {
  std::string_view digits = trimmed(text);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (hexadecimal) digits.remove_prefix(2);
  const int base = hexadecimal ? 16 : 10;
  const auto size = whole_number<std::uint64_t>(digits, base);
  const auto value = size ? with_sign(*size, negative) : std::nullopt;
  return value ? PropertyList(*value) : large_number(digits, base, negative);
}

std::optional<PropertyList> real_from(std::string&& text) {
  std::string_view digits = trimmed(text);
  if (digits.starts_with("+") && !digits.starts_with("+-")) digits.remove_prefix(1);
  // strtod(3) takes a second sign and hexadecimal digits as well.
  if (digits.empty() || digits.starts_with("+") || digits.find_first_of("xX") != std::string_view::npos) return {};
  const std::string terminated(digits);
  const PlainNumbers plain;
  char* stop = nullptr;
  const double value = std::strtod(terminated.c_str(), &stop);  // one that does not fit is infinite, or 0
  if (stop != terminated.c_str() + terminated.size()) return std::nullopt;
  return PropertyList(value);
}

template <bool value>
std::optional<PropertyList> flag_from(std::string&& text) {
  if (!is_blank(text)) return std::nullopt;
  return PropertyList(value);
}

std::optional<PropertyList> date_from(std::string&& text) {
  const auto date = parse_iso_date(trimmed(text));
  if (!date) return std::nullopt;
  return PropertyList(*date);
}

/// Each digit's value, -1 for every other byte.
constexpr std::array<int, 256> base64_values = [] {
  std::array<int, 256> values{};
  values.fill(-1);
  for (std::size_t i = 0; i < base64_digits.size(); ++i) {
    values[static_cast<unsigned char>(base64_digits[i])] = static_cast<int>(i);
  }
  return values;
}();

std::optional<PropertyList> data_from(std::string&& text) {
  std::erase_if(text, [](char c) { return xml_space.find(c) != std::string_view::npos; });
  if (text.size() % 4 != 0) return std::nullopt;
  for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) text.pop_back();
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 2);
  std::uint32_t bits = 0;
  int held = 0;
  for (const char c : text) {
    const int value = base64_values[static_cast<unsigned char>(c)];
    if (value < 0) return std::nullopt;
    bits = bits << 6U | static_cast<std::uint32_t>(value);
    held += 6;
    if (held < 8) continue;
    held -= 8;
    bytes += static_cast<char>(bits >> static_cast<unsigned>(held));
  }
  return PropertyList(PropertyList::Data{std::move(bytes)});
}

/// An element that holds text alone, and what makes a value of that text.
struct TextElement {
  std::string_view name;
  std::optional<PropertyList> (*value_from)(std::string&& text);
};

constexpr TextElement text_elements[] = {
    {"string", string_from},     {"integer", integer_from}, {"real", real_from}, {"true", flag_from<true>},
    {"false", flag_from<false>}, {"date", date_from},       {"data", data_from},
};

const TextElement* text_element(std::string_view name) {
  const auto* found = std::ranges::find(text_elements, name, &TextElement::name);
  return found == std::end(text_elements) ? nullptr : found;
}

/// Builds the list from the events of a well-formed document. The first thing that has no place in a list breaks it for
/// good; events that come after that are ignored.
class Builder {
 public:
  void start(std::string_view name) {
    if (broken_) return;
    if (!within_list_) {
      within_list_ = name == "plist";
      broken_ = !within_list_;
    } else if (collecting_ != nullptr) {
      broken_ = true;
    } else if (name == "key") {
      start_key();
    } else {
      start_value(name);
    }
  }

  void text(std::string_view part) {
    if (broken_) return;
    if (collecting_ != nullptr) {
      collect(part);
    } else {
      broken_ = !is_blank(part);
    }
  }

  void end() {
    if (broken_) return;
    if (collecting_ == &key_element) {
      open_.back().key = std::exchange(text_, {});
    } else if (collecting_ != nullptr) {
      place(collecting_->value_from(std::exchange(text_, {})));
    } else if (!open_.empty()) {
      end_container();
    }
    collecting_ = nullptr;
  }

  void refuse() { broken_ = true; }
  bool broken() const { return broken_; }
  std::optional<PropertyList> take() { return broken_ ? std::nullopt : std::move(root_); }

 private:
  struct Container {
    explicit Container(PropertyList empty) : values(std::move(empty)) {}

    bool is_dictionary() const { return values.as<PropertyList::Dictionary>() != nullptr; }

    PropertyList values;
    /// The key whose value comes next.
    std::optional<std::string> key;
  };

  static constexpr TextElement key_element = {"key", nullptr};

  void collect(std::string_view part) {
    const bool is_data = collecting_->value_from == data_from;
    broken_ = !is_data && part.size() > max_text_bytes - text_.size();
    if (!broken_) text_ += part;
  }

  void start_key() {
    broken_ = open_.empty() || !open_.back().is_dictionary() || open_.back().key;
    collecting_ = &key_element;
  }

  void start_value(std::string_view name) {
    broken_ = !has_room() || ++nodes_ > max_nodes;
    if (name == "dict") {
      start_container(PropertyList::Dictionary{});
    } else if (name == "array") {
      start_container(PropertyList::Array{});
    } else {
      collecting_ = text_element(name);
      broken_ |= collecting_ == nullptr;
    }
  }

  bool has_room() const {
    if (open_.empty()) return !root_;
    return !open_.back().is_dictionary() || open_.back().key;
  }

  void start_container(PropertyList empty) {
    broken_ |= open_.size() >= max_nesting;
    open_.emplace_back(std::move(empty));
  }

  void end_container() {
    Container closed = std::move(open_.back());
    open_.pop_back();
    broken_ = closed.key.has_value();
    place(std::move(closed.values));
  }

  void place(std::optional<PropertyList> value) {
    if (!value) {
      broken_ = true;
    } else if (open_.empty()) {
      root_ = std::move(value);
    } else if (auto* array = open_.back().values.as<PropertyList::Array>()) {
      array->push_back(std::move(*value));
    } else {
      auto* dictionary = open_.back().values.as<PropertyList::Dictionary>();
      dictionary->insert_or_assign(*std::exchange(open_.back().key, std::nullopt), std::move(*value));
    }
  }

  bool broken_ = false;
  bool within_list_ = false;
  const TextElement* collecting_ = nullptr;
  std::string text_;
  std::vector<Container> open_;
  std::optional<PropertyList> root_;
  std::size_t nodes_ = 0;
};

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

/// One document, from expat's callbacks to the builder.
class Reading {
 public:
  explicit Reading() : parser_(XML_ParserCreate("UTF-8"), &XML_ParserFree) {
    if (parser_ == nullptr) return;
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &Reading::start, &Reading::end);
    XML_SetCharacterDataHandler(parser_.get(), &Reading::text);
    // Entities that hold entities grow without bound, default attributes with every element that has them. Lists need
    // neither. A reference to one that is declared nowhere is no error when there is an external document type.
    XML_SetEntityDeclHandler(parser_.get(), &Reading::entity_declaration);
    XML_SetAttlistDeclHandler(parser_.get(), &Reading::attribute_declaration);
    XML_SetSkippedEntityHandler(parser_.get(), &Reading::skipped_entity);
  }

  std::optional<PropertyList> read(std::string_view utf8) {
    if (parser_ == nullptr) return std::nullopt;
    for (std::size_t at = 0; at < utf8.size(); at += piece_bytes) {
      if (!parse_piece(utf8.substr(at, piece_bytes), at + piece_bytes >= utf8.size())) return std::nullopt;
    }
    return builder_.take();
  }

 private:
  /// Small enough that markup which is too long is noticed early, large enough that little of it is read twice.
  static constexpr std::size_t piece_bytes = std::size_t{64} << 10U;

  static Reading& of(void* self) { return *static_cast<Reading*>(self); }

  /// False when the document is broken, or markup in it does not end.
  bool parse_piece(std::string_view piece, bool last) {
    taken_bytes_ += piece.size();
    const int length = static_cast<int>(piece.size());
    if (XML_Parse(parser_.get(), piece.data(), length, last ? XML_TRUE : XML_FALSE) != XML_STATUS_OK) return false;
    const auto begun_at = static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_.get()));
    return taken_bytes_ - begun_at <= max_markup_bytes;
  }

  static void start(void* self, const XML_Char* name, const XML_Char** attributes) {
    of(self).builder_.start(name);
    of(self).count(attributes);
    of(self).stop_when_broken();
  }
  static void end(void* self, const XML_Char*) {
    of(self).builder_.end();
    of(self).stop_when_broken();
  }
  static void text(void* self, const XML_Char* text, int length) {
    of(self).builder_.text({text, static_cast<std::size_t>(length)});
    of(self).stop_when_broken();
  }
  static void entity_declaration(void* self, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                                 const XML_Char*, const XML_Char*, const XML_Char*) {
    of(self).refuse();
  }
  static void attribute_declaration(void* self, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*,
                                    int) {
    of(self).refuse();
  }
  static void skipped_entity(void* self, const XML_Char*, int) { of(self).refuse(); }

  /// @param attributes names and values in turn, and a null at the end.
  void count(const XML_Char** attributes) {
    for (; *attributes != nullptr; attributes += 2) ++attributes_;
    if (attributes_ > max_attributes) builder_.refuse();
  }

  void refuse() {
    builder_.refuse();
    stop_when_broken();
  }
  void stop_when_broken() {
    if (builder_.broken()) (void)XML_StopParser(parser_.get(), XML_FALSE);  // fails when stopped already: no matter
  }

  Builder builder_;
  Parser parser_;
  std::size_t taken_bytes_ = 0;
  std::size_t attributes_ = 0;
};

}  // namespace

std::optional<PropertyList> read_xml(std::string_view utf8) {
  return Reading().read(utf8);
}

namespace {

struct Replacement {
  std::string_view of;
  std::string_view with;
};

constexpr std::string_view replacement_character = "\xEF\xBF\xBD";

constexpr Replacement replacements[] = {
    {"&", "&amp;"},
    {"<", "&lt;"},
    {">", "&gt;"},
    {"\r", "&#13;"},  // written as it is, it would be read back as a line feed
    {"\xEF\xBF\xBE", replacement_character},
    {"\xEF\xBF\xBF", replacement_character},
};

/// What XML 1.0 has no way to write, not even as a reference.
bool is_forbidden(char c) {
  return c >= 0 && c < 0x20 && xml_space.find(c) == std::string_view::npos;
}

/// How the character at the front of a text is written; in case of doubt its first byte, as it is.
Replacement written_form(std::string_view rest) {
  const auto* found = std::ranges::find_if(replacements, [rest](const auto& row) { return rest.starts_with(row.of); });
  if (found != std::end(replacements)) return *found;
  const std::string_view first = rest.substr(0, 1);
  return {first, is_forbidden(first.front()) ? replacement_character : first};
}

class Writer {
 public:
  std::string write(const PropertyList& list) {
    out_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n";
    value(list);
    out_ += "</plist>\n";
    return std::move(out_);
  }

 private:
  void value(const PropertyList& list) {
    list.visit([this](const auto& held) { element(held); });
  }

  void element(bool flag) { line(flag ? "<true/>" : "<false/>"); }
  void element(std::int64_t integer) { line("<integer>" + std::to_string(integer) + "</integer>"); }
  void element(double real) { line("<real>" + written_real(real) + "</real>"); }
  void element(const std::string& text) { text_line("string", text); }
  void element(const PropertyList::Data& data) { line("<data>" + base64(data.bytes) + "</data>"); }
  void element(PropertyList::Date date) { line("<date>" + iso_date(writable(date)) + "</date>"); }
  void element(const PropertyList::Array& array) {
    container("array", array, [this](const PropertyList& item) { value(item); });
  }
  void element(const PropertyList::Dictionary& dictionary) {
    container("dict", dictionary, [this](const auto& entry) {
      text_line("key", entry.first);
      value(entry.second);
    });
  }

  template <typename Values, typename WriteOne>
  void container(std::string_view name, const Values& values, WriteOne write_one) {
    const std::string element_name(name);
    if (values.empty()) return line("<" + element_name + "/>");
    line("<" + element_name + ">");
    ++level_;
    for (const auto& one : values) write_one(one);
    --level_;
    line("</" + element_name + ">");
  }

  void line(std::string_view text) {
    out_.append(level_, '\t');
    out_ += text;
    out_ += '\n';
  }

  void text_line(std::string_view name, std::string_view text) {
    out_.append(level_, '\t').append("<").append(name).append(">");
    escaped(text);
    out_.append("</").append(name).append(">\n");
  }

  void escaped(std::string_view text) {
    const std::string valid = to_valid_utf8(text);
    for (std::string_view rest = valid; !rest.empty();) {
      const auto [of, with] = written_form(rest);
      out_ += with;
      rest.remove_prefix(of.size());
    }
  }

  static std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
      const auto byte = [bytes](std::size_t i) -> std::uint32_t {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
      };
      const std::uint32_t bits = byte(0) << 16U | byte(1) << 8U | byte(2);
      for (std::size_t digit = 0; digit < 4; ++digit) {
        text += digit <= bytes.size() ? base64_digits[bits >> (18 - 6 * digit) & 63U] : '=';
      }
    }
    return text;
  }

  /// The nearest date that the form can write.
  static PropertyList::Date writable(PropertyList::Date date) {
    using namespace std::chrono;
    return std::clamp<PropertyList::Date>(date, sys_days(year(0) / January / 1),
                                          sys_days(year(10000) / January / 1) - seconds(1));
  }

  std::string out_;
  std::size_t level_ = 0;
};

}  // namespace

}  // namespace property_list

std::string write_xml_property_list(const PropertyList& list) {
  return property_list::Writer().write(list);
}

}  // namespace tarnby
