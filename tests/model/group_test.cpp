#include <gtest/gtest.h>

#include "tests/model/make_groups.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::CGroup1D;
using Sumara::CSeries1D;
using Sumara::CSeries2D;
using Sumara::GroupDescription;
using Sumara::kPrimary;
using Sumara::kSecondary;
using Sumara::PreviewMode;
using testing_support::Add;
using testing_support::DescriptionOf;
using testing_support::Interval;
using testing_support::MessageOf;
using testing_support::NewGroup1D;
using testing_support::NewGroup2D;
using testing_support::Strings;
using testing_support::Values;

const std::string kContext = ".\nFurther information: File path: ./Loads";
const std::string kReadOnly =
    "Sumara Tables error: A group that is serialised may not be modified" + kContext;
const std::string kUnknownSeries =
    "Sumara Tables error: Requested series not found in current group" + kContext;
const std::string kPreviewHasNone =
    "Sumara Tables error: Preview group does not contain series objects" + kContext;

std::string FailureOf(const GroupDescription& description) {
  return MessageOf([&] { CGroup1D<float>(description, Interval()); });
}

template <class T>
class CGroupTypesTest : public ::testing::Test {};
TYPED_TEST_SUITE(CGroupTypesTest, testing_support::ElementTypes);

TYPED_TEST(CGroupTypesTest, TypeAndSize) {
  const auto group = NewGroup1D<TypeParam>();
  EXPECT_EQ(group->GetDataType(), Sumara::kDataTypeCode<TypeParam>);
  EXPECT_EQ(group->GetDataSize(), sizeof(TypeParam));
  EXPECT_EQ(group->GetTargetType(), 0u);
  EXPECT_EQ(group->GetSerialisedType(), 0u);
}

TYPED_TEST(CGroupTypesTest, SeriesOfAnotherTypeOrShapeIsRefused) {
  using Other = std::conditional_t<std::is_same_v<TypeParam, float>, double, float>;
  const std::string failure =
      "Sumara Tables error: A series added to a group must have the same datatype and number of "
      "dimensions as the "
      "group" +
      kContext;
  const auto group = NewGroup1D<TypeParam>();
  EXPECT_EQ(
      MessageOf([&] { group->AddSeries(std::make_shared<CSeries1D<Other>>("Mx", "FL"), false); }),
      failure);
  EXPECT_EQ(MessageOf([&] {
              group->AddSeries(std::make_shared<CSeries2D<TypeParam>>("Mx", "FL"), false);
            }),
            failure);
  EXPECT_EQ(MessageOf([&] { group->AddSeries(nullptr, false); }), failure);
  const auto wide = NewGroup2D<TypeParam>(Interval(), Values({1}));
  EXPECT_EQ(
      MessageOf([&] { wide->AddSeries(std::make_shared<CSeries2D<Other>>("Mx", "FL"), false); }),
      failure);
  EXPECT_EQ(MessageOf([&] {
              wide->AddSeries(std::make_shared<CSeries1D<TypeParam>>("Mx", "FL"), false);
            }),
            failure);
  EXPECT_EQ(group->GetNumberOfSeries(), 0u);
}

TYPED_TEST(CGroupTypesTest, LoadStateOfANewGroupIs0) {
  const auto group = NewGroup1D<TypeParam>();
  Add<TypeParam>(*group, "Mx", {1});
  EXPECT_EQ(group->GetLoadState(), 0u);
  EXPECT_TRUE(group->HasData());
}

TEST(CGroupTest, DescriptionIsKept) {
  const CGroup1D<float> group({"dir/run.%07", false, "Loads", "", "UserDefined", "other.$07"},
                              Interval());
  EXPECT_EQ(group.GetPath(), "dir/run.%07");
  EXPECT_FALSE(group.IsBinary());
  EXPECT_EQ(group.GetName(), "Loads");
  EXPECT_EQ(group.GetConfig(), "");
  EXPECT_EQ(group.GetDataSource(), "UserDefined");
  EXPECT_EQ(group.GetDataFileName(), "other.$07");
  EXPECT_EQ(group.GetDataFilePath(), "dir/other.$07");
  EXPECT_EQ(group.GetGroupNumber(), 7u);
  EXPECT_EQ(group.GetPreviewMode(), PreviewMode::kFull);
  EXPECT_FALSE(group.IsDeserialised());
  EXPECT_FALSE(group.IsReadOnly());
  EXPECT_EQ(group.GetHeaderRecordCount(), 0u);
  EXPECT_EQ(group.GetNumberOfAxes(), 1u);
}

