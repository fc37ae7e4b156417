#include "app/icons/icon_theme.h"

#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QSettings>
#include <limits>

#include "pictures/decoder.h"

namespace tarnby {

namespace {

/// More ancestors than any theme has; whoever inherits in a circle ends here.
constexpr qsizetype most_themes = 16;
/// Every theme's last ancestor.
constexpr const char* common_theme = "hicolor";

}  // namespace

IconPlaces IconPlaces::of_desktop() {
  return {{QIcon::themeName(), QIcon::fallbackThemeName()}, QIcon::themeSearchPaths()};
}

/// Icons that are too small look worse than those too large.
int IconTheme::Folder::misfit(int side) const {
  return side < least ? least - side : side > most ? 2 * (side - most) : 0;
}

std::optional<IconTheme::Theme> IconTheme::theme(const QString& name) const {
  if (name.isEmpty()) return {};
  Theme theme;
  QString index;
  for (const QString& folder : places_.folders) {
    index = folder + u'/' + name + QStringLiteral("/index.theme");
    if (QFileInfo(index).isFile()) break;
    index.clear();
  }
  if (index.isEmpty()) return {};
  const QSettings list(index, QSettings::IniFormat);
  theme.ancestors = list.value(QStringLiteral("Icon Theme/Inherits")).toStringList();
  QStringList names = list.value(QStringLiteral("Icon Theme/Directories")).toStringList();
  names += list.value(QStringLiteral("Icon Theme/ScaledDirectories")).toStringList();
  for (const QString& inner : names) {
    const auto number = [&](const char* key, int otherwise) {
      return list.value(inner + u'/' + QLatin1String(key), otherwise).toInt();
    };
    const int size = number("Size", 0);
    const int scale = number("Scale", 1);
    const QString type = list.value(inner + QStringLiteral("/Type")).toString();
    const bool scalable = type == QLatin1String("Scalable");
    const int spread = type == QLatin1String("Fixed") ? 0 : number("Threshold", 2);
    const int least = scalable ? number("MinSize", size) : size - spread;
    const int most = scalable ? number("MaxSize", size) : size + spread;
    for (const QString& folder : places_.folders) {
      const QString path = folder + u'/' + name + u'/' + inner;
      if (QFileInfo(path).isDir()) theme.folders.push_back({path, least * scale, most * scale});
    }
  }
  return theme;
}

const std::vector<IconTheme::Theme>& IconTheme::themes() {
  if (themes_) return *themes_;
  themes_.emplace();
  QStringList names = places_.themes;
  for (qsizetype at = 0; at < names.size() && at < most_themes; ++at) {
    if (names[at] == QLatin1String(common_theme) || names.indexOf(names[at]) != at) continue;
    auto found = theme(names[at]);
    if (!found) continue;
    names += found->ancestors;
    themes_->push_back(std::move(*found));
  }
  if (auto found = theme(QLatin1String(common_theme))) themes_->push_back(std::move(*found));
  return *themes_;
}

QString IconTheme::file_of(const Theme& theme, const QString& name, int side) {
  QString best;
  int least_misfit = std::numeric_limits<int>::max();
  for (const Folder& folder : theme.folders) {
    if (folder.misfit(side) >= least_misfit) continue;
    for (const char* extension : {".png", ".svg"}) {
      const QString path = folder.path + u'/' + name + QLatin1String(extension);
      if (!QFileInfo(path).isFile()) continue;
      best = path;
      least_misfit = folder.misfit(side);
      break;
    }
  }
  return best;
}

QImage IconTheme::picture(const QStringList& names, int side) {
  for (const Theme& theme : themes()) {
    for (const QString& name : names) {
      const QString path = file_of(theme, name, side);
      if (path.isEmpty()) continue;
      QImageReader reader(path);
      if (path.endsWith(QLatin1String(".svg"))) reader.setScaledSize({side, side});
      const QImage picture = reader.read();
      if (!picture.isNull()) return squared(picture, side);
    }
  }
  return {};
}

}  // namespace tarnby
