#include "groupfiles/kept_data.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using Sumara::KeptData;

class Keeper final : public KeptData {
 public:
  using KeptData::Forget;
  using KeptData::Keep;
  bool dropped = false;

 private:
  void DropKept() noexcept override {
    dropped = true;
    Forget();
  }
};

class KeptDataTest : public ::testing::Test {
 protected:
  KeptDataTest() { KeptData::SetLimit(100); }
  ~KeptDataTest() override { KeptData::SetLimit(KeptData::kDefaultLimit); }

  Keeper m_a;
  Keeper m_b;
  Keeper m_c;
};

TEST_F(KeptDataTest, LimitIs256MegabytesUnlessItIsSet) {
  EXPECT_EQ(KeptData::kDefaultLimit, 268435456u);
  EXPECT_EQ(KeptData::Limit(), 100u);
}

TEST_F(KeptDataTest, OldestGoesFirst) {
  m_a.Keep(40);
  m_b.Keep(40);
  EXPECT_EQ(KeptData::Total(), 80u);
  m_c.Keep(30);
  EXPECT_TRUE(m_a.dropped);
  EXPECT_FALSE(m_b.dropped);
  EXPECT_EQ(KeptData::Total(), 70u);
}

TEST_F(KeptDataTest, UseMakesYoung) {
  m_a.Keep(40);
  m_b.Keep(40);
  m_a.Keep(50);
  m_c.Keep(30);
  EXPECT_FALSE(m_a.dropped);
  EXPECT_TRUE(m_b.dropped);
  EXPECT_EQ(KeptData::Total(), 80u);
}

TEST_F(KeptDataTest, MoreThanTheLimitIsNotKeptAtAll) {
  m_a.Keep(40);
  m_b.Keep(101);
  EXPECT_TRUE(m_a.dropped);
  EXPECT_TRUE(m_b.dropped);
  EXPECT_EQ(KeptData::Total(), 0u);
}

TEST_F(KeptDataTest, LowerLimitDropsAtOnce) {
  m_a.Keep(40);
  m_b.Keep(40);
  m_c.Keep(20);
  KeptData::SetLimit(60);
  EXPECT_TRUE(m_a.dropped);
  EXPECT_FALSE(m_b.dropped);
  KeptData::SetLimit(0);
  EXPECT_EQ(KeptData::Total(), 0u);
}

TEST_F(KeptDataTest, WhoEndsOrKeepsNothingCountsNoMore) {
  auto ended = std::make_unique<Keeper>();
  m_a.Keep(10);
  ended->Keep(20);
  m_b.Keep(30);
  ended.reset();
  EXPECT_EQ(KeptData::Total(), 40u);
  m_a.Forget();
  m_a.Forget();
  m_b.Keep(0);
  EXPECT_EQ(KeptData::Total(), 0u);
  m_c.Keep(100);
  EXPECT_FALSE(m_c.dropped);
  m_c.Forget();
}

}  // namespace
