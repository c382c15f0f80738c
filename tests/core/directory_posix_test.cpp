#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>

#include "core/directory.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::EntryType;
using testing_support::MessageOf;
using testing_support::TempDirectory;

constexpr const char* kOpen = "directory_iterator::directory_iterator";
constexpr const char* kAdvance = "directory_iterator::operator++";

class DirectoryOnPosixTest : public ::testing::Test {
 protected:
  TempDirectory m_directory;
};

TEST_F(DirectoryOnPosixTest, DeliversEachNameOnceWithItsType) {
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

TEST_F(DirectoryOnPosixTest, FailureNamesTheOperationAndThePath) {
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

TEST_F(DirectoryOnPosixTest, LinksAndUnknownTypesAreFollowed) {
  const std::string file = m_directory.Write("file", "");
  const std::string link = m_directory.Path("link");
  std::filesystem::create_symlink(m_directory.Path(), link);
  EXPECT_TRUE(Sumara::IsRegularFile(file, EntryType::kUnknown));
  EXPECT_FALSE(Sumara::IsDirectoryEntry(file, EntryType::kUnknown));
  EXPECT_TRUE(Sumara::IsDirectoryEntry(link, EntryType::kLink));
  EXPECT_FALSE(Sumara::IsRegularFile(link, EntryType::kLink));
}

TEST_F(DirectoryOnPosixTest, OtherStatusFailureNamesStatus) {
  const std::string loop = m_directory.Path("loop");
  std::filesystem::create_symlink(loop, loop);
  EXPECT_EQ(MessageOf([&] { Sumara::IsRegularFile(loop, EntryType::kLink); }),
            "filesystem error: status: Too many levels of symbolic links [" + loop + "]");
}
}  // namespace
