#include "core/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "core/exceptions.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

namespace fs = std::filesystem;
using testing_support::MessageOf;
using testing_support::TempDirectory;

/// A path of `length` characters below `front`.
std::string PathOfLength(std::string front, std::size_t length) {
  while (front.size() < length) front += front.size() % 10 == 9 ? '/' : 'x';
  return front;
}

TEST(LongPathTest, AbsolutePathsFrom248CharactersNeedThePrefix) {
  for (const char* front : {"C:\\", "C:/", "\\\\server\\", "//server/"}) {
    EXPECT_FALSE(Sumara::LongPath::NeedsPrefix(PathOfLength(front, 247))) << front;
    EXPECT_TRUE(Sumara::LongPath::NeedsPrefix(PathOfLength(front, 248))) << front;
  }
}

TEST(LongPathTest, OtherPathsNeverNeedThePrefix) {
  for (const char* front : {"runs/", "/runs/", "C:runs", "\\/server\\", "\\\\?\\C:\\", "x"}) {
    EXPECT_FALSE(Sumara::LongPath::NeedsPrefix(PathOfLength(front, 300))) << front;
    EXPECT_EQ(Sumara::LongPath::WithPrefix(PathOfLength(front, 300)), "") << front;
  }
  EXPECT_FALSE(Sumara::LongPath::NeedsPrefix("C:"));
  EXPECT_FALSE(Sumara::LongPath::NeedsPrefix(""));
}

TEST(LongPathTest, DrivePathGetsThePrefixAndBackslashes) {
  const std::string tail(260, 'x');
  EXPECT_EQ(Sumara::LongPath::WithPrefix("C:/a/" + tail), "\\\\?\\C:\\a\\" + tail);
  EXPECT_EQ(Sumara::LongPath::WithPrefix("C:\\a/" + tail), "\\\\?\\C:\\a\\" + tail);
}

TEST(LongPathTest, SharePathGetsTheShareForm) {
  const std::string tail(260, 'x');
  EXPECT_EQ(Sumara::LongPath::WithPrefix("//server/share/" + tail),
            "\\\\?\\UNC\\server\\share\\" + tail);
  EXPECT_EQ(Sumara::LongPath::WithPrefix("\\\\server\\share/" + tail),
            "\\\\?\\UNC\\server\\share\\" + tail);
}

TEST(LongPathTest, ShortPathsAreLeftAlone) {
  for (const char* path : {"", "C:", "C:\\run", "//s/x", "run"}) {
    EXPECT_EQ(Sumara::LongPath::WithPrefix(path), "") << path;
  }
}

TEST(LongPathTest, ForceLeavesOutTheLength) {
  EXPECT_EQ(Sumara::LongPath::WithPrefix("C:/run", true), "\\\\?\\C:\\run");
  EXPECT_EQ(Sumara::LongPath::WithPrefix("//s/x", true), "\\\\?\\UNC\\s\\x");
  EXPECT_EQ(Sumara::LongPath::WithPrefix("\\\\?\\C:\\run", true), "\\\\?\\UNC\\?\\C:\\run");
  EXPECT_EQ(Sumara::LongPath::WithPrefix("C:", true), "");
  EXPECT_EQ(Sumara::LongPath::WithPrefix("run", true), "");
}

class PathsTest : public ::testing::Test {
 protected:
  TempDirectory m_directory;
};

TEST_F(PathsTest, ExistsForFilesAndDirectories) {
  EXPECT_TRUE(Sumara::Exists(m_directory.Write("a", "")));
  EXPECT_TRUE(Sumara::Exists(m_directory.Path()));
  EXPECT_TRUE(Sumara::Exists(m_directory.Path() + "/"));
}

TEST_F(PathsTest, WhatCannotBeThereIsMissingAndNoError) {
  m_directory.Write("a", "");
  const std::string missing[] = {"",
                                 m_directory.Path("b"),
                                 m_directory.Path("no/parent/b"),
                                 m_directory.Path("a") + "/below-a-file",
                                 m_directory.Path(std::string(300, 'n')),
                                 m_directory.Path() + std::string("\0x", 2)};
  for (const auto& path : missing) {
    EXPECT_FALSE(Sumara::Exists(path)) << path;
    EXPECT_FALSE(Sumara::IsDirectory(path)) << path;
  }
}

