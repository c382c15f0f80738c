#include <limits>

#include "tests/groupfiles/data_fixture.h"

namespace {

using Sumara::DataRequest;
using Sumara::Long;
using testing_support::Count;
using testing_support::MessageOf;
using testing_support::TypePair;
using testing_support::WordsOf;

/// Binary data files, in all pairs of a stored and a target type.
template <class Pair>
class BinaryDataTest : public testing_support::DataFixture<Pair> {
 protected:
  using Stored = typename Pair::Stored;

  void Write(std::size_t words) { m_directory().template WriteWords<Stored>("run.$01", WordsOf<Stored>(Count(words))); }

  std::string Beyond(std::uint64_t point, std::size_t variable, std::uint64_t offset, std::uint64_t words) const {
    return "Sumara Tables error: Error reading series data.\nFurther information: Point index = " +
           std::to_string(point) + "; series " + std::to_string(variable) +
           "\nInner exception: IO error 5008: Data requested past end of file.\nFurther information: word offset = " +
           std::to_string(offset) + "; m_totalWordCount = " + std::to_string(words) + "; path: " + this->Path();
  }

  const testing_support::TempDirectory& m_directory() const { return testing_support::DataFixture<Pair>::m_directory; }
};
TYPED_TEST_SUITE(BinaryDataTest, testing_support::ElementTypePairs);

TYPED_TEST(BinaryDataTest, OneAxis) {
  this->Write(3 * 50);
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 50}, /*binary=*/true);
    EXPECT_EQ(this->Read(this->All(50, keepBuffer)), 50u);
    this->ExpectAllCounted(50);
    EXPECT_EQ(this->m_target.filled, (std::vector<std::pair<std::size_t, std::size_t>>{{0, 0}, {1, 0}, {2, 0}}));
    EXPECT_FALSE(this->m_file->IsOpen());
  }
}

TYPED_TEST(BinaryDataTest, TwoAxes) {
  this->Write(2 * 4 * 30);
  for (const bool keepBuffer : {true, false}) {
    this->Open({2, 4, 30}, /*binary=*/true);
    EXPECT_EQ(this->Read(this->All(30, keepBuffer)), 30u);
    this->ExpectAllCounted(30);
    EXPECT_EQ(this->m_target.filled.size(), 8u);
  }
}

TYPED_TEST(BinaryDataTest, PartOfAGroupInTwoRequests) {
  this->Write(3 * 4 * 30);
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 4, 30}, /*binary=*/true);
    this->Read({{2}, {3, 1}, 30, keepBuffer});
    EXPECT_EQ(this->m_target.filled, (std::vector<std::pair<std::size_t, std::size_t>>{{2, 3}, {2, 1}}));
    EXPECT_EQ(this->m_target.Of(2, 1), this->Counted(2, 1, 30));
    EXPECT_EQ(this->m_target.Of(2, 3), this->Counted(2, 3, 30));
    this->Read({{0, 1}, {0}, 30, keepBuffer});
    EXPECT_EQ(this->m_target.Of(0, 0), this->Counted(0, 0, 30));
    EXPECT_EQ(this->m_target.Of(1, 0), this->Counted(1, 0, 30));
  }
}

TYPED_TEST(BinaryDataTest, FewerPointsThanTheFileHolds) {
  this->Write(3 * 50);
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 50}, /*binary=*/true);
    EXPECT_EQ(this->Read(this->All(7, keepBuffer)), 7u);
    this->ExpectAllCounted(7);
  }
}

TYPED_TEST(BinaryDataTest, AllPointsAreThoseThatTheLengthGives) {
  this->Write(3 * 50 + 2);
  std::filesystem::resize_file(this->Path(), (3 * 50 + 2) * sizeof(typename TestFixture::Stored) + 1);
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 0}, /*binary=*/true);
    EXPECT_EQ(this->Read(this->All(0, keepBuffer)), 50u);
    this->ExpectAllCounted(50);
  }
}

TYPED_TEST(BinaryDataTest, TooShortAFileRaises25AtThePointThatIsMissing) {
  this->Write(2 * 8);
  for (const bool keepBuffer : {true, false}) {
    this->Open({2, 10}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf(this->All(10, keepBuffer)), this->Beyond(8, 0, 16, 16));
    EXPECT_TRUE(this->m_target.filled.empty());
    EXPECT_FALSE(this->m_file->IsOpen());
  }
}

