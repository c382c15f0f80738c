#include "model/group_data.h"

#include <gtest/gtest.h>

#include "model/series1d.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::CSeries1D;
using Sumara::GroupData;
using Sumara::ISeries;
using Sumara::kFloatCode;
using Sumara::SeriesTable;
using testing_support::MessageOf;
using testing_support::TempDirectory;

using Places = std::vector<std::size_t>;
using Points = std::vector<float>;

std::shared_ptr<ISeries> WaitingSeries(const std::string& name, const std::string& quantity) {
  auto series = std::make_shared<CSeries1D<float>>(name, quantity);
  series->SetLoadState(Sumara::LoadState::kWaiting);
  return series;
}

/// The data file of a group of two variables, and their table.
class GroupDataTest : public ::testing::Test {
 protected:
  GroupDataTest() { m_table.SetNames({"Mx", "My"}, {"FL", "FL"}); }

  void Write(const Points& words) { m_directory.WriteWords<float>("run.$01", words); }
  void Create(std::uint64_t points) {
    m_data.Create(/*binary=*/true, /*skipOpen=*/true, Path(), {2, points}, kFloatCode);
  }
  void Load(const Places& variables) {
    m_data.Load(m_data.Reader(), /*headerRecords=*/0, {variables, {0}, /*keepBuffer=*/true},
                m_table, WaitingSeries);
  }
  Points DataOf(std::size_t place) const {
    return static_cast<const CSeries1D<float>&>(*m_table.Series()[place]).GetData();
  }
  std::string Path() const { return m_directory.Path("run.$01"); }
  std::string Failure(const std::string& words) const {
    return "Sumara Tables error: " + words + ".\nFurther information: the group";
  }

  TempDirectory m_directory;
  SeriesTable m_table;
  GroupData<float> m_data{[] { return std::string("the group"); }};
};

TEST_F(GroupDataTest, NothingIsThereWithoutAReader) {
  const std::string failure = Failure(
      "Data reader object is null. For a group to read data files, the path to the binary should "
      "be passed to the constructor");
  EXPECT_EQ(MessageOf([&] { m_data.Reader(); }), failure);
  EXPECT_EQ(MessageOf([&] { m_data.PointCount(); }), failure);
  m_data.Reset();
  Create(3);
  EXPECT_EQ(m_data.Reader().GetPath(), Path());
  EXPECT_EQ(m_data.PointCount(), 3u);
  m_data.Close();
  EXPECT_EQ(MessageOf([&] { m_data.Reader(); }), failure);
}

TEST_F(GroupDataTest, AReaderNeedsATypeAndAPath) {
  const auto failure = [&](const std::string& path, std::uint32_t type) {
    return MessageOf([&] { m_data.Create(true, true, path, {1, 1}, type); });
  };
  for (const std::uint32_t type : {0u, 6u}) {
    EXPECT_EQ(failure("", type), Failure("Invalid data type used to create a group"));
  }
  EXPECT_EQ(failure("", kFloatCode), Failure("Data file path invalid"));
}

TEST_F(GroupDataTest, AnEmptyFileIsRefusedWhereTheHeaderTellsOfData) {
  Create(3);
  m_data.CheckNotEmpty();  // a file that is not there says so when it is read
  m_directory.Write("run.$01", "");
  EXPECT_EQ(MessageOf([&] { m_data.CheckNotEmpty(); }),
            "Sumara Tables error: Group data file empty when expecting to find data.\n"
            "Further information: expected 6 data points but data file was empty: File path: " +
                Path());
  Create(0);
  m_data.CheckNotEmpty();
}

TEST_F(GroupDataTest, CountsThatTheFileCannotHoldAreRefused) {
  Create(3);
  Write(Points(75000));
  m_data.CheckPointCount(262144);
  m_data.CheckPointCount(300000);
  const std::string failure = Failure("Axis dimensions invalid (DIMENS)");
  EXPECT_EQ(MessageOf([&] { m_data.CheckPointCount(300001); }), failure);
}

TEST_F(GroupDataTest, SeriesAreMadeAsTheyAreAskedFor) {
  Write({0, 1, 2, 3, 4, 5});
  Create(3);
  Load({1});
  EXPECT_EQ(DataOf(1), (Points{1, 3, 5}));
  EXPECT_EQ(m_table.Series()[0], nullptr);
  const auto before = m_table.Series()[1];
  Load({0, 1});
  EXPECT_EQ(DataOf(0), (Points{0, 2, 4}));
  EXPECT_EQ(m_table.Series()[1], before) << "it had its data";
}

TEST_F(GroupDataTest, ASeriesThatCouldNotBeReadIsForgotten) {
  Write({0, 1, 2});
  Create(3);
  EXPECT_NE(MessageOf([&] { Load({0, 1}); }), "no exception");
  EXPECT_EQ(m_table.FirstSeries(), nullptr);
}

TEST_F(GroupDataTest, AReaderOfAnotherTypeIsRefused) {
  Create(3);
  const auto other = Sumara::MakeGroupDataReader<double>(kFloatCode, Path(), true, {2, 3});
  EXPECT_EQ(MessageOf([&] {
              m_data.Load(*other, 0, {Places{0}, Places{0}, true}, m_table, WaitingSeries);
            }),
            Failure("Data reader object is not of the correct type for the serialised group - "
                    "check header data format (FORMAT) value corresponds to data type"));
}

}  // namespace
