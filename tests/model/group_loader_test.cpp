#include "model/group_loader.h"

#include "tests/model/run_fixture.h"
#include "tests/support/element_types.h"

namespace {

using Sumara::kPrimary;
using Sumara::kSecondary;
using Sumara::PreviewMode;
using testing_support::HeaderText;
using testing_support::MessageOf;

class GroupLoaderTest : public testing_support::RunFixture {
 protected:
  GroupPtr LoadGroup(PreviewMode mode = PreviewMode::kFull, std::uint32_t targetType = 0) {
    m_entered = nullptr;
    return Sumara::LoadGroup(Header(), mode, targetType, [&](const GroupPtr& group) {
      m_entered = group;
      m_namesAtEntry = group->GetNumberOfSeries();
    });
  }
  std::string FailureOf(const HeaderText& text,
                        PreviewMode mode = PreviewMode::kWithoutStatistics) {
    WriteHeader(text);
    return MessageOf([&] { LoadGroup(mode); });
  }

  GroupPtr m_entered;
  std::size_t m_namesAtEntry = 0;
};

TEST_F(GroupLoaderTest, FullGroupOfOneAxis) {
  WriteOneAxis();
  const GroupPtr group = LoadGroup();
  EXPECT_EQ(group->GetPath(), Header());
  EXPECT_EQ(group->GetDataFilePath(), Data());
  EXPECT_EQ(group->GetName(), "Tower loads");
  EXPECT_EQ(group->GetConfig(), "TRANSIENT");
  EXPECT_EQ(group->GetDataSource(), "POWPROD");
  EXPECT_EQ(group->GetGroupNumber(), 1u);
  EXPECT_TRUE(group->IsBinary());
  EXPECT_EQ(group->GetDataType(), 1u);
  EXPECT_EQ(group->GetSerialisedType(), 1u);
  EXPECT_EQ(group->GetTargetType(), 0u);
  EXPECT_TRUE(group->IsDeserialised());
  EXPECT_TRUE(group->IsReadOnly());
  EXPECT_EQ(group->GetLoadState(), 2u);
  EXPECT_EQ(group->GetNumberOfAxes(), 1u);
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 3u);
  EXPECT_EQ(group->GetIntervalAxis(kPrimary, true)->GetValues(), (std::vector<double>{1, 1.5, 2}));
  EXPECT_EQ(group->GetSeriesNames(), (Names{"Mx", "My"}));
  EXPECT_EQ(group->GetSeriesQuantity("My"), "F L");
  EXPECT_EQ(group->GetSeries("Mx"), nullptr) << "made when its data is asked for";
  EXPECT_EQ(group->GetReader().GetPath(), Data());
  EXPECT_FALSE(group->IsReaderOpen());
  EXPECT_EQ(group->GetReaderPointCount(), 3u);
}

TEST_F(GroupLoaderTest, TwoAxesComeWithTheSecondaryFirst) {
  WriteTwoAxes();
  const GroupPtr group = LoadGroup();
  EXPECT_EQ(group->GetNumberOfAxes(), 2u);
  EXPECT_EQ(group->GetAxis(kPrimary, true)->GetName(), "Time");
  EXPECT_EQ(group->GetAxis(kSecondary, true)->GetName(), "Radius");
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 4u);
  EXPECT_EQ(group->GetNumberOfPoints(kSecondary), 3u);
  EXPECT_EQ(group->GetAxisIndexOfValue(kSecondary, 2.5), 1u);
}

TEST_F(GroupLoaderTest, AxisOfEqualLabelsIsAccepted) {
  WriteHeader(HeaderText::TwoAxes().With("AXIVAL", "1 1 2"));
  WriteWords(24);
  const GroupPtr group = LoadGroup();
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfValue(kSecondary, 1); }),
            "Sumara Tables error: Axis labels are not unique.\nFurther information: Axis name: "
            "'Radius'; axis value: "
            "1; File path: " +
                m_directory.Path("Blade loads"));
}

TEST_F(GroupLoaderTest, PreviewNeedsNoDataFile) {
  WriteHeader(HeaderText::OneAxis().With("NVARS", "1").Append({"GRAVITY 9.81"}));
  for (const PreviewMode mode : {PreviewMode::kWithStatistics, PreviewMode::kWithoutStatistics}) {
    const GroupPtr group = LoadGroup(mode);
    EXPECT_EQ(group->GetPreviewMode(), mode);
    EXPECT_EQ(group->GetOptionalVariables(), Names{"GRAVITY 9.81"});
    EXPECT_EQ(group->GetSeriesNames(), (Names{"Mx", "My"}));
    EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 3u);
    EXPECT_EQ(group->GetReader().GetPath(), Data());
  }
}