TEST(CGroupTest, PartsOfThePath) {
  struct Parts {
    const char* path;
    const char* fileName;
    const char* stem;
    const char* directory;
    const char* dataFile;
  };
  for (const Parts& parts :
       {Parts{"/a/b.c/run.%01", "run.%01", "run", "/a/b.c/", "/a/b.c/run.$01"},
        {"run.%01", "run.%01", "run", "./", "./run.$01"},
        {"a\\run.%12", "run.%12", "run", "a\\", "a\\run.$12"},
        {"dir/50%.case.%02", "50%.case.%02", "50%.case", "dir/", "dir/50$.case.$02"}}) {
    const CGroup1D<float> group(DescriptionOf(parts.path), Interval());
    EXPECT_EQ(group.GetFileName(), parts.fileName);
    EXPECT_EQ(group.GetFileStem(), parts.stem);
    EXPECT_EQ(group.GetDirectory(), parts.directory);
    EXPECT_EQ(group.GetDataFilePath(), parts.dataFile);
  }
}

TEST(CGroupTest, GroupWithoutAPathHasNoPartsOfOne) {
  CGroup1D<float> group(DescriptionOf("run.%01"), Interval());
  group.SetPath("");
  EXPECT_EQ(group.GetFileName(), "");
  EXPECT_EQ(group.GetDirectory(), "");
  EXPECT_EQ(group.GetDataFileName(), "");
}

TEST(CGroupTest, InvalidTextsAreRefusedInOrder) {
  const std::string name =
      "Sumara Tables error: Group name (GENLAB) must not be empty, must contain at least one "
      "non-whitespace character, "
      "and must not contain carriage return or line feed characters.\nFurther information: File "
      "path: ./";
  for (const std::string bad : {"", " ", "a\nb", "a\r"}) {
    EXPECT_EQ(FailureOf({"run.%01", true, bad, "a\nb", "", ""}), name + bad);
  }
  for (const char* bad : {"a\nb", "\r"}) {
    EXPECT_EQ(FailureOf({"run.%01", true, "Loads", bad, "", ""}),
              "Sumara Tables error: Group config (CONFIG) must not contain carriage return or line "
              "feed characters" +
                  kContext);
  }
  for (const char* bad : {"", "\t", "a\nb"}) {
    EXPECT_EQ(
        FailureOf({"run.%01", true, "Loads", "", bad, ""}),
        "Sumara Tables error: Group data source (CONTENT) must not be empty, must contain at least "
        "one "
        "non-whitespace character, and must not contain carriage return or line feed characters" +
            kContext);
  }
  EXPECT_EQ(FailureOf({"", true, "Loads", "", "UserDefined", ""}),
            "Sumara Tables error: Group path not specified. The path may be relative or absolute, "
            "and should always "
            "contain at least the group file name. The file name extension must be of the form %n, "
            "where n is a "
            "positive integer with an upper limit of 18446744073709551615.\nFurther information: "
            "Group name: 'Loads'");
  EXPECT_EQ(FailureOf({"run.txt", true, "Loads", "", "UserDefined", ""}),
            "Sumara Tables error: File extension invalid: The file name extension must be of the "
            "form %n, where n is a "
            "positive integer with an upper limit of 18446744073709551615.\nFurther information: "
            "File path: run.txt");
}

