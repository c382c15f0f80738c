#include "model/series1d.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "tests/model/make_groups.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::CSeries1D;
using Sumara::kPrimary;
using Sumara::LoadState;
using testing_support::Add;
using testing_support::MessageOf;
using testing_support::NewGroup1D;
using testing_support::Strings;

template <class T>
class CSeries1DTest : public ::testing::Test {
 protected:
  static std::vector<T> Points(std::initializer_list<int> values) {
    std::vector<T> points;
    for (const int value : values) points.push_back(static_cast<T>(value));
    return points;
  }
  /// 1, 2, ... up to `count`.
  static std::vector<T> Rising(int count) {
    std::vector<T> points;
    for (int i = 1; i <= count; ++i) points.push_back(static_cast<T>(i));
    return points;
  }
};
TYPED_TEST_SUITE(CSeries1DTest, testing_support::ElementTypes);

TYPED_TEST(CSeries1DTest, NewSeriesHasNeitherGroupNorData) {
  CSeries1D<TypeParam> series("Mx", "FL");
  EXPECT_EQ(series.GetName(), "Mx");
  EXPECT_EQ(series.GetQuantity(), "FL");
  EXPECT_EQ(series.GetGroup(), nullptr);
  EXPECT_EQ(series.GetDataType(), Sumara::kDataTypeCode<TypeParam>);
  EXPECT_EQ(series.GetNumberOfPoints(), 0u);
  EXPECT_FALSE(series.HasData());
  EXPECT_EQ(series.IsLoaded(), 0u);
}

TYPED_TEST(CSeries1DTest, InitialSizeGivesPointsOfZero) {
  CSeries1D<TypeParam> series("Mx", "FL", 3);
  EXPECT_EQ(series.GetData(), this->Points({0, 0, 0}));
}

TYPED_TEST(CSeries1DTest, AppendedPointsAndTheirFigures) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Points({3, 7, 7, 1}));
  for (int pass = 0; pass < 2; ++pass) {  // as they ran along, and as they are computed
    EXPECT_EQ(series->GetMaximumIndex(0), 1u);
    EXPECT_EQ(series->GetMinimumIndex(0), 3u);
    EXPECT_EQ(series->GetMaximum(), TypeParam(7));
    EXPECT_EQ(series->GetMinimum(), TypeParam(1));
    EXPECT_EQ(series->GetSum(), TypeParam(18));
    EXPECT_EQ(series->GetMean(0), 4.5);
    EXPECT_TRUE(series->HasMaximumChanged(0));
    EXPECT_TRUE(series->HasMinimumChanged(0));
    series->ComputeStatistics();
  }
}

TYPED_TEST(CSeries1DTest, FiguresRunOnBehindThoseThatWereComputed) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Points({3, 7}));
  EXPECT_EQ(series->GetMaximumIndex(0), 1u);
  series->AddSeriesPoints(this->Points({9, 1}), true);
  EXPECT_EQ(series->GetMaximumIndex(0), 2u);
  EXPECT_EQ(series->GetMinimumIndex(0), 3u);
  EXPECT_EQ(series->GetMean(0), 5.0);
}

TYPED_TEST(CSeries1DTest, SinglePointIsBothExtremes) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Points({-5}));
  EXPECT_EQ(series->GetMaximum(), TypeParam(-5));
  EXPECT_EQ(series->GetMinimum(), TypeParam(-5));
  EXPECT_TRUE(series->HasMaximumChanged(0));
  EXPECT_TRUE(series->HasMinimumChanged(0));
  series->ClearChangedFlags();
  EXPECT_FALSE(series->HasMaximumChanged(0));
  EXPECT_FALSE(series->HasMinimumChanged(0));
}

TYPED_TEST(CSeries1DTest, FiguresOfNoData) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  const std::string failure =
      "Sumara Tables error: Cannot get statistics for a series that does not contain "
      "data.\nFurther information: "
      "Series name: 'Mx'; File path: ./Loads";
  EXPECT_EQ(MessageOf([&] { series->GetMaximumIndex(0); }), failure);
  EXPECT_EQ(MessageOf([&] { series->GetMinimumIndex(0); }), failure);
  EXPECT_EQ(MessageOf([&] { series->GetTotalMaximumIndex(0); }), failure);
  EXPECT_EQ(MessageOf([&] { series->GetTotalMinimumIndex(0); }), failure);
  EXPECT_EQ(MessageOf([&] { series->GetMean(0); }), failure);
  EXPECT_EQ(MessageOf([&] { series->GetMaximum(); }), failure);
}

