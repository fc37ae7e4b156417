#include "tools/bundle_files.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace tarnby {

namespace {

/// `count` bytes, the highest first.
std::string big_endian(std::uint64_t value, int count) {
  std::string bytes;
  for (int shift = (count - 1) * 8; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::vector<std::uint32_t> code_points(std::string_view utf8) {
  std::vector<std::uint32_t> points;
  for (const char c : utf8) {
    const std::uint32_t byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      points.push_back(byte);
    } else if (byte >= 0xC0) {
      points.push_back(byte & (byte >= 0xF0 ? 0x07U : byte >= 0xE0 ? 0x0FU : 0x1FU));
    } else {
      points.back() = points.back() << 6 | (byte & 0x3F);
    }
  }
  return points;
}

std::string utf16(std::string_view utf8) {
  std::string units;
  for (const std::uint32_t point : code_points(utf8)) {
    if (point < 0x10000) {
      units += big_endian(point, 2);
    } else {
      units += big_endian(0xD800 + ((point - 0x10000) >> 10), 2);
      units += big_endian(0xDC00 + ((point - 0x10000) & 0x3FF), 2);
    }
  }
  return units;
}

/// The nodes of a list, each written out, in the order they are met; the list itself is the first.
class BinaryNodes {
 public:
  std::uint64_t add(const PropertyList& list) {
    const std::size_t index = nodes_.size();
    nodes_.emplace_back();
    std::string bytes = written(list);
    nodes_[index] = std::move(bytes);
    return index;
  }

  const std::vector<std::string>& nodes() const { return nodes_; }

 private:
  static constexpr int reference_size = 2;

  std::string written(const PropertyList& list) {
    if (const auto* value = list.as<bool>()) return {*value ? '\x09' : '\x08'};
    if (const auto* value = list.as<std::int64_t>()) return '\x13' + big_endian(static_cast<std::uint64_t>(*value), 8);
    if (const auto* value = list.as<double>()) return '\x23' + big_endian(std::bit_cast<std::uint64_t>(*value), 8);
    if (const auto* value = list.as<PropertyList::Date>()) return date(*value);
    if (const auto* value = list.as<PropertyList::Data>()) return start(0x40, value->bytes.size()) + value->bytes;
    if (const auto* value = list.as<std::string>()) return text(*value);
    if (const auto* value = list.as<PropertyList::Array>()) return array(*value);
    return dictionary(*list.as<PropertyList::Dictionary>());
  }

  static std::string start(unsigned kind, std::size_t count) {
    if (count < 15) return {static_cast<char>(kind | count)};
    return static_cast<char>(kind | 15) + ('\x12' + big_endian(count, 4));
  }

  static std::string date(PropertyList::Date value) {
    constexpr PropertyList::Date first_day = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
    const auto seconds = static_cast<double>((value - first_day).count());
    return '\x33' + big_endian(std::bit_cast<std::uint64_t>(seconds), 8);
  }

  static std::string text(const std::string& value) {
    const bool ascii = std::all_of(value.begin(), value.end(), [](char c) { return (c & 0x80) == 0; });
    if (ascii) return start(0x50, value.size()) + value;
    const std::string units = utf16(value);
    return start(0x60, units.size() / 2) + units;
  }

  std::string array(const PropertyList::Array& values) {
    std::string bytes = start(0xA0, values.size());
    for (const PropertyList& value : values) bytes += big_endian(add(value), reference_size);
    return bytes;
  }

  std::string dictionary(const PropertyList::Dictionary& values) {
    std::string keys = start(0xD0, values.size());
    std::string contents;
    for (const auto& [key, value] : values) {
      keys += big_endian(add(key), reference_size);
      contents += big_endian(add(value), reference_size);
    }
    return keys + contents;
  }

  std::vector<std::string> nodes_;
};

std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

std::string png_chunk(std::string_view kind, std::string_view content) {
  std::string body(kind);
  body += content;
  return big_endian(content.size(), 4) + body + big_endian(checksum(body), 4);
}

/// A zlib stream of one block that is stored as it is, so that no compressor is needed.
std::string stored(std::string_view bytes) {
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (const char c : bytes) {
    low = (low + static_cast<unsigned char>(c)) % 65521;
    high = (high + low) % 65521;
  }
  std::string stream = "\x78\x01\x01";
  for (const std::size_t length : {bytes.size(), ~bytes.size()}) {
    stream += static_cast<char>(length & 0xFF);
    stream += static_cast<char>(length >> 8 & 0xFF);
  }
  stream += bytes;
  return stream + big_endian(high << 16 | low, 4);
}

constexpr int icon_width = 128;

/// One bit a point, each row after the byte that says it is not filtered.
std::string disc() {
  std::string rows;
  for (int y = 0; y < icon_width; ++y) {
    rows += '\0';
    for (int first = 0; first < icon_width; first += 8) {
      unsigned bits = 0;
      for (int x = first; x < first + 8; ++x) {
        const int across = 2 * x + 1 - icon_width;
        const int down = 2 * y + 1 - icon_width;
        const bool inside = across * across + down * down < icon_width * icon_width;
        bits = bits << 1 | (inside ? 1U : 0U);
      }
      rows += static_cast<char>(bits);
    }
  }
  return rows;
}

std::string png_picture(Color color) {
  std::string header = big_endian(icon_width, 4) + big_endian(icon_width, 4);
  header.append("\x01\x03\x00\x00\x00", 5);  // one bit a point, colours from the palette
  const char palette[] = {
      0, 0, 0, static_cast<char>(color.red), static_cast<char>(color.green), static_cast<char>(color.blue)};
  return "\x89PNG\r\n\x1A\n" + png_chunk("IHDR", header) + png_chunk("PLTE", {palette, sizeof palette}) +
         png_chunk("tRNS", {"\x00\xFF", 2}) + png_chunk("IDAT", stored(disc())) + png_chunk("IEND", {});
}

}  // namespace

std::string binary_property_list(const PropertyList& list) {
  BinaryNodes writer;
  writer.add(list);
  std::string bytes = "bplist00";
  std::string offsets;
  for (const std::string& node : writer.nodes()) {
    offsets += big_endian(bytes.size(), 4);
    bytes += node;
  }
  const std::size_t table = bytes.size();
  bytes += offsets;
  bytes += big_endian(0, 6) + big_endian(4, 1) + big_endian(2, 1);  // bytes an offset, bytes a reference
  bytes += big_endian(writer.nodes().size(), 8) + big_endian(0, 8) + big_endian(table, 8);
  return bytes;
}

std::string info_list(const BundleValues& values, ListForm form) {
  PropertyList::Dictionary list = {{"CFBundlePackageType", "APPL"}};
  const std::pair<const char*, const std::string&> texts[] = {
      {"CFBundleIdentifier", values.identifier},      {"CFBundleName", values.name},
      {"CFBundleExecutable", values.executable},      {"CFBundleIconFile", values.icon},
      {"CFBundleShortVersionString", values.version},
  };
  for (const auto& [key, text] : texts) {
    if (!text.empty()) list.emplace(key, text);
  }
  return form == ListForm::xml ? write_xml_property_list(list) : binary_property_list(list);
}

std::string icon_file(Color color) {
  const std::string picture = png_picture(color);
  const auto entry = [](std::string_view kind, const std::string& content) {
    return std::string(kind) + big_endian(content.size() + 8, 4) + content;
  };
  return entry("icns", entry("ic07", picture));
}

}  // namespace tarnby
