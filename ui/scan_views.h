#pragma once

#include "ui/ring_view.h"

namespace tarnby {

/// The ring of a scan, whose steps are known.
class ScanView : public RingView {
  Q_OBJECT
 public:
  using RingView::RingView;
};

/// The ring of a search that nobody knows the length of: while it searches, an arc runs round. With reduced motion the
/// arc stands still.
class SearchView : public RingView {
  Q_OBJECT
 public:
  SearchView(AnimationClock& clock, QWidget* parent);

  bool searching() const { return searching_; }
  void set_searching(bool searching);
  Spoken spoken() const override;

 protected:
  void draw_ring(QPainter& painter, const QRectF& line) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void run_or_rest();

  Animation round_;
  bool searching_ = false;
};

/// The ring of a removal: a dial of strokes within the ring goes out as the ring passes them.
class DeleteView : public RingView {
  Q_OBJECT
 public:
  using RingView::RingView;

 protected:
  double text_room() const override { return 0.74; }
  void draw_ring(QPainter& painter, const QRectF& line) override;
};

}  // namespace tarnby
