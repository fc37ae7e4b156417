#include "app/desktop/resources.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tarnby {

namespace {

/// From the program's own folder: of an installation, of an application bundle, of a build.
constexpr const char* places[] = {"../share/tarnby-cleaner", "../Resources", "share/tarnby-cleaner"};
/// The same for programs: of an installation, of an application bundle and a build, of a build's own tools and tests.
constexpr const char* program_places[] = {"../libexec/tarnby-cleaner", ".", ".."};

template <std::size_t count>
QString first_in(const char* const (&folders)[count], const QString& name) {
  const QDir program(QCoreApplication::applicationDirPath());
  for (const char* folder : folders) {
    const QString path = program.filePath(QLatin1String(folder) + u'/' + name);
    if (QFileInfo::exists(path)) return QDir::cleanPath(path);
  }
  return QDir::cleanPath(program.filePath(QLatin1String(folders[0]) + u'/' + name));
}

}  // namespace

QString resource_path(const QString& name) {
  return first_in(places, name);
}

QString program_path(const QString& name) {
  return first_in(program_places, name);
}

QIcon program_icon() {
  QIcon icon;
  for (const int side : {16, 32, 48, 64, 128}) {  // NOLINT: as the pictures are
    icon.addFile(resource_path(QStringLiteral("icons/tarnby-cleaner-%1.png").arg(side)), QSize(side, side));
  }
  return icon;
}

QString page_path(const QString& name, const std::string& language) {
  const QFileInfo page(name);
  const QString localized =
      page.path() + u'/' + page.completeBaseName() + u'.' + QString::fromStdString(language) + u'.' + page.suffix();
  const QString path = resource_path(localized);
  return QFileInfo::exists(path) ? path : resource_path(name);
}

}  // namespace tarnby
