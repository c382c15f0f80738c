#include "model/series2d.h"

#include <gtest/gtest.h>

#include "tests/model/make_groups.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::CSeries2D;
using Sumara::kPrimary;
using Sumara::kSecondary;
using Sumara::LoadState;
using testing_support::Add;
using testing_support::Interval;
using testing_support::MessageOf;
using testing_support::NewGroup2D;
using testing_support::Strings;
using testing_support::Values;

const std::string kContext = "Further information: Series name: 'Mx'; File path: ./Loads";

/// Series over time and two radii, or over other axes.
template <class T>
class CSeries2DTest : public ::testing::Test {
 protected:
  using Vectors = std::vector<std::vector<T>>;

  static std::vector<T> Points(std::initializer_list<int> values) {
    std::vector<T> points;
    for (const int value : values) points.push_back(static_cast<T>(value));
    return points;
  }

  void UseAxes(const std::shared_ptr<Sumara::CAxisBase>& primary,
               const std::shared_ptr<Sumara::CAxisBase>& secondary) {
    m_group = NewGroup2D<T>(primary, secondary);
    m_series = Add<T>(*m_group, "Mx");
  }
  void SetUp() override { UseAxes(Interval(), Values({1.5, 2.5})); }

  void Append(const Vectors& vectors) { m_series->AddSeriesPoints(vectors, /*check=*/true); }
  std::string FailureOf(const Vectors& vectors) {
    return MessageOf([&] { Append(vectors); });
  }

  std::shared_ptr<Sumara::CGroup2D<T>> m_group;
  std::shared_ptr<CSeries2D<T>> m_series;
};
TYPED_TEST_SUITE(CSeries2DTest, testing_support::ElementTypes);

TYPED_TEST(CSeries2DTest, NewSeries) {
  CSeries2D<TypeParam> series("Mx", "FL");
  EXPECT_EQ(series.GetDataType(), Sumara::kDataTypeCode<TypeParam>);
  EXPECT_EQ(series.GetGroup(), nullptr);
  EXPECT_EQ(series.GetNumberOfPoints(), 0u);
  EXPECT_EQ(series.GetNumberOfPointsOnAxis(kSecondary, true), 0u);
  EXPECT_FALSE(series.HasData());
}

TYPED_TEST(CSeries2DTest, GroupGivesItAVectorForEachLabel) {
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kSecondary, true), 2u);
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kPrimary, true), 0u);
  EXPECT_FALSE(this->m_series->HasData());
}

TYPED_TEST(CSeries2DTest, EachVectorHasFiguresOfItsOwn) {
  this->Append({this->Points({3, 7, 7, 1}), this->Points({-3, -7, 5, 5})});
  for (int pass = 0; pass < 2; ++pass) {  // as they ran along, and as they are computed
    EXPECT_EQ(this->m_series->GetMaximumIndex(0), 1u);
    EXPECT_EQ(this->m_series->GetMinimumIndex(0), 3u);
    EXPECT_EQ(this->m_series->GetMean(0), 4.5);
    EXPECT_EQ(this->m_series->GetMaximumIndex(1), 2u);
    EXPECT_EQ(this->m_series->GetMinimumIndex(1), 1u);
    EXPECT_EQ(this->m_series->GetMaximum(1), TypeParam(5));
    EXPECT_EQ(this->m_series->GetMinimum(1), TypeParam(-7));
    EXPECT_EQ(this->m_series->GetSum(1), TypeParam(0));
    EXPECT_TRUE(this->m_series->HasMaximumChanged(1));
    this->m_series->ComputeStatistics();
  }
}

TYPED_TEST(CSeries2DTest, FiguresOfNoDataAndOfNoVector) {
  const std::string failure =
      "Sumara Tables error: Cannot get statistics for a series that does not contain data.\n" +
      kContext;
  EXPECT_EQ(MessageOf([&] { this->m_series->GetMean(0); }), failure);
  EXPECT_EQ(MessageOf([&] { this->m_series->GetMaximumIndex(7); }), failure);
  this->Append({this->Points({1}), this->Points({2})});
  EXPECT_EQ(MessageOf([&] { this->m_series->GetMaximumIndex(2); }),
            "Sumara Tables error: Invalid index requested from secondary axis (index of data point "
            "vector).\nFurther "
            "information: secondary axis value index = 2; Series name: 'Mx'; File path: ./Loads");
  EXPECT_FALSE(this->m_series->HasMaximumChanged(2));
  EXPECT_FALSE(this->m_series->HasMinimumChanged(2));
}

