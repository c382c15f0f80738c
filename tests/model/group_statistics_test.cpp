#include "model/group_statistics.h"

#include "groupfiles/kept_data.h"
#include "model/group_writer.h"
#include "tests/model/make_groups.h"
#include "tests/model/run_fixture.h"
#include "tests/support/element_types.h"

namespace {

using Sumara::CGroup1D;
using Sumara::KeptData;
using Sumara::PreviewMode;
using Sumara::StatisticKind;
using testing_support::Add;
using testing_support::HeaderText;
using testing_support::Interval;
using testing_support::MessageOf;
using testing_support::NewGroup1D;
using testing_support::NewGroup2D;
using testing_support::StatisticsBlock;
using testing_support::Strings;
using testing_support::Values;

const std::string kContext = ".\nFurther information: File path: ./Loads";

/// Figures of groups in memory.
template <class T>
class GroupStatisticsTest : public ::testing::Test {
 protected:
  using Rows = std::vector<std::vector<T>>;
  static std::vector<T> Points(std::initializer_list<int> values) {
    std::vector<T> points;
    for (const int value : values) points.push_back(static_cast<T>(value));
    return points;
  }
};
TYPED_TEST_SUITE(GroupStatisticsTest, testing_support::ElementTypes);

TYPED_TEST(GroupStatisticsTest, ComputedOfOneAxis) {
  const auto group = NewGroup1D<TypeParam>(Interval(0, 0.5));
  Add(*group, "a", this->Points({1, 2, 3, 4, 9}));
  Add(*group, "b", this->Points({5, -5, 0, 0, 5}));
  auto& statistics = group->Statistics();
  EXPECT_EQ(statistics.GetMaxTimes(0, true), (std::vector<double>{2.0, 0.0}));
  EXPECT_EQ(statistics.GetMinTimes(0, true), (std::vector<double>{0.0, 0.5}));
  EXPECT_EQ(statistics.GetMeans(0, true), (std::vector<double>{3.8, 1.0}));
  EXPECT_EQ(statistics.Get(StatisticKind::kMaxTime, "a", 0, true), 2.0);
  EXPECT_EQ(statistics.Get(StatisticKind::kMean, "b", 0, true), 1.0);
  EXPECT_EQ(statistics.GetUloads(0, true),
            (typename TestFixture::Rows{this->Points({9, 5}), this->Points({1, 5}),
                                        this->Points({1, 5}), this->Points({2, -5})}));
}

TYPED_TEST(GroupStatisticsTest, ComputedOfTwoAxesBySecondaryIndex) {
  const auto group = NewGroup2D<TypeParam>(Interval(10, 1), Values({1.5, 2.5}));
  Add(*group, "a", {this->Points({1, 2}), this->Points({4, 3})});
  Add(*group, "b", {this->Points({5, 6}), this->Points({8, 7})});
  auto& statistics = group->Statistics();
  EXPECT_EQ(statistics.GetMaxTimes(0, true), (std::vector<double>{11, 11}));
  EXPECT_EQ(statistics.GetMaxTimes(1, true), (std::vector<double>{10, 10}));
  EXPECT_EQ(statistics.GetMeans(1, true), (std::vector<double>{3.5, 7.5}));
  EXPECT_EQ(statistics.GetUloads(1, true),
            (typename TestFixture::Rows{this->Points({4, 8}), this->Points({3, 7}),
                                        this->Points({4, 8}), this->Points({3, 7})}));
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(2, true); }),
            "Sumara Tables error: Axis index not found - unable to return corresponding axis "
            "value.\nFurther "
            "information: Axis name: 'Radius'; Secondary axis; File path: ./Loads");
}

TYPED_TEST(GroupStatisticsTest, TablesStayWithTheirCallers) {
  const auto group = NewGroup2D<TypeParam>(Interval(10, 1), Values({1.5, 2.5}));
  Add(*group, "a", {this->Points({1, 2}), this->Points({4, 3})});
  auto& statistics = group->Statistics();
  const auto& first = statistics.GetUloads(0, true);
  const auto& second = statistics.GetUloads(1, true);
  EXPECT_EQ(first, (typename TestFixture::Rows{this->Points({2}), this->Points({1})}));
  EXPECT_EQ(second, (typename TestFixture::Rows{this->Points({4}), this->Points({3})}));
}

