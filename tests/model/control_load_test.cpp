#include "tests/model/run_fixture.h"
#include "tests/support/stream_state.h"
#include "tests/support/type_pairs.h"

namespace {

using Sumara::kPrimary;
using Sumara::kSecondary;
using Sumara::PreviewMode;
using testing_support::HeaderText;
using testing_support::LinesOf;
using testing_support::MessageOf;

/// Loading the data of series through a registry.
class ControlLoadTest : public testing_support::RunFixture {
 protected:
  GroupPtr LoadAt(const Names& names, const std::vector<double>& values) {
    return m_control.GetGroup(Header(), names, values, 0);
  }
  GroupPtr LoadAt(const Names& names, const std::vector<std::string>& labels) {
    return m_control.GetGroup(Header(), names, labels, 0);
  }
  /// The file ends before a word of a series.
  std::string TooShort(const std::string& point, const std::string& series,
                       const std::string& offset, const std::string& words,
                       const std::string& group = "Tower loads") const {
    return "Sumara Tables error: Error reading series data.\nFurther information: Point index = " +
           point + "; Series name: '" + series + "'; File path: " + m_directory.Path(group) +
           "\nInner exception: IO error 5008: Data requested past end of file.\nFurther "
           "information: word offset = " +
           offset + "; m_totalWordCount = " + words + "; path: " + Data();
  }
  static std::string Plain(const std::string& words, const std::string& context) {
    return "Sumara Tables error: " + words + ".\nFurther information: " + context;
  }
};

TEST_F(ControlLoadTest, SeriesOfOneAxis) {
  WriteOneAxis();
  const GroupPtr group = Load({"My"});
  EXPECT_EQ(group->GetPreviewMode(), PreviewMode::kFull);
  EXPECT_EQ(DataOf(group, "My"), (std::vector<float>{1, 3, 5}));
  EXPECT_EQ(group->GetSeries("Mx"), nullptr);
  EXPECT_EQ(group->GetSeries("My")->IsLoaded(), 1u);
  EXPECT_EQ(group->GetLoadState(), 2u);
  EXPECT_EQ(Load({"Mx"}), group);
  EXPECT_EQ(DataOf(group, "Mx"), (std::vector<float>{0, 2, 4}));
  EXPECT_EQ(group->GetLoadState(), 1u);
}

TEST_F(ControlLoadTest, PreviewBecomesFull) {
  WriteOneAxis();
  for (const PreviewMode mode : {PreviewMode::kWithStatistics, PreviewMode::kWithoutStatistics}) {
    const GroupPtr preview = Get(mode);
    EXPECT_EQ(Load({"Mx"}), preview);
    EXPECT_EQ(preview->GetPreviewMode(), PreviewMode::kFull);
    EXPECT_EQ(Cached(mode), nullptr);
    EXPECT_EQ(Cached(PreviewMode::kFull), preview);
    m_control.RemoveGroup(Header(), PreviewMode::kFull, false);
  }
}

TEST_F(ControlLoadTest, SeriesAskedForTwiceCountOnce) {
  for (const char* access : {"D", "S"}) {
    WriteHeader(HeaderText::OneAxis().With("ACCESS", access));
    if (*access == 'D') {
      WriteWords(6);
    } else {
      m_directory.Write("run.$01", LinesOf({{0, 1}, {2, 3}, {4, 5}}));
    }
    const GroupPtr group = Load({"My", "My"});
    EXPECT_EQ(DataOf(group, "My"), (std::vector<float>{1, 3, 5}));
    EXPECT_EQ(group->GetLoadState(), 2u);
    LoadNumbers({0, 0}, {0});
    EXPECT_EQ(DataOf(group, "Mx"), (std::vector<float>{0, 2, 4}));
    EXPECT_EQ(group->GetLoadState(), 1u);
    m_control.RemoveGroup(Header(), PreviewMode::kFull, false);
  }
}

TEST_F(ControlLoadTest, SecondaryValuesAskedForTwiceCountOnce) {
  WriteTwoAxes();
  const GroupPtr group = LoadAt({"Mx"}, std::vector<double>{2.5, 2.5});
  EXPECT_EQ(group->GetSeries("Mx")->IsLoaded(), 1u);
  EXPECT_EQ(DataOf(group, "Mx", 1), (std::vector<float>{2, 8, 14, 20}));
  EXPECT_EQ(group->GetLoadState(), 2u);
}

TEST_F(ControlLoadTest, AllAreMeantByNoNumbers) {
  WriteTwoAxes();
  const GroupPtr group = LoadNumbers({}, {});
  EXPECT_EQ(group->GetLoadState(), 1u);
  EXPECT_EQ(DataOf(group, "Mx", 0), (std::vector<float>{0, 6, 12, 18}));
  EXPECT_EQ(DataOf(group, "My", 2), (std::vector<float>{5, 11, 17, 23}));
}

TEST_F(ControlLoadTest, SecondaryValuesOneByOne) {
  WriteTwoAxes();
  const GroupPtr group = LoadAt({"Mx"}, std::vector<double>{3.5});
  EXPECT_EQ(DataOf(group, "Mx", 2), (std::vector<float>{4, 10, 16, 22}));
  EXPECT_TRUE(DataOf(group, "Mx", 0).empty());
  LoadNumbers({0}, {1, 2});
  EXPECT_EQ(DataOf(group, "Mx", 1), (std::vector<float>{2, 8, 14, 20}));
  EXPECT_EQ(group->GetSeries("Mx")->IsLoaded(), 2u);
  Load({"Mx", "My"});
  EXPECT_EQ(DataOf(group, "Mx", 0), (std::vector<float>{0, 6, 12, 18}));
  EXPECT_EQ(group->GetLoadState(), 1u);
}

TEST_F(ControlLoadTest, SecondaryLabelsAreFoundExactly) {
  WriteHeader(HeaderText::TwoAxes()
                  .With("AXIMETH", "1")
                  .Without("AXIVAL")
                  .After("AXIMETH", {"AXITICK\t'Hub' 'Tip' 'Tip'"}));
  WriteWords(24);
  const GroupPtr group = LoadAt({"Mx"}, Names{"Tip"});
  EXPECT_EQ(DataOf(group, "Mx", 1), (std::vector<float>{2, 8, 14, 20}));
  EXPECT_EQ(group->GetSeries("Mx")->IsLoaded(), 1u) << "of equal labels the first";
  EXPECT_EQ(MessageOf([&] { LoadAt({"Mx"}, Names{"TIP"}); }),
            Plain("Secondary axis value not found", "Requested item: 'TIP'"));
  EXPECT_EQ(
      MessageOf([&] { LoadAt({"Mx"}, std::vector<double>{1}); }),
      GroupFailure(
          "Axis does not match the type requested, e.g. a labelled value axis was requested but a "
          "labelled string axis was found",
          "Blade loads"));
}

TEST_F(ControlLoadTest, SecondaryIntervalAxisIsAskedByValueToo) {
  WriteHeader(HeaderText::TwoAxes()
                  .With("AXIMETH", "2")
                  .Without("AXIVAL")
                  .After("AXIMETH", {"MIN 10", "STEP -2"}));
  WriteWords(24);
  const GroupPtr group = LoadAt({"My"}, std::vector<double>{6});
  EXPECT_EQ(DataOf(group, "My", 2), (std::vector<float>{5, 11, 17, 23}));
  EXPECT_EQ(group->GetNumberOfPoints(kSecondary), 3u);
}

TEST_F(ControlLoadTest, RequestsThatAreEmpty) {
  EXPECT_EQ(MessageOf([&] { Load({}); }), Failure("Requested variables vector empty"));
  EXPECT_EQ(MessageOf([&] { LoadAt({}, std::vector<double>{}); }),
            Failure("Requested variables vector empty"));
  EXPECT_EQ(MessageOf([&] { LoadAt({"Mx"}, std::vector<double>{}); }),
            Failure("Requested secondary axis values vector empty"));
  EXPECT_EQ(MessageOf([&] { LoadAt({"Mx"}, Names{}); }),
            Failure("Requested secondary axis values vector empty"));
}

TEST_F(ControlLoadTest, RequestsForWhatIsNotThere) {
  WriteTwoAxes();
  EXPECT_EQ(MessageOf([&] {
              Load({"Mx", "My", "Mz"});
            }),
            Plain("Requested series exceed number of series in the group",
                  "Requested: 3 item(s); Present: 2 item(s)"));
  EXPECT_EQ(MessageOf([&] { Load({"mx"}); }),
            Plain("Requested series was not found in the group", "Requested item: 'mx'"));
  EXPECT_EQ(MessageOf([&] { LoadNumbers({2}, {}); }),
            Plain("Requested series was not found in the group", "Requested item: '2'"));
  EXPECT_EQ(MessageOf([&] {
              LoadNumbers({0, 1, 0}, {});
            }),
            Plain("Requested series exceed number of series in the group",
                  "Requested: 3 item(s); Present: 2 item(s)"));
  EXPECT_EQ(MessageOf([&] {
              LoadAt({"Mx"}, std::vector<double>{1.5, 2.5, 3.5, 4.5});
            }),
            Plain("Requested secondary axis values exceed number of labels in the group",
                  "Requested: 4 item(s); Present: 3 item(s)"));
  EXPECT_EQ(MessageOf([&] { LoadAt({"Mx"}, std::vector<double>{1.5000001}); }),
            Plain("Secondary axis value not found", "Requested item: '1.5'"));
  EXPECT_EQ(MessageOf([&] {
              LoadNumbers({0}, {0, 1, 2, 0});
            }),
            Plain("Requested secondary axis values exceed number of labels in the group",
                  "Requested: 4 item(s); Present: 3 item(s)"));
  EXPECT_EQ(
      MessageOf([&] { LoadNumbers({0}, {3}); }),
      Plain("Axis index not found - unable to return corresponding axis value",
            "Axis name: 'Radius'; axis index: 3; File path: " + m_directory.Path("Blade loads")));
  EXPECT_EQ(Cached(PreviewMode::kFull)->GetSeries("Mx"), nullptr) << "nothing was made";
}

TEST_F(ControlLoadTest, ShortBinaryFileRaises25) {
  WriteHeader(
      HeaderText::OneAxis().With("DIMENS", "1 10").With("VARIAB", "'Mx'").With("VARUNIT", "FL"));
  WriteWords(8);
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }), TooShort("8", "Mx", "8", "8"));
}