TEST(CGroupTest, AxesOfEachKind) {
  const auto group = NewGroup2D<float>(Interval(), Strings({"Hub", "Blade"}));
  EXPECT_FALSE(group->IsLabelledAxis(kPrimary));
  EXPECT_TRUE(group->IsLabelledAxis(kSecondary));
  EXPECT_TRUE(group->IsLabelledAxis(2)) << "there is none";
  EXPECT_NE(group->GetIntervalAxis(kPrimary, true), nullptr);
  EXPECT_EQ(group->GetIntervalAxis(kSecondary, false), nullptr);
  EXPECT_EQ(group->GetLabelledValueAxis(kPrimary, false), nullptr);
  EXPECT_EQ(group->GetStringLabels(kSecondary), (std::vector<std::string>{"Hub", "Blade"}));
  EXPECT_EQ(group->GetNumberOfLabels(kPrimary), 0u);
  EXPECT_EQ(group->GetNumberOfLabels(kSecondary), 2u);
  EXPECT_EQ(group->GetNumberOfLabels(2), 0u);
  EXPECT_EQ(NewGroup1D<float>(Values({1, 2, 3}))->GetNumericLabels(kPrimary),
            (std::vector<double>{1, 2, 3}));
}

TEST(CGroupTest, AxesThatAreNotThere) {
  const auto group = NewGroup2D<float>(Interval(), Strings({"Hub", "Blade"}));
  const std::string missing = "Sumara Tables error: Specified axis not found" + kContext;
  const std::string mismatch =
      "Sumara Tables error: Axis does not match the type requested, e.g. a labelled value axis was "
      "requested but a "
      "labelled string axis was found" +
      kContext;
  EXPECT_EQ(group->GetAxis(2, false), nullptr);
  EXPECT_EQ(group->GetLabelledStringAxis(2, false), nullptr);
  EXPECT_EQ(MessageOf([&] { group->GetAxis(2, true); }), missing);
  EXPECT_EQ(MessageOf([&] { group->GetIntervalAxis(2, true); }), missing);
  EXPECT_EQ(MessageOf([&] { group->GetIntervalAxis(kSecondary, true); }), mismatch);
  EXPECT_EQ(MessageOf([&] { group->GetLabelledValueAxis(kSecondary, true); }), mismatch);
  EXPECT_EQ(MessageOf([&] { group->GetLabelledStringAxis(kPrimary, true); }), mismatch);
  EXPECT_EQ(MessageOf([&] { group->GetNumericLabels(kSecondary); }), mismatch);
  EXPECT_EQ(MessageOf([&] { group->GetStringLabels(kPrimary); }), mismatch);
}

TEST(CGroupTest, IndexOfALabel) {
  const auto group = NewGroup2D<float>(Values({1.5, 2.5, 1.5}), Strings({"Hub", "Blade", "HUB"}));
  EXPECT_EQ(group->GetAxisIndexOfLabel(kSecondary, "BLADE"), 1u);
  EXPECT_EQ(group->GetAxisIndexOfLabel(kPrimary, " 2.5x"), 1u)
      << "what the standard library makes of it";
  EXPECT_EQ(group->GetAxisIndexOfValue(kPrimary, 2.5), 1u);
  const std::string unique =
      "Sumara Tables error: Axis labels are not unique.\nFurther information: Axis name: ";
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfLabel(kSecondary, "hub"); }),
            unique + "'Part'; axis value: hub; File path: ./Loads");
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfValue(kPrimary, 1.5); }),
            unique + "'Radius'; axis value: 1.5; File path: ./Loads");
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfLabel(kPrimary, "1.5"); }),
            unique + "'Radius'; axis value: 1.5; File path: ./Loads");
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfLabel(kPrimary, "Hub"); }), "stod");
  EXPECT_THROW(group->GetAxisIndexOfLabel(kPrimary, "Hub"), std::invalid_argument);
  EXPECT_THROW(group->GetAxisIndexOfLabel(kPrimary, "1e999"), std::out_of_range);
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfValue(kPrimary, 3); }),
            "Sumara Tables error: Axis value not found - unable to return corresponding axis "
            "index.\nFurther "
            "information: Axis name: 'Radius'; axis value: 3");
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfLabel(kSecondary, "Tip"); }),
            "Sumara Tables error: Axis value not found - unable to return corresponding axis "
            "index.\nFurther "
            "information: Axis name: 'Part'; axis value: Tip");
  EXPECT_EQ(MessageOf([&] { group->GetAxisIndexOfValue(kSecondary, 1); }),
            "Sumara Tables error: Axis does not match the type requested, e.g. a labelled value "
            "axis was requested but "
            "a labelled string axis was found" +
                kContext);
}

