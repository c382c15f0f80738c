#include "core/directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "tests/support/temp_directory.h"

namespace {

using Sumara::EntryType;
using testing_support::TempDirectory;

constexpr const char* kOpen = "directory_iterator::directory_iterator";
constexpr const char* kAdvance = "directory_iterator::operator++";

class DirectoryReaderTest : public ::testing::Test {
 protected:
  TempDirectory m_directory;
};

TEST_F(DirectoryReaderTest, DeliversFilesAndDirectories) {
  m_directory.Write("file", "");
  m_directory.MakeDirectory("folder");
  std::map<std::string, EntryType> found;
  Sumara::DirectoryReader reader(m_directory.Path(), kOpen);
  while (const auto* entry = reader.Next(kAdvance)) found.emplace(entry->name, entry->type);
  EXPECT_EQ(found, (std::map<std::string, EntryType>{{"file", EntryType::kFile},
                                                     {"folder", EntryType::kDirectory}}));
  EXPECT_EQ(reader.Next(kAdvance), nullptr);
}

TEST_F(DirectoryReaderTest, OnlyDirectoriesOpen) {
  const auto open = [](const std::string& path) { Sumara::DirectoryReader(path, kOpen); };
  EXPECT_THROW(open(m_directory.Path("missing")), std::filesystem::filesystem_error);
  EXPECT_THROW(open(m_directory.Write("file", "")), std::filesystem::filesystem_error);
  EXPECT_THROW(open(""), std::filesystem::filesystem_error);
}

TEST_F(DirectoryReaderTest, MovedReaderGoesOn) {
  m_directory.Write("a", "");
  m_directory.Write("b", "");
  Sumara::DirectoryReader first(m_directory.Path(), kOpen);
  ASSERT_NE(first.Next(kAdvance), nullptr);
  Sumara::DirectoryReader second = std::move(first);
  EXPECT_NE(second.Next(kAdvance), nullptr);
  EXPECT_EQ(second.Next(kAdvance), nullptr);
}

TEST_F(DirectoryReaderTest, KnownTypesAskNothingOfTheSystem) {
  EXPECT_TRUE(Sumara::IsRegularFile("no such file", EntryType::kFile));
  EXPECT_FALSE(Sumara::IsRegularFile("no such file", EntryType::kDirectory));
  EXPECT_TRUE(Sumara::IsDirectoryEntry("no such file", EntryType::kDirectory));
  EXPECT_FALSE(Sumara::IsDirectoryEntry("no such file", EntryType::kOther));
}

TEST_F(DirectoryReaderTest, VanishedEntryIsNoError) {
  EXPECT_FALSE(Sumara::IsRegularFile(m_directory.Path("gone"), EntryType::kUnknown));
  EXPECT_FALSE(Sumara::IsDirectoryEntry(m_directory.Path("gone"), EntryType::kLink));
}

}  // namespace
