#include "api/directory_listings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/api/sample_run.h"
#include "tests/support/message_of.h"

namespace {

using SumaraApi::DirectoryListings;
using testing_support::MessageOf;
using testing_support::SetLastWrite;
using Names = std::vector<std::string>;

class DirectoryListingsTest : public ::testing::Test {
 protected:
  DirectoryListingsTest() { m_directory.Write("run.%01", ""); }

  std::string Directory() const { return m_directory.Path(""); }
  Names FilesOf(DirectoryListings& listings) const {
    Names names = listings.Of(Directory())->FilesOf("run");
    std::sort(names.begin(), names.end());
    return names;
  }

  testing_support::TempDirectory m_directory;
  DirectoryListings m_listings;
};

TEST_F(DirectoryListingsTest, AListingServesWhileTheLastWriteStands) {
  SetLastWrite(Directory(), 1'700'000'000);
  const auto first = m_listings.Of(Directory());
  EXPECT_EQ(m_listings.Of(Directory()), first);
  m_directory.Write("run.%02", "");
  EXPECT_EQ(FilesOf(m_listings), (Names{"run.%01", "run.%02"}));
  SetLastWrite(Directory(), 1'700'000'001);
  const auto second = m_listings.Of(Directory());
  EXPECT_NE(second, first);
  EXPECT_EQ(m_listings.Of(Directory()), second);
}

TEST_F(DirectoryListingsTest, OneCallTakesADirectoryAsItWasWhenItWasAskedForFirst) {
  const std::string other = m_directory.MakeDirectory("sub/");
  {
    const DirectoryListings::Call call(m_listings);
    EXPECT_EQ(FilesOf(m_listings), Names{"run.%01"});
    m_directory.Write("run.%02", "");
    EXPECT_EQ(FilesOf(m_listings), Names{"run.%01"});
    EXPECT_EQ(m_listings.Of(other)->Directory(), other);
    EXPECT_EQ(FilesOf(m_listings), (Names{"run.%01", "run.%02"}));
    m_directory.Write("run.%03", "");
  }
  EXPECT_EQ(FilesOf(m_listings), (Names{"run.%01", "run.%02", "run.%03"}));
}

TEST_F(DirectoryListingsTest, ALastWriteThatIsTooYoungToTellIsNotTrusted) {
  const std::int64_t now = std::time(nullptr);
  for (const auto& [seconds, nanoseconds] : {std::pair<std::int64_t, std::int64_t>(now - 1, 0),
                                             {now + 3'600, 0},
                                             {now + 3'600, 5'000}}) {
    SetLastWrite(Directory(), seconds, nanoseconds);
    FilesOf(m_listings);
    m_directory.Write("run.%02", "");
    SetLastWrite(Directory(), seconds, nanoseconds);  // as a file in the same tick of the clock
    EXPECT_EQ(FilesOf(m_listings), (Names{"run.%01", "run.%02"}));
    std::filesystem::remove(m_directory.Path("run.%02"));
  }
}

TEST_F(DirectoryListingsTest, ALastWriteOfSomeTimeAgoIsTrusted) {
  SetLastWrite(Directory(), std::time(nullptr) - 10, 5'000);
  EXPECT_EQ(m_listings.Of(Directory()), m_listings.Of(Directory()));
}

TEST_F(DirectoryListingsTest, OfManyDirectoriesTheLastOnesAreKept) {
  std::vector<std::string> directories;
  for (int i = 0; i < 6; ++i) {
    directories.push_back(m_directory.MakeDirectory(std::to_string(i)) + "/");
    SetLastWrite(directories.back(), 1'700'000'000);
    m_listings.Of(directories.back());
  }
  EXPECT_EQ(m_listings.Of(directories[5]), m_listings.Of(directories[5]));
  EXPECT_EQ(m_listings.Of(directories[0]), m_listings.Of(directories[0]));
}

TEST_F(DirectoryListingsTest, ADirectoryThatIsGoneIsAnError) {
  SetLastWrite(Directory(), 1'700'000'000);
  m_directory.MakeDirectory("sub");
  SetLastWrite(m_directory.Path("sub"), 1'700'000'000);
  m_listings.Of(m_directory.Path("sub/"));
  std::filesystem::remove(m_directory.Path("sub"));
  EXPECT_EQ(
      MessageOf([&] { m_listings.Of(m_directory.Path("sub/")); }),
      "filesystem error: directory_iterator::directory_iterator: No such file or directory [" +
          m_directory.Path("sub/") + "]");
}

}  // namespace