TEST(CGroupTest, PointsOfANewGroup) {
  const auto group = NewGroup1D<float>();
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 0u);
  const auto series = Add<float>(*group, "Mx", {1, 2, 3});
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 3u);
  EXPECT_EQ(group->GetNumberOfPrimaryPoints(), 3u);
  EXPECT_EQ(MessageOf([&] { group->GetNumberOfPoints(kSecondary); }),
            "Sumara Tables error: Specified axis not found" + kContext);
}

TEST(CGroupTest, LabelsCountAsPointsButNotAsDimensions) {
  const auto group = NewGroup2D<float>(Strings({"a", "b", "c"}), Values({1.5, 2.5}));
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 3u);
  EXPECT_EQ(group->GetNumberOfPoints(kSecondary), 2u);
  EXPECT_EQ(group->GetNumberOfPrimaryPoints(), 0u);
  EXPECT_EQ(group->GetDimensions(), (std::vector<std::uint64_t>{0, 0, 0}));
  Add<float>(*group, "Mx", {{1, 2}, {3, 4}});
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 3u);
  EXPECT_EQ(group->GetNumberOfPrimaryPoints(), 2u);
  EXPECT_EQ(group->GetDimensions(), (std::vector<std::uint64_t>{1, 2, 2}));
}

TEST(CGroupTest, PointsOfASecondaryIntervalAxisAreTheVectors) {
  const auto group = NewGroup2D<float>(Interval(), Interval());
  EXPECT_EQ(group->GetNumberOfPoints(kSecondary), 0u);
  Add<float>(*group, "Mx", {{1, 2}, {3, 4}, {5, 6}});
  EXPECT_EQ(group->GetNumberOfPoints(kSecondary), 3u);
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 2u);
}

TEST(CGroupTest, PointsWhileWritingIncludeThoseFlushed) {
  const auto group = NewGroup2D<float>(Strings({"a", "b", "c"}), Values({1.5, 2.5}));
  Add<float>(*group, "Mx", {{1, 2}, {3, 4}});
  group->SetIncrementalMode(1);
  group->SetFlushedPointCount(10);
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 12u);
  EXPECT_EQ(group->GetNumberOfPoints(kSecondary), 2u);
  EXPECT_EQ(group->GetNumberOfPrimaryPoints(), 12u);
  const auto grid = NewGroup2D<float>(Interval(), Interval());
  grid->SetIncrementalMode(1);
  EXPECT_EQ(grid->GetNumberOfPoints(kSecondary), 0u);
  Add<float>(*grid, "Mx", {{1}, {3}, {5}});
  EXPECT_EQ(grid->GetNumberOfPoints(kSecondary), 3u);
}

TEST(CGroupTest, PointsOfAGroupFromDiskAreThoseOfItsAxes) {
  const auto group = NewGroup1D<float>();
  group->GetAxis(kPrimary, true)->SetNumberOfPoints(100);
  group->SetDeserialised();
  EXPECT_EQ(group->GetNumberOfPoints(kPrimary), 100u);
  EXPECT_EQ(group->GetNumberOfPrimaryPoints(), 100u);
}

TEST(CGroupTest, DimensionsOfTwoAxes) {
  const auto group = NewGroup2D<float>(Interval(), Values({1, 2, 3}));
  const std::vector<std::vector<float>> data(3, std::vector<float>(100));
  for (const char* name : {"a", "b", "c", "d"}) Add<float>(*group, name, data);
  EXPECT_EQ(group->GetDimensions(), (std::vector<std::uint64_t>{4, 3, 100}));
}

