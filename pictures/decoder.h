#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

#include "pictures/exchange.h"

namespace tarnby {

/// The names of image formats, as the toolkit calls them.
using PictureFormats = QList<QByteArray>;

/// Loads what reads these formats, so that no file has to be opened later.
void load_decoders(const PictureFormats& formats);

/// The picture in the bytes of an image file of one of these formats, as the request wants it. Icon files hold their
/// icon in many sizes, some of them in formats that nothing here can read; of the others the one that suits best is
/// taken. Null when there is no picture in the bytes.
QImage decode_picture(const QByteArray& bytes, const PictureRequest& request, const PictureFormats& formats);

/// The picture, as large as it fits into a transparent square and in the middle of it.
QImage squared(const QImage& picture, int side);

}  // namespace tarnby
