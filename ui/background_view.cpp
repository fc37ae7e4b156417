#include "ui/background_view.h"

#include <QPainter>

#include "ui/motion.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

using Curve = BackgroundView::Curve;
using Curves = BackgroundView::Curves;

// The edges, crests and troughs of the three curves (see WaveHeights), measured from the top.
constexpr WaveHeights back = {0.672, 0.637, 0.742, 0.564, 0.623};
constexpr WaveHeights middle = {0.781, 0.758, 0.835, 0.689, 0.748};
constexpr WaveHeights front = {0.883, 0.867, 0.936, 0.817, 0.859};

constexpr WaveHeights moved(WaveHeights heights, double by) {
  for (double& height : heights) height += by;
  return heights;
}

const Curves home = {Curve{back, theme::rgb(0x5A5C6B)}, Curve{middle, theme::rgb(0x626476)},
                     Curve{front, theme::rgb(0x6B6D80)}};

// Higher, so that the ring stands before them; the front one waits below the window.
const Curves scan = {Curve{moved(back, -0.313), theme::rgb(0x575967)}, Curve{moved(middle, -0.187), theme::wave_ground},
                     Curve{moved(front, 0.25), theme::wave_ground}};

// A page is full of panels: the curves leave the window.
const Curves page = {Curve{moved(back, 0.5), theme::rgb(0x575967)}, Curve{moved(middle, 0.4), theme::wave_ground},
                     Curve{moved(front, 0.3), theme::rgb(0x626476)}};

const Curves removing = {Curve{moved(back, -0.2), theme::rgb(0x565C68)},
                         Curve{moved(middle, -0.1), theme::rgb(0x5A616C)},
                         Curve{moved(front, 0.02), theme::rgb(0x5E6671)}};

const Curves cleaned = {Curve{moved(back, -0.156), theme::rgb(0x4E6A70)},
                        Curve{moved(middle, -0.11), theme::rgb(0x4B7A7A)},
                        Curve{moved(front, -0.05), theme::rgb(0x41807B)}};

Curve between(const Curve& from, const Curve& to, double part) {
  Curve result{from.heights, theme::blend(from.color, to.color, part)};
  for (std::size_t i = 0; i < result.heights.size(); ++i) {
    result.heights[i] += (to.heights[i] - from.heights[i]) * part;
  }
  return result;
}

}  // namespace

BackgroundView::BackgroundView(AnimationClock& clock, QWidget* parent)
    : Drawing(parent), glide_(clock, 1, [this] { update(); }), from_(home), to_(home) {
  setAttribute(Qt::WA_TransparentForMouseEvents, false);  // its children are the screens
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void BackgroundView::animation_for_home_view() {
  glide_to(home);
}

void BackgroundView::animation_for_scan_view() {
  glide_to(scan);
}

void BackgroundView::animation_for_page_view() {
  glide_to(page);
}

void BackgroundView::animation_for_delete_view() {
  glide_to(removing);
}

void BackgroundView::animation_for_cleaned_view() {
  glide_to(cleaned);
}

void BackgroundView::glide_to(const Curves& curves) {
  from_ = this->curves();
  to_ = curves;
  const bool moves = isVisible() && from_ != to_;
  glide_.jump_to(0);
  glide_.move_to(1, moves ? motion::glide_ms : 0, QEasingCurve::InOutQuad);
}

Curves BackgroundView::curves() const {
  if (!glide_.moving()) return to_;
  Curves now;
  for (std::size_t i = 0; i < now.size(); ++i) now[i] = between(from_[i], to_[i], glide_.value());
  return now;
}

void BackgroundView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::background);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const Curve& curve : curves()) painter.fillPath(wave_path(rect(), curve.heights), curve.color);
}

}  // namespace tarnby
