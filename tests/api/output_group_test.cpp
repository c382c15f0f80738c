#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <ios>
#include <memory>
#include <string>
#include <vector>

#include "api/group.h"
#include "api/output_group1d.h"
#include "api/output_group2d.h"
#include "api/variable1d.h"
#include "api/variable2d.h"
#include "core/exceptions.h"
#include "model/axes.h"
#include "model/igroup.h"
#include "model/series1d.h"
#include "tests/api/api_test.h"

namespace {

using namespace SumaraApi;
using testing_support::MessageOf;

constexpr auto kKeep = OverwriteBehaviour::DoNotOverwriteExistingOutput;

template <class T>
std::string Bytes(const std::vector<T>& words) {
  std::string bytes(words.size() * sizeof(T), '\0');
  if (!words.empty()) std::memcpy(bytes.data(), words.data(), bytes.size());
  return bytes;
}

IndependentVariable Time() { return {"Time", "s", 0.0, 0.5}; }
IndependentVariable Radius(const std::vector<double>& labels) { return {"Radius", "m", labels}; }
IndependentVariable Blade(const std::vector<std::string>& labels) { return {"Blade", ".", labels}; }

class OutputGroupTest : public testing_support::ApiTest {
 protected:
  template <class T>
  std::unique_ptr<OutputGroup1D<T>> Group1D(
      IndependentVariable variable = Time(),
      VariableDataFormat format = VariableDataFormat::Binary) const {
    return std::make_unique<OutputGroup1D<T>>(Path("x.%01"), "Rotor", "UserDefined", "TRANSIENT",
                                              variable, format);
  }
  template <class T>
  std::unique_ptr<OutputGroup2D<T>> Group2D(
      IndependentVariable primary, IndependentVariable secondary,
      VariableDataFormat format = VariableDataFormat::Binary) const {
    return std::make_unique<OutputGroup2D<T>>(Path("x.%01"), "Rotor", "UserDefined", "TRANSIENT",
                                              primary, secondary, format);
  }

  std::string Read(const std::string& name) const { return m_directory.Read(name); }
  std::string Context() const { return "File path: " + Path("Rotor"); }
  std::string SeriesContext(const std::string& name) const {
    return "Series name: '" + name + "'; " + Context();
  }
  std::string FilesOnDisk() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_directory.Path())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names) text += name + " ";
    return text;
  }
};

TEST_F(OutputGroupTest, WritesTheThreeFilesOfOneAxis) {
  const auto group = Group1D<float>();
  group->AddVariableWithData("Rotor speed", "rad/s", {1, -2, 3});
  group->AddVariableWithData("Power", "W", {10, 20, 30});
  EXPECT_TRUE(TabulonApi::WriteOutput(*group));
  EXPECT_EQ(FilesOnDisk(), "x.$01 x.$TE x.%01 ");
  EXPECT_EQ(Read("x.%01"),
            "FILE\tx.$01\n"
            "ACCESS\tD\n"
            "FORM\tF\n"
            "RECL\t4\n"
            "FORMAT\tR*4\n"
            "CONTENT\t'UserDefined'\n"
            "CONFIG\t'TRANSIENT'\n"
            "NDIMENS\t2\n"
            "DIMENS\t2\t3\n"
            "GENLAB\t'Rotor'\n"
            "VARIAB\t'Rotor speed' 'Power'\n"
            "VARUNIT\tA/T P\n"
            "AXISLAB\t'Time'\n"
            "AXIUNIT\tT\n"
            "AXIMETH\t2\n"
            "MIN \t0.0000000E+00\n"
            "STEP\t5.0000000E-01\n"
            "NVARS\t0\n");
  EXPECT_EQ(Read("x.$01"), Bytes<float>({1, 10, -2, 20, 3, 30}));
  EXPECT_EQ(Read("x.$TE"), "User-generated output group 'x.%01'\n");
}

