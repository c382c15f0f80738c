#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/model/written_group.h"
#include "tests/support/message_of.h"

namespace {

using namespace Sumara;
using namespace testing_support;

constexpr std::size_t kPoints = 120;

/// Rises and falls, with equal extremes at different places.
template <class T>
std::vector<T> Wave(double period) {
  std::vector<T> points;
  for (std::size_t i = 0; i < kPoints; ++i) {
    points.push_back(static_cast<T>(std::round(100 * std::sin(static_cast<double>(i) / period))));
  }
  return points;
}

template <class T>
std::vector<T> Part(const std::vector<T>& points, std::size_t from, std::size_t count) {
  const auto first = points.begin() + static_cast<std::ptrdiff_t>(from);
  return {first, first + static_cast<std::ptrdiff_t>(count)};
}

/// Ends a chunk that `add` has put into the series of `group`.
template <class T>
void FlushChunk(IGroup& group, const GroupHolder& holder, OutputFile& data, std::size_t count) {
  Write<T>(holder, data, /*check=*/true);
  group.ClearSeriesData(/*keepStatistics=*/true);
  group.SetFlushedPointCount(group.GetFlushedPointCount() + count);
  group.SnapshotExtremeIndices();
}

/// Chunks of the length that is the parameter, to a binary and to a text file.
class IncrementalWritingTest : public ::testing::TestWithParam<std::tuple<std::size_t, bool>> {
 protected:
  std::size_t Chunk() const { return std::get<0>(GetParam()); }
  bool Binary() const { return std::get<1>(GetParam()); }
  std::string Path() const { return m_directory.Path("run.%01"); }

  /// Writes `group` chunk by chunk; `add(from, count)` puts a chunk into its series.
  template <class T, class Add>
  void WriteInChunks(const std::shared_ptr<IGroup>& group, Add add) {
    OutputFile data(m_directory.Path("chunks"));
    group->SetIncrementalMode(1);
    for (std::size_t from = 0; from < kPoints; from += Chunk()) {
      const std::size_t count = std::min(Chunk(), kPoints - from);
      add(from, count);
      FlushChunk<T>(*group, {group}, data, count);
      m_headers.push_back(HeaderOf(m_directory, group, /*withoutStatistics=*/false));
    }
    data.Close();
  }

