#include "api/run_cache.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "api/run.h"

namespace {

using SumaraApi::Run;
using SumaraApi::RunCache;
using SumaraApi::RunPtr;

RunPtr Named(const std::string& path) { return std::make_shared<Run>(path, /*bufferedRead=*/true); }

class RunCacheTest : public ::testing::Test {
 protected:
  RunCache m_cache;
  RunPtr m_a = Named("/runs/a.$TE");
  RunPtr m_sameAsA = Named("/runs/A.$TE");
  RunPtr m_b = Named("/runs/b.$TE");
};

TEST_F(RunCacheTest, ARunIsFoundByItsPathInAnyCase) {
  const RunPtr run = Named("/runs/Power.$TE");
  EXPECT_EQ(m_cache.Add(run), run);
  EXPECT_EQ(m_cache.Find("/runs/Power.$TE"), run);
  EXPECT_EQ(m_cache.Find("/RUNS/power.$te"), run);
  EXPECT_EQ(m_cache.Find("/runs/Power2.$TE"), nullptr);
}

TEST_F(RunCacheTest, ARunThatIsAddedLeavesTheOneThatIsThere) {
  m_cache.Replace({m_a});
  EXPECT_EQ(m_cache.Add(m_sameAsA), m_a);
  EXPECT_EQ(m_cache.Find("/runs/A.$TE"), m_a);
}

TEST_F(RunCacheTest, RunsOfASearchTakeThePlacesOfEarlierOnes) {
  m_cache.Replace({m_a, m_b});
  EXPECT_EQ(m_cache.Find("/runs/a.$TE"), m_a);
  m_cache.Replace({m_sameAsA});
  EXPECT_EQ(m_cache.Find("/runs/a.$TE"), m_sameAsA);
  EXPECT_EQ(m_cache.Find("/runs/b.$TE"), m_b);
}

TEST_F(RunCacheTest, OfTheSamePathTheLastOfSeveralSearchesIsKept) {
  m_cache.Replace({m_sameAsA, m_a});
  EXPECT_EQ(m_cache.Find("/runs/A.$TE"), m_a);
  m_cache.Replace({m_a});
  m_cache.Replace({m_a, m_sameAsA});
  EXPECT_EQ(m_cache.Find("/runs/a.$TE"), m_sameAsA);
}

TEST_F(RunCacheTest, ARunThatIsRemovedIsGone) {
  m_cache.Replace({m_a, m_b});
  m_cache.Remove("/runs/A.$TE");
  m_cache.Remove("/runs/none.$TE");
  EXPECT_EQ(m_cache.Find("/runs/a.$TE"), nullptr);
  EXPECT_EQ(m_cache.Find("/runs/b.$TE"), m_b);
}

TEST_F(RunCacheTest, AClearedCacheKeepsNoRun) {
  m_cache.Add(m_a);
  m_cache.Replace({m_b});
  m_cache.Clear();
  EXPECT_EQ(m_a.use_count(), 1);
  EXPECT_EQ(m_b.use_count(), 1);
  EXPECT_EQ(m_cache.Find("/runs/b.$TE"), nullptr);
}

}  // namespace
