#pragma once

#include <QRectF>

class QPainter;

namespace tarnby {

/// What an entry of a disk is drawn as where the desktop has no icon for it.
enum class EntryPicture { file, document, picture, movie, audio, archive, package, folder, application };

/// Draws it into a square. Any thread may call, for a painter of its own.
void draw_entry_picture(QPainter& painter, const QRectF& box, EntryPicture what);

}  // namespace tarnby
