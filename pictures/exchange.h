#pragma once

#include <cstdint>

namespace tarnby {

// What the process that decodes pictures is asked and answers, over two pipes: a request and the bytes of an image
// file, an answer and its pixels, in turn. Both ends run on one machine, so numbers are as the machine has them.
// Neither end believes the other: the one has read what a stranger wrote, and the other may by now do what a stranger
// wants.

/// As large as any icon or photograph; what is larger is not decoded.
constexpr std::uint32_t most_picture_bytes = 32U << 20U;
/// In pixels; no display is wider.
constexpr std::uint32_t most_picture_side = 4096;

struct PictureRequest {
  enum class Shape : std::uint32_t {
    /// A transparent square of that side, and in its middle the picture as large as it fits.
    square,
    /// The picture as it is, or as large as it fits into that square.
    own,
  };

  Shape shape;
  std::uint32_t side;
  /// Of the image file that follows.
  std::uint32_t length;

  bool is_sound() const {
    return (shape == Shape::square || shape == Shape::own) && side > 0 && side <= most_picture_side && length > 0 &&
           length <= most_picture_bytes;
  }
};

/// The pixels follow row by row, 32 bits each: alpha, red, green and blue from the highest on, colours multiplied by
/// alpha. No picture is 0 by 0.
struct PictureAnswer {
  std::uint32_t width;
  std::uint32_t height;

  bool is_none() const { return width == 0 && height == 0; }
  bool answers(const PictureRequest& request) const {
    if (request.shape == PictureRequest::Shape::square) return width == request.side && height == request.side;
    return width > 0 && height > 0 && width <= request.side && height <= request.side;
  }
};

/// What the process writes first, once it has given up its rights.
constexpr char pictures_ready = '+';

}  // namespace tarnby
