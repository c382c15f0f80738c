#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>

#include "core/byte_buffer.h"
#include "core/file.h"
#include "core/file_stream.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::File;

class FileOnPosixTest : public ::testing::Test {
 protected:
  testing_support::TempDirectory m_directory;
  File m_file;
};

TEST_F(FileOnPosixTest, DirectoriesDoNotOpen) {
  EXPECT_EQ(m_file.Open(m_directory.Path(), File::Access::kRead), EISDIR);
  EXPECT_EQ(m_file.Open(m_directory.Path(), File::Access::kWrite), EISDIR);
  Sumara::FileStream stream;
  stream.Open(m_directory.Path(), File::Access::kRead);
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_TRUE(stream.Fail());
  EXPECT_EQ(stream.LastError(), EISDIR);
}

TEST_F(FileOnPosixTest, FileOpenForWritingIsNotRead) {
  ASSERT_EQ(m_file.Open(m_directory.Path("a"), File::Access::kWrite), 0);
  char byte = '?';
  int error = 0;
  EXPECT_EQ(m_file.ReadAt(0, {&byte, 1}, error), 0u);
  EXPECT_EQ(error, EBADF);
}

TEST_F(FileOnPosixTest, StateFollowsTheLastWrite) {
  const std::string path = m_directory.Write("a", "1");
  ASSERT_EQ(m_file.Open(path, File::Access::kRead), 0);
  const Sumara::FileState before = m_file.State();
  EXPECT_EQ(m_file.State(), before);
  EXPECT_EQ(before.size, 1u);
  std::filesystem::last_write_time(
      path, std::filesystem::last_write_time(path) + std::chrono::microseconds(1));
  EXPECT_EQ(m_file.State().written, before.written + 1000);
  EXPECT_NE(m_file.State(), before);
}

TEST_F(FileOnPosixTest, StateTellsAFileFromItsReplacement) {
  const std::string path = m_directory.Write("a", "1");
  const std::string other = m_directory.Write("b", "2");
  std::filesystem::last_write_time(other, std::filesystem::last_write_time(path));
  ASSERT_EQ(m_file.Open(path, File::Access::kRead), 0);
  const Sumara::FileState before = m_file.State();
  std::filesystem::rename(other, path);
  ASSERT_EQ(m_file.Open(path, File::Access::kRead), 0);
  EXPECT_EQ(m_file.State().size, before.size);
  EXPECT_EQ(m_file.State().written, before.written);
  EXPECT_NE(m_file.State(), before);
}
TEST(ByteBufferOnPosixTest, LargeBlockIsAlignedToLargePages) {
  Sumara::ByteBuffer buffer;
  buffer.Resize(std::size_t{8} << 20);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.Data()) % (std::size_t{2} << 20), 0u);
}
TEST_F(FileOnPosixTest, PipesAndDevicesDoNotOpen) {
  const std::string pipe = m_directory.Path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& path : {pipe, std::string("/dev/zero")}) {
    EXPECT_EQ(m_file.Open(path, File::Access::kRead), ENOTSUP);
    EXPECT_EQ(m_file.Open(path, File::Access::kWrite), ENOTSUP);
    EXPECT_FALSE(m_file.IsOpen());
  }
}

TEST_F(FileOnPosixTest, WhoReadsAPipeIsNotDisturbed) {
  const std::string path = m_directory.Path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  EXPECT_EQ(m_file.Open(path, File::Access::kWrite), ENOTSUP);
  pollfd state{reader, POLLIN, 0};
  EXPECT_EQ(::poll(&state, 1, 0), 0);  // else somebody came and left
  ::close(reader);
}
}  // namespace