TYPED_TEST(GroupStatisticsTest, TimeOnATextAxisIsTheIndex) {
  const auto group = NewGroup1D<TypeParam>(Strings({"w", "x", "y", "z"}));
  Add(*group, "a", this->Points({1, 2, 3, 4}));
  Add(*group, "b", this->Points({5, 3, 2, 1}));
  EXPECT_EQ(group->Statistics().GetMaxTimes(0, true), (std::vector<double>{3.0, 0.0}));
  EXPECT_EQ(group->Statistics().GetMinTimes(0, true), (std::vector<double>{0.0, 3.0}));
}

TYPED_TEST(GroupStatisticsTest, TimeOnAValueAxisIsTheLabel) {
  const auto group = NewGroup1D<TypeParam>(Values({7.5, -1.25, 4}));
  Add(*group, "a", this->Points({1, 9, 3}));
  EXPECT_EQ(group->Statistics().GetMaxTimes(0, true), std::vector<double>{-1.25});
}

TYPED_TEST(GroupStatisticsTest, GroupWithoutData) {
  const auto group = NewGroup1D<TypeParam>();
  Add(*group, "a", {});
  const std::string failure =
      "Sumara Tables error: Cannot get statistics for a group that does not contain data" +
      kContext;
  auto& statistics = group->Statistics();
  EXPECT_EQ(MessageOf([&] { group->CheckStatisticsAvailable(0); }), failure);
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(0, true); }), failure);
  EXPECT_EQ(MessageOf([&] { statistics.GetMaxTimes(0, false); }), failure);
  EXPECT_EQ(MessageOf([&] { statistics.GetUloads(0, true); }), failure);
  std::vector<double> means;
  EXPECT_EQ(MessageOf([&] { statistics.ComputeStatistic(means, StatisticKind::kMean, 0); }),
            failure);
}

TYPED_TEST(GroupStatisticsTest, NewGroupHasNoStoredFigures) {
  const auto group = NewGroup1D<TypeParam>();
  Add(*group, "a", this->Points({1}));
  const std::string failure = "Sumara Tables error: Header does not contain stats" + kContext;
  EXPECT_EQ(MessageOf([&] { group->Statistics().GetMeans(0, /*preferComputed=*/false); }), failure);
  EXPECT_EQ(MessageOf([&] { group->Statistics().GetUloads(0, /*preferComputed=*/false); }),
            failure);
}

TYPED_TEST(GroupStatisticsTest, SeriesAreKnownByTheirExactName) {
  const auto group = NewGroup1D<TypeParam>();
  Add(*group, "a", this->Points({1}));
  EXPECT_EQ(MessageOf([&] { group->Statistics().Get(StatisticKind::kMean, "A", 0, true); }),
            "Sumara Tables error: Requested series not found in current group" + kContext);
}

TYPED_TEST(GroupStatisticsTest, KindsBeyondTheThreeAreRefused) {
  const auto group = NewGroup1D<TypeParam>();
  Add(*group, "a", this->Points({1}));
  EXPECT_EQ(MessageOf([&] { group->Statistics().Get(static_cast<StatisticKind>(3), 0, true); }),
            "Sumara Tables error: Unsupported stats type" + kContext);
  std::vector<double> figures;
  EXPECT_EQ(MessageOf([&] {
              group->Statistics().ComputeStatistic(figures, static_cast<StatisticKind>(3), 0);
            }),
            "Sumara Tables error: Unsupported stats type" + kContext);
}

TYPED_TEST(GroupStatisticsTest, FiguresCloseUpOverSeriesWithoutAnObject) {
  const auto group = NewGroup1D<TypeParam>();
  Add(*group, "a", this->Points({1}));
  Add(*group, "b", this->Points({2}));
  Add(*group, "c", this->Points({3}));
  auto& statistics = group->Statistics();
  EXPECT_EQ(statistics.GetUloads(0, true).at(2), this->Points({1, 2, 3}));
  group->UnloadSeries("b");
  EXPECT_EQ(statistics.GetMeans(0, true), (std::vector<double>{1, 3, 0}));
  const auto& rows = statistics.GetUloads(0, true);
  EXPECT_EQ(rows.at(0), this->Points({1, 0, 3}));
  EXPECT_EQ(rows.at(2), this->Points({0, 0, 0})) << "of a series that is gone nothing is left";
  EXPECT_EQ(rows.at(4), this->Points({1, 0, 3}));
}

