#include "vocabulary/run_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using SumaraApi::CalculationType;
using SumaraApi::CalculationTypeOfExtension;
using SumaraApi::DirectoryListing;
using SumaraApi::IsHeaderExtension;
using SumaraApi::IsTerminationFileName;
using testing_support::MessageOf;

TEST(RunFilesTest, HeadersHaveDigitsBehindThePercentSign) {
  for (const char* extension : {".%1", ".%07", ".%123", ".%0"}) {
    EXPECT_TRUE(IsHeaderExtension(extension)) << extension;
  }
  for (const char* extension : {"", ".", ".%", ".%1a", ".%a1", ".$01", ".%1 ", ".% 1", "%12"}) {
    EXPECT_FALSE(IsHeaderExtension(extension)) << extension;
  }
}

TEST(RunFilesTest, TerminationFilesAreKnownInAnyCase) {
  for (const char* name : {"run.$TE", "run.$te", "a.b.$Te"}) {
    EXPECT_TRUE(IsTerminationFileName(name)) << name;
  }
  for (const char* name : {"run.$TEX", "run.$T", "run$TE", ".$TE", "run.$ME", ""}) {
    EXPECT_FALSE(IsTerminationFileName(name)) << name;
  }
}

TEST(RunFilesTest, ThreeExtensionsTellTheKindWithoutAHeader) {
  EXPECT_EQ(CalculationTypeOfExtension(".$mx"), CalculationType::UltimateLoadsAnalysis);
  EXPECT_EQ(CalculationTypeOfExtension(".$FP"), CalculationType::ExtremeLoadExtrapolation);
  EXPECT_EQ(CalculationTypeOfExtension(".Sea"), CalculationType::SeaState);
  for (const char* extension : {"", ".$m", ".$mxx", "$mx", ".%01"}) {
    EXPECT_EQ(CalculationTypeOfExtension(extension), CalculationType::Unknown) << extension;
  }
}

using Names = std::vector<std::string>;

class DirectoryListingTest : public ::testing::Test {
 protected:
  DirectoryListingTest() {
    for (const char* name : {"run.$TE", "RUN.%01", "run.%02", "run2.%01", "run", "run.a.%01"}) {
      m_directory.Write(name, "text");
    }
    m_directory.MakeDirectory("run.%03");
  }

  Names FilesOf(const std::string& runName) const {
    Names names = DirectoryListing(m_directory.Path("")).FilesOf(runName);
    std::sort(names.begin(), names.end());
    return names;
  }

  testing_support::TempDirectory m_directory;
};

TEST_F(DirectoryListingTest, BaseNamesAreComparedInAnyCaseAndDirectoriesPassedOver) {
  EXPECT_EQ(FilesOf("Run"), (Names{"RUN.%01", "run", "run.$TE", "run.%02"}));
  EXPECT_EQ(FilesOf("run.A"), (Names{"run.a.%01"}));
  EXPECT_EQ(FilesOf("none"), Names{});
}

TEST_F(DirectoryListingTest, FilesSpelledAsTheRunComeFirstAndInPlaceOfOthers) {
  for (const char* name : {"RUN.$te", "Run.%02", "run.%04", "RUN.%4"}) m_directory.Write(name, "");
  const Names names = DirectoryListing(m_directory.Path("")).FilesOf("run");
  ASSERT_EQ(names.size(), 6u);
  EXPECT_EQ(std::set<std::string>(names.begin(), names.begin() + 4),
            (std::set<std::string>{"run", "run.$TE", "run.%02", "run.%04"}));
  EXPECT_EQ(std::set<std::string>(names.begin() + 4, names.end()),
            (std::set<std::string>{"RUN.%01", "RUN.%4"}));
}

TEST_F(DirectoryListingTest, OfOtherSpellingsOnlyOneCounts) {
  for (const char* name : {"A.%01", "a.%01", "A.%02"}) m_directory.Write(name, "");
  const Names names = FilesOf("X");
  EXPECT_EQ(names, Names{});
  const Names files = FilesOf("A");
  EXPECT_EQ(files, (Names{"A.%01", "A.%02"}));
  m_directory.Write("aB.%01", "");
  m_directory.Write("Ab.%01", "");
  EXPECT_EQ(FilesOf("AB").size(), 1u);
}

TEST_F(DirectoryListingTest, LinksAreFollowedAtEachQuestion) {
  std::filesystem::create_symlink("run", m_directory.Path("run.%05"));
  const DirectoryListing listing(m_directory.Path(""));
  const auto holds = [&](const std::string& name) {
    const Names names = listing.FilesOf("run");
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  EXPECT_TRUE(holds("run.%05"));
  std::filesystem::remove(m_directory.Path("run"));
  EXPECT_FALSE(holds("run.%05"));
}

TEST_F(DirectoryListingTest, ALinkThatCannotBeFollowedIsAnErrorOfEachRun) {
  std::filesystem::create_symlink("loop", m_directory.Path("loop"));
  EXPECT_EQ(MessageOf([&] { FilesOf("run"); }),
            "filesystem error: status: Too many levels of symbolic links [" +
                m_directory.Path("loop") + "]");
}

TEST_F(DirectoryListingTest, AMissingDirectoryIsAnErrorOfTheFileSystem) {
  EXPECT_EQ(
      MessageOf([&] { DirectoryListing(m_directory.Path("none/")); }),
      "filesystem error: directory_iterator::directory_iterator: No such file or directory [" +
          m_directory.Path("none/") + "]");
}

}  // namespace
