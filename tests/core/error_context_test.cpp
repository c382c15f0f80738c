#include "core/error_context.h"

#include <gtest/gtest.h>

namespace {

TEST(ErrorContextTest, Paths) {
  EXPECT_EQ(Sumara::FileContext("a/b.%01"), "File path: a/b.%01");
  EXPECT_EQ(Sumara::DirectoryContext("a/b"), "Directory: a/b");
}

TEST(ErrorContextTest, Axes) {
  EXPECT_EQ(Sumara::AxisContext("it's"), "Axis name: 'it's'");
  EXPECT_EQ(Sumara::AxisContext("Time", 18446744073709551615u),
            "Axis name: 'Time'; axis index: 18446744073709551615");
  EXPECT_EQ(Sumara::AxisContextWithPath("Time", "x.%01"), "Axis name: 'Time'; File path: x.%01");
}

TEST(ErrorContextTest, AxisPositions) {
  EXPECT_EQ(Sumara::AxisPositionText(0), "Primary axis");
  EXPECT_EQ(Sumara::AxisPositionText(1), "Secondary axis");
  EXPECT_EQ(Sumara::AxisPositionText(2), "Unknown axis");
}

}  // namespace