TYPED_TEST(CSeries1DTest, TakenPointsCountAsAppendedOnes) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  std::vector<TypeParam> points = this->Points({3, 7, 1});
  const TypeParam* const memory = points.data();
  series->TakeSeriesPoints(std::move(points), true);
  EXPECT_EQ(series->GetData().data(), memory);
  series->TakeSeriesPoints(this->Points({9, 1}), true);
  EXPECT_EQ(series->GetData(), this->Points({3, 7, 1, 9, 1}));
  EXPECT_EQ(series->GetMaximumIndex(0), 3u);
  EXPECT_EQ(series->GetMinimumIndex(0), 2u);
  EXPECT_EQ(series->GetSum(), TypeParam(21));
}

TYPED_TEST(CSeries1DTest, PointsThatAreRefusedAreNotTaken) {
  const auto group = NewGroup1D<TypeParam>(Strings({"a", "b"}));
  const auto series = Add(*group, "Mx", {});
  std::vector<TypeParam> points = this->Rising(3);
  EXPECT_EQ(MessageOf([&] { series->TakeSeriesPoints(std::move(points), true); }),
            "Sumara Tables error: Series data being appended must contain no more than one data "
            "point for each primary axis label.\nFurther information: Series name: 'Mx'; File "
            "path: ./Loads; number of primary axis labels = 2; number of incoming data points = 3; "
            "number of resulting points = 3");
  EXPECT_EQ(points, this->Rising(3));
  EXPECT_FALSE(series->HasData());
}

TYPED_TEST(CSeries1DTest, DataNeedsAGroup) {
  CSeries1D<TypeParam> series("Mx", "FL");
  const std::string failure =
      "Sumara Tables error: A series must belong to a group before data is added.\nFurther "
      "information: Series name: "
      "'Mx'";
  EXPECT_EQ(MessageOf([&] { series.AddSeriesPoints(this->Points({1}), true); }), failure);
  EXPECT_EQ(MessageOf([&] { series.ClearData(true); }), failure);
  EXPECT_EQ(MessageOf([&] { series.ComputeStatistics(); }), failure);
  EXPECT_FALSE(series.HasData());
}

TYPED_TEST(CSeries1DTest, DataOfAReadOnlyGroupStays) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Points({1}));
  group->SetDeserialised();
  const std::string failure =
      "Sumara Tables error: A series that is serialised may not be modified.\nFurther information: "
      "Series name: 'Mx'; "
      "File path: ./Loads";
  EXPECT_EQ(MessageOf([&] { series->AddSeriesPoints(this->Points({1}), true); }), failure);
  EXPECT_EQ(MessageOf([&] { series->ClearData(true); }), failure);
  EXPECT_EQ(series->GetData(), this->Points({1}));
  series->AddSeriesPoints(this->Points({2}), /*check=*/false);
  EXPECT_EQ(series->GetData(), this->Points({1, 2}));
}

TYPED_TEST(CSeries1DTest, EmptyInputIsRefused) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  EXPECT_EQ(MessageOf([&] { series->AddSeriesPoints({}, true); }),
            "Sumara Tables error: Series input data empty.\nFurther information: Series name: "
            "'Mx'; File path: "
            "./Loads");
}

TYPED_TEST(CSeries1DTest, LabelledAxisBoundsThePoints) {
  const auto group =
      NewGroup1D<TypeParam>(Strings({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}));
  const auto series = Add(*group, "Mx", this->Rising(4));
  EXPECT_EQ(MessageOf([&] { series->AddSeriesPoints(this->Rising(7), true); }),
            "Sumara Tables error: Series data being appended must contain no more than one data "
            "point for each primary "
            "axis label.\nFurther information: Series name: 'Mx'; File path: ./Loads; number of "
            "primary axis labels = "
            "10; number of incoming data points = 7; number of resulting points = 11");
  EXPECT_EQ(series->GetData(), this->Rising(4));
  EXPECT_EQ(series->GetMaximum(), TypeParam(4));
  series->AddSeriesPoints(this->Rising(6), true);
  EXPECT_EQ(series->GetNumberOfPoints(), 10u);
}

