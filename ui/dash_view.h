#pragma once

#include <QStringList>

#include "ui/drawing.h"

namespace tarnby {

enum class StepState { done, now, to_come };

/// A row of named steps: a full dot for what is done, a half one for what is under way, an empty one for what is to
/// come.
class DashView : public Drawing {
  Q_OBJECT
 public:
  explicit DashView(QWidget* parent);

  void set_steps(const QStringList& steps);
  /// The step under way: below 0 none has begun, past the last one all are done.
  void set_current(int step);
  StepState state_of(int step) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  Spoken spoken() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double row_width(double gap) const;

  QStringList steps_;
  int current_ = -1;
};

}  // namespace tarnby
