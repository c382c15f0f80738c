#include "api/tabulon_api.h"

#include <unistd.h>

#include <filesystem>

#include "tests/api/api_test.h"
#include "tests/api/unprivileged.h"

namespace {

namespace fs = std::filesystem;
using SumaraApi::RunPtr;
using SumaraApi::TabulonApi;
using testing_support::kFirstWrite;
using testing_support::MessageOf;
using testing_support::SetLastWrite;
using testing_support::Unprivileged;

class TabulonApiTest : public testing_support::ApiTest {
 protected:
  std::string GetRunMessage(const std::string& directory, const std::string& name) {
    return MessageOf([&] { TabulonApi::GetRun(directory, name); });
  }
  std::string NotFound(const std::string& name) {
    return "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
           "invalid.\nFurther information: File path: " +
           Path(name + ".$TE");
  }
  std::string NoLongerExists(const std::string& name) {
    return "Sumara Tables error: Run that was previouly cached no longer exists on disk - run "
           "termination file (.$TE) missing or invalid.\nFurther information: File path: " +
           Path(name + ".$TE");
  }
};

TEST_F(TabulonApiTest, RunKnowsItsPlace) {
  Sample("run1");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetName(), "run1");
  EXPECT_EQ(run->GetDirectory(), Path("") /* ends in a separator */);
  EXPECT_EQ(run->GetTerminationFilePath(), Path("run1.$TE"));
}

TEST_F(TabulonApiTest, MissingDirectoryRaises139) {
  EXPECT_EQ(GetRunMessage(Path("none"), "run1"),
            "Sumara Tables error: Run directory was not found.\nFurther information: Directory: " +
                Path("none"));
  EXPECT_EQ(GetRunMessage("", "run1"),
            "Sumara Tables error: Run directory was not found.\nFurther information: Directory: ");
}

TEST_F(TabulonApiTest, DirectoryThatCannotBeAskedForPassesTheIoErrorOn) {
  fs::create_symlink("loop", Path("loop"));
  EXPECT_EQ(
      GetRunMessage(Path("loop"), "run1"),
      "IO error 5026: Failed to check whether file exists.\nFurther information: File path: " +
          Path("loop") + "\nInner exception: Too many levels of symbolic links");
}

TEST_F(TabulonApiTest, RunThatCannotBeAskedForPassesTheIoErrorOn) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1");
  fs::permissions(Path("sub"), fs::perms::none);
  std::string message;
  {
    const Unprivileged user;
    message = GetRunMessage(Path("sub"), "run1");
  }
  fs::permissions(Path("sub"), fs::perms::owner_all);
  EXPECT_EQ(
      message,
      "IO error 5026: Failed to check whether file exists.\nFurther information: File path: " +
          Path("sub/run1.$TE") + "\nInner exception: Permission denied");
}

TEST_F(TabulonApiTest, MissingRunRaises141) {
  EXPECT_EQ(GetRunMessage(m_directory.Path(), "run1"), NotFound("run1"));
}

TEST_F(TabulonApiTest, ExtensionInTheNameIsNotStripped) {
  Sample("run1");
  EXPECT_EQ(GetRunMessage(m_directory.Path(), "run1.$TE"), NotFound("run1.$TE"));
}

TEST_F(TabulonApiTest, FileAsDirectoryHasNoRuns) {
  m_directory.Write("file", "");
  EXPECT_EQ(GetRunMessage(Path("file"), "run1"),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("file/run1.$TE"));
}

TEST_F(TabulonApiTest, NameThatTheFileSystemCannotHoldIsNotFound) {
  const std::string longest(255 - 4, 'x');
  Sample(longest);
  EXPECT_EQ(Get(longest)->GetName(), longest);
  EXPECT_EQ(GetRunMessage(m_directory.Path(), longest + "x"), NotFound(longest + "x"));
  Sample("a");  // not what a name with a null byte means
  EXPECT_EQ(GetRunMessage(m_directory.Path(), std::string("a\0b", 3)),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("a"));
}

