#include "text/encodings.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <memory>

namespace tarnby {

std::optional<std::string> to_utf8(std::string_view bytes, const std::string& encoding) {
  if (encoding.empty()) return std::nullopt;  // ICU would take its default encoding
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding.c_str(), &error), &ucnv_close);
  if (U_FAILURE(error)) return std::nullopt;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  const icu::UnicodeString text(bytes.data(), static_cast<std::int32_t>(bytes.size()), converter.get(), error);
  if (U_FAILURE(error)) return std::nullopt;
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace tarnby
