// Two texts of any bytes, a NUL between them: what is made of them agrees with a slow and plain way to the same.

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>

#include "fuzz/fuzzer.h"
#include "text/text.h"

using namespace tarnby;

namespace {

/// Appends the code points of a folded text, without marks.
void append_folded_points(std::u32string& points, const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString decomposed = icu::Normalizer2::getNFDInstance(status)->normalize(text, status);
  fuzz::check(U_SUCCESS(status), "ICU can decompose");
  for (std::int32_t at = 0; at < decomposed.length(); at = decomposed.moveIndex32(at, 1)) {
    const UChar32 point = decomposed.char32At(at);
    if (u_charType(point) == U_NON_SPACING_MARK) continue;
    const icu::UnicodeString folded = icu::UnicodeString(point).foldCase();
    for (std::int32_t in = 0; in < folded.length(); in = folded.moveIndex32(in, 1)) {
      points += static_cast<char32_t>(folded.char32At(in));
    }
  }
}

/// The code point at `at`, which goes on behind it; below 0 when there are bytes that are no UTF-8.
UChar32 next_point(std::string_view bytes, std::int32_t& at) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // of ICU's own
  UChar32 point = 0;
  U8_NEXT(bytes.data(), at, static_cast<std::int32_t>(bytes.size()), point);
#pragma GCC diagnostic pop
  return point;
}

/// A text folded in whole runs of UTF-8; the bytes between them stand above all code points.
std::u32string plainly_folded(std::string_view bytes) {
  std::u32string points;
  icu::UnicodeString run;
  const auto size = static_cast<std::int32_t>(bytes.size());
  for (std::int32_t at = 0; at < size;) {
    const std::int32_t start = at;
    const UChar32 point = next_point(bytes, at);
    if (point >= 0) {
      run.append(point);
      continue;
    }
    append_folded_points(points, run);
    run.remove();
    for (std::int32_t stray = start; stray < at; ++stray) {
      points += static_cast<char32_t>(0x110000U + static_cast<unsigned char>(bytes[static_cast<std::size_t>(stray)]));
    }
  }
  append_folded_points(points, run);
  return points;
}

bool plainly_contains(std::string_view text, std::string_view part) {
  const std::u32string sought = plainly_folded(part);
  return !sought.empty() && plainly_folded(text).find(sought) != std::u32string::npos;
}

std::string replaced_by_icu(std::string_view bytes) {
  std::string text;
  return icu::UnicodeString::fromUTF8({bytes.data(), static_cast<std::int32_t>(bytes.size())}).toUTF8String(text);
}

void check_one(std::string_view bytes) {
  const std::string valid = to_valid_utf8(bytes);
  fuzz::check(valid == replaced_by_icu(bytes), "ill-formed bytes are replaced as everybody does");
  fuzz::check(to_valid_utf8(valid) == valid, "and what is sound stays");
  const std::string lower = lower_case(bytes);
  fuzz::check(lower_case(lower) == lower, "lower case has none lower");
  (void)upper_first(bytes);
  fuzz::check(letters_in(bytes) <= bytes.size(), "a letter takes a byte at least");
  fuzz::check(display_columns(bytes) <= 2 * bytes.size(), "a byte takes two columns at most");
}

void check_order(const Text& text, std::string_view a, std::string_view b) {
  const auto sign = [](int order) { return (order > 0) - (order < 0); };
  const int order = sign(text.compare(a, b));
  fuzz::check(order == -sign(text.compare(b, a)), "the order does not depend on who asks");
  fuzz::check(text.compare(a, a) == 0, "a text equals itself");
  const std::vector<std::size_t> places = text.order_of({std::string(a), std::string(b)});
  fuzz::check((places.front() == 1) == (order > 0), "sorting and comparing agree");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Text root("C", "C");
  static const Text swedish("sv_SE.UTF-8", "sv_SE.UTF-8");
  std::string_view rest = fuzz::text_of(data, size);
  const std::string_view a = fuzz::next_word(rest);
  const std::string_view b = fuzz::next_word(rest);
  fuzz::check(contains_folded(a, b) == plainly_contains(a, b), "containment is that of code points");
  fuzz::check(contains_folded(a, a) == !plainly_folded(a).empty(), "a text holds itself");
  check_one(a);
  check_one(b);
  check_order(root, a, b);
  check_order(swedish, a, b);
  if (b.size() < 32) {  // a locale of any name, as the environment may have it
    const Text named(b, b);
    (void)named.byte_count(1'500'000);
    fuzz::check(named.compare(a, a) == 0, "a text equals itself in every locale");
  }
  return 0;
}