TEST(CGroupTest, SeriesAreFoundByName) {
  const auto group = NewGroup1D<float>();
  const auto rotor = Add<float>(*group, "Rotor", {1});
  const auto tower = Add<float>(*group, "Tower");
  EXPECT_EQ(group->GetSeriesNames(), (std::vector<std::string>{"Rotor", "Tower"}));
  EXPECT_EQ(group->GetSeries("Rotor"), rotor);
  EXPECT_EQ(group->GetSeriesIndex("tower", /*exact=*/false), 1u);
  EXPECT_EQ(group->GetSeriesIndex("Tower", /*exact=*/true), 1u);
  EXPECT_TRUE(group->HasSeries("ROTOR", /*exact=*/false));
  EXPECT_FALSE(group->HasSeries("ROTOR", /*exact=*/true));
  std::string spelling;
  EXPECT_TRUE(group->FindSeriesName("tOWER", spelling));
  EXPECT_EQ(spelling, "Tower");
  EXPECT_FALSE(group->FindSeriesName("Towers", spelling));
  EXPECT_EQ(spelling, "Tower");
  EXPECT_EQ(group->GetSeriesQuantity("Rotor"), "FL");
  EXPECT_TRUE(group->IsFirstSeries(*rotor));
  EXPECT_FALSE(group->IsFirstSeries(*tower));
  EXPECT_EQ(group->GetFirstSeries(true), rotor);
  EXPECT_EQ(group->GetAllSeries(true).size(), 2u);
  EXPECT_EQ(group->GetSeries(std::vector<std::string>{"Tower", "Rotor"}),
            (std::vector<std::shared_ptr<Sumara::ISeries>>{tower, rotor}));
}

TEST(CGroupTest, SeriesThatAreNotThere) {
  const auto group = NewGroup1D<float>();
  Add<float>(*group, "Rotor");
  EXPECT_EQ(MessageOf([&] { group->GetSeries("rotor"); }), kUnknownSeries);
  EXPECT_EQ(MessageOf([&] {
              group->GetSeries(std::vector<std::string>{"Rotor", "x"});
            }),
            kUnknownSeries);
  EXPECT_EQ(MessageOf([&] { group->GetSeriesIndex("x", false); }), kUnknownSeries);
  EXPECT_EQ(MessageOf([&] { group->GetSeriesIndex("rotor", true); }), kUnknownSeries);
  EXPECT_EQ(MessageOf([&] { group->GetSeriesQuantity("x"); }), kUnknownSeries);
  EXPECT_EQ(MessageOf([&] { group->UnloadSeries("x"); }), kUnknownSeries);
  EXPECT_EQ(MessageOf([&] { group->RemoveSeries("x"); }), kUnknownSeries);
  EXPECT_EQ(NewGroup1D<float>()->GetFirstSeries(true), nullptr);
}

TEST(CGroupTest, NamesClashWhateverTheirCase) {
  const auto group = NewGroup1D<float>();
  Add<float>(*group, "Rotor");
  const auto second = std::make_shared<CSeries1D<float>>("ROTOR", "FL");
  EXPECT_EQ(MessageOf([&] { group->AddSeries(second, false); }),
            "Sumara Tables error: Adding series with the same name as an existing series (case "
            "insensitive) is not "
            "allowed" +
                kContext);
  EXPECT_EQ(second->GetGroup(), nullptr);
  EXPECT_EQ(group->GetNumberOfSeries(), 1u);
}

TEST(CGroupTest, ClashingNameCanBecomeAFreeOne) {
  const auto group = NewGroup1D<float>();
  for (const char* name : {"Rotor", "rotor", "Rotor_1", "Rotor_x", "rotor_X", "_1", "_1"}) {
    group->AddSeries(std::make_shared<CSeries1D<float>>(name, "FL"), /*renameOnClash=*/true);
  }
  EXPECT_EQ(group->GetSeriesNames(),
            (std::vector<std::string>{"Rotor", "rotor_1", "Rotor_2", "Rotor_x", "rotor_X_1", "_1",
                                      "_1_1"}));
  EXPECT_EQ(group->GetSeries("Rotor_2")->GetName(), "Rotor_2");
}

