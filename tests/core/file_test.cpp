#include "core/file.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "tests/support/temp_directory.h"

namespace {

using Sumara::File;
using testing_support::TempDirectory;

class FileTest : public ::testing::Test {
 protected:
  std::string ReadAt(const File& file, std::uint64_t offset, std::size_t size, int error = 0) {
    std::string text(size, '?');
    int found = -1;
    text.resize(file.ReadAt(offset, text, found));
    EXPECT_EQ(found, error);
    return text;
  }

  TempDirectory m_directory;
  File m_file;
};

TEST_F(FileTest, ReadsAtAnyPlace) {
  ASSERT_EQ(m_file.Open(m_directory.Write("a", "0123456789"), File::Access::kRead), 0);
  EXPECT_EQ(m_file.Size(), 10u);
  EXPECT_EQ(ReadAt(m_file, 3, 4), "3456");
  EXPECT_EQ(ReadAt(m_file, 0, 2), "01");
  EXPECT_EQ(ReadAt(m_file, 8, 4), "89");
  EXPECT_EQ(ReadAt(m_file, 10, 4), "");
  EXPECT_EQ(ReadAt(m_file, 1000, 4), "");
}

TEST_F(FileTest, RefusalsHaveTheSystemsNumber) {
  EXPECT_EQ(m_file.Open(m_directory.Path("missing"), File::Access::kRead), ENOENT);
  EXPECT_EQ(m_file.Open(std::string("a\0b", 3), File::Access::kWrite), EINVAL);
  EXPECT_FALSE(m_file.IsOpen());
}

TEST_F(FileTest, WritingTruncatesAndAppends) {
  const std::string path = m_directory.Write("a", "old content");
  ASSERT_EQ(m_file.Open(path, File::Access::kWrite), 0);
  EXPECT_EQ(m_file.Write(std::string_view("ab")), 0);
  EXPECT_EQ(m_file.Write(std::string_view()), 0);
  EXPECT_EQ(m_file.Write(std::string_view("c\r\n")), 0);
  EXPECT_EQ(m_file.Close(), 0);
  EXPECT_EQ(m_directory.Read("a"), "abc\r\n");
}

TEST_F(FileTest, FileOpenForReadingIsNotWritten) {
  ASSERT_EQ(m_file.Open(m_directory.Write("a", ""), File::Access::kRead), 0);
  EXPECT_EQ(m_file.Write(std::string_view("x")), EBADF);
}

TEST_F(FileTest, MoveHandsOverTheOpenFile) {
  ASSERT_EQ(m_file.Open(m_directory.Write("a", "x"), File::Access::kRead), 0);
  File second(std::move(m_file));
  EXPECT_TRUE(second.IsOpen());
  m_file = std::move(second);
  EXPECT_FALSE(second.IsOpen());  // NOLINT(bugprone-use-after-move): what is left is stated
  EXPECT_EQ(ReadAt(m_file, 0, 1), "x");
}

}  // namespace
