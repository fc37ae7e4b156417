// The binary form. A header of 8 bytes, the objects one after another, a table with the offset of each object, and a
// trailer of 32 bytes that says where the table is. An object begins with a marker byte: the kind in its high half, a
// size in its low half (15: an integer object with the size follows). Containers hold the numbers of their objects.
//
// All numbers are big-endian, and none of them is believed before it has been compared with what is there. An object
// may be referred to many times, also by itself: it is read anew each time, and the limits on nesting, nodes and copied
// bytes end what would not end.

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "text/property_list_readers.h"

namespace tarnby::property_list {

namespace {

constexpr std::size_t header_size = 8;
constexpr std::size_t trailer_size = 32;

/// The number that at most 8 bytes make; of more, their last 8.
std::uint64_t big_endian(std::string_view digits) {
  std::uint64_t value = 0;
  for (const char digit : digits) value = value << 8U | static_cast<unsigned char>(digit);
  return value;
}

std::optional<std::int64_t> unsigned_number(std::string_view digits) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  while (digits.size() > 8) {
    if (digits.front() != '\0') return std::nullopt;
    digits.remove_prefix(1);
  }
  const std::uint64_t value = big_endian(digits);
  if (value > most) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

/// Integers have a sign from 8 bytes on.
std::optional<std::int64_t> integer_number(std::string_view digits) {
  if (digits.size() < 8) return unsigned_number(digits);
  const auto value = static_cast<std::int64_t>(big_endian(digits));
  const char extension = value < 0 ? '\xFF' : '\0';
  if (digits.substr(0, digits.size() - 8).find_first_not_of(extension) != std::string_view::npos) return std::nullopt;
  return value;
}

/// A number of 16 bytes that is too large for an integer; what else the list says must not be lost over it.
double large_number(std::string_view digits) {
  constexpr double half = 18446744073709551616.0;  // 2 to the 64th
  const auto high = static_cast<std::int64_t>(big_endian(digits.substr(0, 8)));
  return static_cast<double>(high) * half + static_cast<double>(big_endian(digits.substr(8)));
}

std::optional<double> real_number(std::string_view digits) {
  if (digits.size() == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(big_endian(digits)));
  if (digits.size() == 8) return std::bit_cast<double>(big_endian(digits));
  return std::nullopt;
}

void append_utf8(std::string& text, std::uint32_t point) {
  const int more = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  constexpr std::uint32_t leads[] = {0x00, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(leads[more] | point >> (6 * more));
  for (int left = more - 1; left >= 0; --left) text += static_cast<char>(0x80 | (point >> (6 * left) & 0x3F));
}

/// None when a half of a surrogate pair stands alone.
std::optional<std::string> utf8_from_utf16(std::string_view bytes) {
  const auto next_unit = [&bytes] {
    const auto unit = static_cast<std::uint32_t>(big_endian(bytes.substr(0, 2)));
    bytes.remove_prefix(2);
    return unit;
  };
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    std::uint32_t point = next_unit();
    if ((point & 0xF800U) == 0xD800) {
      const std::uint32_t low = point < 0xDC00 && !bytes.empty() ? next_unit() : 0;
      if ((low & 0xFC00U) != 0xDC00) return std::nullopt;
      point = 0x10000 + ((point & 0x3FFU) << 10U | (low & 0x3FFU));
    }
    append_utf8(text, point);
  }
  return text;
}

/// What is left of the bytes of an object.
class Cursor {
 public:
  explicit Cursor(std::string_view rest) : rest_(rest) {}

  /// The next `count` items of `size` bytes each; none when there are not that many.
  std::optional<std::string_view> take(std::uint64_t count, std::size_t size = 1) {
    if (count > rest_.size() / size) return std::nullopt;
    const std::string_view taken = rest_.substr(0, static_cast<std::size_t>(count) * size);
    rest_.remove_prefix(taken.size());
    return taken;
  }

 private:
  std::string_view rest_;
};

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  std::optional<PropertyList> read() {
    const auto top = read_trailer();
    return top ? object(*top) : std::nullopt;
  }

