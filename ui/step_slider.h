#pragma once

#include <QSlider>
#include <QStringList>

namespace tarnby {

/// A slider with a few named stops. What lies at and behind the thumb is what is chosen.
class StepSlider : public QSlider {
  Q_OBJECT
 public:
  explicit StepSlider(QWidget* parent);

  /// One name a stop, from the first on; also sets the range, which begins with 1. A stop may have an empty name.
  void set_stops(const QStringList& names);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  double place_of(int stop) const;
  void go_to(double x);
  double edge() const;
  void draw_track(QPainter& painter) const;
  void draw_thumb(QPainter& painter) const;
  void draw_names(QPainter& painter) const;

  QStringList names_;
  bool by_keyboard_ = false;
};

}  // namespace tarnby
