#include "core/reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/exceptions.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::Long;
using testing_support::MessageOf;
using testing_support::TempDirectory;

constexpr std::int32_t kBinary = static_cast<std::int32_t>(FileMode::kReadBinary);

/// Words 0, 1, 2 and so on, read as T.
template <class T>
class CReaderTest : public ::testing::Test {
 protected:
  static std::vector<T> Count(std::size_t size) {
    std::vector<T> words;
    for (std::size_t i = 0; i < size; ++i) words.push_back(static_cast<T>(static_cast<int>(i)));
    return words;
  }

  std::string Write(const char* name, std::size_t size) {
    return m_directory.WriteWords<T>(name, Count(size));
  }

  TempDirectory m_directory;
};
TYPED_TEST_SUITE(CReaderTest, testing_support::ElementTypes);

TYPED_TEST(CReaderTest, PrepareReadsTheWholeFileAndClosesIt) {
  CReader<TypeParam, double> reader(this->Write("data", 1000), kBinary);
  EXPECT_TRUE(reader.Open());
  reader.Prepare();
  EXPECT_FALSE(reader.IsOpen());
  EXPECT_TRUE(reader.HasBuffer());
  ASSERT_EQ(reader.TotalWordCount(), 1000u);
  EXPECT_EQ(std::vector<TypeParam>(reader.Words(), reader.Words() + 1000), this->Count(1000));
}

TYPED_TEST(CReaderTest, TailOfAWordIsIgnored) {
  std::ofstream(this->Write("data", 3), std::ios::app | std::ios::binary) << 'x';
  CReader<TypeParam, TypeParam> reader(this->m_directory.Path("data"), kBinary);
  reader.Open();
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 3u);
  EXPECT_EQ(reader.GetLength(), 3 * sizeof(TypeParam) + 1);
}

TYPED_TEST(CReaderTest, EmptyFileHasNoWords) {
  CReader<TypeParam, float> reader(this->m_directory.Write("data", ""), kBinary);
  reader.Open();
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 0u);
  EXPECT_EQ(reader.Words(), nullptr);
  EXPECT_TRUE(reader.IsEmpty());
}

TYPED_TEST(CReaderTest, CloseDropsTheWords) {
  CReader<TypeParam, int> reader(this->Write("data", 4), kBinary);
  reader.Open();
  reader.Prepare();
  reader.Close();
  EXPECT_EQ(reader.Words(), nullptr);
  EXPECT_FALSE(reader.HasBuffer());
  EXPECT_FALSE(reader.IsEmpty());
}

TYPED_TEST(CReaderTest, ReopenOfABinaryFileReadsItAgain) {
  const std::string path = this->Write("data", 4);
  CReader<TypeParam, short> reader(path, kBinary);
  EXPECT_TRUE(reader.Reopen(path));
  EXPECT_EQ(reader.TotalWordCount(), 4u);
  this->Write("data", 6);
  EXPECT_TRUE(reader.Reopen(path));
  EXPECT_EQ(reader.TotalWordCount(), 6u);
  EXPECT_EQ(reader.Words()[5], TypeParam(5));
}

TYPED_TEST(CReaderTest, ReopenGoesToAnotherFile) {
  CReader<TypeParam, Long> reader(this->Write("first", 4), kBinary);
  reader.Reopen(this->m_directory.Path("first"));
  EXPECT_TRUE(reader.Reopen(this->Write("second", 9)));
  EXPECT_EQ(reader.GetPath(), this->m_directory.Path("second"));
  EXPECT_EQ(reader.TotalWordCount(), 9u);
}

TYPED_TEST(CReaderTest, FileForBlocksStaysOpen) {
  CReader<TypeParam, TypeParam> reader(this->Write("data", 100), kBinary);
  reader.Open();
  reader.PrepareForBlocks();
  EXPECT_TRUE(reader.IsOpen());
  EXPECT_FALSE(reader.HasBuffer());
  EXPECT_EQ(reader.TotalWordCount(), 100u);
}

TYPED_TEST(CReaderTest, SuspendedFileIsReadOnWhateverStandsThere) {
  CReader<TypeParam, TypeParam> reader(this->Write("data", 100), kBinary);
  reader.Open();
  Sumara::File file = reader.Suspend();
  EXPECT_FALSE(reader.IsOpen());
  EXPECT_TRUE(file.IsOpen());
  std::filesystem::remove(this->m_directory.Path("data"));
  this->Write("data", 7);
  reader.Resume(std::move(file));
  EXPECT_TRUE(reader.IsOpen());
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 100u);
  EXPECT_EQ(reader.Words()[99], TypeParam(99));
}

TEST(CReaderWordTest, LongWordsHaveFourBytes) {
  const TempDirectory directory;
  CReader<Long, Long> reader(directory.Write("data", std::string(32, '\1')), kBinary);
  reader.Open();
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 8u);
  EXPECT_EQ(reader.Words()[7], 0x01010101);
}

TEST(CReaderWordTest, FileCutBetweenOpeningAndReadingCountsWhatIsThere) {
  const TempDirectory directory;
  const std::string path = directory.Write("data", std::string(800, 'x'));
  CReader<double, double> reader(path, kBinary);
  reader.Open();
  std::filesystem::resize_file(path, 80);
  reader.Prepare();
  EXPECT_EQ(reader.TotalWordCount(), 10u);
}

TEST(CReaderWordTest, FileEmptiedBetweenOpeningAndReadingRaises5003) {
  const TempDirectory directory;
  const std::string path = directory.Write("data", std::string(800, 'x'));
  CReader<float, float> reader(path, kBinary);
  reader.Open();
  std::filesystem::resize_file(path, 0);
  EXPECT_EQ(
      MessageOf([&] { reader.Prepare(); }),
      "IO error 5003: Input buffer empty - check file has content.\nFurther information: " + path);
  EXPECT_FALSE(reader.IsOpen());
}

TEST(CReaderWordTest, PrepareBeforeOpenRaises5006) {
  CReader<float, float> reader("unopened", kBinary);
  EXPECT_EQ(MessageOf([&] { reader.Prepare(); }),
            "IO error 5006: Stream must be open before enquiring if empty.\n"
            "Further information: unopened");
}

TEST(CReaderWordTest, FileLargerThanAllMemoryIsRefused) {
  const TempDirectory directory;
  const std::string path = directory.Write("data", "");
  std::error_code unsupported;
  std::filesystem::resize_file(path, std::uintmax_t{1} << 43, unsupported);
  if (unsupported) GTEST_SKIP() << "no sparse file of that size here";
  CReader<float, float> reader(path, kBinary);
  reader.Open();
  EXPECT_THROW(reader.Prepare(), std::bad_alloc);
}

}  // namespace