TEST_F(TabulonApiTest, EmptyNameLooksForABareExtension) {
  EXPECT_EQ(GetRunMessage(m_directory.Path(), ""), NotFound(""));
  Sample("", "Run completed");
  const RunPtr run = Get("");
  EXPECT_EQ(run->GetName(), "");
  EXPECT_TRUE(run->WasSuccessful());
}

TEST_F(TabulonApiTest, NameOfAnyBytesIsFound) {
  const std::string name = "L\xE4ufer \xB2 'x'";
  Sample(name);
  const RunPtr run = Get(name);
  EXPECT_EQ(run->GetName(), name);
  EXPECT_EQ(run->GetTerminationFilePath(), Path(name + ".$TE"));
}

TEST_F(TabulonApiTest, NameKeepsItsDots) {
  Sample("a.b");
  EXPECT_EQ(Get("a.b")->GetName(), "a.b");
}

TEST_F(TabulonApiTest, SpellingsOfADirectoryFindOneEntry) {
  Sample("run1");
  m_directory.MakeDirectory("sub");
  fs::create_directory_symlink(m_directory.Path(), Path("link"));
  const RunPtr run = Get("run1");
  EXPECT_EQ(TabulonApi::GetRun(m_directory.Path() + "/", "run1"), run);
  EXPECT_EQ(TabulonApi::GetRun(Path("sub/.."), "run1"), run);
  EXPECT_EQ(TabulonApi::GetRun(Path("./sub/../"), "run1"), run);
  EXPECT_EQ(TabulonApi::GetRun(Path("link"), "run1"), run);
}

TEST_F(TabulonApiTest, RelativeDirectoryFindsTheSameEntry) {
  Sample("run1");
  const RunPtr run = Get("run1");
  const fs::path before = fs::current_path();
  fs::current_path(m_directory.Path());
  const RunPtr relative = TabulonApi::GetRun(".", "run1");
  fs::current_path(before);
  EXPECT_EQ(relative, run);
}

TEST_F(TabulonApiTest, CaseOfTheNameMakesNoOtherRun) {
  Sample("run1");
  Sample("RUN1");  // a file of its own only where the file system tells them apart
  const RunPtr run = Get("run1");
  EXPECT_EQ(Get("RUN1"), run);
  EXPECT_EQ(Get("RUN1")->GetName(), "run1");
}

TEST_F(TabulonApiTest, OtherCaseOfACachedRunThatIsNoFileIsGone) {
  Sample("run1");
  Get("run1");
  EXPECT_EQ(GetRunMessage(m_directory.Path(), "RUN1"), NoLongerExists("RUN1"));
  EXPECT_EQ(GetRunMessage(m_directory.Path(), "RUN1"), NotFound("RUN1"));
}

TEST_F(TabulonApiTest, DeletedCachedRunRaises142AndThen141) {
  Sample("run1");
  Get("run1");
  fs::remove(Path("run1.$TE"));
  EXPECT_EQ(GetRunMessage(m_directory.Path(), "run1"), NoLongerExists("run1"));
  EXPECT_EQ(GetRunMessage(m_directory.Path(), "run1"), NotFound("run1"));
}

TEST_F(TabulonApiTest, FirstRewriteGivesANewRun) {
  const auto sample = Sample("run1", "Run in progress");
  const RunPtr before = Get("run1");
  EXPECT_EQ(Get("run1"), before);
  sample.Write(".$TE", "Run completed").Touch();
  const RunPtr after = Get("run1");
  EXPECT_NE(after, before);
  EXPECT_EQ(Get("run1"), after);
  EXPECT_TRUE(after->WasSuccessful());
  EXPECT_TRUE(before->WasSuccessful());  // still usable
}

TEST_F(TabulonApiTest, AnEarlierTimeIsAChangeToo) {
  const auto sample = Sample("run1");
  const RunPtr before = Get("run1");
  sample.Touch(-100);
  EXPECT_NE(Get("run1"), before);
}

TEST_F(TabulonApiTest, ATickOf100NanosecondsIsAChange) {
  Sample("run1");
  const RunPtr before = Get("run1");
  SetLastWrite(Path("run1.$TE"), kFirstWrite, 100);
  EXPECT_NE(Get("run1"), before);
}

