#include "core/byte_buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <new>

namespace {

using Sumara::ByteBuffer;

constexpr std::size_t kLarge = (std::size_t{12} << 20) + 12345;

TEST(ByteBufferTest, StartsEmpty) {
  const ByteBuffer buffer;
  EXPECT_TRUE(buffer.Empty());
  EXPECT_EQ(buffer.Size(), 0u);
  EXPECT_EQ(buffer.Capacity(), 0u);
}

TEST(ByteBufferTest, HoldsWhatIsWritten) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{5000}, kLarge}) {
    ByteBuffer buffer;
    buffer.Resize(size);
    ASSERT_EQ(buffer.Bytes().size(), size);
    std::memset(buffer.Data(), 'x', size);
    EXPECT_EQ(buffer.Bytes().front(), 'x');
    EXPECT_EQ(buffer.Bytes().back(), 'x');
    EXPECT_GE(buffer.Capacity(), size);
  }
}

TEST(ByteBufferTest, ClearKeepsTheCapacity) {
  ByteBuffer buffer;
  buffer.Resize(kLarge);
  const std::size_t capacity = buffer.Capacity();
  const char* const data = buffer.Data();
  buffer.Clear();
  EXPECT_TRUE(buffer.Empty());
  EXPECT_EQ(buffer.Capacity(), capacity);
  buffer.Resize(kLarge);
  EXPECT_EQ(buffer.Data(), data);
  std::memset(buffer.Data(), 'y', kLarge);
  EXPECT_EQ(buffer.Data()[kLarge - 1], 'y');
}

TEST(ByteBufferTest, ClearGivesTheMemoryBack) {
  ByteBuffer buffer;
  buffer.Resize(kLarge);
  std::memset(buffer.Data(), 'x', kLarge);
  buffer.Clear();
  buffer.Resize(kLarge);
  EXPECT_EQ(buffer.Data()[kLarge / 2], '\0');  // a page of the system's, not the old one
}

TEST(ByteBufferTest, ShrinkingKeepsTheContent) {
  ByteBuffer buffer;
  buffer.Resize(100);
  std::memset(buffer.Data(), 'x', 100);
  buffer.Resize(10);
  EXPECT_EQ(buffer.Size(), 10u);
  EXPECT_EQ(buffer.Data()[9], 'x');
}

TEST(ByteBufferTest, ImpossibleSizeIsRefusedAndChangesNothing) {
  ByteBuffer buffer;
  buffer.Resize(10);
  buffer.Data()[9] = 'x';
  for (const std::size_t size :
       {std::numeric_limits<std::size_t>::max(), std::numeric_limits<std::size_t>::max() / 2,
        std::size_t{1} << 62}) {
    EXPECT_THROW(buffer.Resize(size), std::bad_alloc);
  }
  EXPECT_EQ(buffer.Size(), 10u);
  EXPECT_EQ(buffer.Data()[9], 'x');
}

TEST(ByteBufferTest, ClearOfAnUnusedBufferDoesNothing) {
  ByteBuffer buffer;
  buffer.Clear();
  buffer.Resize(0);
  EXPECT_TRUE(buffer.Empty());
}

}  // namespace