TEST_F(OutputGroupTest, WritesTheFilesOfTwoAxesAsText) {
  const auto group =
      Group2D<double>(Radius({0.5, 1.5}), Blade({"tip", "root"}), VariableDataFormat::ASCII);
  group->AddVariableWithData("Load", "N", {{1, 2}, {-3, 4}});
  EXPECT_TRUE(TabulonApi::WriteOutput(*group));
  EXPECT_EQ(Read("x.%01"),
            "FILE\tx.$01\n"
            "ACCESS\tS\n"
            "FORM\tF\n"
            "RECL\t8\n"
            "FORMAT\tR*8\n"
            "CONTENT\t'UserDefined'\n"
            "CONFIG\t'TRANSIENT'\n"
            "NDIMENS\t3\n"
            "DIMENS\t1\t2\t2\n"
            "GENLAB\t'Rotor'\n"
            "VARIAB\t'Load'\n"
            "VARUNIT\tF\n"
            "AXISLAB\t'Blade'\n"
            "AXIUNIT\tUnquantifiable\n"
            "AXIMETH\t1\n"
            "AXITICK\t'tip' 'root'\n"
            "AXISLAB\t'Radius'\n"
            "AXIUNIT\tL\n"
            "AXIMETH\t3\n"
            "AXIVAL\t0.500000000000000 1.500000000000000\n"
            "NVARS\t0\n");
  EXPECT_EQ(Read("x.$01"),
            "  1.000000000000000e+00 -3.000000000000000e+00\n"
            "  2.000000000000000e+00  4.000000000000000e+00\n");
}

TEST_F(OutputGroupTest, TellsWhatItIs) {
  const auto group = Group1D<int>(Time(), VariableDataFormat::ASCII);
  EXPECT_EQ(group->GetPath(), Path("x.%01"));
  EXPECT_EQ(group->GetFileFormat(), FileFormat::Tolvan);
  EXPECT_EQ(group->GetGroupName(), "Rotor");
  EXPECT_EQ(group->GetDataSource(), "UserDefined");
  EXPECT_EQ(group->GetGroupConfig(), "TRANSIENT");
  EXPECT_EQ(group->GetVariableDataFormat(), VariableDataFormat::ASCII);
  EXPECT_EQ(group->GetDataFilePath(), Path("x.$01"));
  EXPECT_EQ(Group1D<int>()->GetVariableDataFormat(), VariableDataFormat::Binary);
}

TEST_F(OutputGroupTest, ReadsBackAsARun) {
  const auto group = Group1D<double>();
  group->AddVariableWithData("Power", "W", {1.5, -2.5});
  TabulonApi::WriteOutput(*group);
  const RunPtr run = Get("x");
  EXPECT_EQ(run->GetCalculationType(), static_cast<CalculationType>(1000));
  EXPECT_EQ(run->GetCalculationDescriptiveName(), "User-defined output");
  EXPECT_EQ(run->GetCompletionState(), CompletionState::Unknown);
  const auto variable = run->GetVariable1D<double>("Power");
  EXPECT_EQ(variable->GetData(), (std::vector<double>{1.5, -2.5}));
  EXPECT_EQ(variable->GetSIUnit(), "W");
}

template <class T>
class OutputRoundTripTest : public OutputGroupTest {};
using PublicTypes = ::testing::Types<float, double, int>;
TYPED_TEST_SUITE(OutputRoundTripTest, PublicTypes);

TYPED_TEST(OutputRoundTripTest, EachTypeAndFormatReadsBack) {
  using T = TypeParam;
  const std::vector<std::vector<T>> data = {{T(1), T(2), T(3)}, {T(-4), T(5), T(1000000)}};
  for (const auto format : {VariableDataFormat::Binary, VariableDataFormat::ASCII}) {
    const auto oneAxis = this->template Group1D<T>(Time(), format);
    oneAxis->AddVariableWithData("a", "m", data[0]);
    oneAxis->AddVariableWithData("b", "m", data[1]);
    TabulonApi::WriteOutput(*oneAxis);
    TabulonApi::ClearRuns();
    EXPECT_EQ(this->Get("x")->template GetVariable1D<T>("b")->GetData(), data[1]);

    const auto twoAxes = this->template Group2D<T>(Time(), Blade({"tip", "root"}), format);
    twoAxes->AddVariableWithData("a", "m", data);
    TabulonApi::WriteOutput(*twoAxes);
    TabulonApi::ClearRuns();
    const auto variable = this->Get("x")->template GetVariable2D<T>("a");
    EXPECT_EQ(variable->GetDataForAllIndependentVariableValues(), data);
  }
}

