#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/io_base.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using testing_support::MessageOf;

class CIOBaseOnPosixTest : public ::testing::Test {
 protected:
  static std::string Failure(const std::string& systemText, const std::string& path) {
    return "IO error 5007: Stream has error flag(s).\nFurther information: failbit: last operation "
           "on stream invalid - check file or directory exists, path does not contain illegal "
           "characters, and file is not locked by another process\nFurther information: " +
           systemText + "\nPath: " + path;
  }

  testing_support::TempDirectory m_directory;
};

TEST_F(CIOBaseOnPosixTest, FileThatDoesNotOpenRaises5007) {
  EXPECT_EQ(MessageOf([&] { CIOBase(m_directory.Path(), 0).Open(); }),
            Failure("Is a directory", m_directory.Path()));
  const std::string path = m_directory.Path("no/parent");
  EXPECT_EQ(MessageOf([&] { CIOBase(path, 3).Open(); }),
            Failure("No such file or directory", path));
}

TEST_F(CIOBaseOnPosixTest, PipeRaises5007) {
  const std::string path = m_directory.Path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  CIOBase file(path, 0);
  EXPECT_EQ(MessageOf([&] { file.Open(); }), Failure("Operation not supported", path));
  EXPECT_FALSE(file.IsOpen());
}
}  // namespace
