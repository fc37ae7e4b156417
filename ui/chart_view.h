#pragma once

#include <QColor>
#include <QString>
#include <vector>

#include "ui/animation.h"
#include "ui/changing_label.h"
#include "ui/drawing.h"

namespace tarnby {

/// One kind of thing in a chart. `label` tells it from the others, also from one set of values to the next.
struct ChartSegment {
  QString label;
  QColor color;
  double value = 0;    // nothing below 0
  QString value_text;  // the value as a person reads it
};

/// A part of the whole turn, clockwise from the top.
struct ChartArc {
  double begin = 0;
  double end = 0;
  double size() const { return end - begin; }
};

/// One arc a value, side by side, together exactly the whole turn. However small a value is beside the others, its arc
/// can be seen; a value of 0 has an empty one. No values above 0: only empty arcs.
std::vector<ChartArc> chart_arcs(const std::vector<double>& values);

/// A ring of coloured segments with the total in its middle and the legend below. New values glide from the old ones.
class ChartView : public Drawing {
  Q_OBJECT
 public:
  ChartView(AnimationClock& clock, QWidget* parent);

  void set_segments(std::vector<ChartSegment> segments);
  void show_total(const QString& total, const QString& caption);

  /// The segments as they are drawn at this moment, in their order; with them those that are just going.
  std::vector<ChartArc> arcs() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Shown {
    ChartSegment segment;
    double from = 0;  // the value the present glide began with
    bool leaving = false;
  };

  double value_now(const Shown& shown) const;
  static bool in_legend(const Shown& shown);
  int legend_width() const;
  void place_texts();
  QRectF donut() const;
  void draw_donut(QPainter& painter) const;
  void draw_legend(QPainter& painter) const;

  Animation glide_;  // 0 old values, 1 new ones
  std::vector<Shown> shown_;
  NumberLabel* total_;
  FadingLabel* caption_;
};

}  // namespace tarnby