TEST_F(OutputGroupTest, NoVariablesRaises174AndCreateNothing) {
  IndependentVariable time = Time();
  const OutputGroup1D<float> group(Path("new/x.%01"), "Rotor", "UserDefined", "", time);
  EXPECT_EQ(MessageOf([&] { TabulonApi::WriteOutput(group); }),
            "Sumara Tables error: Output group contains no variables and cannot be written.\n"
            "Further information: File path: " +
                Path("new/Rotor"));
  EXPECT_EQ(FilesOnDisk(), "");
}

TEST_F(OutputGroupTest, VariablesWithoutDataAreWritten) {
  const auto group = Group1D<float>();
  group->AddVariable("a", "m");
  EXPECT_TRUE(TabulonApi::WriteOutput(*group));
  EXPECT_NE(Read("x.%01").find("\nDIMENS\t1\t0\n"), std::string::npos);
  EXPECT_EQ(Read("x.$01"), "");
}

TEST_F(OutputGroupTest, AnExistingHeaderIsKept) {
  m_directory.Write("x.%01", "header");
  m_directory.Write("x.$01", "data");
  m_directory.Write("x.$TE", "end");
  const auto group = Group1D<float>();
  group->AddVariableWithData("a", "m", {1});
  EXPECT_FALSE(TabulonApi::WriteOutput(*group, kKeep));
  EXPECT_EQ(Read("x.%01") + Read("x.$01") + Read("x.$TE"), "headerdataend");
  EXPECT_EQ(FilesOnDisk(), "x.$01 x.$TE x.%01 ");
}

TEST_F(OutputGroupTest, OnlyTheHeaderIsLookedAt) {
  m_directory.Write("x.$01", "data");
  m_directory.Write("x.$TE", "Run completed\n");
  const auto group = Group1D<float>();
  group->AddVariableWithData("a", "m", {1});
  EXPECT_TRUE(TabulonApi::WriteOutput(*group, kKeep));
  EXPECT_EQ(Read("x.$01"), Bytes<float>({1}));
  EXPECT_EQ(Read("x.$TE"), "Run completed\n");
  EXPECT_TRUE(TabulonApi::WriteOutput(*group));
  EXPECT_EQ(Read("x.$TE"), "User-generated output group 'x.%01'\n");
}

TEST_F(OutputGroupTest, WithoutTerminationFileThereIsNoRun) {
  const auto group = Group1D<float>();
  group->AddVariableWithData("a", "m", {1});
  group->SetTEFileCreation(TEFileCreation::DoNotCreate);
  EXPECT_TRUE(TabulonApi::WriteOutput(*group));
  EXPECT_EQ(FilesOnDisk(), "x.$01 x.%01 ");
  EXPECT_EQ(MessageOf([&] { Get("x"); }),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("x.$TE"));
}

TEST_F(OutputGroupTest, DirectoriesAreMade) {
  IndependentVariable time = Time();
  OutputGroup1D<float> group(Path("deep/down/y.%12"), "Rotor", "UserDefined", "", time);
  group.AddVariableWithData("a", "m", {1});
  EXPECT_TRUE(TabulonApi::WriteOutput(group));
  EXPECT_EQ(Read("deep/down/y.$12"), Bytes<float>({1}));
  EXPECT_EQ(Read("deep/down/y.$TE"), "User-generated output group 'y.%12'\n");
}

TEST_F(OutputGroupTest, ABareFileNameIsOfTheWorkingDirectory) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(m_directory.Path());
  IndependentVariable time = Time();
  OutputGroup1D<float> group("bare.%01", "Rotor", "UserDefined", "", time);
  group.AddVariableWithData("a", "m", {1});
  const bool written = TabulonApi::WriteOutput(group);
  std::filesystem::current_path(before);
  EXPECT_TRUE(written);
  EXPECT_EQ(FilesOnDisk(), "bare.$01 bare.$TE bare.%01 ");
  EXPECT_EQ(group.GetDataFilePath(), "./bare.$01");
}