 private:
  /// Checks where everything is and gives the number of the root object.
  std::optional<std::uint64_t> read_trailer() {
    if (bytes_.size() < header_size + trailer_size) return std::nullopt;
    const std::size_t trailer_start = bytes_.size() - trailer_size;
    const std::string_view trailer = bytes_.substr(trailer_start);
    offset_size_ = static_cast<unsigned char>(trailer[6]);
    reference_size_ = static_cast<unsigned char>(trailer[7]);
    object_count_ = big_endian(trailer.substr(8, 8));
    const std::uint64_t top = big_endian(trailer.substr(16, 8));
    const std::uint64_t table_start = big_endian(trailer.substr(24, 8));

    const auto is_number_size = [](std::size_t size) { return size >= 1 && size <= 8; };
    if (!is_number_size(offset_size_) || !is_number_size(reference_size_)) return std::nullopt;
    if (table_start < header_size || table_start > trailer_start) return std::nullopt;
    if (object_count_ > (trailer_start - table_start) / offset_size_) return std::nullopt;
    objects_end_ = static_cast<std::size_t>(table_start);
    return top;
  }

  std::optional<Cursor> object_bytes(std::uint64_t number) const {
    if (number >= object_count_) return std::nullopt;
    const std::size_t entry = objects_end_ + static_cast<std::size_t>(number) * offset_size_;
    const std::uint64_t offset = big_endian(bytes_.substr(entry, offset_size_));
    if (offset < header_size || offset >= objects_end_) return std::nullopt;
    const auto start = static_cast<std::size_t>(offset);
    return Cursor(bytes_.substr(start, objects_end_ - start));
  }

  /// Reads the object of that number with everything below it.
  std::optional<PropertyList> object(std::uint64_t number) {
    if (++nodes_ > max_nodes) return std::nullopt;
    auto rest = object_bytes(number);
    if (!rest) return std::nullopt;
    const auto marker = static_cast<unsigned char>(rest->take(1)->front());
    const unsigned low = marker & 0xFU;
    switch (marker >> 4U) {
      case 0x0:
        return simple(low);
      case 0x1:
        return integer(low, *rest);
      case 0x2:
        return real(low, *rest);
      case 0x3:
        return date(low, *rest);
      case 0x4:
        return data(low, *rest);
      case 0x5:
        return ascii(low, *rest);
      case 0x6:
        return utf16(low, *rest);
      case 0x8:
        return uid(low, *rest);
      case 0xA:
        return array(low, *rest);
      case 0xD:
        return dictionary(low, *rest);
      default:
        return std::nullopt;
    }
  }

  std::optional<PropertyList> simple(unsigned low) {
    if (low != 8 && low != 9) return std::nullopt;
    return PropertyList(low == 9);
  }

  std::optional<PropertyList> integer(unsigned low, Cursor& rest) {
    const auto digits = low <= 4 ? rest.take(1ULL << low) : std::nullopt;
    if (!digits) return std::nullopt;
    const auto value = integer_number(*digits);
    return value ? PropertyList(*value) : PropertyList(large_number(*digits));
  }

  std::optional<PropertyList> real(unsigned low, Cursor& rest) {
    const auto digits = rest.take(1ULL << low);
    const auto value = digits ? real_number(*digits) : std::nullopt;
    if (!value) return std::nullopt;
    return PropertyList(*value);
  }

  /// A date is a real number of seconds. A list holds the dates that its XML form can write.
  std::optional<PropertyList> date(unsigned low, Cursor& rest) {
    using namespace std::chrono;
    constexpr sys_seconds reference = sys_days(year(2001) / January / 1);
    constexpr auto first = static_cast<double>((sys_days(year(0) / January / 1) - reference).count());
    constexpr auto end = static_cast<double>((sys_days(year(10000) / January / 1) - reference).count());
    const auto digits = low == 3 ? rest.take(8) : std::nullopt;
    if (!digits) return std::nullopt;
    const double since = std::floor(*real_number(*digits));
    if (!(since >= first && since < end)) return std::nullopt;  // nor when it is no number
    return PropertyList(reference + seconds(static_cast<std::int64_t>(since)));
  }

  std::optional<PropertyList> data(unsigned low, Cursor& rest) {
    const auto bytes = sized(low, rest, 1);
    if (!bytes) return std::nullopt;
    return PropertyList(PropertyList::Data{std::string(*bytes)});
  }

  std::optional<PropertyList> ascii(unsigned low, Cursor& rest) {
    const auto bytes = sized(low, rest, 1);
    if (!bytes || bytes->size() > max_text_bytes || std::ranges::any_of(*bytes, [](char c) { return (c & 0x80) != 0; }))
      return std::nullopt;
    return PropertyList(std::string(*bytes));
  }

