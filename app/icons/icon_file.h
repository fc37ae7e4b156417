#pragma once

#include <QImage>

class QImageReader;

namespace tarnby {

/// Whether a stranger's bytes, which the reader reads, may be decoded: their format is one whose decoder looks at
/// nothing else, and they cannot keep it busy. A drawing in SVG may name other files, which would be opened whatever
/// they are; so it is for the desktop's own icons alone.
bool may_decode(const QImageReader& reader, const QByteArray& bytes);

/// Of all pictures in the bytes of an image file the one that suits a square of that many pixels best, fitted into it.
/// Icon files hold their icon in many sizes, some of them in formats that nothing here can read; those are passed
/// over. Null when there is no picture in the bytes. Any thread may call.
QImage picture_in(const QByteArray& bytes, int side);

/// The picture, as large as it fits into a transparent square and in the middle of it.
QImage squared(const QImage& picture, int side);

}  // namespace tarnby