TEST_F(GroupLoaderTest, GroupIsEnteredBeforeItsHeaderIsReadToTheEnd) {
  WriteHeader(HeaderText::OneAxis().Without("VARIAB"));
  WriteWords(6);
  EXPECT_EQ(MessageOf([&] { LoadGroup(); }),
            Failure("Header does not specify variables (VARIAB)") +
                "\nInner exception: IO error 5018: Label was not found - end of file "
                "encountered.\nFurther information: "
                "label sought = VARIAB; path: " +
                Header());
  ASSERT_NE(m_entered, nullptr);
  EXPECT_EQ(m_namesAtEntry, 0u);
  EXPECT_FALSE(m_entered->IsDeserialised());
}

TEST_F(GroupLoaderTest, StatisticsAreReadForAPreviewThatWantsThem) {
  WriteHeader(HeaderText::OneAxis().Append(testing_support::StatisticsBlock()));
  WriteWords(6);
  EXPECT_TRUE(LoadGroup(PreviewMode::kWithStatistics)->HasReadStoredStatistics());
  EXPECT_FALSE(LoadGroup(PreviewMode::kWithoutStatistics)->HasReadStoredStatistics());
  EXPECT_FALSE(LoadGroup(PreviewMode::kFull)->HasReadStoredStatistics());
}

TEST_F(GroupLoaderTest, DamagedStatisticsFailOnlyThePreviewThatWantsThem) {
  WriteHeader(HeaderText::OneAxis().Append({"ULOADS 1 2"}));
  WriteWords(6);
  EXPECT_EQ(
      MessageOf([&] { LoadGroup(PreviewMode::kWithStatistics); }),
      Failure("Header does not contain the expected number of ultimate loads blocks (ULOADS)"));
  EXPECT_EQ(MessageOf([&] { LoadGroup(PreviewMode::kWithoutStatistics); }), "no exception");
  EXPECT_EQ(MessageOf([&] { LoadGroup(PreviewMode::kFull); }), "no exception");
}

TEST_F(GroupLoaderTest, EmptyDataFileRaises62) {
  WriteOneAxis();
  WriteWords(0);
  EXPECT_EQ(MessageOf([&] { LoadGroup(); }),
            "Sumara Tables error: Group data file empty when expecting to find data.\nFurther "
            "information: expected 6 "
            "data points but data file was empty: File path: " +
                Data());
  EXPECT_EQ(m_entered, nullptr);
  EXPECT_EQ(MessageOf([&] { LoadGroup(PreviewMode::kWithStatistics); }), "no exception");
}

TEST_F(GroupLoaderTest, EmptyDataFileOfNoPointsLoads) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 0"));
  WriteWords(0);
  EXPECT_EQ(LoadGroup()->GetNumberOfPoints(kPrimary), 0u);
  WriteHeader(HeaderText::TwoAxes().With("DIMENS", "2 0 9223372036854775808"));
  EXPECT_EQ(LoadGroup()->GetNumberOfPoints(kPrimary), 9223372036854775808u);
}

TEST_F(GroupLoaderTest, ProductOfDimensionsBeyondAllNumbersIsStillNotZero) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "9223372036854775808 2"));
  WriteWords(0);
  EXPECT_EQ(MessageOf([&] { LoadGroup(); }),
            "Sumara Tables error: Group data file empty when expecting to find data.\nFurther "
            "information: expected "
            "18446744073709551615 data points but data file was empty: File path: " +
                Data());
}

TEST_F(GroupLoaderTest, MissingDataFileRaises5000) {
  WriteHeader(HeaderText::OneAxis());
  EXPECT_EQ(MessageOf([&] { LoadGroup(); }),
            "IO error 5000: The file does not exist.\nFurther information: " + Data());
}

TEST_F(GroupLoaderTest, NameOfTheDataFileIsThatOfTheHeader) {
  WriteHeader(HeaderText::OneAxis().With("FILE", "\"else where.dat\""));
  m_directory.WriteWords<float>("else where.dat",
                                testing_support::WordsOf<float>({1, 2, 3, 4, 5, 6}));
  const GroupPtr group = LoadGroup();
  EXPECT_EQ(group->GetReader().GetPath(), m_directory.Path("else where.dat"));
  EXPECT_EQ(group->GetDataFileName(), "else where.dat");
}