TYPED_TEST(GroupStatisticsTest, WhileWritingFiguresRunAcrossFlushes) {
  const auto group = NewGroup1D<TypeParam>(Interval(0, 0.5));
  const auto a = Add(*group, "a", {});
  const auto b = Add(*group, "b", {});
  group->SetIncrementalMode(1);
  a->AddSeriesPoints(this->Points({1, 9, 2}), true);
  b->AddSeriesPoints(this->Points({4, 5, 6}), true);
  group->ClearSeriesData(/*keepStatistics=*/true);
  group->SetFlushedPointCount(3);
  a->AddSeriesPoints(this->Points({3, 0}), true);
  b->AddSeriesPoints(this->Points({5, 7}), true);
  auto& statistics = group->Statistics();
  EXPECT_EQ(statistics.GetMaxTimes(0, true), (std::vector<double>{0.5, 2.0}));
  EXPECT_EQ(statistics.GetMinTimes(0, true), (std::vector<double>{2.0, 0.0}));
  EXPECT_EQ(statistics.GetMeans(0, true), (std::vector<double>{3.0, 27.0 / 5}));
  group->ClearSeriesData(true);
  group->SetFlushedPointCount(5);
  // The rows of the maximum of a and the minimum of b keep the values of the first chunk.
  EXPECT_EQ(statistics.GetUloads(0, true),
            (typename TestFixture::Rows{this->Points({9, 5}), this->Points({0, 7}),
                                        this->Points({0, 7}), this->Points({1, 4})}));
}

TYPED_TEST(GroupStatisticsTest, RowsWhileWritingForEachSecondaryIndex) {
  const auto group = NewGroup2D<TypeParam>(Interval(), Values({1, 2}));
  const auto a = Add<TypeParam>(*group, "a");
  group->SetIncrementalMode(1);
  a->AddSeriesPoints({this->Points({1, 2}), this->Points({4, 3})}, true);
  group->ClearSeriesData(true);
  EXPECT_EQ(group->Statistics().GetUloads(0, true),
            (typename TestFixture::Rows{this->Points({2}), this->Points({1})}));
  EXPECT_EQ(group->Statistics().GetUloads(1, true),
            (typename TestFixture::Rows{this->Points({4}), this->Points({3})}));
}

TEST(GroupStatisticsAxesTest, SecondaryAxisWithoutValues) {
  const auto group = NewGroup2D<float>(Interval(), Interval());
  const std::string failure =
      "Sumara Tables error: Cannot get stats for 2D group with unpopulated secondary axis (the "
      "secondary axis "
      "represents the secondary independent variable).\nFurther information: Axis name: 'Time'; "
      "Secondary axis; File "
      "path: ./Loads";
  group->SetIncrementalMode(1);
  EXPECT_EQ(MessageOf([&] { group->CheckStatisticsAvailable(0); }), failure);
}

/// Figures of groups from disk: the header, the data or both.
class StoredStatisticsTest : public testing_support::RunFixture {
 protected:
  void WriteOneAxisWithBlock() {
    WriteHeader(HeaderText::OneAxis().Append(StatisticsBlock()));
    WriteWords(6);
  }
  std::string NoStats(const std::string& name = "Tower loads") const {
    return GroupFailure("Header does not contain stats", name);
  }

  const std::vector<double> m_storedMeans{1.25, -0.25};
  const std::vector<double> m_dataMeans{2, 3};
};

TEST_F(StoredStatisticsTest, PreviewAnswersFromItsHeader) {
  WriteOneAxisWithBlock();
  std::filesystem::remove(Data());
  auto& statistics = StatisticsOf(Get(PreviewMode::kWithStatistics));
  for (const bool preferComputed : {true, false}) {
    EXPECT_EQ(statistics.GetMeans(0, preferComputed), m_storedMeans);
    EXPECT_EQ(statistics.GetMaxTimes(0, preferComputed), (std::vector<double>{12, 4}));
    EXPECT_EQ(statistics.GetMinTimes(0, preferComputed), (std::vector<double>{0, 2}));
    EXPECT_EQ(statistics.GetUloads(0, preferComputed)[1], (std::vector<float>{-9, 2.5}));
    EXPECT_EQ(statistics.Get(StatisticKind::kMean, "My", 0, preferComputed), -0.25);
  }
}

