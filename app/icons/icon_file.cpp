#include "app/icons/icon_file.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QtEndian>
#include <algorithm>
#include <iterator>
#include <vector>

namespace tarnby {

namespace {

constexpr const char* harmless_formats[] = {"icns", "png", "jpg",  "jpeg", "tif", "tiff", "gif",
                                            "bmp",  "ico", "webp", "pbm",  "pgm", "ppm"};

/// An icon file says only by these what sizes it holds, short of decoding them all. What is not here, such as the
/// pictures in two colours, comes last.
struct FrameRow {
  const char* kind;
  int side;
};
constexpr FrameRow frame_rows[] = {
    {"icp4", 16},  {"ic04", 16},  {"is32", 16},  {"icsb", 18},  {"ic11", 32},   {"icp5", 32},  {"ic05", 32},
    {"il32", 32},  {"icsB", 36},  {"ih32", 48},  {"ic12", 64},  {"icp6", 64},   {"ic07", 128}, {"it32", 128},
    {"ic08", 256}, {"ic13", 256}, {"ic09", 512}, {"ic14", 512}, {"ic10", 1024},
};

/// Nobody draws one icon in more sizes.
constexpr int most_frames = 64;

/// The decoder takes minutes to list the frames of a file that claims to have millions.
bool claims_too_many_frames(const QByteArray& bytes) {
  constexpr qsizetype head = 8;  // of the file and of each frame: its kind and, from 4 on, its length
  qsizetype at = head;
  for (int frames = 0; at + head <= bytes.size(); ++frames) {
    const auto length = qFromBigEndian<quint32>(bytes.constData() + at + 4);
    if (frames == most_frames || length < head) return true;
    at += static_cast<qsizetype>(length);
  }
  return false;
}

struct Frame {
  int index;
  int side;
};

int side_of(const QImageReader& reader) {
  const QSize size = reader.size();
  if (size.isValid()) return std::max(size.width(), size.height());
  const QByteArray kind = reader.subType();
  const auto* row =
      std::find_if(std::begin(frame_rows), std::end(frame_rows), [&](const FrameRow& one) { return kind == one.kind; });
  return row == std::end(frame_rows) ? 0 : row->side;
}

/// The smallest that is large enough, the larger ones, then those too small from the largest on.
std::vector<Frame> best_first(QImageReader& reader, int side) {
  std::vector<Frame> frames;
  const bool of_icon = reader.format() == "icns" || reader.format() == "ico";
  const int count = of_icon ? std::clamp(reader.imageCount(), 1, most_frames) : 1;
  for (int index = 0; index < count; ++index) {
    if (index == 0 || reader.jumpToImage(index)) frames.push_back({index, side_of(reader)});
  }
  std::stable_sort(frames.begin(), frames.end(), [side](const Frame& one, const Frame& other) {
    const bool enough = one.side >= side;
    if (enough != (other.side >= side)) return enough;
    return enough ? one.side < other.side : one.side > other.side;
  });
  return frames;
}

}  // namespace

bool may_decode(const QImageReader& reader, const QByteArray& bytes) {
  const QByteArray format = reader.format();
  if (format == "icns" && claims_too_many_frames(bytes)) return false;
  return std::any_of(std::begin(harmless_formats), std::end(harmless_formats),
                     [&](const char* harmless) { return format == harmless; });
}

QImage picture_in(const QByteArray& bytes, int side) {
  QBuffer buffer;
  buffer.setData(bytes);
  QImageReader reader(&buffer);
  reader.setDecideFormatFromContent(true);
  if (!may_decode(reader, bytes)) return {};
  for (const Frame& frame : best_first(reader, side)) {
    // Not every format can go to its first picture again, having just begun with it.
    if (reader.currentImageNumber() != frame.index) reader.jumpToImage(frame.index);
    const QImage picture = reader.read();
    if (!picture.isNull()) return squared(picture, side);
  }
  return {};
}

QImage squared(const QImage& picture, int side) {
  QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  // Scaling a picture of two colours would make them black and white.
  const QImage colored = picture.convertToFormat(square.format());
  const QImage fitted = colored.scaled(square.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QPainter painter(&square);
  painter.drawImage((side - fitted.width()) / 2, (side - fitted.height()) / 2, fitted);
  return square;
}

}  // namespace tarnby
