#include "pictures/decoder.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace tarnby {

namespace {

using std::string_view_literals::operator""sv;

/// What files of a format begin with. Nothing else is believed to be of it, and none of its decoders asked.
struct FormatRow {
  const char* format;
  std::string_view beginning;
};
constexpr FormatRow format_rows[] = {
    {"icns", "icns"},
    {"png", "\x89PNG\r\n\x1A\n"},
    {"jpeg", "\xFF\xD8\xFF"},
    {"gif", "GIF8"},
    {"tiff", "II*\0"sv},
    {"tiff", "MM\0*"sv},
    {"bmp", "BM"},
    {"ico", "\0\0\1\0"sv},
    {"webp", "RIFF"},
    {"pbm", "P1"},
    {"pbm", "P4"},
    {"pgm", "P2"},
    {"pgm", "P5"},
    {"ppm", "P3"},
    {"ppm", "P6"},
};

QByteArray format_of(const QByteArray& bytes, const PictureFormats& formats) {
  const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  const auto* row = std::find_if(std::begin(format_rows), std::end(format_rows),
                                 [text](const FormatRow& one) { return text.starts_with(one.beginning); });
  const QByteArray format = row == std::end(format_rows) ? nullptr : row->format;
  return formats.contains(format) ? format : QByteArray();
}

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

QImage square_picture(QImageReader& reader, int side) {
  for (const Frame& frame : best_first(reader, side)) {
    // Not every format can go to its first picture again, having just begun with it.
    if (reader.currentImageNumber() != frame.index) reader.jumpToImage(frame.index);
    const QImage picture = reader.read();
    if (!picture.isNull()) return squared(picture, side);
  }
  return {};
}

/// Decoded no larger than it may be, however large it claims to be.
QImage own_picture(QImageReader& reader, int side) {
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  const bool too_large = size.width() > side || size.height() > side;
  if (too_large) reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio));
  QImage picture = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const bool fits = picture.width() <= side && picture.height() <= side;
  return fits ? picture : picture.scaled(side, side, Qt::KeepAspectRatio);
}

}  // namespace

void load_decoders(const PictureFormats& formats) {
  for (const QByteArray& format : formats) {
    QBuffer nothing;
    QImageReader reader(&nothing, format);
    reader.setAutoDetectImageFormat(false);
    (void)reader.canRead();
  }
}

QImage decode_picture(const QByteArray& bytes, const PictureRequest& request, const PictureFormats& formats) {
  const QByteArray format = format_of(bytes, formats);
  if (format.isEmpty() || (format == "icns" && claims_too_many_frames(bytes))) return {};
  QBuffer buffer;
  buffer.setData(bytes);
  QImageReader reader(&buffer, format);
  reader.setAutoDetectImageFormat(false);
  const int side = static_cast<int>(request.side);
  return request.shape == PictureRequest::Shape::square ? square_picture(reader, side) : own_picture(reader, side);
}

QImage squared(const QImage& picture, int side) {
  QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  // Scaling a picture of two colours would make them black and white.
  const QImage colored = picture.convertToFormat(square.format());
  const QImage fitted = colored.scaled(square.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
  const int left = (side - fitted.width()) / 2;
  const int top = (side - fitted.height()) / 2;
  for (int row = 0; row < fitted.height(); ++row) {
    std::copy_n(reinterpret_cast<const QRgb*>(fitted.constScanLine(row)), fitted.width(),
                reinterpret_cast<QRgb*>(square.scanLine(top + row)) + left);
  }
  return square;
}

}  // namespace tarnby