TEST_F(GroupLoaderTest, TextsThatAGroupRefuses) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("GENLAB", "''")),
            GroupFailure("Group name (GENLAB) must not be empty, must contain at least one "
                         "non-whitespace character, "
                         "and must not contain carriage return or line feed characters",
                         ""));
  EXPECT_EQ(
      FailureOf(HeaderText::OneAxis().With("CONTENT", "")),
      GroupFailure(
          "Group data source (CONTENT) must not be empty, must contain at least one non-whitespace "
          "character, and must not contain carriage return or line feed characters"));
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().After("CONFIG", {" LIST"})),
            GroupFailure(
                "Group config (CONFIG) must not contain carriage return or line feed characters"));
}

TEST_F(GroupLoaderTest, BlocksThatAnAxisRefuses) {
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("AXISLAB", "''")),
            "Sumara Tables error: Axis name must not be empty, must contain at least one "
            "non-whitespace character, and "
            "must not contain carriage return or line feed characters.");
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("AXIUNIT", "")),
            "Sumara Tables error: Axis quantity code must not be empty, must contain at least one "
            "non-whitespace "
            "character, and must not contain carriage return or line feed characters.\nFurther "
            "information: Axis name: "
            "'Time'");
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("STEP", "0.0")),
            "Sumara Tables error: Interval axis step size must be non-zero.\nFurther information: "
            "Axis name: 'Time'");
  EXPECT_EQ(FailureOf(HeaderText::OneAxis().With("AXIMETH", "1").After("AXIMETH", {"AXITICK"})),
            "Sumara Tables error: Labelled axis labels array must not be empty.\nFurther "
            "information: Axis name: "
            "'Time'");
}

TEST_F(GroupLoaderTest, HeaderPathHasToBeOne) {
  EXPECT_EQ(MessageOf([&] { Sumara::LoadGroup("", PreviewMode::kFull, 0, [](const auto&) {}); }),
            "Sumara Tables error: Failed to open file.\nFurther information: File path: \nInner "
            "exception: IO error "
            "5002: Filename not set or invalid.");
  const std::string path = m_directory.Write("run.txt", HeaderText::OneAxis().Text());
  EXPECT_EQ(MessageOf([&] { Sumara::LoadGroup(path, PreviewMode::kFull, 0, [](const auto&) {}); }),
            "Sumara Tables error: File extension invalid: The file name extension must be of the "
            "form %n, where n is a "
            "positive integer with an upper limit of 18446744073709551615.\nFurther information: "
            "File path: " +
                path);
}

TEST_F(GroupLoaderTest, UnknownTargetTypeRaises65) {
  WriteOneAxis();
  EXPECT_EQ(MessageOf([&] { LoadGroup(PreviewMode::kFull, 6); }),
            "Sumara Tables error: Invalid data type used to create a group.");
}

template <class T>
class GroupLoaderTypesTest : public GroupLoaderTest {};
TYPED_TEST_SUITE(GroupLoaderTypesTest, testing_support::ElementTypes);

TYPED_TEST(GroupLoaderTypesTest, TargetTypeRulesOverThatOfTheFile) {
  this->WriteOneAxis();
  const auto group = this->LoadGroup(PreviewMode::kFull, Sumara::kDataTypeCode<TypeParam>);
  EXPECT_EQ(group->GetDataType(), Sumara::kDataTypeCode<TypeParam>);
  EXPECT_EQ(group->GetSerialisedType(), 1u);
  EXPECT_NE(std::dynamic_pointer_cast<Sumara::CGroup1D<TypeParam>>(group), nullptr);
}

TYPED_TEST(GroupLoaderTypesTest, TypeOfTheFile) {
  const char* const formats[] = {"R*4", "R*8", "I*2", "I*4", "I*8"};
  this->WriteHeader(
      HeaderText::TwoAxes().With("FORMAT", formats[Sumara::kDataTypeCode<TypeParam> - 1]));
  this->WriteWords(24);
  const auto group = this->LoadGroup();
  EXPECT_EQ(group->GetDataType(), Sumara::kDataTypeCode<TypeParam>);
  EXPECT_NE(std::dynamic_pointer_cast<Sumara::CGroup2D<TypeParam>>(group), nullptr);
}

TEST_F(GroupLoaderTest, SurplusDimensionsDoNotMakeASecondAxis) {
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 2 3"));
  WriteWords(6);
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}));
  m_control.RemoveGroup(Header(), PreviewMode::kFull, false);
  WriteHeader(HeaderText::OneAxis().With("DIMENS", "2 2 3").With("ACCESS", "S"));
  m_directory.Write("run.$01", testing_support::LinesOf({{0, 1}, {2, 3}, {4, 5}}));
  EXPECT_EQ(DataOf(Load({"My"}), "My"), (std::vector<float>{1, 3, 5}));
}

}  // namespace
