#include "ui/page_turner.h"

#include <QApplication>
#include <cmath>

#include "ui/motion.h"

namespace tarnby {

PageTurner::PageTurner(AnimationClock& clock, QWidget* parent)
    : QWidget(parent), turn_(clock, 1, [this] { place(); }) {}

void PageTurner::add_page(QWidget* page) {
  page->setParent(this);
  pages_.push_back(page);
  page->setVisible(count() == 1);
  place();
}

void PageTurner::turn_to(int index) {
  if (index < 0 || index >= count() || index == current_) return;
  previous_ = current_;
  current_ = index;
  // The keyboard begins anew on the new page, or it would stay on what is hidden.
  if (page(previous_)->isAncestorOf(QApplication::focusWidget())) page(current_)->setFocus();
  turn_.jump_to(0);
  turn_.move_to(1, isVisible() ? motion::push_ms : 0, QEasingCurve::InOutQuad);
}

void PageTurner::place() {
  const bool forward = (current_ > previous_) != (layoutDirection() == Qt::RightToLeft);
  const int way = forward ? width() : -width();
  const double left = turn_.moving() ? turn_.value() : 1;
  for (int at = 0; at < count(); ++at) {
    QRect place = rect();
    if (at == current_) place.translate(static_cast<int>(std::lround(way * (1 - left))), 0);
    if (at == previous_ && at != current_) place.translate(static_cast<int>(std::lround(-way * left)), 0);
    page(at)->setGeometry(place);
    page(at)->setVisible(at == current_ || (at == previous_ && left < 1));
  }
}

QSize PageTurner::sizeHint() const {
  QSize size;
  for (const QWidget* page : pages_) size = size.expandedTo(page->sizeHint());
  return size;
}

QSize PageTurner::minimumSizeHint() const {
  QSize size;
  for (const QWidget* page : pages_) size = size.expandedTo(page->minimumSizeHint());
  return size;
}

}  // namespace tarnby
