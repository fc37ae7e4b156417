#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

/// The widgets' tests need an application, and no display.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir runtime;  // mode 0700, as the toolkit wants it
  qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