TEST_F(OutputGroupTest, GroupsOfOneRunShareTheTerminationFile) {
  const auto first = Group1D<float>();
  first->AddVariableWithData("a", "m", {1});
  TabulonApi::WriteOutput(*first);
  IndependentVariable time = Time();
  OutputGroup1D<double> second(Path("x.%02"), "Gearbox", "UserDefined", "", time);
  second.AddVariableWithData("b", "m", {2});
  EXPECT_TRUE(TabulonApi::WriteOutput(second, kKeep));
  EXPECT_EQ(Read("x.$TE"), "User-generated output group 'x.%01'\n");
  EXPECT_TRUE(TabulonApi::WriteOutput(second));
  EXPECT_EQ(Read("x.$TE"), "User-generated output group 'x.%02'\n");
  EXPECT_EQ(Get("x")->GetVariable1D<float>("a")->GetData(), std::vector<float>{1});
  EXPECT_EQ(Get("x")->GetVariable1D<double>("b")->GetData(), std::vector<double>{2});
}

TEST_F(OutputGroupTest, GrowsAfterAWrite) {
  const auto group = Group1D<float>();
  group->AddVariableWithData("a", "m", {1, 2});
  TabulonApi::WriteOutput(*group);
  group->AppendData("A", {3});
  group->AddVariableWithData("b", "s", {4, 5, 6});
  TabulonApi::WriteOutput(*group);
  EXPECT_EQ(Read("x.$01"), Bytes<float>({1, 4, 2, 5, 3, 6}));
  EXPECT_NE(Read("x.%01").find("DIMENS\t2\t3\n"), std::string::npos);
}

TEST_F(OutputGroupTest, UnitsWithoutACodeStandAsGiven) {
  const auto group = Group1D<float>();
  group->AddVariable("a", "kgm\xB2");
  group->AddVariable("b", "furlong");
  group->AddVariable("c", "two words");
  group->AddVariable("d", "Unitless");
  TabulonApi::WriteOutput(*group);
  EXPECT_NE(Read("x.%01").find("VARUNIT\tMLL furlong 'two words' Unitless\n"), std::string::npos);
}

TEST_F(OutputGroupTest, BadNamesRaise175) {
  const auto group = Group1D<float>();
  for (const std::string name : {"", " \t", "a\nb"}) {
    EXPECT_EQ(MessageOf([&] { group->AddVariable(name, "m"); }),
              "Sumara Tables error: Variable name invalid.\n"
              "Inner exception: Sumara Tables error: Series name must not be empty, must contain "
              "at least one non-whitespace character, and must not contain carriage return or line "
              "feed characters.\nFurther information: Series name: '" +
                  name + "'");
  }
}

TEST_F(OutputGroupTest, BadUnitsRaise176) {
  const auto group = Group2D<float>(Time(), Time());
  EXPECT_EQ(MessageOf([&] { group->AddVariable("a", ""); }),
            "Sumara Tables error: Variable unit invalid.\n"
            "Inner exception: Sumara Tables error: Series quantity code must not be empty, must "
            "contain at least one non-whitespace character, and must not contain carriage return "
            "or line feed characters.\nFurther information: Series name: 'a'");
}

TEST_F(OutputGroupTest, ATakenNameIsRefused) {
  const auto group = Group1D<float>();
  group->AddVariable("Rotor", "m");
  EXPECT_EQ(MessageOf([&] { group->AddVariable("ROTOR", "m"); }),
            "Sumara Tables error: Adding series with the same name as an existing series (case "
            "insensitive) is not allowed.\nFurther information: " +
                Context());
}

TEST_F(OutputGroupTest, VectorOfTheCallersOwnStaysItsOwn) {
  const auto group = Group1D<float>();
  group->AddVariable("a", "m");
  const std::vector<float> kept = {1, 2};
  group->AddVariableWithData("b", "m", kept);
  group->AppendData("a", kept);
  std::vector<float> given = kept;
  group->AppendData("a", std::move(given));
  EXPECT_EQ(kept, (std::vector<float>{1, 2}));
  group->AddVariableWithData("c", "m", std::vector<float>{3, 4, 5, 6});
  group->AppendData("b", {3, 4});
  TabulonApi::WriteOutput(*group);
  const auto run = Get("x");
  EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (std::vector<float>{1, 2, 1, 2}));
  EXPECT_EQ(run->GetVariable1D<float>("b")->GetData(), (std::vector<float>{1, 2, 3, 4}));
  EXPECT_EQ(run->GetVariable1D<float>("c")->GetData(), (std::vector<float>{3, 4, 5, 6}));
}

