#include "app/icons/icon_reader.h"

#include <QMimeDatabase>
#include <QPainter>
#include <algorithm>
#include <iterator>

#include "inventory/application.h"
#include "ui/qt_text.h"

namespace tarnby {

namespace {

/// There are not that many kinds of entries; a name may claim to be of any.
constexpr qsizetype most_known = 256;

/// How a kind of file is drawn, by the name of its icon or of the icon of all such kinds, and what the themes have that
/// comes near it when they have neither.
struct KindRow {
  const char* icon;
  EntryPicture drawing;
  const char* stand_in;
};

constexpr KindRow kinds[] = {
    {"image-x-generic", EntryPicture::picture, "image-x-generic"},
    {"video-x-generic", EntryPicture::movie, "video-x-generic"},
    {"audio-x-generic", EntryPicture::audio, "audio-x-generic"},
    {"package-x-generic", EntryPicture::archive, "package-x-generic"},
    {"application-x-apple-diskimage", EntryPicture::archive, "package-x-generic"},
    {"application-x-cd-image", EntryPicture::archive, "package-x-generic"},
    {"text-x-generic", EntryPicture::document, "text-x-generic"},
    {"x-office-document", EntryPicture::document, "x-office-document"},
    {"x-office-presentation", EntryPicture::document, "x-office-presentation"},
    {"x-office-spreadsheet", EntryPicture::document, "x-office-spreadsheet"},
};
constexpr KindRow unknown_kind = {"", EntryPicture::file, "text-x-generic"};

const KindRow& kind_of(const QMimeType& type) {
  const QString own = type.iconName();
  const QString shared = type.genericIconName();
  const auto* row = std::find_if(std::begin(kinds), std::end(kinds), [&](const KindRow& one) {
    return own == QLatin1String(one.icon) || shared == QLatin1String(one.icon);
  });
  return row == std::end(kinds) ? unknown_kind : *row;
}

}  // namespace

QImage IconReader::read(const Image& image, int side) {
  if (image.kind == Image::Kind::icon_of_path) return icon_of(image.url, side);
  if (auto icon = icon_in(image, side)) return *icon;
  return usual({QStringLiteral("application-x-executable"), QStringLiteral("application-default-icon")},
               EntryPicture::application, side);
}

std::optional<QImage> IconReader::icon_in(const Image& image, int side) {
  if (image.kind != Image::Kind::file) return {};
  const auto content = files_.read(image.url, most_picture_bytes);
  if (!content) return {};
  QImage icon =
      pictures_.square(QByteArray::fromRawData(content->data(), static_cast<qsizetype>(content->size())), side);
  return icon.isNull() ? std::nullopt : std::optional(std::move(icon));
}

/// By what stands there and by its name; no file is looked into.
QImage IconReader::icon_of(const Url& entry, int side) {
  const std::string_view name = entry.last_path_component();
  if (files_.is_folder(entry)) {
    if (is_application_name(name)) return read(app_icon_of(files_, entry), side);
    if (is_package_name(name)) return usual({QStringLiteral("package-x-generic")}, EntryPicture::package, side);
    return usual({QStringLiteral("folder"), QStringLiteral("inode-directory")}, EntryPicture::folder, side);
  }
  const auto types = QMimeDatabase().mimeTypesForFileName(to_qstring(name));
  const QMimeType type = types.isEmpty() ? QMimeType() : types.first();
  const KindRow& kind = kind_of(type);
  return usual({type.iconName(), type.genericIconName(), QLatin1String(kind.stand_in)}, kind.drawing, side);
}

QImage IconReader::usual(const QStringList& names, EntryPicture drawing, int side) {
  const QString key = names.join(u' ') + u' ' + QString::number(side);
  if (const auto known = known_.constFind(key); known != known_.cend()) return *known;
  QImage icon = theme_.picture(names, side);
  if (icon.isNull()) {
    icon = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    draw_entry_picture(painter, icon.rect(), drawing);
  }
  if (known_.size() >= most_known) known_.clear();
  known_.insert(key, icon);
  return icon;
}

}  // namespace tarnby