TEST_F(ControlLoadTest, SeriesThatFailsDoesNotStandInTheWayOfOthers) {
  WriteHeader(HeaderText::OneAxis());
  WriteWords(5);
  EXPECT_EQ(MessageOf([&] { Load({"Mx", "My"}); }), TooShort("2", "My", "5", "5"));
  const GroupPtr group = Cached(PreviewMode::kFull);
  EXPECT_EQ(DataOf(group, "Mx"), (std::vector<float>{0, 2, 4}));
  EXPECT_EQ(group->GetSeries("My"), nullptr);
  EXPECT_EQ(StatisticsOf(group).GetMeans(0, true), (std::vector<double>{2, 0}));
}

TEST_F(ControlLoadTest, ShortTextFileRaises25) {
  WriteHeader(HeaderText::OneAxis().With("ACCESS", "S"));
  m_directory.Write("run.$01", LinesOf({{0, 1}, {2, 3}}));
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }),
            GroupFailure("Error reading series data") +
                "\nInner exception: IO error 5009: Failed to read data.\nFurther information: line "
                "number = 2; path: " +
                Data() + "\nInner exception: " + testing_support::PastEndOfFile(Data()));
}

TEST_F(ControlLoadTest, EmptyDataOfNoPointsReadsAsEmpty) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 0"));
  WriteWords(0);
  const GroupPtr group = Load({"Mx"});
  EXPECT_TRUE(DataOf(group, "Mx").empty());
  EXPECT_FALSE(group->HasData());
}

