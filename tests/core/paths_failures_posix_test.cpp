#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

#include "core/exceptions.h"
#include "core/paths.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

namespace fs = std::filesystem;
using testing_support::MessageOf;
using testing_support::TempDirectory;

/// Makes `path` the working directory for a while.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) : m_before(fs::current_path()) {
    fs::current_path(path);
  }
  ~WorkingDirectory() { fs::current_path(m_before); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  fs::path m_before;
};

class PathFailuresTest : public ::testing::Test {
 protected:
  /// The text of a directory that was not made, for the system's `reason`.
  static std::string NotCreated(const std::string& path, const std::string& reason) {
    return "IO error 5028: Failed to create directory - check permissions, and ensure path does "
           "not contain illegal characters\nIf using an absolute path, check the volume or drive "
           "mapping is valid.\nIf using a UNC path, ensure the server name is correct and the "
           "server is available.\nFurther information: Directory: " +
           path + "\nInner exception: filesystem error: " + reason;
  }

  TempDirectory m_directory;
};

TEST_F(PathFailuresTest, LongRelativePathIsAskedForAsItStands) {
  std::string path = "run";
  while (path.size() < 300) path += "/" + std::string(32, 'x');
  m_directory.MakeDirectory(path);
  const WorkingDirectory here(m_directory.Path());
  EXPECT_EQ(Sumara::SystemPath(path), path);
  EXPECT_TRUE(Sumara::Exists(path));
  EXPECT_TRUE(Sumara::IsDirectory(path));
  EXPECT_FALSE(Sumara::Exists(path + "/missing"));
  EXPECT_EQ(Sumara::NormaliseDirectory(path), m_directory.Path(path));
}

TEST_F(PathFailuresTest, RemovedWorkingDirectoryIsNotNormalised) {
  const std::string gone = m_directory.MakeDirectory("gone");
  const WorkingDirectory here(gone);
  fs::remove(gone);
  ASSERT_TRUE(Sumara::Exists("."));
  const std::string reason =
      "\nInner exception: " + MessageOf([] { std::ignore = fs::canonical("."); });
  EXPECT_EQ(MessageOf([] { Sumara::NormaliseFilePath("."); }),
            "IO error 5024: Path could not be normalised - check the path exists.\nFurther "
            "information: File path: ." +
                reason);
  EXPECT_EQ(MessageOf([] { Sumara::NormaliseDirectory("."); }),
            "IO error 5025: Directory could not be normalised - check the directory "
            "exists.\nFurther information: Directory: ." +
                reason);
}

TEST_F(PathFailuresTest, DirectoryBelowAFileIsNotCreated) {
  const std::string path = m_directory.Write("a", "") + "/b";
  EXPECT_EQ(MessageOf([&] { Sumara::CreateDirectories(path); }),
            NotCreated(path, "cannot create directories: Not a directory [" + path + "]"));
}

TEST_F(PathFailuresTest, DirectoryWithANullByteIsNotCreated) {
  const std::string path = m_directory.Path("x") + std::string("\0y", 2);
  std::string text;
  try {
    Sumara::CreateDirectories(path);
  } catch (const CIOException& failure) {
    text = failure.Text();
  }
  EXPECT_EQ(text, NotCreated(path, "create_directories: Invalid argument"));
  EXPECT_FALSE(fs::exists(m_directory.Path("x")));
}

}  // namespace
