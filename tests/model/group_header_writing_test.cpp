#include <gtest/gtest.h>

#include "model/group_writer.h"
#include "tests/model/written_group.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"

namespace {

using namespace Sumara;
using namespace testing_support;

class WriteHeaderTest : public ::testing::Test {
 protected:
  std::string Path() const { return m_directory.Path("run.%01"); }
  std::string Context() const { return "File path: " + m_directory.Path("Rotor"); }
  std::string Header(const std::shared_ptr<IGroup>& group) const {
    return HeaderOf(m_directory, group, /*withoutStatistics=*/true);
  }
  std::string HeaderWithStatistics(const std::shared_ptr<IGroup>& group) const {
    return HeaderOf(m_directory, group, /*withoutStatistics=*/false);
  }

  TempDirectory m_directory;
};

constexpr const char* kTimeBlock =
    "AXISLAB\t'Time'\n"
    "AXIUNIT\tT\n"
    "AXIMETH\t2\n"
    "MIN \t0.0000000E+00\n"
    "STEP\t5.0000000E-01\n";

TEST_F(WriteHeaderTest, OneAxis) {
  const auto group = Group1D<float>(Path());
  AddSeries<float>(*group, "Rotor speed", {3, 1}, "A/T");
  AddSeries<float>(*group, "P", {5, -2}, "my unit");
  EXPECT_EQ(Header(group), std::string("FILE\trun.$01\n"
                                       "ACCESS\tD\n"
                                       "FORM\tF\n"
                                       "RECL\t4\n"
                                       "FORMAT\tR*4\n"
                                       "CONTENT\t'UserDefined'\n"
                                       "CONFIG\t'TRANSIENT'\n"
                                       "NDIMENS\t2\n"
                                       "DIMENS\t2\t2\n"
                                       "GENLAB\t'Rotor'\n"
                                       "VARIAB\t'Rotor speed' 'P'\n"
                                       "VARUNIT\tA/T 'my unit'\n") +
                               kTimeBlock + "NVARS\t0\n");
}

TEST_F(WriteHeaderTest, TwoAxesSecondaryFirst) {
  const auto group = Group2D<double>(Path(), /*binary=*/false, TimeAxis(-1, 0.1),
                                     StringAxis({"tip", "mid span", "root"}));
  AddSeries<double>(*group, "a", {{1, 2}, {3, 4}, {5, 6}});
  EXPECT_EQ(Header(group),
            "FILE\trun.$01\n"
            "ACCESS\tS\n"
            "FORM\tF\n"
            "RECL\t8\n"
            "FORMAT\tR*8\n"
            "CONTENT\t'UserDefined'\n"
            "CONFIG\t'TRANSIENT'\n"
            "NDIMENS\t3\n"
            "DIMENS\t1\t3\t2\n"
            "GENLAB\t'Rotor'\n"
            "VARIAB\t'a'\n"
            "VARUNIT\tL\n"
            "AXISLAB\t'Blade'\n"
            "AXIUNIT\tN\n"
            "AXIMETH\t1\n"
            "AXITICK\t'tip' 'mid span' 'root'\n"
            "AXISLAB\t'Time'\n"
            "AXIUNIT\tT\n"
            "AXIMETH\t2\n"
            "MIN \t-1.000000000000000E+00\n"
            "STEP\t1.000000000000000E-01\n"
            "NVARS\t0\n");
}

TEST_F(WriteHeaderTest, EachKindOfAxisInEachPosition) {
  const struct {
    std::shared_ptr<CAxisBase> axis;
    std::string block;
  } kinds[] = {
      {TimeAxis(), kTimeBlock},
      {ValueAxis({0.5, -2.25}),
       "AXISLAB\t'Radius'\nAXIUNIT\tL\nAXIMETH\t3\nAXIVAL\t0.5000000 -2.2500000\n"},
      {StringAxis({"tip", "root"}),
       "AXISLAB\t'Blade'\nAXIUNIT\tN\nAXIMETH\t1\nAXITICK\t'tip' 'root'\n"},
  };
  for (const auto& primary : kinds) {
    const auto oneAxis = Group1D<float>(Path(), /*binary=*/true, primary.axis);
    AddSeries<float>(*oneAxis, "a", {1, 2});
    const std::string header = Header(oneAxis);
    EXPECT_EQ(header.substr(header.find("AXISLAB")), primary.block + "NVARS\t0\n");
    EXPECT_NE(header.find("\nNDIMENS\t2\nDIMENS\t1\t2\n"), std::string::npos);
    for (const auto& secondary : kinds) {
      const auto twoAxes = Group2D<float>(Path(), /*binary=*/true, primary.axis, secondary.axis);
      AddSeries<float>(*twoAxes, "a", {{1}, {2}});
      const std::string both = Header(twoAxes);
      EXPECT_EQ(both.substr(both.find("AXISLAB")), secondary.block + primary.block + "NVARS\t0\n");
      EXPECT_NE(both.find("\nNDIMENS\t3\nDIMENS\t1\t2\t1\n"), std::string::npos);
    }
  }
}

TEST_F(WriteHeaderTest, NamedParametersStandAsTheyAre) {
  const auto group = Group1D<float>(Path());
  group->AddOptionalVariables({"HUBHEIGHT\t80", "  'text' "});
  AddSeries<float>(*group, "a", {1});
  EXPECT_TRUE(Header(group).ends_with("NVARS\t2\nHUBHEIGHT\t80\n  'text' \n"));
}

TEST_F(WriteHeaderTest, DataFileNameIsAsGivenOrFollowsTheHeader) {
  const auto firstLine = [&](const std::shared_ptr<IGroup>& group) {
    const std::string header = Header(group);
    return header.substr(0, header.find('\n'));
  };
  EXPECT_EQ(firstLine(Group1D<float>(m_directory.Path("50%load.%12"))), "FILE\t50$load.$12");
  GroupDescription description = Described(Path(), /*binary=*/true);
  description.dataFileName = "elsewhere.dat";
  EXPECT_EQ(firstLine(std::make_shared<CGroup1D<float>>(description, TimeAxis())),
            "FILE\telsewhere.dat");
}

TEST_F(WriteHeaderTest, TargetTypeDecidesFormatAndDigits) {
  const struct {
    std::uint32_t target;
    const char* lines;
    const char* step;
  } table[] = {
      {0, "RECL\t4\nFORMAT\tR*4\n", "STEP\t5.0000000E-01\n"},
      {1, "RECL\t4\nFORMAT\tR*4\n", "STEP\t5.0000000E-01\n"},
      {2, "RECL\t8\nFORMAT\tR*8\n", "STEP\t5.000000000000000E-01\n"},
      {3, "RECL\t2\nFORMAT\tI*2\n", "STEP\t5.0000000E-01\n"},
      {4, "RECL\t4\nFORMAT\tI*4\n", "STEP\t5.0000000E-01\n"},
      {5, "RECL\t8\nFORMAT\tI*8\n", "STEP\t5.0000000E-01\n"},
      {9, "RECL\t4\nFORMAT\tR*4\n", "STEP\t5.0000000E-01\n"},
  };
  for (const auto& [target, lines, step] : table) {
    const auto group = Group1D<float>(Path());
    group->SetTargetType(target);
    EXPECT_NE(Header(group).find(lines), std::string::npos) << target;
    EXPECT_NE(Header(group).find(step), std::string::npos) << target;
  }
}

TEST_F(WriteHeaderTest, GroupOfEmptySeriesHasNoPoints) {
  const auto group = Group1D<float>(Path());
  AddSeries<float>(*group, "a");
  AddSeries<float>(*group, "b");
  EXPECT_NE(HeaderWithStatistics(group).find("DIMENS\t2\t0\n"), std::string::npos);
  EXPECT_TRUE(HeaderWithStatistics(group).ends_with("NVARS\t0\n"));
}

TEST_F(WriteHeaderTest, LabelledPrimaryAxisCountsTheDataInDimens) {
  const auto group = Group1D<float>(Path(), /*binary=*/true, ValueAxis({1, 2, 3, 4}));
  AddSeries<float>(*group, "a", {7, 8});
  EXPECT_NE(Header(group).find("DIMENS\t1\t2\n"), std::string::npos);
}

TEST_F(WriteHeaderTest, StatisticsOfOneAxis) {
  const auto group = Group1D<float>(Path());
  AddSeries<float>(*group, "a", {3, 7, 7, -1});
  AddSeries<float>(*group, "b", {-2, 0, 4, 8});
  const std::string header = HeaderWithStatistics(group);
  EXPECT_EQ(header.substr(header.find("NVARS")),
            "NVARS\t0\n"
            "ULOADS   7.0000000E+00   0.0000000E+00\n"
            "  -1.0000000E+00   8.0000000E+00\n"
            "  -1.0000000E+00   8.0000000E+00\n"
            "   3.0000000E+00  -2.0000000E+00\n"
            "MAXTIME 0 1\n"
            "MINTIME 1 0\n"
            "MEAN   4.0000000E+00   2.5000000E+00\n");
  EXPECT_EQ(header, Header(group) + header.substr(header.find("ULOADS")));
}

TEST_F(WriteHeaderTest, StatisticsOfEachSecondaryValue) {
  const auto group = Group2D<int>(Path(), /*binary=*/true, StringAxis({"x", "y", "z"}), TimeAxis());
  AddSeries<int>(*group, "a", {{1, -5, 2}, {4, 6, 5}});
  const std::string header = HeaderWithStatistics(group);
  EXPECT_EQ(header.substr(header.find("NVARS")),
            "NVARS\t0\n"
            "ULOADS   2\n"
            "  -5\n"
            "MAXTIME 2\n"
            "MINTIME 1\n"
            "MEAN  -6.6666667E-01\n"
            "ULOADS   6\n"
            "   4\n"
            "MAXTIME 1\n"
            "MINTIME 0\n"
            "MEAN   5.0000000E+00\n");
}

TEST_F(WriteHeaderTest, StatisticsOfDoublesHave15Digits) {
  const auto group = Group1D<double>(Path(), /*binary=*/true, ValueAxis({10.9, 20.9}));
  AddSeries<double>(*group, "a", {0.1, -0.25});
  const std::string header = HeaderWithStatistics(group);
  EXPECT_EQ(header.substr(header.find("ULOADS")),
            "ULOADS   1.000000000000000E-01\n"
            "  -2.500000000000000E-01\n"
            "MAXTIME 10\n"
            "MINTIME 20\n"
            "MEAN  -7.500000000000000E-02\n");
}

template <class T>
class HeaderStatsTest : public ::testing::Test {};
TYPED_TEST_SUITE(HeaderStatsTest, ElementTypes);

TYPED_TEST(HeaderStatsTest, EachTypeHasItsBlock) {
  const auto group = Group1D<TypeParam>("run.%01");
  AddSeries<TypeParam>(*group, "a", {TypeParam(2), TypeParam(-4)});
  const std::string text = GetHeaderStats({group});
  const bool isReal = std::is_floating_point_v<TypeParam>;
  const std::string zeros =
      std::is_same_v<TypeParam, double> ? ".000000000000000E+00" : ".0000000E+00";
  const std::string tail = isReal ? zeros : "";
  EXPECT_EQ(text, "ULOADS   2" + tail + "\n  -4" + tail + "\nMAXTIME 0\nMINTIME 0\nMEAN  -1" +
                      zeros + "\n");
}

TEST_F(WriteHeaderTest, PreviewsAndGroupsFromDiskAreWritten) {
  const auto group = Group1D<float>(Path());
  group->SetSeriesNames({"a", "b"}, {"L", "two words"});
  group->SetDeserialised();
  group->GetAxis(kPrimary, /*mustExist=*/true)->SetNumberOfPoints(12);
  for (const PreviewMode mode : {PreviewMode::kFull, PreviewMode::kWithoutStatistics}) {
    group->SetPreviewMode(mode);
    const std::string header = HeaderWithStatistics(group);
    EXPECT_EQ(header.substr(header.find("DIMENS\t2\t")), std::string("DIMENS\t2\t12\n"
                                                                     "GENLAB\t'Rotor'\n"
                                                                     "VARIAB\t'a' 'b'\n"
                                                                     "VARUNIT\tL 'two words'\n") +
                                                             kTimeBlock + "NVARS\t0\n");
  }
}

TEST_F(WriteHeaderTest, EmptyHolderRaises63) {
  const GroupHolder empty;
  OutputFile file(Path());
  const auto refusal = [](const std::string& context) {
    return "Sumara Tables error: Group object is null.\nFurther information: " + context;
  };
  EXPECT_EQ(MessageOf([&] { WriteHeader(empty, file, true); }), refusal("WriteHeader"));
  EXPECT_EQ(MessageOf([&] { Write<float>(empty, file, true); }),
            refusal("Attempt to invoke Write statically"));
  EXPECT_EQ(MessageOf([&] { GetRecordLength(empty); }), refusal("GetRecordLength"));
  EXPECT_EQ(MessageOf([&] { GetDataFormat(empty); }), refusal("GetDataFormat"));
  EXPECT_EQ(MessageOf([&] { GetDimens(empty); }), refusal("GetDimens"));
  EXPECT_EQ(MessageOf([&] { GetHeaderStats(empty); }), refusal("GetHeaderStats"));
  EXPECT_EQ(MessageOf([&] { GetLabelledAxisHeader(empty, 0); }), refusal("GetLabelledAxisHeader"));
  EXPECT_EQ(MessageOf([&] { CheckSerialisable(empty); }), refusal("CheckSerialisable"));
  EXPECT_EQ(MessageOf([&] { UpdateAxisPointCounts(empty); }), refusal("UpdateAxisPointCounts"));
}

TEST_F(WriteHeaderTest, PartsOfTheHeader) {
  const auto group =
      Group2D<Long>(Path(), /*binary=*/true, StringAxis({"x", "y"}), ValueAxis({1.5}));
  AddSeries<Long>(*group, "a", {{Long(1)}});
  const GroupHolder holder{group};
  EXPECT_EQ(GetRecordLength(holder), 8);
  EXPECT_EQ(GetDataFormat(holder), "I*8");
  EXPECT_EQ(GetDimens(holder), "1\t1\t1");
  EXPECT_EQ(GetLabelledAxisHeader(holder, 0),
            "AXISLAB\t'Blade'\nAXIUNIT\tN\nAXIMETH\t1\nAXITICK\t'x' 'y'\n");
  EXPECT_EQ(GetLabelledAxisHeader(holder, 1),
            "AXISLAB\t'Radius'\nAXIUNIT\tL\nAXIMETH\t3\nAXIVAL\t1.5000000\n");
}

TEST_F(WriteHeaderTest, AFailureLeavesTheLinesBeforeIt) {
  const auto group = Group1D<float>(Path());
  AddSeries<float>(*group, "a");
  group->SetIncrementalMode(1);  // which asks for statistics that are not there yet
  EXPECT_EQ(MessageOf([&] { HeaderWithStatistics(group); }),
            "Sumara Tables error: Axis index not found - unable to return corresponding axis "
            "value.\nFurther information: Axis name: 'Time'; axis index: 0");
  EXPECT_EQ(m_directory.Read("header"), Header(group));
}

}  // namespace