TYPED_TEST(CSeries1DTest, IncrementalWritingCountsFlushedPoints) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  group->SetIncrementalMode(1);
  series->AddSeriesPoints(this->Rising(100), true);
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 99u);
  series->ClearData(/*keepStatistics=*/true);
  group->SetFlushedPointCount(100);
  EXPECT_FALSE(series->HasData());
  EXPECT_EQ(series->GetMaximum(), TypeParam(100)) << "no data is needed while writing";
  EXPECT_EQ(series->GetMean(0), 50.5);
  series->AddSeriesPoints(this->Points({1, 1, 120}), true);
  EXPECT_EQ(series->GetMaximumIndex(0), 2u);
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 102u);
  EXPECT_EQ(series->GetMinimumIndex(0), 0u);
  EXPECT_EQ(series->GetMean(0), (5050.0 + 122) / 103);
}

TYPED_TEST(CSeries1DTest, ClearingKeepsTheCapacity) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Rising(100));
  const auto capacity = series->GetData().capacity();
  series->ClearData(/*keepStatistics=*/false);
  EXPECT_EQ(series->GetData().size(), 0u);
  EXPECT_EQ(series->GetData().capacity(), capacity);
}

TYPED_TEST(CSeries1DTest, ResetLetsTheNextPointSeedTheFigures) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  group->SetIncrementalMode(1);
  series->AddSeriesPoints(this->Points({5, 9}), true);
  series->ClearData(true);
  series->ResetStatistics();
  EXPECT_FALSE(series->HasMaximumChanged(0));
  series->AddSeriesPoints(this->Points({2}), true);
  EXPECT_EQ(series->GetMaximum(), TypeParam(2));
  EXPECT_EQ(series->GetSum(), TypeParam(2));
}

TYPED_TEST(CSeries1DTest, SnapshotTakesThePresentIndices) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  series->AddSeriesPoints(this->Points({5, 9, 1}), true);
  group->SetIncrementalMode(1);
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 0u);
  series->SnapshotExtremeIndices();
  EXPECT_EQ(series->GetTotalMaximumIndex(0), 1u);
  EXPECT_EQ(series->GetTotalMinimumIndex(0), 2u);
}

TYPED_TEST(CSeries1DTest, DataByIndex) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Points({5, 9}));
  EXPECT_EQ(series->DataAtIndex(1), TypeParam(9));
  EXPECT_EQ(series->DataAtIndex(1, 17), TypeParam(9)) << "the secondary index means nothing";
  EXPECT_EQ(MessageOf([&] { series->DataAtIndex(2); }),
            "Sumara Tables error: Invalid index requested from primary axis (data point "
            "index).\nFurther information: "
            "index = 2; Series name: 'Mx'; File path: ./Loads");
}

TYPED_TEST(CSeries1DTest, PointsOnAnAxis) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", this->Points({5, 9}));
  EXPECT_EQ(series->GetNumberOfPointsOnAxis(kPrimary, true), 2u);
  EXPECT_EQ(MessageOf([&] { series->GetNumberOfPointsOnAxis(1, true); }),
            "Sumara Tables error: Specified axis not found.\nFurther information: Secondary axis; "
            "File path: ./Loads");
  EXPECT_EQ(MessageOf([&] { series->GetNumberOfPointsOnAxis(2, true); }),
            "Sumara Tables error: Specified axis not found.\nFurther information: Unknown axis; "
            "File path: ./Loads");
}

TYPED_TEST(CSeries1DTest, PreviewGroupTellsThePoints) {
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add(*group, "Mx", {});
  group->GetAxis(kPrimary, true)->SetNumberOfPoints(17);
  EXPECT_EQ(series->GetNumberOfPoints(), 0u);
  group->SetPreviewMode(Sumara::PreviewMode::kWithoutStatistics);
  EXPECT_EQ(series->GetNumberOfPoints(), 17u);
}

TYPED_TEST(CSeries1DTest, LoadState) {
  CSeries1D<TypeParam> series("Mx", "FL");
  series.SetLoadState(LoadState::kWaiting);
  EXPECT_EQ(series.IsLoaded(), 0u);
  series.SetLoadState(LoadState::kLoaded);
  EXPECT_EQ(series.IsLoaded(), 1u);
}

