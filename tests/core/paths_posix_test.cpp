#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "core/paths.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

namespace fs = std::filesystem;
using testing_support::MessageOf;
using testing_support::TempDirectory;

class PathsOnPosixTest : public ::testing::Test {
 protected:
  TempDirectory m_directory;
};

TEST(LongPathOnPosixTest, PathsHaveNoLimit) {
  const std::string path = "C:/" + std::string(300, 'x');
  EXPECT_FALSE(Sumara::NeedsLongPrefix(path));
  EXPECT_EQ(Sumara::SystemPath(path), path);
}

TEST_F(PathsOnPosixTest, LinksAreFollowed) {
  fs::create_symlink(m_directory.Path(), m_directory.Path("good"));
  fs::create_symlink(m_directory.Path("nowhere"), m_directory.Path("bad"));
  EXPECT_TRUE(Sumara::IsDirectory(m_directory.Path("good")));
  EXPECT_FALSE(Sumara::Exists(m_directory.Path("bad")));
}

TEST_F(PathsOnPosixTest, UnansweredQuestionsRaise5026And5027) {
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

TEST_F(PathsOnPosixTest, NormaliseGivesTheCanonicalPath) {
  m_directory.MakeDirectory("runs/deep");
  m_directory.Write("runs/run.$TE", "");
  fs::create_symlink(m_directory.Path("runs"), m_directory.Path("link"));
  const std::string runs = m_directory.Path("runs");
  EXPECT_EQ(Sumara::NormaliseDirectory(m_directory.Path() + "/./runs/deep/../"), runs);
  EXPECT_EQ(Sumara::NormaliseDirectory(m_directory.Path("link")), runs);
  EXPECT_EQ(Sumara::NormaliseFilePath(m_directory.Path() + "//link/run.$TE"), runs + "/run.$TE");
}

TEST_F(PathsOnPosixTest, LastWriteTicksAreTenthsOfMicroseconds) {
  const std::string path = m_directory.Write("a", "");
  const timespec times[] = {{0, UTIME_OMIT}, {1'700'000'000, 123'456'789}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  EXPECT_EQ(Sumara::LastWriteTicks(path), 17'000'000'001'234'567);
}

TEST_F(PathsOnPosixTest, LastWriteTicksOfWhatIsMissingNamesTheOperation) {
  const std::string path = m_directory.Path("missing");
  EXPECT_EQ(MessageOf([&] { Sumara::LastWriteTicks(path); }),
            "filesystem error: last_write_time: No such file or directory [" + path + "]");
  EXPECT_THROW(Sumara::LastWriteTicks(path), fs::filesystem_error);
}

class LastWriteTimeTextTest : public PathsOnPosixTest {
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

TEST_F(PathsOnPosixTest, ReadWholeFileLeavesLineEndsAsTheyAre) {
  const std::string path = m_directory.Write("a", " Run completed \r\n\t \r\n");
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", false), " Run completed \r\n\t \r\n");
  EXPECT_EQ(Sumara::ReadWholeFile(path, "", true), " Run completed");
}

TEST_F(PathsOnPosixTest, ReadWholeFileReadsWhatTellsNoSize) {
  EXPECT_NE(Sumara::ReadWholeFile("/proc/self/status", "", true).find("VmSize"), std::string::npos);
}

TEST_F(PathsOnPosixTest, ReadWholeFileOfADeviceRaises5009) {
  const std::string path = m_directory.Path("endless");
  std::filesystem::create_symlink("/dev/zero", path);
  EXPECT_EQ(MessageOf([&] { Sumara::ReadWholeFile(path, "x", true); }),
            "IO error 5009: Failed to read data.\nFurther information: File path: " + path +
                "\nInner exception: Operation not supported");
}

TEST_F(PathsOnPosixTest, ReadWholeFileOfADirectoryRaises5009) {
  EXPECT_EQ(MessageOf([&] { Sumara::ReadWholeFile(m_directory.Path(), "x", true); }),
            "IO error 5009: Failed to read data.\nFurther information: File path: " +
                m_directory.Path() + "\nInner exception: Is a directory");
}
}  // namespace
