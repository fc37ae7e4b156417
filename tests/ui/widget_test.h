#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QTest>
#include <QWidget>
#include <string>

#include "tests/support/hand_animation_clock.h"
#include "ui/motion.h"

namespace tarnby::test {

/// A window that widgets are put into, and the clock they move by.
class WidgetTest : public testing::Test {
 protected:
  void SetUp() override {
    motion::set_reduced(false);
    window_.resize(400, 400);
    window_.show();
    QApplication::setActiveWindow(&window_);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
  }
  void TearDown() override { motion::set_reduced(false); }

  /// Puts a new widget, made with `arguments` and the window as its parent, where it is seen.
  template <class Widget, class... Arguments>
  Widget* shown(Arguments&&... arguments) {
    auto* widget = new Widget(std::forward<Arguments>(arguments)..., &window_);
    widget->resize(widget->sizeHint());
    widget->show();
    return widget;
  }

  static QAccessibleInterface& accessible(QWidget* widget) { return *QAccessible::queryAccessibleInterface(widget); }
  static std::string said(QWidget* widget, QAccessible::Text kind) {
    return accessible(widget).text(kind).toStdString();
  }

  HandAnimationClock clock_;
  QWidget window_;
};

}  // namespace tarnby::test
