#include <gtest/gtest.h>

#include <cstdlib>

// Qt suites create their QApplication on the offscreen platform so that they
// run (and gtest_discover_tests can list them) without a display.
int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
