#include "core/directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>

#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::EntryType;
using testing_support::MessageOf;
using testing_support::TempDirectory;

constexpr const char* kOpen = "directory_iterator::directory_iterator";
constexpr const char* kAdvance = "directory_iterator::operator++";

class DirectoryReaderTest : public ::testing::Test {
 protected:
  TempDirectory m_directory;
};

TEST_F(DirectoryReaderTest, DeliversEachNameOnceWithItsType) {
  m_directory.Write("file", "");
  m_directory.MakeDirectory("folder");
  std::filesystem::create_symlink("file", m_directory.Path("link"));
  ASSERT_EQ(::mkfifo(m_directory.Path("pipe").c_str(), 0600), 0);

  std::multimap<std::string, EntryType> found;
  Sumara::DirectoryReader reader(m_directory.Path(), kOpen);
  while (const auto* entry = reader.Next(kAdvance)) found.emplace(entry->name, entry->type);

  const std::multimap<std::string, EntryType> expected = {{"file", EntryType::kFile},
                                                          {"folder", EntryType::kDirectory},
                                                          {"link", EntryType::kLink},
                                                          {"pipe", EntryType::kOther}};
  EXPECT_EQ(found, expected);
  EXPECT_EQ(reader.Next(kAdvance), nullptr);
  EXPECT_EQ(reader.Path(), m_directory.Path());
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

TEST_F(DirectoryReaderTest, FailureNamesTheOperationAndThePath) {
  const std::string missing = m_directory.Path("missing");
  const auto open = [](const std::string& path) { Sumara::DirectoryReader(path, kOpen); };
  EXPECT_EQ(
      MessageOf([&] { open(missing); }),
      "filesystem error: directory_iterator::directory_iterator: No such file or directory [" +
          missing + "]");
  const std::string file = m_directory.Write("file", "");
  EXPECT_EQ(
      MessageOf([&] { open(file); }),
      "filesystem error: directory_iterator::directory_iterator: Not a directory [" + file + "]");
  EXPECT_THROW(open(""), std::filesystem::filesystem_error);
}

TEST_F(DirectoryReaderTest, KnownTypesAskNothingOfTheSystem) {
  EXPECT_TRUE(Sumara::IsRegularFile("no such file", EntryType::kFile));
  EXPECT_FALSE(Sumara::IsRegularFile("no such file", EntryType::kDirectory));
  EXPECT_TRUE(Sumara::IsDirectoryEntry("no such file", EntryType::kDirectory));
  EXPECT_FALSE(Sumara::IsDirectoryEntry("no such file", EntryType::kOther));
}

TEST_F(DirectoryReaderTest, LinksAndUnknownTypesAreFollowed) {
  const std::string file = m_directory.Write("file", "");
  const std::string link = m_directory.Path("link");
  std::filesystem::create_symlink(m_directory.Path(), link);
  EXPECT_TRUE(Sumara::IsRegularFile(file, EntryType::kUnknown));
  EXPECT_FALSE(Sumara::IsDirectoryEntry(file, EntryType::kUnknown));
  EXPECT_TRUE(Sumara::IsDirectoryEntry(link, EntryType::kLink));
  EXPECT_FALSE(Sumara::IsRegularFile(link, EntryType::kLink));
}

TEST_F(DirectoryReaderTest, VanishedEntryIsNoError) {
  EXPECT_FALSE(Sumara::IsRegularFile(m_directory.Path("gone"), EntryType::kUnknown));
  EXPECT_FALSE(Sumara::IsDirectoryEntry(m_directory.Path("gone"), EntryType::kLink));
}

TEST_F(DirectoryReaderTest, OtherStatusFailureNamesStatus) {
  const std::string loop = m_directory.Path("loop");
  std::filesystem::create_symlink(loop, loop);
  EXPECT_EQ(MessageOf([&] { Sumara::IsRegularFile(loop, EntryType::kLink); }),
            "filesystem error: status: Too many levels of symbolic links [" + loop + "]");
}

}  // namespace
