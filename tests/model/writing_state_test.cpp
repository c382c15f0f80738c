#include "model/writing_state.h"

#include <gtest/gtest.h>

namespace {

using Sumara::WritingState;

TEST(WritingStateTest, NothingIsWrittenInChunksAtFirst) {
  const WritingState state;
  EXPECT_FALSE(state.IsIncremental());
  EXPECT_EQ(state.FlushedPoints(), 0u);
}

TEST(WritingStateTest, AnyModeWritesInChunksUntilItEnds) {
  WritingState state;
  state.SetMode(2);
  state.SetFlushedPoints(100);
  EXPECT_TRUE(state.IsIncremental());
  EXPECT_EQ(state.Mode(), 2u);
  EXPECT_EQ(state.FlushedPoints(), 100u);
  state.End();
  EXPECT_FALSE(state.IsIncremental());
  EXPECT_EQ(state.FlushedPoints(), 0u);
}

}  // namespace