  TempDirectory m_directory;
  std::vector<std::string> m_headers;  ///< one after each chunk
};

TEST_P(IncrementalWritingTest, OneAxisComesToTheSameFiles) {
  const auto whole = Group1D<float>(Path(), Binary());
  const auto chunks = Group1D<float>(Path(), Binary());
  const std::vector<float> points[] = {Wave<float>(9), Wave<float>(-13), Wave<float>(1e9)};
  std::vector<std::shared_ptr<CSeries1D<float>>> series;
  for (const auto& all : points) {
    AddSeries<float>(*whole, NameOf(series.size()), all);
    series.push_back(AddSeries<float>(*chunks, NameOf(series.size())));
  }
  WriteInChunks<float>(chunks, [&](std::size_t from, std::size_t count) {
    for (std::size_t v = 0; v < series.size(); ++v) {
      series[v]->AddSeriesPoints(Part(points[v], from, count), /*check=*/true);
    }
  });
  EXPECT_EQ(m_headers.back(), HeaderOf(m_directory, whole, /*withoutStatistics=*/false));
  EXPECT_EQ(m_directory.Read("chunks"), DataOf<float>(m_directory, whole));
}

TEST_P(IncrementalWritingTest, EachHeaderTellsOfThePointsSoFar) {
  const auto chunks = Group1D<double>(Path(), Binary(), TimeAxis(10, 1));
  const std::vector<double> points = Wave<double>(30);
  const auto series = AddSeries<double>(*chunks, "a");
  WriteInChunks<double>(chunks, [&](std::size_t from, std::size_t count) {
    series->AddSeriesPoints(Part(points, from, count), /*check=*/true);
  });
  for (std::size_t i = 0; i < m_headers.size(); ++i) {
    const auto whole = Group1D<double>(Path(), Binary(), TimeAxis(10, 1));
    AddSeries<double>(*whole, "a", Part(points, 0, std::min(kPoints, (i + 1) * Chunk())));
    ASSERT_EQ(m_headers[i], HeaderOf(m_directory, whole, /*withoutStatistics=*/false)) << i;
  }
}

TEST_P(IncrementalWritingTest, TwoAxesComeToTheSameFiles) {
  const std::vector<std::vector<int>> points[] = {{Wave<int>(9), Wave<int>(-7)},
                                                  {Wave<int>(11), Wave<int>(0.3)}};
  for (const auto& secondary : {StringAxis({"x", "y"}), TimeAxis()}) {
    const auto whole = Group2D<int>(Path(), Binary(), TimeAxis(), secondary);
    const auto chunks = Group2D<int>(Path(), Binary(), TimeAxis(), secondary);
    std::vector<std::shared_ptr<CSeries2D<int>>> series;
    for (const auto& all : points) {
      AddSeries<int>(*whole, NameOf(series.size()), all);
      series.push_back(AddSeries<int>(*chunks, NameOf(series.size())));
    }
    WriteInChunks<int>(chunks, [&](std::size_t from, std::size_t count) {
      for (std::size_t v = 0; v < series.size(); ++v) {
        series[v]->AddSeriesPoints(
            {Part(points[v][0], from, count), Part(points[v][1], from, count)}, /*check=*/true);
      }
    });
    EXPECT_EQ(m_headers.back(), HeaderOf(m_directory, whole, /*withoutStatistics=*/false));
    EXPECT_EQ(m_directory.Read("chunks"), DataOf<int>(m_directory, whole));
  }
}

INSTANTIATE_TEST_SUITE_P(Chunks, IncrementalWritingTest,
                         ::testing::Combine(::testing::Values(1, 7, 50, 119, 120, 500),
                                            ::testing::Bool()));

TEST(IncrementalSeriesTest, IndicesCountAcrossFlushes) {
  const auto group = Group1D<float>("run.%01");
  const auto series = AddSeries<float>(*group, "a");
  group->SetIncrementalMode(1);
  series->AddSeriesPoints(std::vector<float>(100, 5.0F), /*check=*/true);
  group->ClearSeriesData(/*keepStatistics=*/true);
  group->SetFlushedPointCount(100);
  group->SnapshotExtremeIndices();
  series->AddSeriesPoints(std::vector<float>{1, 2, 9}, /*check=*/true);
  EXPECT_EQ(series->GetMaximumIndex(0), 2u);
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 102u);
  EXPECT_EQ(series->GetTotalMinimumIndex(0), 100u);
  EXPECT_EQ(series->GetMean(0), 512.0 / 103);
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 103u);
}

TEST(IncrementalSeriesTest, ASnapshotTakesOverPointsFromBeforeTheMode) {
  const auto group = Group1D<float>("run.%01");
  const auto series = AddSeries<float>(*group, "a", {3, 7, 7, 1});
  group->SetIncrementalMode(1);
  group->SnapshotExtremeIndices();
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 1u);
  EXPECT_EQ(series->GetTotalMinimumIndex(0), 3u);
}

TEST(IncrementalSeriesTest, TheGroupStaysChangeableUntilItEnds) {
  const auto group = Group1D<float>("run.%01");
  const auto series = AddSeries<float>(*group, "a");
  group->SetDeserialised();
  group->SetIncrementalMode(1);
  EXPECT_EQ(group->GetLoadState(), 0u);
  series->AddSeriesPoints(std::vector<float>{1}, /*check=*/true);
  CheckSerialisable({group});
  group->EndIncrementalWriting();
  EXPECT_EQ(group->GetFlushedPointCount(), 0u);
  EXPECT_EQ(MessageOf([&] { series->AddSeriesPoints(std::vector<float>{1}, /*check=*/true); }),
            "Sumara Tables error: A series that is serialised may not be modified.\n"
            "Further information: Series name: 'a'; File path: ./Rotor");
}

