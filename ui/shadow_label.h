#pragma once

#include <QLabel>

namespace tarnby {

/// A text with a soft shadow below it, which lifts it off a busy ground. Its text, alignment and font are a label's.
class ShadowLabel : public QLabel {
  Q_OBJECT
 public:
  ShadowLabel(const QString& text, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnby
