#pragma once

#include <QPainterPath>
#include <QRectF>
#include <array>

namespace tarnby {

/// A rectangle with round corners; the radius is cut to half of the shorter side, which gives fully round ends.
QPainterPath rounded_path(const QRectF& rect, double radius);

/// The heights of a curve over the window, as parts of its height from the top: at the left edge, the first crest, the
/// trough, the second crest and the right edge. More than 1 lies below the window.
using WaveHeights = std::array<double, 5>;

/// All of `rect` below that curve.
QPainterPath wave_path(const QRectF& rect, const WaveHeights& heights);

/// A check mark within `box`, as a line to be stroked with round ends.
QPainterPath check_path(const QRectF& box);

/// A triangle within `box` that points right; turned by `degrees` clockwise about its middle.
QPainterPath pointer_path(const QRectF& box, double degrees);

}  // namespace tarnby
