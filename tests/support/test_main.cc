#include <gtest/gtest.h>

#include "support/lsan_options.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
