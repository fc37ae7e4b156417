#include "text/text.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/coll.h>
#include <unicode/dcfmtsym.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ures.h>

#include <mutex>
#include <stdexcept>

#include "text/text_parts.h"

namespace tarnby {

namespace {

/// ICU fails when its data is missing or memory is: no text can be worked on then.
void require(UErrorCode status) {
  if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU: ") + u_errorName(status));
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

const icu::Normalizer2& canonical_decomposition() {
  static const icu::Normalizer2& instance = []() -> const icu::Normalizer2& {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    require(status);
    return *nfd;
  }();
  return instance;
}

icu::UnicodeString without_nonspacing_marks(const icu::UnicodeString& text) {
  icu::UnicodeString kept;
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
    const UChar32 code_point = text.char32At(at);
    if (u_charType(code_point) != U_NON_SPACING_MARK) kept.append(code_point);
  }
  return kept;
}

/// The locale of a name from the environment; the root locale for C, POSIX, and unknown names. An unknown name
/// must not reach ICU: its number symbols would then come from the process's default locale, another one altogether.
icu::Locale locale_of(std::string_view name) {
  const std::string language_and_region(name.substr(0, name.find_first_of(".@")));
  if (language_and_region.empty() || language_and_region == "C" || language_and_region == "POSIX") {
    return icu::Locale::getRoot();
  }
  // The base name: an option in the other spelling, "de-u-nu-latn", may be one that ICU refuses.
  const icu::Locale locale(icu::Locale(language_and_region.c_str()).getBaseName());
  // A language is two or three letters (ISO 639). ICU keeps tables of other things under longer names, "zoneinfo64" or
  // "units", and would open them as if they were locales.
  const std::size_t letters = locale.isBogus() != 0 ? 0 : std::string_view(locale.getLanguage()).size();
  if (letters < 2 || letters > 3) return icu::Locale::getRoot();
  UErrorCode status = U_ZERO_ERROR;
  ures_close(ures_open(nullptr, locale.getName(), &status));
  const bool known = U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING;
  return known ? locale : icu::Locale::getRoot();
}

std::unique_ptr<icu::Collator> open_collator(std::string_view locale_name) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale_of(locale_name), status));
  require(status);
  collator->setStrength(icu::Collator::SECONDARY);
  return collator;
}

/// Bytes whose order is the collator's.
std::string sort_key(const icu::Collator& collator, std::string_view text) {
  const icu::UnicodeString utf16 = icu::UnicodeString::fromUTF8(piece(text));
  std::string key(text.size() * 2 + 16, '\0');
  const auto fill = [&] {
    return collator.getSortKey(utf16, reinterpret_cast<std::uint8_t*>(key.data()),
                               static_cast<std::int32_t>(key.size()));
  };
  const auto needed = static_cast<std::size_t>(fill());
  if (needed > key.size()) {
    key.resize(needed);
    (void)fill();  // the length is the same again
  }
  key.resize(needed - 1);  // ICU counts the NUL at the end
  return key;
}

NumberSymbols number_symbols(std::string_view locale_name) {
  using icu::DecimalFormatSymbols;
  constexpr DecimalFormatSymbols::ENumberFormatSymbol digits[] = {
      DecimalFormatSymbols::kZeroDigitSymbol,  DecimalFormatSymbols::kOneDigitSymbol,
      DecimalFormatSymbols::kTwoDigitSymbol,   DecimalFormatSymbols::kThreeDigitSymbol,
      DecimalFormatSymbols::kFourDigitSymbol,  DecimalFormatSymbols::kFiveDigitSymbol,
      DecimalFormatSymbols::kSixDigitSymbol,   DecimalFormatSymbols::kSevenDigitSymbol,
      DecimalFormatSymbols::kEightDigitSymbol, DecimalFormatSymbols::kNineDigitSymbol,
  };
  const icu::Locale locale = locale_of(locale_name);
  if (locale == icu::Locale::getRoot()) return {};
  UErrorCode status = U_ZERO_ERROR;
  const DecimalFormatSymbols symbols(locale, status);
  require(status);
  NumberSymbols written;
  for (std::size_t digit = 0; digit < written.digits.size(); ++digit) {
    written.digits.at(digit).clear();
    symbols.getSymbol(digits[digit]).toUTF8String(written.digits.at(digit));
  }
  written.decimal_point.clear();
  symbols.getSymbol(DecimalFormatSymbols::kDecimalSeparatorSymbol).toUTF8String(written.decimal_point);
  return written;
}

}  // namespace

