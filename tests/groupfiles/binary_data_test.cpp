#include <limits>

#include "core/reader.h"
#include "tests/groupfiles/data_fixture.h"

namespace {

using Sumara::Long;
using testing_support::Count;
using testing_support::MessageOf;

/// Binary data files of words 0, 1, 2 and so on.
class BinaryDataTest : public testing_support::DataFixture {
 protected:
  void WriteWords(std::size_t count) const { Write(m_reader->Bytes(Count(count))); }

  std::string Beyond(std::uint64_t point, std::size_t variable, std::uint64_t offset,
                     std::uint64_t words) const {
    return "Sumara Tables error: Error reading series data.\nFurther information: Point index = " +
           std::to_string(point) + "; series " + std::to_string(variable) +
           "\nInner exception: IO error 5008: Data requested past end of file.\nFurther "
           "information: word offset = " +
           std::to_string(offset) + "; m_totalWordCount = " + std::to_string(words) +
           "; path: " + Path();
  }
};
INSTANTIATE_TEST_SUITE_P(Readers, BinaryDataTest,
                         ::testing::ValuesIn(testing_support::AllReaders()),
                         testing_support::ReaderName);

TEST_P(BinaryDataTest, OneAxis) {
  WriteWords(3 * 50);
  for (const bool keepBuffer : {true, false}) {
    Open({3, 50}, /*binary=*/true);
    EXPECT_EQ(Read(All(50, keepBuffer)), 50u);
    ExpectAllCounted(50);
    EXPECT_EQ(Filled(), (Places{{0, 0}, {1, 0}, {2, 0}}));
    ExpectClosed();
  }
}

TEST_P(BinaryDataTest, TwoAxes) {
  WriteWords(2 * 4 * 30);
  for (const bool keepBuffer : {true, false}) {
    Open({2, 4, 30}, /*binary=*/true);
    EXPECT_EQ(Read(All(30, keepBuffer)), 30u);
    ExpectAllCounted(30);
    EXPECT_EQ(Filled().size(), 8u);
  }
}

TEST_P(BinaryDataTest, PartOfAGroupInTwoRequests) {
  WriteWords(3 * 4 * 30);
  for (const bool keepBuffer : {true, false}) {
    Open({3, 4, 30}, /*binary=*/true);
    Read({{2}, {3, 1}, 30, keepBuffer});
    EXPECT_EQ(Filled(), (Places{{2, 3}, {2, 1}}));
    EXPECT_EQ(Of(2, 1), Counted(2, 1, 30));
    EXPECT_EQ(Of(2, 3), Counted(2, 3, 30));
    Read({{0, 1}, {0}, 30, keepBuffer});
    EXPECT_EQ(Of(0, 0), Counted(0, 0, 30));
    EXPECT_EQ(Of(1, 0), Counted(1, 0, 30));
  }
}

TEST_P(BinaryDataTest, FewerPointsThanTheFileHolds) {
  WriteWords(3 * 50);
  for (const bool keepBuffer : {true, false}) {
    Open({3, 50}, /*binary=*/true);
    EXPECT_EQ(Read(All(7, keepBuffer)), 7u);
    ExpectAllCounted(7);
  }
}

TEST_P(BinaryDataTest, AllPointsAreThoseThatTheLengthGives) {
  WriteWords(3 * 50 + 2);
  std::filesystem::resize_file(Path(), (3 * 50 + 2) * m_reader->WordSize() + 1);
  for (const bool keepBuffer : {true, false}) {
    Open({3, 0}, /*binary=*/true);
    EXPECT_EQ(Read(All(0, keepBuffer)), 50u);
    ExpectAllCounted(50);
  }
}

TEST_P(BinaryDataTest, TooShortAFileRaises25AtThePointThatIsMissing) {
  WriteWords(2 * 8);
  for (const bool keepBuffer : {true, false}) {
    Open({2, 10}, /*binary=*/true);
    EXPECT_EQ(FailureOf(All(10, keepBuffer)), Beyond(8, 0, 16, 16));
    EXPECT_TRUE(Filled().empty());
    ExpectClosed();
  }
}

TEST_P(BinaryDataTest, VariablesBeforeTheMissingWordAreDelivered) {
  WriteWords(3 * 8 + 1);
  for (const bool keepBuffer : {true, false}) {
    Open({3, 9}, /*binary=*/true);
    EXPECT_EQ(FailureOf(All(9, keepBuffer)), Beyond(8, 1, 25, 25));
    EXPECT_EQ(Filled(), (Places{{0, 0}}));
    EXPECT_EQ(Of(0), Counted(0, 0, 9));
  }
}

TEST_P(BinaryDataTest, WordCutInTwoIsMissing) {
  WriteWords(10);
  std::filesystem::resize_file(Path(), 10 * m_reader->WordSize() - 1);
  for (const bool keepBuffer : {true, false}) {
    Open({1, 10}, /*binary=*/true);
    EXPECT_EQ(FailureOf(All(10, keepBuffer)), Beyond(9, 0, 9, 9));
  }
}

TEST_P(BinaryDataTest, EmptyFileLeavesTheSeriesEmpty) {
  WriteWords(0);
  for (const bool keepBuffer : {true, false}) {
    for (const std::uint64_t points : {0u, 10u}) {
      Open({2, points}, /*binary=*/true);
      EXPECT_EQ(Read(All(points, keepBuffer)), 0u);
      EXPECT_TRUE(Filled().empty());
      ExpectClosed();
    }
  }
}

TEST_P(BinaryDataTest, FileShorterThanAPointHoldsNone) {
  WriteWords(2);
  for (const bool keepBuffer : {true, false}) {
    Open({3, 0}, /*binary=*/true);
    EXPECT_EQ(Read(All(0, keepBuffer)), 0u);
    EXPECT_EQ(Filled().size(), 3u);
    EXPECT_EQ(Of(2), std::vector<double>{});
  }
}

TEST_P(BinaryDataTest, MissingFileRaises5000) {
  for (const bool keepBuffer : {true, false}) {
    Open({2, 10}, /*binary=*/true);
    EXPECT_EQ(FailureOf(All(10, keepBuffer)), Missing());
  }
}

TEST_P(BinaryDataTest, KeptBufferOutlivesTheFile) {
  WriteWords(2 * 10);
  Open({2, 10}, /*binary=*/true);
  Read({{0}, {0}, 10, true});
  std::filesystem::remove(Path());
  Read({{1}, {0}, 10, true});
  EXPECT_EQ(Of(1), Counted(1, 0, 10));
  m_reader->File().Close();
  EXPECT_EQ(FailureOf({{1}, {0}, 10, true}), Missing());
}

TEST_P(BinaryDataTest, FileReadInBlocksIsReadAnewEachTime) {
  WriteWords(2 * 10);
  Open({2, 10}, /*binary=*/true);
  Read({{0}, {0}, 10, false});
  WriteWords(2 * 20);
  EXPECT_EQ(Read({{1}, {0}, 20, false}), 20u);
  EXPECT_EQ(Of(1), Counted(1, 0, 20));
  std::filesystem::remove(Path());
  EXPECT_EQ(FailureOf({{1}, {0}, 10, false}), Missing());
}

TEST_P(BinaryDataTest, BlocksEndAnywhereWithinAPoint) {
  constexpr std::size_t kVariables = 7;
  constexpr std::size_t kPoints = 70000;  // more than one block of words of any size
  std::vector<double> values;
  for (std::size_t i = 0; i < kVariables * kPoints; ++i)
    values.push_back(static_cast<double>(i % 30011));
  Write(m_reader->Bytes(values));
  Open({kVariables, kPoints}, /*binary=*/true);
  Read(All(kPoints, /*keepBuffer=*/true));
  std::vector<std::vector<double>> buffered;
  for (std::size_t variable = 0; variable < kVariables; ++variable)
    buffered.push_back(Of(variable));
  Open({kVariables, kPoints}, /*binary=*/true);
  Read(All(kPoints, /*keepBuffer=*/false));
  for (std::size_t variable = 0; variable < kVariables; ++variable) {
    EXPECT_EQ(Of(variable), buffered[variable]);
    EXPECT_EQ(buffered[variable][kPoints - 1], ((kPoints - 1) * kVariables + variable) % 30011);
  }
}

TEST_P(BinaryDataTest, PointsFartherApartThanABlock) {
  constexpr std::size_t kVariables = 300000;
  WriteWords(0);
  std::filesystem::resize_file(Path(), 3 * kVariables * m_reader->WordSize());
  Open({kVariables, 3}, /*binary=*/true);
  EXPECT_EQ(Read({{5, kVariables - 1}, {0}, 3, false}), 3u);
  EXPECT_EQ(Of(5), (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(Of(kVariables - 1), (std::vector<double>{0, 0, 0}));
}

TEST_P(BinaryDataTest, DimensionsOfADamagedHeaderTakeNoMemory) {
  constexpr std::uint64_t kHuge = std::uint64_t{1} << 63;
  WriteWords(12);
  for (const bool keepBuffer : {true, false}) {
    Open({2, kHuge}, /*binary=*/true);
    EXPECT_EQ(FailureOf({{1}, {0}, kHuge, keepBuffer}), Beyond(6, 1, 13, 12));
    Open({kHuge, 1}, /*binary=*/true);
    EXPECT_EQ(Read({{1}, {0}, 1, keepBuffer}), 1u);
    EXPECT_EQ(Of(1), std::vector<double>{1});
    Open({kHuge, 3, 1}, /*binary=*/true);
    EXPECT_EQ(Read({{2}, {0}, 1, keepBuffer}), 1u);
    EXPECT_EQ(Of(2), std::vector<double>{2});
    Open({kHuge, 1}, /*binary=*/true);
    EXPECT_EQ(Read({{1}, {0}, 0, keepBuffer}), 0u);
    EXPECT_EQ(Of(1), std::vector<double>{});
  }
}

TEST_P(BinaryDataTest, VariableThatTheLayoutDoesNotHoldRaises25) {
  WriteWords(12);
  const std::string failure =
      "\nInner exception: IO error 5010: Read offset invalid.\nFurther information: path: " +
      Path();
  for (const bool keepBuffer : {true, false}) {
    Open({2, 6}, /*binary=*/true);
    EXPECT_EQ(FailureOf({{0, 2}, {0}, 6, keepBuffer}),
              "Sumara Tables error: Error reading series data.\nFurther information: Point index = "
              "0; series 2" +
                  failure);
    EXPECT_EQ(Of(0), Counted(0, 0, 6));
    Open({2, 2, 3}, /*binary=*/true);
    EXPECT_EQ(FailureOf({{0}, {2}, 3, keepBuffer}),
              "Sumara Tables error: Error reading series data.\nFurther information: Point index = "
              "0; series 0" +
                  failure);
    Open({0, 6}, /*binary=*/true);
    EXPECT_EQ(Read({{0}, {0}, 0, keepBuffer}), 0u);
  }
}

/// Conversion at the copy.
template <class T, class U>
std::vector<U> Converted(const std::vector<T>& words) {
  testing_support::TempDirectory directory;
  directory.WriteWords<T>("data", words);
  testing_support::CollectingTarget<U> target;
  const auto file = Sumara::MakeGroupDataReader<U>(Sumara::kDataTypeCode<T>, directory.Path("data"),
                                                   true, {1, 0});
  dynamic_cast<Sumara::IGroupDataReader<U>&>(*file).Read(Sumara::DataLayout::Of({1, 0}, 0),
                                                         {{0}, {0}, 0, true}, target);
  return target.Values(0, 0);
}

TEST(BinaryConversionTest, NarrowingKeepsTheLowBits) {
  EXPECT_EQ((Converted<int, short>({65537, -1, 32768})), (std::vector<short>{1, -1, -32768}));
  EXPECT_EQ((Converted<Long, short>({65537})), (std::vector<short>{1}));
}

TEST(BinaryConversionTest, FloatingValuesAreTruncatedTowardZero) {
  EXPECT_EQ((Converted<float, int>({1.9f, -1.9f})), (std::vector<int>{1, -1}));
  EXPECT_EQ((Converted<double, short>({-0.5, 12.999})), (std::vector<short>{0, 12}));
}

TEST(BinaryConversionTest, NoRangeIsCheckedAndNothingFails) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ((Converted<double, float>({1e300})),
            (std::vector<float>{std::numeric_limits<float>::infinity()}));
  EXPECT_EQ(
      (Converted<double, int>({kInfinity, std::numeric_limits<double>::quiet_NaN(), 3e9})).size(),
      3u);
  EXPECT_EQ((Converted<float, double>({0.1f})), (std::vector<double>{static_cast<double>(0.1f)}));
}

TEST(BinaryConversionTest, LongWordsAreFourBytesWide) {
  testing_support::TempDirectory directory;
  directory.Write("data", std::string(32, '\0'));
  CReader<Long, Long> reader(directory.Path("data"),
                             static_cast<std::int32_t>(FileMode::kReadBinary));
  reader.Open();
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 8u);
}

/// Cuts the data file off when its reader is about to read.
class ShorteningTarget final : public testing_support::CollectingTarget<double> {
 public:
  ShorteningTarget(std::string path, std::uintmax_t size) : m_path(std::move(path)), m_size(size) {}