TEST_F(ControlLoadTest, NoPointsInTheHeaderAskForAllOfTheFile) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 0"));
  WriteWords(7);
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}));
}

TEST_F(ControlLoadTest, BufferStaysWhileReadersAreKept) {
  WriteOneAxis();
  Load({"My"});
  std::filesystem::remove(Data());
  EXPECT_EQ(DataOf(Load({"Mx"}), "Mx"), (std::vector<float>{0, 2, 4}));
}

TEST_F(ControlLoadTest, BufferGoesWithTheLastSeries) {
  WriteOneAxis();
  const GroupPtr group = Load({"Mx", "My"});
  group->UnloadSeries("Mx");
  EXPECT_EQ(group->GetLoadState(), 2u);
  EXPECT_EQ(group->GetSeries("Mx"), nullptr);
  std::filesystem::remove(Data());
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }),
            "IO error 5000: The file does not exist.\nFurther information: " + Data());
}

TEST_F(ControlLoadTest, ReleasedReadersReadAnew) {
  WriteOneAxis();
  Load({"My"});
  m_control.ReleaseReaders();
  EXPECT_FALSE(m_control.KeepsReadersOpen());
  m_directory.WriteWords<float>("run.$01",
                                testing_support::WordsOf<float>({10, 11, 12, 13, 14, 15}));
  const GroupPtr group = Load({"Mx"});
  EXPECT_EQ(DataOf(group, "Mx"), (std::vector<float>{10, 12, 14}));
  EXPECT_EQ(DataOf(group, "My"), (std::vector<float>{1, 3, 5}));
  group->UnloadSeries("Mx");
  std::filesystem::remove(Data());
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }),
            "IO error 5000: The file does not exist.\nFurther information: " + Data());
  m_control.SetKeepReadersOpen();
  WriteWords(6);
  Load({"Mx"});
  EXPECT_EQ(group->GetLoadState(), 1u);
}

