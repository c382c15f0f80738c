#include "core/io_base.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/exceptions.h"
#include "core/paths.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using testing_support::MessageOf;
using testing_support::TempDirectory;

constexpr std::string_view kFailText =
    "failbit: last operation on stream invalid - check file or directory exists, path does not "
    "contain illegal characters, and file is not locked by another process";

class CIOBaseTest : public ::testing::Test {
 protected:
  std::string StateText(std::string_view flags, std::string_view systemText,
                        std::string_view path) const {
    return std::string(flags)
        .append("\nFurther information: ")
        .append(systemText)
        .append("\nPath: ")
        .append(path);
  }

  TempDirectory m_directory;
};

TEST_F(CIOBaseTest, ConstructionTouchesNothing) {
  const CIOBase file(m_directory.Path("missing"), 0);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(file.IsGood());
  EXPECT_EQ(file.GetLength(), CIOBase::kUnknownLength);
  EXPECT_EQ(file.GetLineNumber(), 0u);
  EXPECT_EQ(file.GetPath(), m_directory.Path("missing"));
  EXPECT_EQ(file.GetDirectory(), m_directory.Path() + Sumara::kSeparator);
  EXPECT_FALSE(std::filesystem::exists(m_directory.Path("missing")));
}

TEST_F(CIOBaseTest, OpensOnceInEveryReadMode) {
  const std::string path = m_directory.Write("a", "12345");
  for (const std::int32_t mode : {0, 1, 2}) {
    CIOBase file(path, mode);
    EXPECT_TRUE(file.Open());
    EXPECT_FALSE(file.Open());
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.GetLength(), 5u);
    EXPECT_EQ(file.GetMode(), mode);
    EXPECT_EQ(file.IsReadingBinary(), mode == 2);
  }
}

TEST_F(CIOBaseTest, SecondOpeningLeavesThePlaceAndTheLength) {
  const std::string path = m_directory.Write("a", "one\ntwo\n");
  CIOBase file(path, 0);
  EXPECT_TRUE(file.Open());
  std::string line;
  file.ReadLine(line);
  m_directory.Write("a", "one\ntwo\nthree\n");
  EXPECT_FALSE(file.Open());
  EXPECT_EQ(file.GetLength(), 8u);
  EXPECT_EQ(file.GetLineNumber(), 1u);
  file.ReadLine(line);
  EXPECT_EQ(line, "two");
}

TEST_F(CIOBaseTest, WriteModesMakeTheFile) {
  for (const std::int32_t mode : {3, 4}) {
    const std::string name = "new" + std::to_string(mode);
    CIOBase file(m_directory.Path(name), mode);
    EXPECT_TRUE(file.Open());
    EXPECT_EQ(file.GetLength(), CIOBase::kUnknownLength);
    file.Close();
    EXPECT_TRUE(std::filesystem::exists(m_directory.Path(name)));
  }
}

TEST_F(CIOBaseTest, EmptyPathRaises5002) {
  EXPECT_EQ(MessageOf([] { CIOBase("", 0).Open(); }),
            "IO error 5002: Filename not set or invalid.");
}

TEST_F(CIOBaseTest, MissingFileRaises5000) {
  const std::string path = m_directory.Path("missing");
  for (const std::int32_t mode : {-1, 0, 1, 2}) {
    EXPECT_EQ(MessageOf([&] { CIOBase(path, mode).Open(); }),
              "IO error 5000: The file does not exist.\nFurther information: " + path);
  }
}

TEST_F(CIOBaseTest, UnknownModeRaises5001) {
  const std::string path = m_directory.Write("a", "");
  for (const std::int32_t mode : {-1, 5}) {
    EXPECT_EQ(MessageOf([&] { CIOBase(path, mode).Open(); }),
              "IO error 5001: Requested IO operation not known.\nFurther information: " + path);
  }
}

TEST_F(CIOBaseTest, EmptinessIsKnownFromTheFirstOpening) {
  const std::string path = m_directory.Write("empty", "");
  CIOBase file(path, 2);
  EXPECT_EQ(MessageOf([&] { file.IsEmpty(); }),
            "IO error 5006: Stream must be open before enquiring if empty.\nFurther information: " +
                path);
  file.Open();
  EXPECT_EQ(file.GetLength(), 0u);
  EXPECT_TRUE(file.IsEmpty());
  file.Close();
  EXPECT_TRUE(file.IsEmpty());
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(CIOBaseTest, LengthIsTakenAgainAtEachOpening) {
  CIOBase file(m_directory.Write("a", "1"), 0);
  file.Open();
  file.Close();
  m_directory.Write("a", "123");
  EXPECT_EQ(file.GetLength(), 1u);
  file.Open();
  EXPECT_EQ(file.GetLength(), 3u);
}

TEST_F(CIOBaseTest, StreamStateTextOfAGoodStream) {
  const std::string path = m_directory.Write("a", "");
  CIOBase file(path, 0);
  file.Open();
  EXPECT_EQ(file.StreamStateText(), StateText("", "Success", path));
}

TEST_F(CIOBaseTest, ReadLineSkipsOneEmptyLineAndCountsOnce) {
  CIOBase file(m_directory.Write("a", "\na\r\n\n\nb\nlast"), 0);
  file.Open();
  std::string line;
  EXPECT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "a\r");
  EXPECT_EQ(file.GetLineNumber(), 1u);
  EXPECT_FALSE(file.ReadLine(line));
  EXPECT_EQ(line, "");
  EXPECT_EQ(file.GetLineNumber(), 2u);
  EXPECT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "b");
  EXPECT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "last");
  EXPECT_EQ(file.GetLineNumber(), 4u);
  EXPECT_FALSE(file.IsGood());
}

TEST_F(CIOBaseTest, ReadLineAtTheEndRaises5008UnlessTolerant) {
  const std::string path = m_directory.Write("a", "a\n");
  CIOBase file(path, 0);
  file.Open();
  std::string line;
  file.ReadLine(line);
  EXPECT_EQ(
      MessageOf([&] { file.ReadLine(line); }),
      "IO error 5008: Data requested past end of file.\nFurther information: " +
          StateText("eofbit: unexpected end of file; " + std::string(kFailText), "Success", path));
  EXPECT_EQ(file.GetLineNumber(), 2u);
  EXPECT_FALSE(file.ReadLine(line, /*tolerant=*/true));
  EXPECT_EQ(line, "");
}

TEST_F(CIOBaseTest, ReadLineOnAFailedStreamRaises5007) {
  const std::string path = m_directory.Write("a", "A 1\n\nB 2\n");
  CIOBase file(path, 0);
  file.Open();
  std::string value;
  file.SeekLabel("A", value, {.continuation = true});  // the empty line leaves the fail flag
  EXPECT_EQ(MessageOf([&] { file.ReadLine(value); }),
            "IO error 5007: Stream has error flag(s).\nFurther information: " +
                StateText(kFailText, "Success", path));
}

TEST_F(CIOBaseTest, RewindClearsFlagsAndCount) {
  CIOBase file(m_directory.Write("a", "a"), 0);
  file.Open();
  std::string line;
  file.ReadLine(line);
  file.ReadLine(line, /*tolerant=*/true);
  EXPECT_FALSE(file.IsGood());
  file.Rewind();
  EXPECT_TRUE(file.IsGood());
  EXPECT_EQ(file.GetLineNumber(), 0u);
  EXPECT_TRUE(file.ReadLine(line));
  EXPECT_EQ(line, "a");
}

}  // namespace
