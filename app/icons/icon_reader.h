#pragma once

#include <QHash>
#include <QImage>

#include "app/icons/icon_theme.h"
#include "app/icons/picture_process.h"
#include "files/file_manager.h"
#include "platform/image.h"
#include "ui/entry_picture.h"

namespace tarnby {

/// Turns what records tell of their icons into pictures: the icon file of an application, or the icon that the desktop
/// has for a kind of entry, or a drawing of our own. Any thread may read, but one at a time; it waits for the disk.
class IconReader {
 public:
  explicit IconReader(const FileManager& files, IconPlaces places = IconPlaces::of_desktop())
      : files_(files), theme_(std::move(places)) {}

  /// A square of that many pixels; never null. Nothing that a file could be or hold ends in more than the icon of an
  /// application that has none: no link is followed, nothing but a plain file is opened, and none that is too large.
  QImage read(const Image& image, int side);

 private:
  QImage icon_of(const Url& entry, int side);
  std::optional<QImage> icon_in(const Image& image, int side);
  /// The first that the desktop has of these; otherwise the drawing.
  QImage usual(const QStringList& names, EntryPicture drawing, int side);

  const FileManager& files_;
  IconTheme theme_;
  /// What bundles carry.
  PictureProcess pictures_{{"icns", "png", "jpeg"}};
  QHash<QString, QImage> known_;
};

}  // namespace tarnby