TYPED_TEST(CSeries2DTest, PointsOneByOne) {
  this->m_series->AddSeriesPoint(this->Points({1, 2}), true);
  this->m_series->AddSeriesPoint(this->Points({3, 0}), true);
  EXPECT_EQ(this->m_series->GetVector(0), this->Points({1, 3}));
  EXPECT_EQ(this->m_series->GetVector(1), this->Points({2, 0}));
  EXPECT_EQ(this->m_series->GetMaximumIndex(0), 1u);
  EXPECT_EQ(this->m_series->GetMinimumIndex(1), 1u);
  EXPECT_EQ(this->m_series->GetNumberOfPoints(), 2u);
}

TYPED_TEST(CSeries2DTest, AppendsFollowEachOther) {
  this->Append({this->Points({1, 2}), this->Points({5, 6})});
  this->Append({this->Points({3}), this->Points({7})});
  EXPECT_EQ(this->m_series->GetData(),
            (typename TestFixture::Vectors{this->Points({1, 2, 3}), this->Points({5, 6, 7})}));
  EXPECT_EQ(this->m_series->GetMaximumIndex(1), 2u);
}

TYPED_TEST(CSeries2DTest, WrongNumberOfVectorsIsRefused) {
  const std::string failure =
      "Sumara Tables error: Series input data must contain exactly one vector of data points for "
      "each secondary axis "
      "label.\n" +
      kContext;
  EXPECT_EQ(this->FailureOf({this->Points({1})}), failure);
  EXPECT_EQ(this->FailureOf({this->Points({1}), this->Points({1}), this->Points({1})}), failure);
  EXPECT_EQ(MessageOf([&] { this->m_series->AddSeriesPoint(this->Points({1}), true); }), failure);
  EXPECT_EQ(this->FailureOf({}), "Sumara Tables error: Series input data empty.\n" + kContext);
  EXPECT_EQ(MessageOf([&] { this->m_series->AddSeriesPoint({}, true); }),
            "Sumara Tables error: Series input data empty.\n" + kContext);
  EXPECT_FALSE(this->m_series->HasData());
}

TYPED_TEST(CSeries2DTest, SecondaryIntervalAxisTakesAnyNumberAtFirst) {
  this->UseAxes(Interval(), Interval());
  this->Append({this->Points({1}), this->Points({2}), this->Points({3})});
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kSecondary, true), 3u);
  EXPECT_EQ(this->FailureOf({this->Points({1})}),
            "Sumara Tables error: Series input data must contain exactly one vector of data points "
            "for each secondary "
            "axis label.\n" +
                kContext);
}

TYPED_TEST(CSeries2DTest, VectorShorterThanTheFirstIsRefused) {
  EXPECT_EQ(this->FailureOf({this->Points({1, 2, 3}), this->Points({1, 2})}),
            "Sumara Tables error: Each series in group must contain the same number of data points "
            "when series use a "
            "primary labelled axis, or when data is being written incrementally.\n" +
                kContext +
                "; number of points expected for consistency across series = 3; number of points "
                "provided for "
                "secondary axis index 1 = 2");
  EXPECT_FALSE(this->m_series->HasData());
}

TYPED_TEST(CSeries2DTest, LengthOfTheFirstVectorCounts) {
  this->Append({this->Points({1, 2}), this->Points({3, 4, 5})});
  EXPECT_EQ(this->m_series->GetVector(1), this->Points({3, 4}));
}

TYPED_TEST(CSeries2DTest, UnequalVectorsAreRefusedOnALabelledAxisAndWhileWriting) {
  const std::string failure =
      "Sumara Tables error: Each series in group must contain the same number of data points when "
      "series use a primary "
      "labelled axis, or when data is being written incrementally.\n" +
      kContext +
      "; number of points expected for consistency across series = 1; number of points provided "
      "for secondary axis "
      "index 1 = 2";
  this->m_group->SetIncrementalMode(1);
  EXPECT_EQ(this->FailureOf({this->Points({1}), this->Points({1, 2})}), failure);
  this->UseAxes(Strings({"a", "b", "c"}), Values({1.5, 2.5}));
  EXPECT_EQ(this->FailureOf({this->Points({1}), this->Points({1, 2})}), failure);
}

