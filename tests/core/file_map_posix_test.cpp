#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/file_blocks.h"
#include "core/file_map.h"
#include "tests/support/other_process.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::File;
using Sumara::FileBlocks;
using Sumara::FileMap;

constexpr std::size_t kSize = 3000001;

class FileMapTest : public ::testing::Test {
 protected:
  FileMapTest() {
    m_directory.Write("data", std::string(kSize, 'x'));
    m_file.Open(Path(), File::Access::kRead);
  }
  std::string Path() const { return m_directory.Path("data"); }

  testing_support::TempDirectory m_directory;
  File m_file;
};

/// A mapping, or the end of the test where the system gives none.
#define MAP_OR_SKIP(map)                 \
  auto map = FileMap::Of(m_file, kSize); \
  if (!map) GTEST_SKIP() << "no leases here"

TEST_F(FileMapTest, BytesAreThoseOfTheFile) {
  MAP_OR_SKIP(map);
  EXPECT_EQ(map->Size(), kSize);
  const auto piece = map->Ready(2000003, 999998);
  ASSERT_EQ(piece.size(), 999998u);
  EXPECT_EQ(std::string(piece.begin(), piece.end()), std::string(999998, 'x'));
  map->Release(2000003, 999998);
  EXPECT_EQ(map->Ready(0, 1).front(), 'x');
}

TEST_F(FileMapTest, FileWithFewerBytesIsNotMapped) {
  EXPECT_FALSE(FileMap::Of(m_file, kSize + 1).has_value());
  EXPECT_FALSE(FileMap::Of(m_file, 0).has_value());
}

TEST_F(FileMapTest, FileThatIsOpenForWritingIsNotMapped) {
  const int writer = ::open(Path().c_str(), O_WRONLY);
  ASSERT_NE(writer, -1);
  EXPECT_FALSE(FileMap::Of(m_file, kSize).has_value());
  FileBlocks blocks(m_file, kSize);
  EXPECT_FALSE(blocks.IsMapped());
  EXPECT_FALSE(blocks.At(0).empty());
  ::close(writer);
}

TEST_F(FileMapTest, WriterGetsItsFileWhenTheMappingIsGone) {
  {
    MAP_OR_SKIP(map);
    EXPECT_EQ(::open(Path().c_str(), O_WRONLY | O_NONBLOCK), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
  }
  const int writer = ::open(Path().c_str(), O_WRONLY | O_NONBLOCK);
  EXPECT_NE(writer, -1);
  ::close(writer);
}

TEST_F(FileMapTest, LeaseEndsAlsoWhereAForkedProcessHasTheFile) {
  int hold[2];
  ASSERT_EQ(::pipe(hold), 0);
  pid_t child = -1;
  {
    MAP_OR_SKIP(map);
    child = ::fork();
    if (child == 0) {
      ::close(hold[1]);
      char byte;
      ::_exit(::read(hold[0], &byte, 1) == 0 ? 0 : 1);
    }
  }
  const int writer = ::open(Path().c_str(), O_WRONLY | O_NONBLOCK);
  EXPECT_NE(writer, -1);
  ::close(writer);
  ::close(hold[1]);
  ::close(hold[0]);
  ::waitpid(child, nullptr, 0);
}

TEST_F(FileMapTest, RemovedFileStays) {
  MAP_OR_SKIP(map);
  std::filesystem::remove(Path());
  EXPECT_EQ(map->Ready(kSize - 1, 1).front(), 'x');
}

TEST_F(FileMapTest, SmallOrStrangeFilesAreNotResidentOrMapped) {
  File directory;
  EXPECT_NE(directory.Open(m_directory.Path(), File::Access::kRead), 0);
  File device;
  if (device.Open("/dev/zero", File::Access::kRead) == 0) {
    EXPECT_FALSE(FileMap::Of(device, 4096).has_value());
  }
}

/// Cuts the file to nothing and writes it again, over and over, until it is ended.
[[noreturn]] void CutAndRestore(const std::string& path) {
  const std::string content(kSize, 'x');
  for (;;) {
    const int writer = ::open(path.c_str(), O_WRONLY | O_TRUNC);
    std::size_t done = 0;
    while (done < kSize) {
      const ssize_t count = ::write(writer, content.data() + done, kSize - done);
      if (count <= 0) break;
      done += static_cast<std::size_t>(count);
    }
    ::close(writer);
    ::usleep(300);
  }
}

TEST_F(FileMapTest, FileMayBeCutByAnotherProcessAtAnyTime) {
  const testing_support::OtherProcess other([&] { CutAndRestore(Path()); });
  ASSERT_TRUE(other.IsThere());
  int mapped = 0;
  for (int round = 0; round < 1000; ++round) {
    File file;
    ASSERT_EQ(file.Open(Path(), File::Access::kRead), 0);
    FileBlocks blocks(file, file.Size());
    mapped += blocks.IsMapped() ? 1 : 0;
    for (std::uint64_t at = 0;;) {
      const auto block = blocks.At(at);
      if (block.empty()) break;
      for (std::size_t i = 0; i < block.size(); i += 4096) ASSERT_EQ(block[i], 'x');
      ASSERT_EQ(block.back(), 'x');
      at += block.size();
    }
    ASSERT_EQ(blocks.Error(), 0);
  }
  RecordProperty("mapped", mapped);
}

}  // namespace