TEST_F(StoredStatisticsTest, PreviewGivesItsBlocksToTheWriterAsTheyStood) {
  WriteOneAxisWithBlock();
  std::string lines;
  for (const std::string& line : StatisticsBlock()) lines += line + "\n";
  EXPECT_EQ(Sumara::GetHeaderStats({Get(PreviewMode::kWithStatistics)}), lines);
  WriteHeader(HeaderText::TwoAxes()
                  .Append(StatisticsBlock())
                  .Append(StatisticsBlock())
                  .Append(StatisticsBlock()));
  m_control.RemoveGroup(Header(), PreviewMode::kWithStatistics, /*keepReader=*/false);
  EXPECT_EQ(Sumara::GetHeaderStats({Get(PreviewMode::kWithStatistics)}), lines + lines + lines);
}

TEST_F(StoredStatisticsTest, PreviewOfAHeaderWithoutThem) {
  WriteHeader(HeaderText::OneAxis());
  auto& statistics = StatisticsOf(Get(PreviewMode::kWithStatistics));
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(0, true); }), NoStats());
  EXPECT_EQ(MessageOf([&] { statistics.GetUloads(0, true); }), NoStats());
}

TEST_F(StoredStatisticsTest, PreviewWithoutStatisticsAlwaysRaises124) {
  WriteOneAxisWithBlock();
  const GroupPtr preview = Get(PreviewMode::kWithoutStatistics);
  const std::string failure = GroupFailure("Preview group was requested without header stats");
  for (const bool preferComputed : {true, false}) {
    EXPECT_EQ(MessageOf([&] { StatisticsOf(preview).GetMeans(0, preferComputed); }), failure);
    EXPECT_EQ(MessageOf([&] { StatisticsOf(preview).GetUloads(0, preferComputed); }), failure);
  }
  EXPECT_EQ(MessageOf([&] { preview->CheckStatisticsAvailable(0); }), failure);
}

TEST_F(StoredStatisticsTest, HeaderWinsOverPartOfTheDataAndAllDataOverTheHeader) {
  WriteOneAxisWithBlock();
  Get(PreviewMode::kWithStatistics);
  auto& statistics = StatisticsOf(Load({"Mx"}));
  EXPECT_EQ(statistics.GetMeans(0, true), m_storedMeans);
  EXPECT_EQ(statistics.GetUloads(0, true)[0], (std::vector<float>{9, 1.5}));
  Load({"My"});
  EXPECT_EQ(statistics.GetMeans(0, true), m_dataMeans);
  EXPECT_EQ(statistics.GetUloads(0, true)[0], (std::vector<float>{4, 5}));
  EXPECT_EQ(statistics.GetMeans(0, /*preferComputed=*/false), m_storedMeans);
  EXPECT_EQ(statistics.GetUloads(0, /*preferComputed=*/false)[0], (std::vector<float>{9, 1.5}));
}

TEST_F(StoredStatisticsTest, FullGroupReadsItsBlocksOnDemand) {
  WriteOneAxisWithBlock();
  const GroupPtr group = Load({"Mx"});
  EXPECT_FALSE(group->HasReadStoredStatistics());
  m_control.EnsureStoredStatistics(group);
  EXPECT_TRUE(group->HasReadStoredStatistics());
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), m_storedMeans);
  std::filesystem::remove(Header());
  m_control.EnsureStoredStatistics(group);
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), m_storedMeans);
}

TEST_F(StoredStatisticsTest, BlocksOfAHeaderThatNowHasOtherVariablesAreNotTaken) {
  for (const char* names : {"'My' 'Mx'", "'Mx' 'Mz'", "'Mx' 'my'"}) {
    WriteOneAxisWithBlock();
    m_control.RemoveGroup(Header(), PreviewMode::kWithStatistics, false);
    Get(PreviewMode::kWithoutStatistics);
    WriteHeader(HeaderText::OneAxis().With("VARIAB", names).Append(StatisticsBlock()));
    const GroupPtr preview = Get(PreviewMode::kWithStatistics);
    EXPECT_EQ(MessageOf([&] { StatisticsOf(preview).GetMeans(0, true); }), NoStats()) << names;
  }
}

TEST_F(StoredStatisticsTest, DataAnswersWhereBlocksAreNotTaken) {
  WriteOneAxisWithBlock();
  const GroupPtr group = Load({"My"});
  WriteHeader(HeaderText::OneAxis().With("VARIAB", "'My' 'Mx'").Append(StatisticsBlock()));
  m_control.EnsureStoredStatistics(group);
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), (std::vector<double>{3, 0}));
}