TEST(AppendStatisticsTest, RunningFiguresAreThoseOfAScan) {
  const float noNumber = std::numeric_limits<float>::quiet_NaN();
  const std::vector<std::vector<float>> tables = {
      {3, 7, 7, 1},         {1},        {5, 5, 5},         {noNumber, 1, 2}, {1, noNumber, 3},
      {-1, -2, -3, -3, -2}, {0, -0.0F}, {2, 1, 2, 1, 3, 0}};
  for (const auto& points : tables) {
    for (std::size_t cut = 0; cut < points.size(); ++cut) {
      const auto running = Group1D<float>("run.%01");
      const auto appended = AddSeries<float>(*running, "a");
      running->SetIncrementalMode(1);  // the figures are asked for as they stand
      if (cut > 0) appended->AddSeriesPoints(Part(points, 0, cut), /*check=*/true);
      appended->AddSeriesPoints(Part(points, cut, points.size() - cut), /*check=*/true);
      const auto whole = Group1D<float>("run.%01");
      const auto scanned = AddSeries<float>(*whole, "a", points);
      const auto same = [](float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); };
      EXPECT_TRUE(same(appended->GetMaximum(), scanned->GetMaximum()));
      EXPECT_TRUE(same(appended->GetMinimum(), scanned->GetMinimum()));
      EXPECT_TRUE(same(appended->GetSum(), scanned->GetSum()));
      EXPECT_EQ(appended->GetMaximumIndex(0), scanned->GetMaximumIndex(0));
      EXPECT_EQ(appended->GetMinimumIndex(0), scanned->GetMinimumIndex(0));
    }
  }
}

TEST(AppendStatisticsTest, IntegerSumsWrapAround) {
  const auto group = Group1D<int>("run.%01");
  const auto series = AddSeries<int>(*group, "a", {std::numeric_limits<int>::max(), 1, 5});
  EXPECT_EQ(series->GetSum(), std::numeric_limits<int>::min() + 5);
}

TEST(AppendStatisticsTest, PointsThatWaitCountBeforeTheChunks) {
  const auto group = Group1D<float>("run.%01");
  const auto series = AddSeries<float>(*group, "a", {3, 7});
  series->AddSeriesPoints(std::vector<float>{1}, /*check=*/true);
  group->SetIncrementalMode(1);
  group->SetFlushedPointCount(100);
  series->AddSeriesPoints(std::vector<float>{9}, /*check=*/true);
  EXPECT_EQ(series->GetMaximum(), 9);
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 103u);
  EXPECT_EQ(series->GetMinimumIndex(0), 2u);
  EXPECT_EQ(series->GetTotalMinimumIndex(0), 0u) << "it was no chunk's";
  EXPECT_EQ(series->GetSum(), 20);
}

TEST(AppendStatisticsTest, FlagsAndFiguresFollowEachAppend) {
  const auto group = Group1D<int>("run.%01");
  const auto series = AddSeries<int>(*group, "a", {3, 7});
  EXPECT_TRUE(series->HasMaximumChanged(0));
  series->ClearChangedFlags();
  series->AddSeriesPoints(std::vector<int>{5}, /*check=*/true);
  EXPECT_FALSE(series->HasMaximumChanged(0));
  series->AddSeriesPoints(std::vector<int>{8}, /*check=*/true);
  EXPECT_TRUE(series->HasMaximumChanged(0));
  EXPECT_FALSE(series->HasMinimumChanged(0));
  EXPECT_EQ(series->GetSum(), 23);
  series->AddSeriesPoints(std::vector<int>{1}, /*check=*/true);
  EXPECT_EQ(series->GetSum(), 24);
  EXPECT_EQ(series->GetMinimumIndex(0), 4u);
}

TEST(AppendStatisticsTest, FiguresOutliveThePointsThatWaited) {
  const auto group = Group1D<int>("run.%01");
  const auto series = AddSeries<int>(*group, "a", {3, 7, 1});
  series->ClearData(/*keepStatistics=*/true);
  group->SetIncrementalMode(1);
  EXPECT_EQ(series->GetMaximum(), 7);
  EXPECT_EQ(series->GetSum(), 11);
  EXPECT_EQ(series->GetMaximumIndex(0), 0u);
}

TEST(AppendStatisticsTest, VectorsThatGoTakeTheirPointsIntoTheFigures) {
  const auto group = Group2D<int>("run.%01", /*binary=*/true, TimeAxis(), TimeAxis());
  const auto series = AddSeries<int>(*group, "a", {{1, 5}, {9, 4}});
  group->SetIncrementalMode(1);
  series->AddSeriesPoint(std::vector<int>{6}, /*check=*/false);
  EXPECT_EQ(series->GetData(), (std::vector<std::vector<int>>{{1, 5, 6}}));
  EXPECT_EQ(series->GetMaximum(0), 6);
  EXPECT_EQ(series->GetSum(1), 13) << "as it was when the vector went";
}

}  // namespace
