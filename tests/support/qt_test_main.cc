#include <gtest/gtest.h>

#include "support/lsan_options.h"

#include <QApplication>
#include <cstdlib>

// Widget suites run inside a QApplication on the offscreen platform, so that
// they (and gtest_discover_tests listing them) need no display.
int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication app(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