TEST_F(ControlLoadTest, NothingIsReadOnceAllIsLoaded) {
  WriteOneAxis();
  Load({"Mx", "My"});
  std::filesystem::remove(Data());
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}));
}

TEST_F(ControlLoadTest, UnloadedSeriesIsReadAgain) {
  WriteOneAxis();
  const GroupPtr group = Load({"My"});
  group->UnloadSeries("My");
  EXPECT_FALSE(group->HasData());
  group->UnloadSeries("My");
  EXPECT_EQ(group->GetSeriesNames(), (Names{"Mx", "My"}));
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}));
}

TEST_F(ControlLoadTest, SeriesOfAGroupFromDiskAreReadOnly) {
  WriteOneAxis();
  const auto series =
      std::dynamic_pointer_cast<Sumara::CSeries1D<float>>(Load({"My"})->GetSeries("My"));
  EXPECT_EQ(MessageOf([&] { series->AddSeriesPoints(std::vector<float>{1}, true); }),
            Plain("A series that is serialised may not be modified",
                  "Series name: 'My'; File path: " + m_directory.Path("Tower loads")));
}

TEST_F(ControlLoadTest, DimensionsOfADamagedHeaderTakeNoMemory) {
  WriteWords(24);
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 9223372036854775808"));
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }), TooShort("12", "Mx", "24", "24"));
  EXPECT_EQ(MessageOf([&] { Get()->GetIntervalAxis(kPrimary, true)->GetValues(); }),
            GroupFailure("Axis dimensions invalid (DIMENS)"));
  EXPECT_EQ(MessageOf([&] { Get()->GetIntervalAxis(kPrimary, true)->GetLabelsAsStrings(1); }),
            GroupFailure("Axis dimensions invalid (DIMENS)"));
  m_control.RemoveGroup(Header(), PreviewMode::kFull, false);
  HeaderText text = HeaderText::TwoAxes()
                        .With("AXIMETH", "2")
                        .Without("AXIVAL")
                        .After("AXIMETH", {"MIN 0", "STEP 1"});
  for (const char* dimensions :
       {"2 9223372036854775808 4", "2 18446744073709551615 4", "2 200000 0"}) {
    WriteHeader(text.With("DIMENS", dimensions));
    EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }),
              GroupFailure("Axis dimensions invalid (DIMENS)", "Blade loads"));
    m_control.RemoveGroup(Header(), PreviewMode::kFull, false);
  }
  WriteHeader(text.With("DIMENS", "9223372036854775808 3 4"));
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}); }),
            TooShort("1", "Mx", "18446744073709551615", "24", "Blade loads"));
}

