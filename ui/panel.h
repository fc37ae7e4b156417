#pragma once

#include <QWidget>

namespace tarnby {

/// A darker card with round corners that holds a part of a screen.
class Panel : public QWidget {
  Q_OBJECT
 public:
  explicit Panel(QWidget* parent) : QWidget(parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// The strip along the lower edge of a screen, with what is chosen and what can be done.
class Bar : public QWidget {
  Q_OBJECT
 public:
  explicit Bar(QWidget* parent) : QWidget(parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnby
