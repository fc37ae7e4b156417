#include "text/text.h"

#include <wchar.h>
#include <xlocale.h>

#include <algorithm>
#include <numeric>

#include "text/macos/core_foundation.h"
#include "text/macos/nonspacing_marks.h"
#include "text/text_parts.h"

namespace tarnby {

namespace {

using MutableText = Owned<CFMutableStringRef>;

MutableText mutable_text(std::string_view utf8) {
  return MutableText(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, cf_string(utf8).get()));
}

std::u32string code_points_of(CFStringRef text) {
  const CFRange whole = CFRangeMake(0, CFStringGetLength(text));
  std::u32string points(static_cast<std::size_t>(whole.length), U'\0');
  CFIndex bytes = 0;
  CFStringGetBytes(text, whole, kCFStringEncodingUTF32LE, '?', false, reinterpret_cast<UInt8*>(points.data()),
                   whole.length * CFIndex{sizeof(char32_t)}, &bytes);
  points.resize(static_cast<std::size_t>(bytes) / sizeof(char32_t));
  return points;
}

MutableText text_of(const std::u32string& points) {
  const Owned<CFStringRef> text(
      CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(points.data()),
                              static_cast<CFIndex>(points.size() * sizeof(char32_t)), kCFStringEncodingUTF32LE, false));
  return MutableText(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, text.get()));
}

/// The locale of a name ("de_DE", "de_DE.UTF-8"); the root locale for C and POSIX.
Owned<CFLocaleRef> locale_of(std::string_view name) {
  std::string_view language_and_region = name.substr(0, name.find_first_of(".@"));
  if (language_and_region == "C" || language_and_region == "POSIX") language_and_region = {};
  return Owned<CFLocaleRef>(CFLocaleCreate(kCFAllocatorDefault, cf_string(language_and_region).get()));
}

NumberSymbols number_symbols(CFLocaleRef locale) {
  NumberSymbols symbols;
  if (CFStringGetLength(CFLocaleGetIdentifier(locale)) == 0) return symbols;
  const Owned<CFNumberFormatterRef> formatter(
      CFNumberFormatterCreate(kCFAllocatorDefault, locale, kCFNumberFormatterDecimalStyle));
  for (std::size_t digit = 0; formatter && digit < symbols.digits.size(); ++digit) {
    const int value = static_cast<int>(digit);
    const Owned<CFStringRef> written(
        CFNumberFormatterCreateStringWithValue(kCFAllocatorDefault, formatter.get(), kCFNumberIntType, &value));
    if (written) symbols.digits.at(digit) = utf8_of(written.get());
  }
  const auto* point = static_cast<CFStringRef>(CFLocaleGetValue(locale, kCFLocaleDecimalSeparator));
  if (point) symbols.decimal_point = utf8_of(point);
  return symbols;
}

}  // namespace

void append_folded(std::string& out, std::string_view utf8) {
  const MutableText decomposed = mutable_text(utf8);
  CFStringNormalize(decomposed.get(), kCFStringNormalizationFormD);
  std::u32string points = code_points_of(decomposed.get());
  std::erase_if(points, [](char32_t point) { return is_nonspacing_mark(point); });
  const MutableText folded = text_of(points);
  CFStringFold(folded.get(), kCFCompareCaseInsensitive, nullptr);
  out += utf8_of(folded.get());
}

std::size_t display_columns(std::string_view text) {
  static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "en_US.UTF-8", nullptr);
  std::size_t columns = 0;
  for (const char32_t point : code_points_of(cf_string(text).get())) {
    const int width = wcwidth_l(static_cast<wchar_t>(point), utf8);
    columns += width < 0 ? 1 : static_cast<std::size_t>(width);
  }
  return columns;
}

std::string upper_first(std::string_view text) {
  const std::size_t length = text.empty() || !first_sequence(text).well_formed ? 0 : first_sequence(text).length;
  const MutableText first = mutable_text(text.substr(0, length));
  CFStringUppercase(first.get(), nullptr);
  return utf8_of(first.get()).append(text.substr(length));
}

std::string lower_case(std::string_view text) {
  std::string lower;
  while (true) {
    const std::size_t sound = well_formed_prefix(text);
    const MutableText part = mutable_text(text.substr(0, sound));
    CFStringLowercase(part.get(), nullptr);
    lower += utf8_of(part.get());
    text.remove_prefix(sound);
    if (text.empty()) return lower;
    lower += text.front();
    text.remove_prefix(1);
  }
}

struct Text::Locale {
  Owned<CFLocaleRef> collation;
  NumberSymbols symbols;
};

Text::Text(std::string_view collation_locale, std::string_view number_locale, Localization localization)
    : locale_(std::make_unique<Locale>()), localization_(std::move(localization)) {
  locale_->collation = locale_of(collation_locale);
  locale_->symbols = number_symbols(locale_of(number_locale).get());
}

Text::~Text() = default;

int Text::compare(std::string_view a, std::string_view b) const {
  const Owned<CFStringRef> first = cf_string(a);
  const Owned<CFStringRef> second = cf_string(b);
  return static_cast<int>(
      CFStringCompareWithOptionsAndLocale(first.get(), second.get(), CFRangeMake(0, CFStringGetLength(first.get())),
                                          kCFCompareCaseInsensitive | kCFCompareLocalized, locale_->collation.get()));
}

std::vector<std::size_t> Text::order_of(const std::vector<std::string>& texts) const {
  std::vector<std::size_t> order(texts.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return compare(texts[a], texts[b]) < 0; });
  return order;
}

std::string Text::byte_count(std::int64_t bytes) const {
  return write_byte_count(bytes, locale_->symbols, localization_);
}

}  // namespace tarnby