TEST_F(StoredStatisticsTest, BlocksAreNotReadWhereTheDataAnswers) {
  WriteOneAxisWithBlock();
  const GroupPtr group = Load({"Mx", "My"});
  m_control.EnsureStoredStatistics(group);
  EXPECT_FALSE(group->HasReadStoredStatistics());
  const GroupPtr preview = Get(PreviewMode::kWithoutStatistics);
  EXPECT_EQ(preview, group);
}

TEST_F(StoredStatisticsTest, BlocksAnswerAfterTheDataIsUnloaded) {
  WriteOneAxisWithBlock();
  const GroupPtr group = Load({"Mx", "My"});
  group->UnloadSeries("Mx");
  group->UnloadSeries("My");
  EXPECT_EQ(MessageOf([&] { StatisticsOf(group).GetMeans(0, true); }),
            GroupFailure("Cannot get statistics for a group that does not contain data"));
  m_control.EnsureStoredStatistics(group);
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), m_storedMeans);
}

TEST_F(StoredStatisticsTest, GroupWithoutBlocksIsComputedFromWhatItHas) {
  WriteOneAxis();
  const GroupPtr group = Load({"My"});
  m_control.EnsureStoredStatistics(group);
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), (std::vector<double>{3, 0}));
}

/// Figures of groups from disk whose text is given up after each request.
class GivenUpStatisticsTest : public StoredStatisticsTest {
 protected:
  GivenUpStatisticsTest() { KeptData::SetLimit(0); }
  ~GivenUpStatisticsTest() override { KeptData::SetLimit(KeptData::kDefaultLimit); }

  void Rewrite(const std::string& names, const std::string& means) {
    std::vector<std::string> block = StatisticsBlock();
    block.back() = "MEAN " + means;
    HeaderText header = HeaderText::OneAxis().With("VARIAB", names);
    for (const std::string& line : block) header.Append({line});
    WriteHeader(header);
  }
};

TEST_F(StoredStatisticsTest, TextOfAHeaderCountsAmongWhatIsKept) {
  WriteOneAxisWithBlock();
  const std::uint64_t before = KeptData::Total();
  std::uint64_t size = 0;
  for (const std::string& line : StatisticsBlock()) size += line.size() + 1;
  GroupPtr preview = Get(PreviewMode::kWithStatistics);
  StatisticsOf(preview).GetMeans(0, true);
  EXPECT_EQ(KeptData::Total(), before + size);
  preview.reset();
  m_control.RemoveGroup(Header(), PreviewMode::kWithStatistics, /*keepReader=*/false);
  EXPECT_EQ(KeptData::Total(), before);
}

TEST_F(GivenUpStatisticsTest, TextIsReadAgain) {
  WriteOneAxisWithBlock();
  const GroupPtr preview = Get(PreviewMode::kWithStatistics);
  auto& statistics = StatisticsOf(preview);
  for (const bool preferComputed : {true, false}) {
    EXPECT_EQ(KeptData::Total(), 0u);
    EXPECT_EQ(statistics.GetMeans(0, preferComputed), m_storedMeans);
    EXPECT_EQ(statistics.GetUloads(0, preferComputed)[1], (std::vector<float>{-9, 2.5}));
    EXPECT_EQ(statistics.Get(StatisticKind::kMean, "My", 0, preferComputed), -0.25);
    EXPECT_EQ(statistics.GetUload(0, Sumara::Extreme::kMaximum, 1, 0), 1.5f);
  }
}

TEST_F(GivenUpStatisticsTest, HeaderThatWasRewrittenIsReadAnew) {
  WriteOneAxisWithBlock();
  const GroupPtr preview = Get(PreviewMode::kWithStatistics);
  EXPECT_EQ(StatisticsOf(preview).GetMeans(0, true), m_storedMeans);
  Rewrite("'Mx' 'My'", "10.125 20.25");
  EXPECT_EQ(StatisticsOf(preview).GetMeans(0, true), (std::vector<double>{10.125, 20.25}));
}

TEST_F(GivenUpStatisticsTest, HeaderThatNowHasOtherVariablesGivesNone) {
  WriteOneAxisWithBlock();
  const GroupPtr preview = Get(PreviewMode::kWithStatistics);
  Rewrite("'My' 'Mx'", "10.125 20.25");
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(MessageOf([&] { StatisticsOf(preview).GetMeans(0, true); }), NoStats());
}

