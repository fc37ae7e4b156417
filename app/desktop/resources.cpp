#include "app/desktop/resources.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tarnby {

QString resource_path(const QString& name) {
  const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/tarnby-cleaner/") + name;
  if (QFileInfo::exists(installed)) return QDir::cleanPath(installed);
  return QStringLiteral(TARNBY_RESOURCES "/") + name;
}

QString page_path(const QString& name, const std::string& language) {
  const QFileInfo page(name);
  const QString localized =
      page.path() + u'/' + page.completeBaseName() + u'.' + QString::fromStdString(language) + u'.' + page.suffix();
  const QString path = resource_path(localized);
  return QFileInfo::exists(path) ? path : resource_path(name);
}

}  // namespace tarnby
