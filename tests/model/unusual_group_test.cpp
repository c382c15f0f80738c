// What the model says of groups that no file and no script leads to.

#include "tests/model/unusual_group.h"

#include <gtest/gtest.h>

#include "model/group_writer.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::CSeries1D;
using Sumara::GroupHolder;
using Sumara::OutputFile;
using testing_support::Interval;
using testing_support::MessageOf;
using testing_support::TempDirectory;
using testing_support::UnusualGroup;

std::string Refusal(const std::string& text) {
  return "Sumara Tables error: " + text + ".\nFurther information: File path: ./Loads";
}

std::shared_ptr<UnusualGroup> GroupWithData() {
  auto group = std::make_shared<UnusualGroup>();
  group->AddAxis(Interval(), Sumara::kPrimary);
  const auto series = std::make_shared<CSeries1D<float>>("Mx", "FL");
  group->AddSeries(series, /*renameOnClash=*/false);
  series->AddSeriesPoints(std::vector<float>{1, 2}, /*check=*/true);
  return group;
}

TEST(UnusualGroupTest, SeriesNeedAnAxis) {
  UnusualGroup group;
  const auto series = std::make_shared<CSeries1D<float>>("Mx", "FL");
  EXPECT_EQ(MessageOf([&] { group.AddSeries(series, /*renameOnClash=*/false); }),
            Refusal("A group must contain an axis before a series can be added"));
  EXPECT_EQ(group.GetNumberOfSeries(), 0u);
  EXPECT_EQ(series->GetGroup(), nullptr);
}

TEST(UnusualGroupTest, StatisticsNeedAnAxisOnceThereIsData) {
  UnusualGroup group;
  EXPECT_EQ(MessageOf([&] { group.CheckStatisticsAvailable(0); }),
            Refusal("Cannot get statistics for a group that does not contain data"));
  group.SetPreviewMode(Sumara::PreviewMode::kWithoutStatistics);
  EXPECT_EQ(MessageOf([&] { group.CheckStatisticsAvailable(0); }),
            Refusal("No axes found in current group"));
}

TEST(UnusualGroupTest, StatisticsOfAHeaderNeedTheClassOfTheStatedType) {
  const auto group = GroupWithData();
  EXPECT_EQ(Sumara::GetHeaderStats({group}).substr(0, 6), "ULOADS");
  group->statedType = Sumara::kDoubleCode;
  EXPECT_EQ(MessageOf([&] { Sumara::GetHeaderStats({group}); }),
            Refusal("Group type does not correspond to data type"));
  for (const std::uint32_t type : {0u, 6u}) {
    group->statedType = type;
    EXPECT_EQ(MessageOf([&] { Sumara::GetHeaderStats({group}); }),
              Refusal("Unsupported data type"));
  }
}

TEST(UnusualGroupTest, FormatNeedsAKnownType) {
  const auto group = GroupWithData();
  group->statedType = 6;
  const std::string unknown = Refusal("Invalid data type used to create a group");
  EXPECT_EQ(MessageOf([&] { Sumara::GetRecordLength({group}); }), unknown);
  EXPECT_EQ(MessageOf([&] { Sumara::GetDataFormat({group}); }), unknown);
  group->SetTargetType(Sumara::kShortCode);
  EXPECT_EQ(Sumara::GetRecordLength({group}), 2);
  EXPECT_EQ(Sumara::GetDataFormat({group}), "I*2");
}

TEST(UnusualGroupTest, DataNeedsOneOfTheTwoClasses) {
  const TempDirectory directory;
  OutputFile file(directory.Path("data"));
  const GroupHolder holder{GroupWithData()};
  EXPECT_EQ(MessageOf([&] { Sumara::Write<float>(holder, file, /*check=*/true); }),
            Refusal("Group has invalid number of dimensions - must be 1D or 2D"));
  EXPECT_EQ(directory.Read("data"), "");
}

TEST(UnusualGroupTest, DataIsReadByAReaderOfTheGroupsTypeOnly) {
  UnusualGroup group;
  group.AddAxis(Interval(), Sumara::kPrimary);
  group.SetSeriesNames({"Mx"}, {"FL"});
  group.reader =
      Sumara::MakeGroupDataReader<double>(Sumara::kFloatCode, "run.$01", /*binary=*/true, {1, 2});
  EXPECT_EQ(MessageOf([&] { group.LoadSeries({0}, {0}, /*keepBuffer=*/true); }),
            Refusal("Data reader object is not of the correct type for the serialised group - "
                    "check header data format (FORMAT) value corresponds to data type"));
  EXPECT_EQ(group.GetSeries("Mx"), nullptr);
}

}  // namespace