TEST_F(OutputGroupTest, UnknownVariableRaises159) {
  const auto group = Group1D<float>();
  EXPECT_EQ(MessageOf([&] { group->AppendData("a", {1}); }),
            "Sumara Tables error: The variable was not found.\n"
            "Further information: Group name: 'Rotor'; Variable name requested: 'a'\n"
            "Inner exception: Sumara Tables error: Requested series not found in current group.\n"
            "Further information: " +
                Context());
}

TEST_F(OutputGroupTest, EmptyDataRaises13) {
  const auto group = Group1D<float>();
  const std::string refusal =
      "Sumara Tables error: Series input data empty.\nFurther information: " + SeriesContext("a");
  EXPECT_EQ(MessageOf([&] { group->AddVariableWithData("a", "m", {}); }), refusal);
  EXPECT_EQ(MessageOf([&] { group->AppendData("a", {}); }), refusal);
  const auto twoAxes = Group2D<float>(Time(), Blade({"tip"}));
  EXPECT_EQ(MessageOf([&] { twoAxes->AddVariableWithData("a", "m", {}); }), refusal);
}

TEST_F(OutputGroupTest, LabelsBoundTheNumberOfPoints) {
  const auto group = Group1D<float>(Radius({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  group->AddVariableWithData("a", "m", {1, 2, 3, 4});
  const std::string refusal =
      "Sumara Tables error: Series data being appended must contain no more than one data point "
      "for each primary axis label.\nFurther information: " +
      SeriesContext("a") +
      "; number of primary axis labels = 10; number of incoming data points = 7; number of "
      "resulting points = 11";
  EXPECT_EQ(MessageOf([&] { group->AppendData("a", std::vector<float>(7)); }), refusal);
  EXPECT_EQ(group->AddVariable("b", "m")->GetData().size(), 0u);
  group->AppendData("a", std::vector<float>(6));
  EXPECT_EQ(MessageOf([&] { TabulonApi::WriteOutput(*group); }),
            "Sumara Tables error: Asymmetric group cannot be serialised; only symmetric groups may "
            "be serialised.\nFurther information: " +
                Context());
}

TEST_F(OutputGroupTest, TwoAxesCheckTheShapeOfTheData) {
  const auto labelled = Group2D<float>(Radius({1, 2}), Blade({"tip", "root"}));
  EXPECT_EQ(MessageOf([&] { labelled->AddVariableWithData("a", "m", {{1}}); }),
            "Sumara Tables error: Series input data must contain exactly one vector of data points "
            "for each secondary axis label.\nFurther information: " +
                SeriesContext("a"));
  EXPECT_EQ(MessageOf([&] {
              labelled->AppendData("a", {{1}, {1, 2}});
            }),
            "Sumara Tables error: Each series in group must contain the same number of data points "
            "when series use a primary labelled axis, or when data is being written "
            "incrementally.\nFurther information: " +
                SeriesContext("a") +
                "; number of points expected for consistency across series = 1; number of points "
                "provided for secondary axis index 1 = 2");
  labelled->AppendData("a", {{1, 2}, {3, 4}});
  EXPECT_EQ(MessageOf([&] {
              labelled->AppendData("a", {{1}, {1}});
            }),
            "Sumara Tables error: Series data being appended must contain no more than one data "
            "point for each primary axis label.\nFurther information: " +
                SeriesContext("a") +
                "; number of primary axis labels = 2; number of incoming data points = 1; number "
                "of resulting points = 3");
  TabulonApi::WriteOutput(*labelled);
  EXPECT_EQ(Read("x.$01"), Bytes<float>({1, 3, 2, 4}));
}

TEST_F(OutputGroupTest, AShorterInnerVectorIsRefusedAndChangesNothing) {
  const auto group = Group2D<float>(Time(), Blade({"tip", "root"}));
  EXPECT_EQ(MessageOf([&] {
              group->AddVariableWithData("a", "m", {{1, 2, 3}, {1}});
            }),
            "Sumara Tables error: Each series in group must contain the same number of data points "
            "when series use a primary labelled axis, or when data is being written "
            "incrementally.\nFurther information: " +
                SeriesContext("a") +
                "; number of points expected for consistency across series = 3; number of points "
                "provided for secondary axis index 1 = 1");
  group->AppendData("a", {{1}, {2}});
  TabulonApi::WriteOutput(*group);
  EXPECT_EQ(Read("x.$01"), Bytes<float>({1, 2}));
}

TEST_F(OutputGroupTest, BadTextsOfTheGroupPassThrough) {
  IndependentVariable time = Time();
  const auto refusal = [&](const std::string& path, const std::string& name,
                           const std::string& source, const std::string& config) {
    return MessageOf([&] { OutputGroup1D<float>(path, name, source, config, time); });
  };
  const std::string rule =
      " must not be empty, must contain at least one non-whitespace character, and must not "
      "contain carriage return or line feed characters.\nFurther information: File path: ";
  EXPECT_EQ(refusal(Path("x.%01"), "", "UserDefined", ""),
            "Sumara Tables error: Group name (GENLAB)" + rule + Path(""));
  EXPECT_EQ(refusal(Path("x.%01"), "Rotor", "UserDefined", "a\nb"),
            "Sumara Tables error: Group config (CONFIG) must not contain carriage return or "
            "line feed characters.\nFurther information: " +
                Context());
  EXPECT_EQ(refusal(Path("x.%01"), "Rotor", " ", ""),
            "Sumara Tables error: Group data source (CONTENT)" + rule + Path("Rotor"));
  EXPECT_EQ(refusal("", "Rotor", "UserDefined", ""),
            "Sumara Tables error: Group path not specified. The path may be relative or absolute, "
            "and should always contain at least the group file name. The file name extension must "
            "be of the form %n, where n is a positive integer with an upper limit of "
            "18446744073709551615.\nFurther information: Group name: 'Rotor'");
  EXPECT_EQ(refusal(Path("x.txt"), "Rotor", "UserDefined", ""),
            "Sumara Tables error: File extension invalid: The file name extension must be of the "
            "form %n, where n is a positive integer with an upper limit of 18446744073709551615."
            "\nFurther information: File path: " +
                Path("x.txt"));
}

TEST_F(OutputGroupTest, IndependentVariablesCountInTheGroup) {
  IndependentVariable time = Time();
  IndependentVariable step("Step", "m", 1.0, 1.0);
  EXPECT_EQ(time.GetNumberOfValues(), 0u);
  OutputGroup2D<float> group(Path("x.%01"), "Rotor", "UserDefined", "", time, step);
  group.AddVariableWithData("a", "m", {{1, 2, 3}, {4, 5, 6}});
  EXPECT_EQ(time.GetNumberOfValues(), 3u);
  EXPECT_EQ(step.GetNumberOfValues(), 2u);
  EXPECT_EQ(time.GetValuesAsNumber(), (std::vector<double>{0, 0.5, 1}));
  EXPECT_EQ(step.GetValuesAsNumber(), (std::vector<double>{1, 2}));
  TabulonApi::WriteOutput(group);
  group.AppendData("a", {{7}, {8}});
  TabulonApi::WriteOutput(group);
  EXPECT_EQ(time.GetValuesAsNumber(), (std::vector<double>{0, 0.5, 1, 1.5}));
}

TEST_F(OutputGroupTest, AnIndependentVariableOutlivesItsGroup) {
  IndependentVariable time = Time();
  {
    OutputGroup1D<float> group(Path("x.%01"), "Rotor", "UserDefined", "", time);
    group.AddVariableWithData("a", "m", {1, 2});
  }
  EXPECT_EQ(time.GetValuesAsNumber(), (std::vector<double>{0, 0.5}));
}

TEST_F(OutputGroupTest, TheAxisOfARunStaysAsItIs) {
  const auto source = Group2D<float>(Time(), Radius({1, 2}));
  source->AddVariableWithData("a", "m", {{1, 2, 3}, {4, 5, 6}});
  TabulonApi::WriteOutput(*source);
  const RunPtr run = Get("x");
  const GroupPtr rotor = run->GetGroup("Rotor");
  {
    const auto axes = run->GetVariable2D<float>("a")->GetIndependentVariables();
    // In the other order, so that each axis gets another position.
    OutputGroup2D<float> copy(Path("y.%01"), "Copy", "UserDefined", "", *axes[1], *axes[0]);
    copy.AddVariableWithData("b", "m", {{1, 2}});
    TabulonApi::WriteOutput(copy);
  }
  EXPECT_NE(Read("y.%01").find("DIMENS\t1\t1\t2\n"), std::string::npos);
  const auto time = rotor->GetIndependentVariable("Time");
  const auto radius = rotor->GetIndependentVariable("Radius");
  EXPECT_EQ(time->GetNumberOfValues(), 3u);
  EXPECT_EQ(time->GetValuesAsNumber(), (std::vector<double>{0, 0.5, 1}));
  EXPECT_EQ(radius->GetNumberOfValues(), 2u);
}

TEST_F(OutputGroupTest, OtherSpecificationsRaise173) {
  class Other : public IOutputSpecification {
    std::string GetPath() const override { return "x.%01"; }
    FileFormat GetFileFormat() const override { return FileFormat::Tolvan; }
  };
  EXPECT_EQ(MessageOf([] { TabulonApi::WriteOutput(Other()); }),
            "Sumara Tables error: File format is not supported by the Tabulon API.\n"
            "Further information: File path: x.%01");
}

TEST_F(OutputGroupTest, FilesThatDoNotOpenFailTheStream) {
  const auto group = Group1D<float>();
  group->AddVariableWithData("a", "m", {1});
  m_directory.MakeDirectory("x.$01");
  EXPECT_EQ(MessageOf([&] { TabulonApi::WriteOutput(*group); }),
            "ios_base::failbit set: " + Path("x.$01") + ": Is a directory");
  EXPECT_NE(Read("x.%01").find("DIMENS\t1\t1\n"), std::string::npos);
  EXPECT_EQ(FilesOnDisk(), "x.$01 x.%01 ");
  std::filesystem::remove(Path("x.%01"));
  m_directory.MakeDirectory("x.%01");
  EXPECT_EQ(MessageOf([&] { TabulonApi::WriteOutput(*group); }),
            "ios_base::failbit set: " + Path("x.%01") + ": Is a directory");
}

TEST_F(OutputGroupTest, AParentThatIsAFileRaises5028) {
  m_directory.Write("file", "");
  IndependentVariable time = Time();
  OutputGroup1D<float> group(Path("file/x.%01"), "Rotor", "UserDefined", "", time);
  group.AddVariableWithData("a", "m", {1});
  EXPECT_EQ(MessageOf([&] { TabulonApi::WriteOutput(group); }),
            "IO error 5028: Failed to create directory - check permissions, and ensure path does "
            "not contain illegal characters\nIf using an absolute path, check the volume or drive "
            "mapping is valid.\nIf using a UNC path, ensure the server name is correct and the "
            "server is available.\nFurther information: Directory: " +
                Path("file/") +
                "\nInner exception: filesystem error: cannot create directories: File exists [" +
                Path("file/") + "]");
}

TEST_F(OutputGroupTest, AnIntervalAxisTakesAnyNumberOfPoints) {
  const auto group = Group1D<int>();
  for (const std::size_t count : {1u, 1000u, 7u}) {
    if (count == 1) group->AddVariable("a", "m");
    group->AppendData("a", std::vector<int>(count, 5));
  }
  EXPECT_TRUE(TabulonApi::WriteOutput(*group));
  EXPECT_EQ(Get("x")->GetVariable1D<int>("a")->GetData(), std::vector<int>(1008, 5));
}

TEST_F(OutputGroupTest, AFailureHalfWayLeavesWhatWasWritten) {
  constexpr std::size_t kLimit = 20'000;
  const auto group = Group1D<float>();
  std::vector<float> points(100'000);
  for (std::size_t i = 0; i < points.size(); ++i) points[i] = static_cast<float>(i);
  group->AddVariableWithData("a", "m", points);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit{kLimit, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  const std::string message = MessageOf([&] { TabulonApi::WriteOutput(*group); });
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(message, "ios_base::badbit set: " + Path("x.$01") + ": File too large");
  EXPECT_TRUE(Read("x.$01") == Bytes(points).substr(0, kLimit));
  EXPECT_TRUE(Read("x.%01").ends_with("NVARS\t0\n"));
  EXPECT_EQ(FilesOnDisk(), "x.$01 x.%01 ");
}

}  // namespace