  std::optional<PropertyList> utf16(unsigned low, Cursor& rest) {
    const auto bytes = sized(low, rest, 2);
    auto text = bytes && bytes->size() / 2 <= max_text_bytes ? utf8_from_utf16(*bytes) : std::nullopt;
    if (!text || text->size() > max_text_bytes) return std::nullopt;
    return PropertyList(std::move(*text));
  }

  std::optional<PropertyList> uid(unsigned low, Cursor& rest) {
    const auto digits = rest.take(low + 1);
    const auto value = digits ? unsigned_number(*digits) : std::nullopt;
    if (!value) return std::nullopt;
    return PropertyList(*value);
  }

  std::optional<PropertyList> array(unsigned low, Cursor& rest) {
    const Nested within(nesting_);
    const auto references = reference_list(low, rest);
    if (nesting_ > max_nesting || !references) return std::nullopt;
    PropertyList::Array values;
    for (std::string_view left = *references; !left.empty(); left.remove_prefix(reference_size_)) {
      auto value = object(big_endian(left.substr(0, reference_size_)));
      if (!value) return std::nullopt;
      values.push_back(std::move(*value));
    }
    return PropertyList(std::move(values));
  }

  std::optional<PropertyList> dictionary(unsigned low, Cursor& rest) {
    const Nested within(nesting_);
    const auto count = size(low, rest);
    auto keys = count ? rest.take(*count, reference_size_) : std::nullopt;
    auto references = count ? rest.take(*count, reference_size_) : std::nullopt;
    if (nesting_ > max_nesting || !keys || !references) return std::nullopt;
    PropertyList::Dictionary values;
    for (; !keys->empty(); keys->remove_prefix(reference_size_), references->remove_prefix(reference_size_)) {
      auto key = key_text(big_endian(keys->substr(0, reference_size_)));
      auto value = key ? object(big_endian(references->substr(0, reference_size_))) : std::nullopt;
      if (!value) return std::nullopt;
      values.insert_or_assign(std::move(*key), std::move(*value));
    }
    return PropertyList(std::move(values));
  }

  /// Keys do not count as nodes: each comes with a value that does.
  std::optional<std::string> key_text(std::uint64_t number) {
    auto key = object(number);
    --nodes_;
    auto* text = key ? key->as<std::string>() : nullptr;
    if (text == nullptr) return std::nullopt;
    return std::move(*text);
  }

  /// The size that a marker's low half tells, or the integer object behind it.
  static std::optional<std::uint64_t> size(unsigned low, Cursor& rest) {
    if (low != 0xF) return low;
    const auto marker = rest.take(1);
    if (!marker || static_cast<unsigned char>(marker->front()) >> 4U != 1) return std::nullopt;
    const unsigned power = static_cast<unsigned char>(marker->front()) & 0xFU;
    const auto digits = power <= 3 ? rest.take(1ULL << power) : std::nullopt;
    if (!digits) return std::nullopt;
    return big_endian(*digits);
  }

  std::optional<std::string_view> reference_list(unsigned low, Cursor& rest) const {
    const auto count = size(low, rest);
    return count ? rest.take(*count, reference_size_) : std::nullopt;
  }

  /// The content of an object that is copied, as long as copies are within their limit.
  std::optional<std::string_view> sized(unsigned low, Cursor& rest, std::size_t unit) {
    const auto count = size(low, rest);
    const auto bytes = count ? rest.take(*count, unit) : std::nullopt;
    if (!bytes || bytes->size() > max_copied_bytes - copied_bytes_) return std::nullopt;
    copied_bytes_ += bytes->size();
    return bytes;
  }

  /// Counts a container while it is being read.
  class Nested {
   public:
    explicit Nested(int& nesting) : nesting_(nesting) { ++nesting_; }
    ~Nested() { --nesting_; }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;

   private:
    int& nesting_;
  };

  std::string_view bytes_;
  std::size_t offset_size_ = 0;
  std::size_t reference_size_ = 0;
  std::uint64_t object_count_ = 0;
  std::size_t objects_end_ = 0;
  int nesting_ = 0;
  std::size_t nodes_ = 0;
  std::size_t copied_bytes_ = 0;
};

}  // namespace

std::optional<PropertyList> read_binary(std::string_view bytes) {
  return Reader(bytes).read();
}

}  // namespace tarnby::property_list
