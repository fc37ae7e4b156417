#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#ifdef __SANITIZE_THREAD__
/// The toolkit is not built for the thread sanitizer, which would take its own locks for none.
extern "C" const char* __tsan_default_options() {  // NOLINT(bugprone-reserved-identifier): the name it is looked for by
  return "ignore_noninstrumented_modules=1";
}
#endif

/// The widgets' tests need an application, and no display.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir runtime;  // mode 0700, as the toolkit wants it
  qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