TYPED_TEST(CSeries2DTest, LabelledAxisBoundsThePoints) {
  this->UseAxes(Strings({"a", "b", "c"}), Values({1.5, 2.5}));
  this->Append({this->Points({1, 2}), this->Points({3, 4})});
  const std::string failure =
      "Sumara Tables error: Series data being appended must contain no more than one data point "
      "for each primary axis "
      "label.\n" +
      kContext + "; number of primary axis labels = 3; number of incoming data points = ";
  EXPECT_EQ(this->FailureOf({this->Points({1, 2}), this->Points({3, 4})}),
            failure + "2; number of resulting points = 4");
  this->m_series->AddSeriesPoint(this->Points({9, 9}), true);
  EXPECT_EQ(MessageOf([&] {
              this->m_series->AddSeriesPoint(this->Points({9, 9}), true);
            }),
            failure + "1; number of resulting points = 4");
  EXPECT_EQ(this->m_series->GetNumberOfPoints(), 3u);
}

TYPED_TEST(CSeries2DTest, ChangesNeedAGroupThatIsNotReadOnly) {
  CSeries2D<TypeParam> alone("Mx", "FL");
  const std::string noGroup =
      "Sumara Tables error: A series must belong to a group before data is added.\nFurther "
      "information: Series name: "
      "'Mx'";
  EXPECT_EQ(MessageOf([&] { alone.AddSeriesPoints({this->Points({1})}, true); }), noGroup);
  EXPECT_EQ(MessageOf([&] { alone.AddSeriesPoint(this->Points({1}), true); }), noGroup);
  EXPECT_EQ(MessageOf([&] { alone.ClearData(true); }), noGroup);
  EXPECT_EQ(MessageOf([&] { alone.ComputeStatistics(); }), noGroup);
  this->m_group->SetDeserialised();
  const std::string readOnly =
      "Sumara Tables error: A series that is serialised may not be modified.\n" + kContext;
  EXPECT_EQ(this->FailureOf({this->Points({1}), this->Points({1})}), readOnly);
  EXPECT_EQ(MessageOf([&] {
              this->m_series->AddSeriesPoint(this->Points({1, 1}), true);
            }),
            readOnly);
  EXPECT_EQ(MessageOf([&] { this->m_series->ClearData(false); }), readOnly);
}

TYPED_TEST(CSeries2DTest, IncrementalWritingCountsFlushedPoints) {
  this->m_group->SetIncrementalMode(1);
  this->Append({this->Points({5, 9}), this->Points({-5, -9})});
  this->m_series->ClearData(/*keepStatistics=*/true);
  this->m_series->ClearChangedFlags();
  this->m_group->SetFlushedPointCount(2);
  EXPECT_EQ(this->m_series->GetVector(0).size(), 0u);
  EXPECT_EQ(this->m_series->GetMaximumIndex(0), 0u);
  EXPECT_EQ(this->m_series->GetTotalMaximumIndex(0), 1u);
  EXPECT_EQ(this->m_series->GetMean(1), -7.0);
  this->Append({this->Points({1, 12}), this->Points({1, -12})});
  EXPECT_EQ(this->m_series->GetTotalMaximumIndex(0), 3u);
  EXPECT_EQ(this->m_series->GetMaximumIndex(0), 1u);
  EXPECT_EQ(this->m_series->GetTotalMinimumIndex(1), 3u);
  EXPECT_EQ(this->m_series->GetTotalMaximumIndex(1), 2u);
  EXPECT_TRUE(this->m_series->HasMinimumChanged(1));
  EXPECT_EQ(this->m_series->GetMean(0), 27.0 / 4);
}

TYPED_TEST(CSeries2DTest, ClearingKeepsVectorsAndTheirCapacity) {
  this->Append({this->Points({1, 2, 3}), this->Points({4, 5, 6})});
  const auto capacity = this->m_series->GetVector(1).capacity();
  this->m_series->ClearData(/*keepStatistics=*/false);
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kSecondary, true), 2u);
  EXPECT_EQ(this->m_series->GetVector(1).size(), 0u);
  EXPECT_EQ(this->m_series->GetVector(1).capacity(), capacity);
}

