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

TEST(RunCacheTest, ARunIsFoundByItsPathInAnyCase) {
  RunCache cache;
  const RunPtr run = Named("/runs/Power.$TE");
  EXPECT_EQ(cache.Add(run), run);
  EXPECT_EQ(cache.Find("/runs/Power.$TE"), run);
  EXPECT_EQ(cache.Find("/RUNS/power.$te"), run);
  EXPECT_EQ(cache.Find("/runs/Power2.$TE"), nullptr);
}

TEST(RunCacheTest, ARunThatIsAddedLeavesTheOneThatIsThere) {
  RunCache cache;
  const RunPtr first = Named("/runs/a.$TE");
  cache.Replace({first});
  EXPECT_EQ(cache.Add(Named("/runs/A.$TE")), first);
  EXPECT_EQ(cache.Find("/runs/A.$TE"), first);
}

TEST(RunCacheTest, RunsOfASearchTakeThePlacesOfEarlierOnes) {
  RunCache cache;
  const RunPtr a = Named("/runs/a.$TE");
  const RunPtr b = Named("/runs/b.$TE");
  const RunPtr other = Named("/runs/A.$TE");
  cache.Replace({a, b});
  EXPECT_EQ(cache.Find("/runs/a.$TE"), a);
  cache.Replace({other});
  EXPECT_EQ(cache.Find("/runs/a.$TE"), other);
  EXPECT_EQ(cache.Find("/runs/b.$TE"), b);
}

TEST(RunCacheTest, OfTheSamePathTheLastOfSeveralSearchesIsKept) {
  RunCache cache;
  const RunPtr a = Named("/runs/a.$TE");
  const RunPtr other = Named("/runs/A.$TE");
  cache.Replace({other, a});
  EXPECT_EQ(cache.Find("/runs/A.$TE"), a);
  cache.Replace({a});
  cache.Replace({a, other});
  EXPECT_EQ(cache.Find("/runs/a.$TE"), other);
}

TEST(RunCacheTest, ARunThatIsRemovedIsGone) {
  RunCache cache;
  cache.Replace({Named("/runs/a.$TE"), Named("/runs/b.$TE")});
  cache.Remove("/runs/A.$TE");
  cache.Remove("/runs/none.$TE");
  EXPECT_EQ(cache.Find("/runs/a.$TE"), nullptr);
  EXPECT_NE(cache.Find("/runs/b.$TE"), nullptr);
}

TEST(RunCacheTest, AClearedCacheKeepsNoRun) {
  RunCache cache;
  const RunPtr sought = Named("/runs/a.$TE");
  const RunPtr found = Named("/runs/b.$TE");
  cache.Add(sought);
  cache.Replace({found});
  cache.Clear();
  EXPECT_EQ(sought.use_count(), 1);
  EXPECT_EQ(found.use_count(), 1);
  EXPECT_EQ(cache.Find("/runs/b.$TE"), nullptr);
}

}  // namespace