TEST(CGroupTest, SeriesThatIsAddedGetsItsFigures) {
  const auto group = NewGroup1D<float>();
  const auto series = std::make_shared<CSeries1D<float>>("Mx", "FL", 3);
  group->AddSeries(series, false);
  EXPECT_EQ(series->GetMaximum(), 0.0f);
  EXPECT_TRUE(series->HasMaximumChanged(0));
}

TEST(CGroupTest, SeriesAreRemovedAndRenumbered) {
  const auto group = NewGroup1D<float>();
  for (const char* name : {"a", "b", "c", "d"}) Add<float>(*group, name);
  group->RemoveSeries("b");
  EXPECT_EQ(group->GetSeriesNames(), (std::vector<std::string>{"a", "c", "d"}));
  EXPECT_EQ(group->GetSeriesIndex("d", true), 2u);
  EXPECT_EQ(MessageOf([&] {
              group->RemoveSeries(std::vector<std::string>{"a", "x"});
            }),
            kUnknownSeries);
  EXPECT_EQ(group->GetNumberOfSeries(), 3u);
  group->RemoveSeries(std::vector<std::string>{"c", "a", "c"});
  EXPECT_EQ(group->GetSeriesIndex("d", true), 0u);
  group->RemoveSeriesEntry("d", /*renumber=*/true);
  EXPECT_EQ(group->GetNumberOfSeries(), 0u);
}

TEST(CGroupTest, SymmetryOfOneAxis) {
  const auto group = NewGroup1D<float>();
  EXPECT_TRUE(group->IsSymmetric()) << "no series";
  Add<float>(*group, "a");
  EXPECT_TRUE(group->IsSymmetric()) << "no data";
  const auto b = Add<float>(*group, "b", {1, 2});
  EXPECT_FALSE(group->IsSymmetric());
  group->RemoveSeries("a");
  Add<float>(*group, "c", {3, 4});
  EXPECT_TRUE(group->IsSymmetric());
  b->AddSeriesPoints(std::vector<float>{3}, true);
  EXPECT_FALSE(group->IsSymmetric());
}

TEST(CGroupTest, SymmetryOfTwoAxes) {
  const auto group = NewGroup2D<float>(Interval(), Interval());
  Add<float>(*group, "a", {{1, 2}, {3, 4}});
  const auto b = Add<float>(*group, "b", {{1, 2}, {3, 4}});
  EXPECT_TRUE(group->IsSymmetric());
  b->AddSeriesPoint(std::vector<float>{1, 2}, true);
  EXPECT_FALSE(group->IsSymmetric());
  group->RemoveSeries("b");
  const auto c = Add<float>(*group, "c", {{1, 2}, {3, 4}});
  c->SetNumberOfVectors(3);
  for (std::uint64_t s = 0; s < 3; ++s) c->Vector(s) = {1, 2};
  EXPECT_FALSE(group->IsSymmetric());
}

TEST(CGroupTest, ReadOnlyGroupsRefuseChanges) {
  for (const bool preview : {true, false}) {
    const auto group = NewGroup1D<float>();
    Add<float>(*group, "a");
    if (preview) {
      group->SetPreviewMode(PreviewMode::kWithoutStatistics);
      EXPECT_FALSE(group->IsDeserialised());
    } else {
      group->SetDeserialised();
    }
    EXPECT_TRUE(group->IsReadOnly());
    EXPECT_EQ(MessageOf([&] { group->SetTargetType(2); }), kReadOnly);
    EXPECT_EQ(MessageOf([&] { group->AddOptionalVariables({"x"}); }), kReadOnly);
    EXPECT_EQ(MessageOf([&] { group->AddOptionalVariable("x"); }), kReadOnly);
    EXPECT_EQ(
        MessageOf([&] { group->AddSeries(std::make_shared<CSeries1D<float>>("b", "FL"), false); }),
        kReadOnly);
    EXPECT_EQ(MessageOf([&] { group->RemoveSeries("a"); }), kReadOnly);
    EXPECT_EQ(MessageOf([&] { group->RemoveSeries(std::vector<std::string>{"a"}); }), kReadOnly);
    EXPECT_EQ(MessageOf([&] { group->ClearSeriesData(true); }), kReadOnly);
    group->AddOptionalVariablesUnchecked({"kept"});
    EXPECT_EQ(group->GetOptionalVariables(), std::vector<std::string>{"kept"});
  }
}

