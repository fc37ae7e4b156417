#pragma once

#include <QImage>
#include <QStringList>
#include <optional>
#include <vector>

namespace tarnby {

/// Where the desktop keeps its icons.
struct IconPlaces {
  /// The names of the themes, the wanted one first.
  QStringList themes;
  /// The folders that themes are in; of two the first counts.
  QStringList folders;

  /// As the desktop says. Main thread only; looks at no disk.
  static IconPlaces of_desktop();
};

/// The desktop's icons by name. The toolkit reads them on the main thread alone, and that never waits for a disk;
/// this one is for any thread, but one at a time. Themes are read when the first icon is asked for.
class IconTheme {
 public:
  explicit IconTheme(IconPlaces places) : places_(std::move(places)) {}

  /// The first of these icons that there is, a square of that many pixels; what it names first in a theme goes before
  /// whatever the theme's ancestors have. Null when there is none.
  QImage picture(const QStringList& names, int side);

 private:
  /// One folder of a theme, and the sizes in pixels that its icons are good for.
  struct Folder {
    QString path;
    int least;
    int most;
    /// How badly its icons suit; 0 is well.
    int misfit(int side) const;
  };
  struct Theme {
    std::vector<Folder> folders;
    QStringList ancestors;
  };

  const std::vector<Theme>& themes();
  std::optional<Theme> theme(const QString& name) const;
  static QString file_of(const Theme& theme, const QString& name, int side);

  IconPlaces places_;
  std::optional<std::vector<Theme>> themes_;
};

}  // namespace tarnby
