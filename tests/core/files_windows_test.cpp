#include <gtest/gtest.h>

#include <filesystem>

#include "core/directory.h"
#include "core/file.h"
#include "core/io_base.h"
#include "core/paths.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::EntryType;
using Sumara::File;
using testing_support::MessageOf;

/// Below a directory whose path is longer than Windows takes without the prefix.
class LongPathOnWindowsTest : public ::testing::Test {
 protected:
  LongPathOnWindowsTest() {
    m_folder = m_directory.Path();
    while (m_folder.size() < 300) m_folder += "\\" + std::string(60, 'd');
    Sumara::CreateDirectories(m_folder);
  }
  ~LongPathOnWindowsTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(Sumara::SystemPath(m_directory.Path()), ignored);
  }

  std::string Write(const std::string& name, std::string_view text) {
    const std::string path = m_folder + "\\" + name;
    File file;
    EXPECT_EQ(file.Open(path, File::Access::kWrite), 0);
    EXPECT_EQ(file.Write(text), 0);
    return path;
  }

  testing_support::TempDirectory m_directory;
  std::string m_folder;
};

TEST_F(LongPathOnWindowsTest, PathGetsThePrefix) {
  EXPECT_TRUE(Sumara::NeedsLongPrefix(m_folder));
  EXPECT_EQ(Sumara::SystemPath(m_folder), "\\\\?\\" + m_folder);
  EXPECT_EQ(Sumara::SystemPath("C:\\short"), "C:\\short");
}

TEST_F(LongPathOnWindowsTest, FilesAreWrittenAndRead) {
  const std::string path = Write("a.txt", "x\r\ny\r\n");
  EXPECT_TRUE(Sumara::Exists(path));
  EXPECT_TRUE(Sumara::IsDirectory(m_folder));
  EXPECT_FALSE(Sumara::IsDirectory(path));
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", false), "x\ny\n");
  CIOBase file(path, 0);
  EXPECT_TRUE(file.Open());
  EXPECT_EQ(file.GetLength(), 6u);
}

TEST_F(LongPathOnWindowsTest, DirectoriesAreListed) {
  Write("a.txt", "");
  Sumara::DirectoryReader reader(m_folder, "directory_iterator::directory_iterator");
  const auto* entry = reader.Next("directory_iterator::operator++");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->name, "a.txt");
  EXPECT_EQ(entry->type, EntryType::kFile);
  EXPECT_EQ(reader.Next("directory_iterator::operator++"), nullptr);
}

TEST_F(LongPathOnWindowsTest, TrailingSeparatorsAreNoMatter) {
  EXPECT_TRUE(Sumara::IsDirectory(m_folder + "\\"));
  EXPECT_TRUE(Sumara::IsDirectory("C:\\"));
  EXPECT_TRUE(Sumara::Exists(m_directory.Path() + "\\/"));
}

class FileOnWindowsTest : public ::testing::Test {
 protected:
  testing_support::TempDirectory m_directory;
};

TEST_F(FileOnWindowsTest, WriterAdmitsReadersOnly) {
  File writer;
  ASSERT_EQ(writer.Open(m_directory.Path("a"), File::Access::kWrite), 0);
  File reader;
  EXPECT_EQ(reader.Open(m_directory.Path("a"), File::Access::kRead), 0);
  File second;
  EXPECT_EQ(second.Open(m_directory.Path("a"), File::Access::kWrite), EACCES);
  EXPECT_EQ(second.Open(m_directory.Path(), File::Access::kRead), EACCES);
}

TEST_F(FileOnWindowsTest, LineEndsOfASideFileAreTranslated) {
  EXPECT_EQ(Sumara::ReadWholeFile(m_directory.Write("a", "x\r\n\ry\r"), "", false), "x\n\ry\r");
}

TEST_F(FileOnWindowsTest, SeparatorIsTheBackslash) {
  EXPECT_EQ(Sumara::kSeparator, '\\');
  EXPECT_EQ(Sumara::DirectoryOf("C:\\runs/a.$TE"), "C:\\runs/");
  std::string path = "C:/runs";
  Sumara::WithTrailingSeparator(path);
  EXPECT_EQ(path, "C:/runs\\");
}

TEST_F(FileOnWindowsTest, LastWriteTimeIsToldInLocalTime) {
  const std::string text = Sumara::LastWriteTimeText(m_directory.Write("a", ""));
  ASSERT_EQ(text.size(), std::string("2024-03-01 09:05:07").size());
  EXPECT_EQ(text[4], '-');
  EXPECT_EQ(text[10], ' ');
  EXPECT_EQ(text[13], ':');
  EXPECT_GT(Sumara::LastWriteTicks(m_directory.Path("a")), 17'000'000'000'000'000);
}

}  // namespace