TEST_F(GivenUpStatisticsTest, DataAnswersWhereTheHeaderHasLostItsBlocks) {
  WriteOneAxisWithBlock();
  const GroupPtr group = Load({"My"});
  m_control.EnsureStoredStatistics(group);
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), m_storedMeans);
  WriteHeader(HeaderText::OneAxis());
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), (std::vector<double>{3, 0}));
}

TEST_F(GivenUpStatisticsTest, HeaderThatIsGoneIsToldEachTimeUntilItIsBack) {
  WriteOneAxisWithBlock();
  const GroupPtr preview = Get(PreviewMode::kWithStatistics);
  std::filesystem::remove(Header());
  for (int i = 0; i < 2; ++i) {
    const std::string failure = MessageOf([&] { StatisticsOf(preview).GetMeans(0, true); });
    EXPECT_NE(failure.find(Header()), std::string::npos) << failure;
  }
  WriteOneAxisWithBlock();
  EXPECT_EQ(StatisticsOf(preview).GetMeans(0, true), m_storedMeans);
}

TEST_F(StoredStatisticsTest, BlocksOfTwoAxes) {
  WriteHeader(HeaderText::TwoAxes().Append(StatisticsBlock()).Append(StatisticsBlock()));
  WriteWords(24);
  const GroupPtr group = Get(PreviewMode::kWithStatistics);
  auto& statistics = StatisticsOf(group);
  EXPECT_EQ(statistics.GetMeans(0, true), m_storedMeans);
  EXPECT_EQ(statistics.GetMeans(1, true), m_storedMeans);
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(2, true); }), NoStats("Blade loads"))
      << "there are two blocks of three";
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(3, true); }),
            "Sumara Tables error: Axis index not found - unable to return corresponding axis "
            "value.\nFurther "
            "information: Axis name: 'Radius'; Secondary axis; File path: " +
                m_directory.Path("Blade loads"));
}

TEST_F(StoredStatisticsTest, AllDataOfASecondaryIndexWinsOverItsBlock) {
  WriteHeader(HeaderText::TwoAxes().Append(StatisticsBlock()).Append(StatisticsBlock()));
  WriteWords(24);
  Get(PreviewMode::kWithStatistics);
  const GroupPtr group = LoadNumbers({0, 1}, {1});
  auto& statistics = StatisticsOf(group);
  EXPECT_EQ(statistics.GetMeans(1, true), (std::vector<double>{11, 12}));
  EXPECT_EQ(statistics.GetMeans(0, true), m_storedMeans);
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(2, true); }), NoStats("Blade loads"));
  LoadNumbers({0}, {0});
  EXPECT_EQ(statistics.GetMeans(0, true), m_storedMeans) << "of one series of two";
  LoadNumbers({1}, {0});
  EXPECT_EQ(statistics.GetMeans(0, true), (std::vector<double>{9, 10}));
}

TEST_F(StoredStatisticsTest, BlockOfFewerVariablesThanNames) {
  WriteHeader(HeaderText::OneAxis()
                  .With("DIMENS", "1 3")
                  .Append({"ULOADS 1", " 2", "MAXTIME 1", "MINTIME 2", "MEAN 3"}));
  auto& statistics = StatisticsOf(Get(PreviewMode::kWithStatistics));
  EXPECT_EQ(statistics.Get(StatisticKind::kMean, "Mx", 0, true), 3.0);
  EXPECT_EQ(MessageOf([&] { statistics.Get(StatisticKind::kMean, "My", 0, true); }), NoStats());
}

TEST_F(StoredStatisticsTest, BlocksAreNotAskedForByADamagedSecondaryAxis) {
  WriteHeader(HeaderText::TwoAxes()
                  .With("AXIMETH", "2")
                  .Without("AXIVAL")
                  .After("AXIMETH", {"MIN 0", "STEP 1"})
                  .With("DIMENS", "2 9223372036854775808 4")
                  .Append(StatisticsBlock()));
  auto& statistics = StatisticsOf(Get(PreviewMode::kWithStatistics));
  EXPECT_EQ(statistics.GetMeans(0, true), m_storedMeans);
  EXPECT_EQ(MessageOf([&] { statistics.GetMeans(9223372036854775807u, true); }),
            NoStats("Blade loads"));
}

}  // namespace