  std::vector<double>& Values(std::size_t variable, std::size_t secondaryIndex) override {
    std::filesystem::resize_file(m_path, m_size);
    return CollectingTarget::Values(variable, secondaryIndex);
  }

 private:
  std::string m_path;
  std::uintmax_t m_size;
};

TEST(GroupDataReaderTest, FileThatIsCutOffWhileItIsReadInBlocksRaises25) {
  constexpr std::uint64_t kPoints = 100000;
  testing_support::TempDirectory directory;
  const std::string path = directory.WriteWords<float>("data", std::vector<float>(2 * kPoints));
  const auto file =
      Sumara::MakeGroupDataReader<double>(Sumara::kFloatCode, path, true, {2, kPoints});
  ShorteningTarget target(path, 600000);
  EXPECT_EQ(MessageOf([&] {
              dynamic_cast<Sumara::IGroupDataReader<double>&>(*file).Read(
                  Sumara::DataLayout::Of({2, kPoints}, 0), {{0, 1}, {0}, kPoints, false}, target);
            }),
            "Sumara Tables error: Error reading series data.\nFurther information: Point index = "
            "75000; series 0\nInner exception: IO error 5008: Data requested past end of "
            "file.\nFurther information: word offset = 150000; m_totalWordCount = 200000; path: " +
                path);
  EXPECT_TRUE(target.filled.empty());
  EXPECT_TRUE(target.Of(0).empty());
  EXPECT_TRUE(target.Of(1).empty());
  EXPECT_FALSE(file->IsOpen());
}

TEST(GroupDataReaderTest, UnknownStoredTypeRaises65) {
  for (const std::uint32_t code : {0u, 6u}) {
    EXPECT_EQ(MessageOf([&] {
                Sumara::MakeGroupDataReader<float>(code, "data", true, {1, 1});
              }),
              "Sumara Tables error: Invalid data type used to create a group.");
  }
}

}  // namespace