TYPED_TEST(CSeries1DTest, GroupStaysOnceThereIsData) {
  const auto first = NewGroup1D<TypeParam>();
  const auto second = NewGroup1D<TypeParam>();
  const auto series = Add(*first, "Mx", {});
  series->SetGroup(second.get());
  series->SetGroup(first.get());
  series->AddSeriesPoints(this->Points({5}), true);
  series->SetGroup(first.get());
  EXPECT_EQ(MessageOf([&] { series->SetGroup(second.get()); }),
            "Sumara Tables error: A series' group cannot be changed after data has been "
            "added.\nFurther information: "
            "Series name: 'Mx'; File path: ./Loads");
  EXPECT_EQ(series->GetGroup(), first.get());
}

TYPED_TEST(CSeries1DTest, IdentityIsEquality) {
  CSeries1D<TypeParam> a("Mx", "FL");
  CSeries1D<TypeParam> b("Mx", "FL");
  EXPECT_TRUE(a.IsEqual(a));
  EXPECT_FALSE(a.IsEqual(b));
}

TEST(SeriesNamesTest, InvalidNamesAreRefused) {
  const std::string name =
      "Sumara Tables error: Series name must not be empty, must contain at least one "
      "non-whitespace character, and "
      "must not contain carriage return or line feed characters.\nFurther information: Series "
      "name: '";
  const std::string quantity =
      "Sumara Tables error: Series quantity code must not be empty, must contain at least one "
      "non-whitespace "
      "character, and must not contain carriage return or line feed characters.\nFurther "
      "information: Series name: "
      "'Mx'";
  for (const std::string bad : {"", " \t", "a\nb", "a\r"}) {
    EXPECT_EQ(MessageOf([&] { CSeries1D<float>(bad, "FL"); }), name + bad + "'");
    EXPECT_EQ(MessageOf([&] { Sumara::CSeries2D<float>(bad, ""); }), name + bad + "'")
        << "the name comes first";
    EXPECT_EQ(MessageOf([&] { CSeries1D<float>("Mx", bad); }), quantity);
    EXPECT_EQ(MessageOf([&] { Sumara::CSeries2D<float>("Mx", bad); }), quantity);
    CSeries1D<float> series("Mx", "FL");
    EXPECT_EQ(MessageOf([&] { series.Rename(bad); }), name + "Mx'");
    EXPECT_EQ(series.GetName(), "Mx");
  }
  CSeries1D<float> series("Mx", "FL");
  series.Rename("My");
  EXPECT_EQ(series.GetName(), "My");
}

template <class T>
class SeriesNanTest : public ::testing::Test {};
using FloatingTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(SeriesNanTest, FloatingTypes);

TYPED_TEST(SeriesNanTest, FirstNanStaysAsBothExtremes) {
  const TypeParam nan = std::numeric_limits<TypeParam>::quiet_NaN();
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add<TypeParam>(*group, "Mx", {nan, 1, 3, -2});
  group->SetIncrementalMode(1);  // the figures as they ran along
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_NE(series->GetMaximum(), series->GetMaximum());
    EXPECT_NE(series->GetMinimum(), series->GetMinimum());
    EXPECT_EQ(series->GetMaximumIndex(0), 0u);
    EXPECT_EQ(series->GetMinimumIndex(0), 0u);
    group->SetIncrementalMode(0);
  }
}

TYPED_TEST(SeriesNanTest, LaterNanIsNoExtremeAndSpoilsTheMean) {
  const TypeParam nan = std::numeric_limits<TypeParam>::quiet_NaN();
  const auto group = NewGroup1D<TypeParam>();
  const auto series = Add<TypeParam>(*group, "Mx", {1, nan, 3, -2});
  group->SetIncrementalMode(1);
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(series->GetMaximum(), TypeParam(3));
    EXPECT_EQ(series->GetMinimum(), TypeParam(-2));
    EXPECT_NE(series->GetMean(0), series->GetMean(0));
    group->SetIncrementalMode(0);
  }
}

TEST(SeriesSumTest, IntegersWrapAroundInTheirOwnType) {
  const auto group = NewGroup1D<short>();
  const auto series = Add<short>(*group, "Mx", {32767, 1});
  EXPECT_EQ(series->GetSum(), -32768);
  EXPECT_EQ(series->GetMean(0), -16384.0);
  const auto ints = NewGroup1D<int>();
  EXPECT_EQ(Add<int>(*ints, "Mx", {2147483647, 3})->GetMean(0), -1073741823.0);
}

}  // namespace
