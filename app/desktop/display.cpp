#include "app/desktop/display.h"

#include <QString>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace tarnby {

namespace {

std::vector<std::string>& kept() {
  static std::vector<std::string> lines;
  return lines;
}

/// The toolkit's only fatal message before there is a window is that it can open none.
void keep_or_end(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type != QtFatalMsg) return kept().push_back(message.toStdString());
  std::fputs("tarnby-cleaner: there is no display to open a window on; in a terminal use tarnby-cleaner-cli\n", stderr);
  std::_Exit(1);
}

}  // namespace

NeedsDisplay::NeedsDisplay() : before_(qInstallMessageHandler(keep_or_end)) {}

NeedsDisplay::~NeedsDisplay() {
  qInstallMessageHandler(before_);
  for (const std::string& line : kept()) qWarning("%s", line.c_str());
  kept().clear();
}

}  // namespace tarnby
