#pragma once

#include <QWidget>
#include <vector>

#include "ui/animation.h"

namespace tarnby {

/// Some pages, of which one is seen. Turning slides the next one in from its side; the others are hidden, so that
/// neither eye nor keyboard meets them.
class PageTurner : public QWidget {
  Q_OBJECT
 public:
  PageTurner(AnimationClock& clock, QWidget* parent);

  void add_page(QWidget* page);
  /// Any index will do; one that there is no page for changes nothing.
  void turn_to(int index);
  int current() const { return current_; }
  int count() const { return static_cast<int>(pages_.size()); }
  QWidget* page(int index) const { return pages_[static_cast<std::size_t>(index)]; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* /*event*/) override { place(); }

 private:
  void place();

  std::vector<QWidget*> pages_;
  int current_ = 0;
  int previous_ = 0;
  Animation turn_;  // 0 the previous page, 1 the current one
};

}  // namespace tarnby
