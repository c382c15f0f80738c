#include "core/paths.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

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

TEST(LongPathTest, ThisPlatformHasNoPathLimit) {
  EXPECT_FALSE(Sumara::NeedsLongPrefix(PathOfLength("C:/", 300)));
  EXPECT_EQ(Sumara::SystemPath(PathOfLength("C:/", 300)), PathOfLength("C:/", 300));
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

TEST_F(PathsTest, LinksAreFollowed) {
  fs::create_symlink(m_directory.Path(), m_directory.Path("good"));
  fs::create_symlink(m_directory.Path("nowhere"), m_directory.Path("bad"));
  EXPECT_TRUE(Sumara::IsDirectory(m_directory.Path("good")));
  EXPECT_FALSE(Sumara::Exists(m_directory.Path("bad")));
}

TEST_F(PathsTest, UnansweredQuestionsRaise5026And5027) {
  const std::string loop = m_directory.Path("loop");
  fs::create_symlink(loop, loop);
  EXPECT_EQ(
      MessageOf([&] { Sumara::Exists(loop); }),
      "IO error 5026: Failed to check whether file exists.\nFurther information: File path: " +
          loop + "\nInner exception: Too many levels of symbolic links");
  EXPECT_EQ(MessageOf([&] { Sumara::IsDirectory(loop); }),
            "IO error 5027: Failed to check whether directory exists.\nFurther information: "
            "Directory: " +
                loop + "\nInner exception: Too many levels of symbolic links");
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

TEST_F(PathsTest, CreateDirectoriesBelowAFileRaises5028) {
  const std::string path = m_directory.Write("a", "") + "/b";
  const std::string text = MessageOf([&] { Sumara::CreateDirectories(path); });
  EXPECT_EQ(text.substr(0, text.find("\nInner exception: ")),
            std::string(CIOException(5028, "Directory: " + path).what()));
  EXPECT_NE(text.find("Not a directory"), std::string::npos) << text;
}

TEST_F(PathsTest, CreateDirectoriesRefusesANullByte) {
  EXPECT_THROW(Sumara::CreateDirectories(m_directory.Path("x") + std::string("\0y", 2)),
               CIOException);
  EXPECT_FALSE(fs::exists(m_directory.Path("x")));
}

TEST_F(PathsTest, NormaliseGivesTheCanonicalPath) {
  m_directory.MakeDirectory("runs/deep");
  m_directory.Write("runs/run.$TE", "");
  fs::create_symlink(m_directory.Path("runs"), m_directory.Path("link"));
  const std::string runs = m_directory.Path("runs");
  EXPECT_EQ(Sumara::NormaliseDirectory(m_directory.Path() + "/./runs/deep/../"), runs);
  EXPECT_EQ(Sumara::NormaliseDirectory(m_directory.Path("link")), runs);
  EXPECT_EQ(Sumara::NormaliseFilePath(m_directory.Path() + "//link/run.$TE"), runs + "/run.$TE");
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

TEST_F(PathsTest, LastWriteTicksAreTenthsOfMicroseconds) {
  const std::string path = m_directory.Write("a", "");
  const timespec times[] = {{0, UTIME_OMIT}, {1'700'000'000, 123'456'789}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  EXPECT_EQ(Sumara::LastWriteTicks(path), 17'000'000'001'234'567);
}

TEST_F(PathsTest, LastWriteTicksOfWhatIsMissingNamesTheOperation) {
  const std::string path = m_directory.Path("missing");
  EXPECT_EQ(MessageOf([&] { Sumara::LastWriteTicks(path); }),
            "filesystem error: last_write_time: No such file or directory [" + path + "]");
  EXPECT_THROW(Sumara::LastWriteTicks(path), fs::filesystem_error);
}

class LastWriteTimeTextTest : public PathsTest {
 protected:
  void SetUp() override { SetZone("CET-1CEST,M3.5.0,M10.5.0/3"); }
  void TearDown() override { SetZone(nullptr); }

  static void SetZone(const char* zone) {
    if (zone != nullptr) {
      ::setenv("TZ", zone, 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }

  std::string TextAt(std::time_t seconds, long nanoseconds) {
    const std::string path = m_directory.Write("a", "");
    const timespec times[] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    return Sumara::LastWriteTimeText(path);
  }
};

TEST_F(LastWriteTimeTextTest, IsLocalTimeInWholeSeconds) {
  EXPECT_EQ(TextAt(1'709'280'307, 999'999'999), "2024-03-01 09:05:07");
}

TEST_F(LastWriteTimeTextTest, KnowsSummerTime) {
  EXPECT_EQ(TextAt(1'719'792'000, 0), "2024-07-01 02:00:00");
}

TEST_F(LastWriteTimeTextTest, FloorsBefore1970) {
  EXPECT_EQ(TextAt(-1, 500'000'000), "1970-01-01 00:59:59");
}

TEST_F(LastWriteTimeTextTest, MissingFileRaises5022) {
  const std::string path = m_directory.Path("missing");
  EXPECT_EQ(MessageOf([&] { Sumara::LastWriteTimeText(path); }),
            "IO error 5022: File not found.\nFurther information: File path: " + path +
                "\nInner exception: Attempting to get last modified time");
}

TEST_F(PathsTest, ReadWholeFileTrimsOnlyIfAsked) {
  const std::string path = m_directory.Write("a", " Run completed \r\n\t \n");
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", false), " Run completed \r\n\t \n");
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", true), " Run completed");
  EXPECT_EQ(Sumara::ReadWholeFile(m_directory.Write("empty", ""), "", true), "");
}

TEST_F(PathsTest, ReadWholeFileOfManyBlocks) {
  std::string text;
  for (int i = 0; i < 500'000; ++i) text += std::to_string(i) + '\n';
  EXPECT_TRUE(Sumara::ReadWholeFile(m_directory.Write("big", text), "", false) == text);
}

TEST_F(PathsTest, ReadWholeFileReadsWhatTellsNoSize) {
  EXPECT_NE(Sumara::ReadWholeFile("/proc/self/status", "", true).find("VmSize"), std::string::npos);
}

TEST_F(PathsTest, ReadWholeFileOfWhatIsMissingRaises5022) {
  const std::string path = m_directory.Path("missing");
  EXPECT_EQ(MessageOf([&] { Sumara::ReadWholeFile(path, "run termination file", true); }),
            "IO error 5022: File not found.\nFurther information: File path: " + path +
                "\nInner exception: run termination file");
}

TEST_F(PathsTest, ReadWholeFileOfADirectoryRaises5009) {
  EXPECT_EQ(MessageOf([&] { Sumara::ReadWholeFile(m_directory.Path(), "x", true); }),
            "IO error 5009: Failed to read data.\nFurther information: File path: " +
                m_directory.Path() + "\nInner exception: Is a directory");
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
