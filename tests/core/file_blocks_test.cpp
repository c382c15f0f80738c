#include "core/file_blocks.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "tests/support/temp_directory.h"

namespace {

using Sumara::File;
using Sumara::FileBlocks;

std::string RandomBytes(std::size_t size) {
  std::mt19937 random(7);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

class FileBlocksTest : public ::testing::Test {
 protected:
  void Write(std::size_t size) {
    m_bytes = RandomBytes(size);
    m_directory.Write("data", m_bytes);
    ASSERT_EQ(m_file.Open(m_directory.Path("data"), File::Access::kRead), 0);
  }

  static std::string All(FileBlocks& blocks) {
    std::string all;
    for (;;) {
      const auto block = blocks.At(all.size());
      if (block.empty()) return all;
      all.append(block.data(), block.size());
    }
  }

  testing_support::TempDirectory m_directory;
  std::string m_bytes;
  File m_file;
};

TEST_F(FileBlocksTest, BlocksInOrderAreTheFile) {
  for (const std::size_t size : {1u, 4096u, 70001u, 5000003u}) {
    Write(size);
    for (const std::size_t blockSize : {0u, 100000u, 7u}) {
      if (blockSize == 7 && size > 70001) continue;
      for (const bool takesAll : {false, true}) {
        FileBlocks blocks(m_file, size, {blockSize, takesAll});
        EXPECT_EQ(All(blocks), m_bytes);
        EXPECT_EQ(blocks.Error(), 0);
      }
    }
  }
}

TEST_F(FileBlocksTest, WhatIsTakenWholeIsCopied) {
  Write(5000003);
  FileBlocks blocks(m_file, m_bytes.size(), {0, true});
  EXPECT_FALSE(blocks.IsMapped());
}

TEST_F(FileBlocksTest, BlocksBeginAnywhere) {
  Write(5000003);
  FileBlocks blocks(m_file, m_bytes.size());
  for (const std::size_t offset : {4999999u, 12345u, 0u, 2500001u, 2500001u}) {
    const auto block = blocks.At(offset);
    ASSERT_FALSE(block.empty());
    EXPECT_EQ(std::string(block.begin(), block.end()), m_bytes.substr(offset, block.size()));
  }
}

TEST_F(FileBlocksTest, NoMoreThanIsAskedForComes) {
  Write(300000);
  FileBlocks blocks(m_file, 200001);
  EXPECT_EQ(All(blocks), m_bytes.substr(0, 200001));
  EXPECT_TRUE(blocks.At(200001).empty());
  EXPECT_TRUE(blocks.At(~std::uint64_t{0}).empty());
}

TEST_F(FileBlocksTest, FileShorterThanIsAskedForEndsWhereItEnds) {
  Write(300001);
  FileBlocks blocks(m_file, 400000);
  EXPECT_FALSE(blocks.IsMapped());
  EXPECT_EQ(All(blocks), m_bytes);
  EXPECT_EQ(blocks.Error(), 0);
}

TEST_F(FileBlocksTest, EmptyFileHasNoBlocks) {
  Write(0);
  FileBlocks blocks(m_file, 0);
  EXPECT_TRUE(blocks.At(0).empty());
  FileBlocks more(m_file, 100);
  EXPECT_TRUE(more.At(0).empty());
}

TEST_F(FileBlocksTest, ThreadsReadOneFile) {
  Write(3000001);
  std::vector<std::string> results(4);
  std::vector<std::thread> threads;
  for (auto& result : results) {
    threads.emplace_back([&] {
      File file;
      file.Open(m_directory.Path("data"), File::Access::kRead);
      FileBlocks blocks(file, m_bytes.size());
      result = All(blocks);
    });
  }
  for (auto& thread : threads) thread.join();
  for (const auto& result : results) EXPECT_EQ(result, m_bytes);
}

}  // namespace