TEST_F(PathsTest, FileSizeIsThatOfAFileAndNothingElseHasOne) {
  EXPECT_EQ(Sumara::FileSize(m_directory.Write("a", "")), 0u);
  EXPECT_EQ(Sumara::FileSize(m_directory.Write("b", "four")), 4u);
  EXPECT_EQ(Sumara::FileSize(m_directory.Path()), std::nullopt);
  EXPECT_EQ(Sumara::FileSize(m_directory.Path("missing")), std::nullopt);
  EXPECT_EQ(Sumara::FileSize(m_directory.Path("b") + '\0'), std::nullopt);
}

TEST_F(PathsTest, IsDirectoryIsFalseForAFile) {
  EXPECT_TRUE(Sumara::IsDirectory(m_directory.Path()));
  EXPECT_FALSE(Sumara::IsDirectory(m_directory.Write("a", "")));
}

TEST_F(PathsTest, CreateDirectoriesMakesTheParentsToo) {
  Sumara::CreateDirectories(m_directory.Path("a/b/c"));
  Sumara::CreateDirectories(m_directory.Path("a/b/c"));
  EXPECT_TRUE(fs::is_directory(m_directory.Path("a/b/c")));
  Sumara::CreateDirectories(m_directory.Path("d/e/"));
  EXPECT_TRUE(fs::is_directory(m_directory.Path("d/e")));
}

TEST_F(PathsTest, CreateDirectoriesRefusesANullByte) {
  EXPECT_THROW(Sumara::CreateDirectories(m_directory.Path("x") + std::string("\0y", 2)),
               CIOException);
  EXPECT_FALSE(fs::exists(m_directory.Path("x")));
}

TEST_F(PathsTest, NormaliseMakesARelativePathAbsolute) {
  m_directory.MakeDirectory("runs");
  const fs::path before = fs::current_path();
  fs::current_path(m_directory.Path());
  const std::string normal = Sumara::NormaliseDirectory("runs");
  fs::current_path(before);
  EXPECT_EQ(normal, m_directory.Path("runs"));
}

TEST_F(PathsTest, NormaliseOfWhatIsMissingRaises) {
  EXPECT_EQ(MessageOf([&] { Sumara::NormaliseFilePath("no such file"); }),
            "IO error 5022: File not found.\nFurther information: File path: no such file");
  EXPECT_EQ(MessageOf([&] { Sumara::NormaliseDirectory("no such place"); }),
            "IO error 5023: Directory not found.\nFurther information: Directory: no such place");
}

TEST_F(PathsTest, LastWriteTimeTextOfWhatIsMissingRaises5022) {
  const std::string path = m_directory.Path("missing");
  EXPECT_EQ(MessageOf([&] { Sumara::LastWriteTimeText(path); }),
            "IO error 5022: File not found.\nFurther information: File path: " + path +
                "\nInner exception: Attempting to get last modified time");
}

TEST_F(PathsTest, ReadWholeFileTrimsOnlyIfAsked) {
  const std::string path = m_directory.Write("a", " Run completed \n\t \n");
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", false), " Run completed \n\t \n");
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", true), " Run completed");
  EXPECT_EQ(Sumara::ReadWholeFile(m_directory.Write("empty", ""), "", true), "");
}

TEST_F(PathsTest, ReadWholeFileOfManyBlocks) {
  std::string text;
  for (int i = 0; i < 500'000; ++i) text += std::to_string(i) + '\n';
  EXPECT_TRUE(Sumara::ReadWholeFile(m_directory.Write("big", text), "", false) == text);
}

TEST_F(PathsTest, ReadWholeFileOfWhatIsMissingRaises5022) {
  const std::string path = m_directory.Path("missing");
  EXPECT_EQ(MessageOf([&] { Sumara::ReadWholeFile(path, "run termination file", true); }),
            "IO error 5022: File not found.\nFurther information: File path: " + path +
                "\nInner exception: run termination file");
}

TEST_F(PathsTest, DirectoryOfEndsAtTheLastSeparator) {
  EXPECT_EQ(Sumara::DirectoryOf("a/b\\c.x"), "a/b\\");
  EXPECT_EQ(Sumara::DirectoryOf("a\\b/c.x"), "a\\b/");
  EXPECT_EQ(Sumara::DirectoryOf("a/b/"), "a/b/");
  EXPECT_EQ(Sumara::DirectoryOf("c.x"), "");
  EXPECT_EQ(Sumara::DirectoryOf(""), "");
}

TEST_F(PathsTest, TrailingSeparatorIsAddedOnce) {
  const auto with = [](std::string path) {
    Sumara::WithTrailingSeparator(path);
    return path;
  };
  const std::string separator(1, Sumara::kSeparator);
  EXPECT_EQ(with(""), "");
  EXPECT_EQ(with("a"), "a" + separator);
  EXPECT_EQ(with("a" + separator), "a" + separator);
}

}  // namespace