TYPED_TEST(CSeries2DTest, ResetLetsTheNextPointStartAnew) {
  this->m_group->SetIncrementalMode(1);
  this->Append({this->Points({5, 9}), this->Points({-5, -9})});
  this->m_series->ResetStatistics();
  this->Append({this->Points({2}), this->Points({3})});
  EXPECT_EQ(this->m_series->GetData(),
            (typename TestFixture::Vectors{this->Points({2}), this->Points({3})}));
  EXPECT_EQ(this->m_series->GetMaximum(0), TypeParam(2));
  EXPECT_EQ(this->m_series->GetSum(1), TypeParam(3));
}

TYPED_TEST(CSeries2DTest, DataByIndexTestsTheSecondaryIndexFirst) {
  this->Append({this->Points({1, 2}), this->Points({3, 4})});
  EXPECT_EQ(this->m_series->DataAtIndex(1, 1), TypeParam(4));
  EXPECT_EQ(MessageOf([&] { this->m_series->DataAtIndex(9, 2); }),
            "Sumara Tables error: Invalid index requested from secondary axis (index of data point "
            "vector).\nFurther "
            "information: secondary axis value index = 2; Series name: 'Mx'; File path: ./Loads");
  EXPECT_EQ(MessageOf([&] { this->m_series->DataAtIndex(2, 1); }),
            "Sumara Tables error: Invalid index requested from primary axis (data point "
            "index).\nFurther information: "
            "index = 2; Series name: 'Mx'; File path: ./Loads");
  EXPECT_EQ(MessageOf([&] { this->m_series->GetVector(2); }),
            "Sumara Tables error: Invalid index requested from secondary axis (index of data point "
            "vector).\nFurther "
            "information: secondary axis value index = 2; Series name: 'Mx'; File path: ./Loads");
}

TYPED_TEST(CSeries2DTest, PointsOnAnAxis) {
  this->m_series->Vector(0) = this->Points({1});
  this->m_series->Vector(1) = this->Points({1, 2, 3});
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kPrimary, /*widest=*/true), 3u);
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kPrimary, /*widest=*/false), 1u);
  EXPECT_EQ(this->m_series->GetNumberOfPointsOnAxis(kSecondary, /*widest=*/false), 2u);
  EXPECT_EQ(this->m_series->GetNumberOfPoints(), 3u);
  EXPECT_EQ(MessageOf([&] { this->m_series->GetNumberOfPointsOnAxis(2, true); }),
            "Sumara Tables error: Specified axis not found.\nFurther information: Unknown axis; "
            "File path: ./Loads");
  this->m_group->GetAxis(kPrimary, true)->SetNumberOfPoints(17);
  this->m_group->SetPreviewMode(Sumara::PreviewMode::kWithStatistics);
  EXPECT_EQ(this->m_series->GetNumberOfPoints(), 17u) << "a preview tells the count of the axis";
}

TYPED_TEST(CSeries2DTest, LoadStatesAreCountedByVector) {
  this->m_series->SetLoadState(LoadState::kWaiting);
  EXPECT_EQ(this->m_series->IsLoaded(), 0u);
  this->m_series->SetLoadState(1, LoadState::kLoaded);
  EXPECT_EQ(this->m_series->IsLoaded(), 1u);
  EXPECT_TRUE(this->m_series->IsLoaded(1));
  EXPECT_FALSE(this->m_series->IsLoaded(0));
  EXPECT_FALSE(this->m_series->IsLoaded(2));
  this->m_series->SetLoadState(LoadState::kLoaded);
  EXPECT_EQ(this->m_series->IsLoaded(), 2u);
}

TYPED_TEST(CSeries2DTest, VectorThatIsLoadedLaterHasItsFiguresToo) {
  this->m_series->Vector(0) = this->Points({1, 3});
  this->m_series->SetLoadState(0, LoadState::kLoaded);
  EXPECT_EQ(this->m_series->GetMean(0), 2.0);
  this->m_series->Vector(1) = this->Points({5, 9});
  this->m_series->SetLoadState(1, LoadState::kLoaded);
  EXPECT_EQ(this->m_series->GetMean(1), 7.0);
  EXPECT_EQ(this->m_series->GetMaximumIndex(1), 1u);
}

}  // namespace