TYPED_TEST(BinaryDataTest, VariablesBeforeTheMissingWordAreDelivered) {
  this->Write(3 * 8 + 1);
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 9}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf(this->All(9, keepBuffer)), this->Beyond(8, 1, 25, 25));
    EXPECT_EQ(this->m_target.filled, (std::vector<std::pair<std::size_t, std::size_t>>{{0, 0}}));
    EXPECT_EQ(this->m_target.Of(0), this->Counted(0, 0, 9));
  }
}

TYPED_TEST(BinaryDataTest, WordCutInTwoIsMissing) {
  this->Write(10);
  std::filesystem::resize_file(this->Path(), 10 * sizeof(typename TestFixture::Stored) - 1);
  for (const bool keepBuffer : {true, false}) {
    this->Open({1, 10}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf(this->All(10, keepBuffer)), this->Beyond(9, 0, 9, 9));
  }
}

TYPED_TEST(BinaryDataTest, EmptyFileLeavesTheSeriesEmpty) {
  this->Write(0);
  for (const bool keepBuffer : {true, false}) {
    for (const std::uint64_t points : {0u, 10u}) {
      this->Open({2, points}, /*binary=*/true);
      EXPECT_EQ(this->Read(this->All(points, keepBuffer)), 0u);
      EXPECT_TRUE(this->m_target.filled.empty());
      EXPECT_FALSE(this->m_file->IsOpen());
    }
  }
}

TYPED_TEST(BinaryDataTest, FileShorterThanAPointHoldsNone) {
  this->Write(2);
  for (const bool keepBuffer : {true, false}) {
    this->Open({3, 0}, /*binary=*/true);
    EXPECT_EQ(this->Read(this->All(0, keepBuffer)), 0u);
    EXPECT_EQ(this->m_target.filled.size(), 3u);
    EXPECT_EQ(this->m_target.Of(2), std::vector<double>{});
  }
}

TYPED_TEST(BinaryDataTest, MissingFileRaises5000) {
  for (const bool keepBuffer : {true, false}) {
    this->Open({2, 10}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf(this->All(10, keepBuffer)),
              "IO error 5000: The file does not exist.\nFurther information: " + this->Path());
  }
}

TYPED_TEST(BinaryDataTest, KeptBufferOutlivesTheFile) {
  this->Write(2 * 10);
  this->Open({2, 10}, /*binary=*/true);
  this->Read({{0}, {0}, 10, true});
  std::filesystem::remove(this->Path());
  this->Read({{1}, {0}, 10, true});
  EXPECT_EQ(this->m_target.Of(1), this->Counted(1, 0, 10));
  this->m_file->Close();
  EXPECT_EQ(this->FailureOf({{1}, {0}, 10, true}),
            "IO error 5000: The file does not exist.\nFurther information: " + this->Path());
}

TYPED_TEST(BinaryDataTest, FileReadInBlocksIsReadAnewEachTime) {
  this->Write(2 * 10);
  this->Open({2, 10}, /*binary=*/true);
  this->Read({{0}, {0}, 10, false});
  this->Write(2 * 20);
  EXPECT_EQ(this->Read({{1}, {0}, 20, false}), 20u);
  EXPECT_EQ(this->m_target.Of(1), this->Counted(1, 0, 20));
  std::filesystem::remove(this->Path());
  EXPECT_EQ(this->FailureOf({{1}, {0}, 10, false}),
            "IO error 5000: The file does not exist.\nFurther information: " + this->Path());
}

TYPED_TEST(BinaryDataTest, BlocksEndAnywhereWithinAPoint) {
  constexpr std::size_t kVariables = 7;
  constexpr std::size_t kPoints = 70000;  // more than one block of words of any size
  std::vector<typename TestFixture::Stored> words;
  for (std::size_t i = 0; i < kVariables * kPoints; ++i) {
    words.push_back(static_cast<typename TestFixture::Stored>(static_cast<int>(i % 30011)));
  }
  this->m_directory().template WriteWords<typename TestFixture::Stored>("run.$01", words);
  this->Open({kVariables, kPoints}, /*binary=*/true);
  this->Read(this->All(kPoints, /*keepBuffer=*/true));
  const auto buffered = this->m_target;
  this->Open({kVariables, kPoints}, /*binary=*/true);
  this->Read(this->All(kPoints, /*keepBuffer=*/false));
  for (std::size_t variable = 0; variable < kVariables; ++variable) {
    EXPECT_EQ(this->m_target.Of(variable), buffered.Of(variable));
    EXPECT_EQ(buffered.Of(variable)[kPoints - 1], ((kPoints - 1) * kVariables + variable) % 30011);
  }
}