TEST(CGroupTest, IncrementalWritingMakesAGroupChangeable) {
  const auto group = NewGroup1D<float>();
  group->SetDeserialised();
  group->SetIncrementalMode(2);
  EXPECT_TRUE(group->IsWritingIncrementally());
  EXPECT_FALSE(group->IsDeserialised());
  EXPECT_FALSE(group->IsReadOnly());
  EXPECT_EQ(group->GetLoadState(), 0u);
  group->SetTargetType(2);
  EXPECT_EQ(group->GetTargetType(), 2u);
  group->AddOptionalVariables({"a", "b"});
  group->AddOptionalVariable("c");
  EXPECT_EQ(group->GetOptionalVariables(), (std::vector<std::string>{"a", "b", "c"}));
  group->SetFlushedPointCount(7);
  const auto series = Add<float>(*group, "Mx", {1, 2});
  group->EndIncrementalWriting();
  EXPECT_EQ(group->GetFlushedPointCount(), 0u);
  EXPECT_EQ(group->GetIncrementalMode(), 0u);
  EXPECT_TRUE(group->IsDeserialised());
  EXPECT_FALSE(series->HasMaximumChanged(0));
}

TEST(CGroupTest, ClearingKeepsTheRowsOfTheFlush) {
  const auto group = NewGroup1D<float>();
  const auto series = Add<float>(*group, "Mx", {1, 5, 2});
  group->SetIncrementalMode(1);
  group->ClearSeriesData(/*keepStatistics=*/true);
  EXPECT_FALSE(group->HasData());
  EXPECT_FALSE(series->HasMaximumChanged(0));
  EXPECT_EQ(group->Statistics().GetUloads(0, true), (std::vector<std::vector<float>>{{5}, {1}}));
}

TEST(CGroupTest, PreviewHasNoSeriesObjects) {
  const auto group = NewGroup1D<float>();
  Add<float>(*group, "a");
  group->SetPreviewMode(PreviewMode::kWithStatistics);
  EXPECT_TRUE(group->IsPreview());
  EXPECT_EQ(MessageOf([&] { group->GetSeries("a"); }), kPreviewHasNone);
  EXPECT_EQ(MessageOf([&] { group->GetSeries(std::vector<std::string>{}); }), kPreviewHasNone);
  EXPECT_EQ(MessageOf([&] { group->GetFirstSeries(true); }), kPreviewHasNone);
  EXPECT_EQ(MessageOf([&] { group->GetAllSeries(false); }), kPreviewHasNone);
  EXPECT_EQ(group->GetSeriesNames(), std::vector<std::string>{"a"});
}

TEST(CGroupTest, NamesWithoutObjects) {
  const auto group = NewGroup1D<float>();
  group->SetSeriesNames({"a", "b"}, {"FL", "L"});
  EXPECT_EQ(group->GetNumberOfSeries(), 2u);
  EXPECT_EQ(group->GetSeriesQuantity("b"), "L");
  EXPECT_EQ(group->GetSeriesIndex("b", true), 1u);
  EXPECT_EQ(group->GetSeries("b"), nullptr);
  EXPECT_EQ(group->GetFirstSeries(/*withObjectOnly=*/true), nullptr);
  EXPECT_EQ(group->GetAllSeries(/*withObjectOnly=*/true).size(), 0u);
  EXPECT_EQ(group->GetAllSeries(/*withObjectOnly=*/false).size(), 2u);
  EXPECT_FALSE(group->HasData());
  group->UnloadSeries("a");
  EXPECT_EQ(group->GetSeriesNames(), (std::vector<std::string>{"a", "b"}));
}