TEST_F(ControlLoadTest, NamesBeyondTheDimensionsAreRefused) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "1 3"));
  WriteWords(3);
  EXPECT_EQ(DataOf(Load({"Mx"}), "Mx"), (std::vector<float>{0, 1, 2}));
  EXPECT_EQ(
      MessageOf([&] { Load({"My"}); }),
      "Sumara Tables error: Error reading series data.\nFurther information: Point index = 0; "
      "Series name: 'My'; "
      "File path: " +
          m_directory.Path("Tower loads") +
          "\nInner exception: IO error 5010: Read offset invalid.\nFurther information: path: " +
          Data());
}

TEST_F(ControlLoadTest, HeaderChangedAfterThePreview) {
  WriteOneAxis();
  const GroupPtr preview = Get(PreviewMode::kWithoutStatistics);
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 2").With("VARIAB", "'other' 'names'"));
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}))
      << "what was read of the header stands";
  EXPECT_EQ(preview->GetNumberOfPoints(kPrimary), 3u);
}

TEST_F(ControlLoadTest, SeriesOfAnInvalidNameFailsWhenItIsMade) {
  WriteHeader(HeaderText::OneAxis().With("VARIAB", "'' 'My'"));
  WriteWords(6);
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}));
  EXPECT_EQ(MessageOf([&] { Load({""}); }),
            Plain("Series name must not be empty, must contain at least one non-whitespace "
                  "character, and must not "
                  "contain carriage return or line feed characters",
                  "Series name: ''"));
}

TEST_F(ControlLoadTest, GroupOfMoreValuesThanANumberTellsIsNotTakenForLoaded) {
  WriteTwoAxes();
  WriteHeader(HeaderText::TwoAxes()
                  .With("DIMENS", "2 9223372036854775808 4")
                  .With("AXIMETH", "2")
                  .Without("AXIVAL")
                  .After("AXIMETH", {"MIN \t0", "STEP\t1"}));
  EXPECT_EQ(Get()->GetLoadState(), 2u);
  EXPECT_EQ(MessageOf([&] { LoadNumbers({0}, {0}); }),
            GroupFailure("Axis dimensions invalid (DIMENS)", "Blade loads"));
}

TEST_F(ControlLoadTest, GroupWithoutSeriesIsLoaded) {
  WriteHeader(HeaderText::OneAxis().With("VARIAB", "").With("VARUNIT", "").With("DIMENS", "0 3"));
  WriteWords(0);
  EXPECT_EQ(LoadNumbers({}, {})->GetLoadState(), 1u);
}

/// Every stored type into every target type, through the registry.
template <class Pair>
class ControlLoadTypesTest : public ControlLoadTest {};
TYPED_TEST_SUITE(ControlLoadTypesTest, testing_support::ElementTypePairs);

