#include "ui/entrance.h"

#include <QGraphicsOpacityEffect>
#include <QLayout>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace tarnby {

namespace {

constexpr double slide = 28;  // pixels from below

}  // namespace

Entrance::Entrance(AnimationClock& clock, QWidget* content)
    : content_(content),
      top_margin_(content->layout()->contentsMargins().top()),
      shown_(clock, 1, [this] { draw(); }) {}

void Entrance::open(QEasingCurve::Type easing) {
  shown_.jump_to(0);
  shown_.move_to(1, open_ms, easing);
}

void Entrance::close(Animation::Done done) {
  shown_.move_to(0, close_ms, QEasingCurve::InCubic, std::move(done));
}

void Entrance::draw() {
  if (!content_) return;
  QMargins margins = content_->layout()->contentsMargins();
  margins.setTop(top_margin_ + static_cast<int>(std::lround(slide * (1 - shown_.value()))));
  content_->layout()->setContentsMargins(margins);
  if (!shown_.moving() && shown_.value() >= 1) {
    content_->setGraphicsEffect(nullptr);  // in place nothing is drawn twice
    return;
  }
  if (!effect_) {
    effect_ = new QGraphicsOpacityEffect;
    content_->setGraphicsEffect(effect_);  // which owns it from here on
  }
  effect_->setOpacity(std::clamp(shown_.value(), 0.0, 1.0));
}

}  // namespace tarnby
