#pragma once

#include <QString>
#include <string_view>

namespace tarnby {

/// UTF-8 as a text of the window; bytes that are not UTF-8 become U+FFFD.
inline QString to_qstring(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// A name, which may hold anything, for a row of one line.
inline QString one_line(std::string_view name) {
  return to_qstring(name).replace(u'\n', u' ').replace(u'\t', u' ');
}

}  // namespace tarnby