void append_folded(std::string& out, std::string_view utf8) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(piece(utf8));
  const icu::UnicodeString decomposed = canonical_decomposition().normalize(text, status);
  require(status);
  without_nonspacing_marks(decomposed).foldCase(U_FOLD_CASE_DEFAULT).toUTF8String(out);
}

std::size_t letters_in(std::string_view text) {
  // What is not UTF-8 becomes U+FFFD, which is no letter.
  const auto unicode = icu::UnicodeString::fromUTF8(piece(text));
  std::size_t letters = 0;
  for (std::int32_t at = 0; at < unicode.length(); at = unicode.moveIndex32(at, 1)) {
    if (u_isalpha(unicode.char32At(at))) ++letters;
  }
  return letters;
}

std::size_t display_columns(std::string_view text) {
  const auto unicode = icu::UnicodeString::fromUTF8(to_valid_utf8(text));
  std::size_t columns = 0;
  for (std::int32_t at = 0; at < unicode.length(); at = unicode.moveIndex32(at, 1)) {
    const UChar32 c = unicode.char32At(at);
    const int type = u_charType(c);
    if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) continue;
    const int width = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    columns += width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
  }
  return columns;
}

std::string upper_first(std::string_view text) {
  const std::size_t length = text.empty() || !first_sequence(text).well_formed ? 0 : first_sequence(text).length;
  std::string upper;
  icu::UnicodeString::fromUTF8(piece(text.substr(0, length))).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
  return upper.append(text.substr(length));
}

std::string lower_case(std::string_view text) {
  std::string lower;
  icu::StringByteSink<std::string> sink(&lower, static_cast<std::int32_t>(text.size()));
  while (true) {
    const std::size_t sound = well_formed_prefix(text);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, piece(text.substr(0, sound)), sink, nullptr, status);
    require(status);
    text.remove_prefix(sound);
    if (text.empty()) return lower;
    lower += text.front();
    text.remove_prefix(1);
  }
}

/// Both halves are opened when first needed: a collator costs more than a whole run of a small command.
struct Text::Locale {
  std::string collation_name;
  std::string number_name;
  mutable std::once_flag collator_once;
  mutable std::unique_ptr<icu::Collator> opened_collator;
  mutable std::once_flag symbols_once;
  mutable NumberSymbols read_symbols;

  Locale(std::string_view collation, std::string_view number) : collation_name(collation), number_name(number) {}

  const icu::Collator& collator() const {
    std::call_once(collator_once, [this] { opened_collator = open_collator(collation_name); });
    return *opened_collator;
  }

  const NumberSymbols& symbols() const {
    std::call_once(symbols_once, [this] { read_symbols = number_symbols(number_name); });
    return read_symbols;
  }
};

Text::Text(std::string_view collation_locale, std::string_view number_locale, Localization localization)
    : locale_(std::make_unique<Locale>(collation_locale, number_locale)), localization_(std::move(localization)) {}

Text::~Text() = default;

int Text::compare(std::string_view a, std::string_view b) const {
  UErrorCode status = U_ZERO_ERROR;
  const UCollationResult order = locale_->collator().compareUTF8(piece(a), piece(b), status);
  require(status);
  return order;
}

std::vector<std::size_t> Text::order_of(const std::vector<std::string>& texts) const {
  // Each text is prepared once, and not for every comparison.
  std::vector<std::pair<std::string, std::size_t>> keys;
  keys.reserve(texts.size());
  for (const std::string& text : texts) keys.emplace_back(sort_key(locale_->collator(), text), keys.size());
  std::sort(keys.begin(), keys.end());
  std::vector<std::size_t> order;
  order.reserve(texts.size());
  for (const auto& [key, position] : keys) order.push_back(position);
  return order;
}

std::string Text::byte_count(std::int64_t bytes) const {
  return write_byte_count(bytes, locale_->symbols(), localization_);
}

}  // namespace tarnby