TYPED_TEST(ControlLoadTypesTest, BinaryAndText) {
  using Stored = typename TypeParam::Stored;
  using Target = typename TypeParam::Target;
  const char* const formats[] = {"R*4", "R*8", "I*2", "I*4", "I*8"};
  for (const char* access : {"D", "S"}) {
    this->WriteHeader(HeaderText::TwoAxes()
                          .With("ACCESS", access)
                          .With("FORMAT", formats[Sumara::kDataTypeCode<Stored> - 1]));
    if (*access == 'D') {
      this->m_directory.template WriteWords<Stored>(
          "run.$01", testing_support::WordsOf<Stored>(testing_support::Count(24)));
    } else {
      std::vector<std::vector<double>> rows;
      for (int i = 0; i < 12; ++i) rows.push_back({2.0 * i, 2.0 * i + 1});
      this->m_directory.Write("run.$01", LinesOf(rows));
    }
    const auto group = this->Load({"My"}, Sumara::kDataTypeCode<Target>);
    EXPECT_EQ((this->template DataOf<Target>(group, "My", 1)), (std::vector<Target>{3, 9, 15, 21}));
    EXPECT_EQ(group->GetSerialisedType(), Sumara::kDataTypeCode<Stored>);
    this->m_control.RemoveGroup(this->Header(), PreviewMode::kFull, false);
  }
}

TEST_F(ControlLoadTest, GroupWithoutSecondaryValuesIsAnEmptyTable) {
  WriteHeader(HeaderText::TwoAxes()
                  .With("DIMENS", "2\t0\t0")
                  .With("AXIMETH", "2", /*occurrence=*/0)
                  .Without("AXIVAL")
                  .After("AXIMETH", {"MIN\t0", "STEP\t1"}));
  m_directory.Write("run.$01", "");
  for (int i = 0; i < 2; ++i) {
    const GroupPtr group = Load({"My"});
    const auto series = std::dynamic_pointer_cast<Sumara::CSeries2D<float>>(group->GetSeries("My"));
    ASSERT_NE(series, nullptr);
    EXPECT_EQ(series->GetData(), std::vector<std::vector<float>>{});
    EXPECT_EQ(group->GetSeries("Mx"), nullptr);
    EXPECT_EQ(group->GetLoadState(), Sumara::kNotAllLoaded);
  }
  EXPECT_EQ(LoadNumbers({}, {})->GetLoadState(), Sumara::kAllLoaded);
}

TEST_F(ControlLoadTest, NamesThatDifferInCaseHaveDataOfTheirOwn) {
  WriteHeader(HeaderText::OneAxis().With("VARIAB", "'Mx' 'MX'"));
  WriteWords(6);
  EXPECT_EQ(DataOf(Load({"MX"}), "MX"), (std::vector<float>{1, 3, 5}));
  EXPECT_EQ(DataOf(Load({"Mx"}), "Mx"), (std::vector<float>{0, 2, 4}));
}

TEST_F(ControlLoadTest, WhatIsLoadedIsNotReadAgain) {
  WriteOneAxis();
  const GroupPtr group = Load({"Mx"});
  std::filesystem::remove(Data());
  EXPECT_EQ(Load({"Mx"}), group);
  group->UnloadSeries("Mx");
  EXPECT_EQ(group->GetLoadState(), Sumara::kNotAllLoaded);
}

TEST_F(ControlLoadTest, ValuesOfAHeaderNeedNoDataFile) {
  const std::string count = "4194304";
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2\t" + count));
  const auto axis = Get(PreviewMode::kWithoutStatistics)->GetIntervalAxis(kPrimary, true);
  EXPECT_EQ(axis->GetValues().size(), 4194304u);
  EXPECT_EQ(axis->GetValues().back(), 4194303 * 0.5 + 1);
  EXPECT_EQ(MessageOf([&] { axis->GetLabelsAsStrings(1); }),
            GroupFailure("Axis dimensions invalid (DIMENS)"))
      << "texts take several times the memory";
  m_control.RemoveGroup(Header(), PreviewMode::kWithoutStatistics, false);
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2\t4194305"));
  const auto longer = Get(PreviewMode::kWithoutStatistics)->GetIntervalAxis(kPrimary, true);
  EXPECT_EQ(MessageOf([&] { longer->GetValues(); }),
            GroupFailure("Axis dimensions invalid (DIMENS)"));
}

}  // namespace