TEST(CGroupTest, ReaderHasToBeThere) {
  const auto group = NewGroup1D<float>();
  const std::string failure =
      "Sumara Tables error: Data reader object is null. For a group to read data files, the path "
      "to the binary should "
      "be passed to the constructor" +
      kContext;
  EXPECT_EQ(MessageOf([&] { group->GetReader(); }), failure);
  EXPECT_EQ(MessageOf([&] { group->GetReaderPointCount(); }), failure);
  EXPECT_EQ(MessageOf([&] { group->IsReaderOpen(); }), failure);
  EXPECT_EQ(MessageOf([&] { group->LoadSeries({0}, {0}, true); }), failure);
  group->ResetReader();
  group->CloseReader();
}

TEST(CGroupTest, ReaderIsMadeForAStoredTypeAndAPath) {
  const auto group = NewGroup1D<float>();
  for (const std::uint32_t type : {0u, 6u}) {
    EXPECT_EQ(MessageOf([&] {
                group->CreateReader(true, true, "", {1, 1}, type);
              }),
              "Sumara Tables error: Invalid data type used to create a group" + kContext);
  }
  EXPECT_EQ(MessageOf([&] {
              group->CreateReader(true, true, "", {1, 1}, 2);
            }),
            "Sumara Tables error: Data file path invalid" + kContext);
  group->CreateReader(true, /*skipOpen=*/true, "nowhere/run.$01", {2, 9}, 2);
  EXPECT_EQ(group->GetReader().GetPath(), "nowhere/run.$01");
  EXPECT_EQ(group->GetReaderPointCount(), 9u);
  EXPECT_FALSE(group->IsReaderOpen());
  EXPECT_EQ(MessageOf([&] {
              group->CreateReader(true, /*skipOpen=*/false, "nowhere/run.$01", {2, 9}, 2);
            }),
            "IO error 5000: The file does not exist.\nFurther information: nowhere/run.$01");
}

TEST(CGroupTest, ExactSpellingComesFirst) {
  const auto group = NewGroup1D<float>();
  group->SetSeriesNames({"Speed", "SPEED"}, {"L", "L"});
  std::string spelling;
  EXPECT_TRUE(group->FindSeriesName("SPEED", spelling));
  EXPECT_EQ(spelling, "SPEED");
  EXPECT_TRUE(group->FindSeriesName("speed", spelling));
  EXPECT_EQ(spelling, "Speed");
  EXPECT_EQ(group->GetSeriesIndex("SPEED", /*exact=*/false), 1u);
  EXPECT_EQ(group->GetSeriesIndex("sPEED", /*exact=*/false), 0u);
}

TEST(CGroupTest, UnloadFindsItsSeriesAfterARemovalWithoutNumbers) {
  const auto group = NewGroup1D<float>();
  const auto a = Add<float>(*group, "a");
  const auto b = Add<float>(*group, "b");
  const auto c = Add<float>(*group, "c");
  group->RemoveSeriesEntry("a", /*renumber=*/false);
  EXPECT_EQ(group->GetSeriesIndex("c", /*exact=*/true), 1u);
  group->UnloadSeries("b");
  EXPECT_EQ(group->GetSeries("b"), nullptr);
  EXPECT_EQ(group->GetSeries("c"), c);
  group->UnloadSeries("c");
  EXPECT_EQ(group->GetSeries("c"), nullptr);
}

TEST(CGroupTest, SeriesThatCannotBeTakenInLeavesTheTableAsItWas) {
  const auto group = NewGroup1D<float>();
  const auto other = NewGroup1D<float>();
  const auto series = Add<float>(*other, "Mx", {1, 2});
  EXPECT_EQ(MessageOf([&] { group->AddSeries(series, /*renameOnClash=*/false); }),
            "Sumara Tables error: A series' group cannot be changed after data has been added.\n"
            "Further information: Series name: 'Mx'; File path: ./Loads");
  EXPECT_EQ(group->GetNumberOfSeries(), 0u);
  EXPECT_FALSE(group->HasSeries("Mx", /*exact=*/false));
}

}  // namespace
