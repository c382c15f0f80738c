#include "vocabulary/run_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "tests/support/temp_directory.h"

namespace {

using SumaraApi::CalculationType;
using SumaraApi::CalculationTypeOfExtension;
using SumaraApi::ForEachFileOfRun;
using SumaraApi::IsHeaderExtension;
using SumaraApi::IsTerminationFileName;

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

class FilesOfARunTest : public ::testing::Test {
 protected:
  FilesOfARunTest() {
    for (const char* name : {"run.$TE", "RUN.%01", "run.%02", "run2.%01", "run", "run.a.%01"}) {
      m_directory.Write(name, "text");
    }
    m_directory.MakeDirectory("run.%03");
  }

  testing_support::TempDirectory m_directory;
};

TEST_F(FilesOfARunTest, BaseNamesAreComparedInAnyCaseAndDirectoriesPassedOver) {
  std::set<std::string> names;
  ForEachFileOfRun(m_directory.Path(""), "Run", [&](const std::string& name) {
    names.insert(name);
    return true;
  });
  EXPECT_EQ(names, (std::set<std::string>{"run.$TE", "RUN.%01", "run.%02", "run"}));
}

TEST_F(FilesOfARunTest, VisitingEndsWhenTheVisitorHasEnough) {
  int visits = 0;
  ForEachFileOfRun(m_directory.Path(""), "run", [&](const std::string&) { return ++visits < 2; });
  EXPECT_EQ(visits, 2);
}

TEST_F(FilesOfARunTest, AMissingDirectoryIsAnErrorOfTheFileSystem) {
  EXPECT_THROW(
      ForEachFileOfRun(m_directory.Path("none/"), "run", [](const std::string&) { return true; }),
      std::filesystem::filesystem_error);
}

}  // namespace