TYPED_TEST(BinaryDataTest, PointsFartherApartThanABlock) {
  constexpr std::size_t kVariables = 300000;
  this->Write(0);
  std::filesystem::resize_file(this->Path(), 3 * kVariables * sizeof(typename TestFixture::Stored));
  this->Open({kVariables, 3}, /*binary=*/true);
  EXPECT_EQ(this->Read({{5, kVariables - 1}, {0}, 3, false}), 3u);
  EXPECT_EQ(this->m_target.Of(5), (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(this->m_target.Of(kVariables - 1), (std::vector<double>{0, 0, 0}));
}

TYPED_TEST(BinaryDataTest, DimensionsOfADamagedHeaderTakeNoMemory) {
  constexpr std::uint64_t kHuge = std::uint64_t{1} << 63;
  this->Write(12);
  for (const bool keepBuffer : {true, false}) {
    this->Open({2, kHuge}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf({{1}, {0}, kHuge, keepBuffer}), this->Beyond(6, 1, 13, 12));
    this->Open({kHuge, 1}, /*binary=*/true);
    EXPECT_EQ(this->Read({{1}, {0}, 1, keepBuffer}), 1u);
    EXPECT_EQ(this->m_target.Of(1), std::vector<double>{1});
    this->Open({kHuge, 3, 1}, /*binary=*/true);
    EXPECT_EQ(this->Read({{2}, {0}, 1, keepBuffer}), 1u);
    EXPECT_EQ(this->m_target.Of(2), std::vector<double>{2});
    this->Open({kHuge, 1}, /*binary=*/true);
    EXPECT_EQ(this->Read({{1}, {0}, 0, keepBuffer}), 0u);
    EXPECT_EQ(this->m_target.Of(1), std::vector<double>{});
  }
}

TYPED_TEST(BinaryDataTest, VariableThatTheLayoutDoesNotHoldRaises25) {
  this->Write(12);
  const std::string failure =
      "\nInner exception: IO error 5010: Read offset invalid.\nFurther information: path: " + this->Path();
  for (const bool keepBuffer : {true, false}) {
    this->Open({2, 6}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf({{0, 2}, {0}, 6, keepBuffer}),
              "Sumara Tables error: Error reading series data.\nFurther information: Point index = 0; series 2" +
                  failure);
    EXPECT_EQ(this->m_target.Of(0), this->Counted(0, 0, 6));
    this->Open({2, 2, 3}, /*binary=*/true);
    EXPECT_EQ(this->FailureOf({{0}, {2}, 3, keepBuffer}),
              "Sumara Tables error: Error reading series data.\nFurther information: Point index = 0; series 0" +
                  failure);
    this->Open({0, 6}, /*binary=*/true);
    EXPECT_EQ(this->Read({{0}, {0}, 0, keepBuffer}), 0u);
  }
}

/// Conversion at the copy.
template <class T, class U>
std::vector<U> Converted(const std::vector<T>& words) {
  testing_support::TempDirectory directory;
  directory.WriteWords<T>("data", words);
  testing_support::CollectingTarget<U> target;
  const auto file = Sumara::MakeGroupDataReader<U>(Sumara::kDataTypeCode<T>, directory.Path("data"), true, {1, 0});
  dynamic_cast<Sumara::IGroupDataReader<U>&>(*file).Read(Sumara::DataLayout::Of({1, 0}, 0), {{0}, {0}, 0, true},
                                                         target);
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
  EXPECT_EQ((Converted<double, float>({1e300})), (std::vector<float>{std::numeric_limits<float>::infinity()}));
  EXPECT_EQ((Converted<double, int>({kInfinity, std::numeric_limits<double>::quiet_NaN(), 3e9})).size(), 3u);
  EXPECT_EQ((Converted<float, double>({0.1f})), (std::vector<double>{static_cast<double>(0.1f)}));
}

TEST(BinaryConversionTest, LongWordsAreFourBytesWide) {
  testing_support::TempDirectory directory;
  directory.Write("data", std::string(32, '\0'));
  CReader<Long, Long> reader(directory.Path("data"), static_cast<std::int32_t>(FileMode::kReadBinary));
  reader.Open();
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 8u);
}

TEST(GroupDataReaderTest, UnknownStoredTypeRaises65) {
  for (const std::uint32_t code : {0u, 6u}) {
    EXPECT_EQ(MessageOf([&] { Sumara::MakeGroupDataReader<float>(code, "data", true, {1, 1}); }),
              "Sumara Tables error: Invalid data type used to create a group.");
  }
}

}  // namespace