TEST_F(TabulonApiTest, ChangeOfOtherFilesIsNoticedByNobody) {
  const auto sample = Sample("run1");
  sample.Write(".$ME", "a");
  const RunPtr run = Get("run1");
  sample.Write(".$ME", "b").Group("01", {});
  SetLastWrite(Path("run1.$ME"), kFirstWrite + 50);
  EXPECT_EQ(Get("run1"), run);
}

TEST_F(TabulonApiTest, ChangeThatTheRunNoticedItselfLeavesItInTheCache) {
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  sample.Touch();
  EXPECT_TRUE(run->HasChanged());
  EXPECT_EQ(Get("run1"), run);
}

TEST_F(TabulonApiTest, RunOfASearchIsCached) {
  Sample("run1");
  const auto runs = TabulonApi::GetRuns(m_directory.Path());
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(Get("run1"), runs.front());
}

TEST_F(TabulonApiTest, ClearRunsForgetsWhatCallersKeep) {
  Sample("run1");
  const RunPtr run = Get("run1");
  TabulonApi::ClearRuns();
  EXPECT_NE(Get("run1"), run);
  EXPECT_TRUE(run->WasSuccessful());
  TabulonApi::ClearRuns();
  TabulonApi::ClearRuns();
}

TEST_F(TabulonApiTest, DroppedRunIsFreedWithItsLastHolder) {
  Sample("run1");
  std::weak_ptr<SumaraApi::Run> watched = Get("run1");
  EXPECT_FALSE(watched.expired());
  TabulonApi::ClearRuns();
  EXPECT_TRUE(watched.expired());
}

TEST_F(TabulonApiTest, DirectoryNamedLikeATerminationFileExists) {
  m_directory.MakeDirectory("run1.$TE");
  const RunPtr run = Get("run1");
  EXPECT_EQ(MessageOf([&] { run->GetTerminationFileContent(); }),
            "IO error 5009: Failed to read data.\nFurther information: File path: " +
                Path("run1.$TE") + "\nInner exception: Is a directory");
}

TEST_F(TabulonApiTest, LinkToATerminationFileIsARunOfItsOwn) {
  Sample("run1");
  fs::create_symlink("run1.$TE", Path("alias.$TE"));
  const RunPtr run = Get("alias");
  EXPECT_EQ(run->GetName(), "alias");
  EXPECT_NE(run, Get("run1"));
}

TEST_F(TabulonApiTest, RunNeedsNoSupportedCalculation) {
  Sample("run1", "").Write(".sea", "");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetCalculationType(), SumaraApi::CalculationType::SeaState);
  EXPECT_FALSE(run->IsCalculationTypeSupported());
}

TEST_F(TabulonApiTest, SearchFiltersDoNotApply) {
  using namespace SumaraApi;
  Sample("run1", "Run completed");
  TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::IdlingSimulation);
  TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::Errored);
  TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(false);
  TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity::MatchCase);
  EXPECT_EQ(Get("run1")->GetName(), "run1");
}

TEST_F(TabulonApiTest, CachedRunWhoseFileWasRenamedInCaseGivesWay) {
  const auto sample = Sample("run1");
  const RunPtr before = Get("run1");
  std::filesystem::rename(sample.Path(".$TE"), Path("RUN1.$TE"));
  const RunPtr after = Get("RUN1");
  EXPECT_NE(after, before);
  EXPECT_EQ(after->GetName(), "RUN1");
  EXPECT_EQ(Get("RUN1"), after);
  std::filesystem::rename(Path("RUN1.$TE"), Path("Run1.$TE"));
  const auto found = TabulonApi::GetRuns(m_directory.Path());
  ASSERT_EQ(found.size(), 1u);
  EXPECT_NE(found.front(), after);
  EXPECT_EQ(found.front()->GetTerminationFileContent(), "Run completed");
  EXPECT_EQ(Get("Run1"), found.front());
}

}  // namespace
