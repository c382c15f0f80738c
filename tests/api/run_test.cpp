#include "api/run.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "tests/api/api_test.h"
#include "tests/api/unprivileged.h"

namespace {

namespace fs = std::filesystem;
using SumaraApi::CalculationType;
using SumaraApi::CompletionState;
using SumaraApi::RunPtr;
using testing_support::kFirstWrite;
using testing_support::MessageOf;
using testing_support::SetLastWrite;
using testing_support::Unprivileged;

class RunTest : public testing_support::ApiTest {
 protected:
  std::string LastWriteFailure(const std::string& name) {
    return "filesystem error: last_write_time: No such file or directory [" + Path(name) + "]";
  }
};

// Change detection.

TEST_F(RunTest, FirstToAskNoticesTheChange) {
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  EXPECT_FALSE(run->HasChanged());
  sample.Touch();
  EXPECT_TRUE(run->HasChanged());
  EXPECT_FALSE(run->HasChanged());
}

TEST_F(RunTest, OnlyTheFirstItemIsRefreshed) {
  const auto sample = Sample("run1", "first end");
  sample.Write(".$ME", "first message").Write(".$VE", "first check");
  const RunPtr run = Get("run1");
  run->GetTerminationFileContent();
  run->GetMessageFileContent();
  run->GetVerificationFileContent();

  sample.Write(".$TE", "second end").Write(".$ME", "second message").Touch();
  sample.Write(".$VE", "second check");
  EXPECT_EQ(run->GetMessageFileContent(), "second message");
  EXPECT_EQ(run->GetTerminationFileContent(), "first end");
  EXPECT_EQ(run->GetVerificationFileContent(), "first check");

  sample.Touch(2);
  EXPECT_EQ(run->GetTerminationFileContent(), "second end");
  EXPECT_EQ(run->GetVerificationFileContent(), "first check");
}

TEST_F(RunTest, ChangeBeforeTheFirstItemOfASearchedRunIsNone) {
  const auto sample = Sample("run1", "first");
  const RunPtr run = SumaraApi::TabulonApi::GetRuns(m_directory.Path()).front();
  sample.Write(".$TE", "second").Touch();  // nothing was known of the run yet
  EXPECT_FALSE(run->HasChanged());
  EXPECT_EQ(run->GetTerminationFileContent(), "second");
}

TEST_F(RunTest, SearchedRunNoticesTheRewriteAfterItsFirstItem) {
  const auto sample = Sample("run1", "first");
  const RunPtr run = SumaraApi::TabulonApi::GetRuns(m_directory.Path()).front();
  EXPECT_EQ(run->GetTerminationFileContent(), "first");
  sample.Write(".$TE", "second").Touch();
  EXPECT_EQ(run->GetTerminationFileContent(), "second");
}

TEST_F(RunTest, SearchedRunStoresTheTimeWithItsTimestamp) {
  const auto sample = Sample("run1");
  const RunPtr run = SumaraApi::TabulonApi::GetRuns(m_directory.Path()).front();
  const std::string first = run->GetTimestamp();
  sample.Touch(60);
  EXPECT_NE(run->GetTimestamp(), first);
}

TEST_F(RunTest, ChangeOfARunThatIsGoneIsAFileSystemError) {
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  run->GetTerminationFileContent();
  fs::remove(sample.Path(".$TE"));
  EXPECT_EQ(MessageOf([&] { run->HasChanged(); }), LastWriteFailure("run1.$TE"));
  EXPECT_EQ(MessageOf([&] { run->GetTerminationFileContent(); }), LastWriteFailure("run1.$TE"));
}

// Side files.

TEST_F(RunTest, ContentLosesTrailingWhiteSpaceOnly) {
  const auto sample = Sample("run1", "  line 1 \r\nline\t2 \t\r\n \n");
  sample.Write(".$ME", " \t\r\n").Write(".$VE", std::string("a\0b\v\n", 5));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetTerminationFileContent(), "  line 1 \r\nline\t2");
  EXPECT_EQ(run->GetMessageFileContent(), "");
  EXPECT_EQ(run->GetVerificationFileContent(), std::string("a\0b\v", 4));
}

TEST_F(RunTest, ContentIsCachedWhileTheTerminationFileStands) {
  const auto sample = Sample("run1", "end");
  sample.Write(".$ME", "before");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetMessageFileContent(), "before");
  sample.Write(".$ME", "after");
  EXPECT_EQ(run->GetMessageFileContent(), "before");
}

TEST_F(RunTest, EmptyContentIsReadAgain) {
  const auto sample = Sample("run1", "end");
  sample.Write(".$ME", "\n");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetMessageFileContent(), "");
  sample.Write(".$ME", "text");
  EXPECT_EQ(run->GetMessageFileContent(), "text");
}

TEST_F(RunTest, EmptyContentDoesNotConsumeAChange) {
  const auto sample = Sample("run1", "end");
  sample.Write(".$ME", "");
  const RunPtr run = Get("run1");
  run->GetMessageFileContent();
  sample.Touch();
  run->GetMessageFileContent();
  EXPECT_TRUE(run->HasChanged());
}

TEST_F(RunTest, MissingSideFilesRaise5022) {
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  EXPECT_EQ(MessageOf([&] { run->GetMessageFileContent(); }),
            "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$ME") +
                "\nInner exception: run message file");
  EXPECT_EQ(MessageOf([&] { run->GetVerificationFileContent(); }),
            "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$VE") +
                "\nInner exception: run verification file");
  fs::remove(sample.Path(".$TE"));
  EXPECT_EQ(MessageOf([&] { run->GetTerminationFileContent(); }),
            "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$TE") +
                "\nInner exception: run termination file");
}

TEST_F(RunTest, FailedRefreshLeavesNoOldContent) {
  const auto sample = Sample("run1");
  sample.Write(".$ME", "old");
  const RunPtr run = Get("run1");
  run->GetMessageFileContent();
  fs::remove(sample.Path(".$ME"));
  sample.Touch();
  const std::string missing =
      "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$ME") +
      "\nInner exception: run message file";
  EXPECT_EQ(MessageOf([&] { run->GetMessageFileContent(); }), missing);
  EXPECT_EQ(MessageOf([&] { run->GetMessageFileContent(); }), missing);
  sample.Write(".$ME", "new");
  EXPECT_EQ(run->GetMessageFileContent(), "new");
}

// How the run ended.

struct Ending {
  const char* text;
  CompletionState state;
  bool hasFinished;
  bool wasSuccessful;
  bool wasUnsuccessful;
};

TEST_F(RunTest, CompletionStatesOfTerminationTexts) {
  using enum CompletionState;
  const Ending endings[] = {
      {"Run completed", CompletedNormally, true, true, false},
      {"...\nRun completed in 5 s\n", CompletedNormally, true, true, false},
      {"Run in progress", InProgress, false, false, false},
      {"Run completed\nRun in progress", CompletedNormally, false, true, false},
      {"Run in progress\nRun terminated unexpectedly", InProgress, false, false, false},
      {"Run terminated unexpectedly", Terminated, true, false, true},
      {"Run terminated unexpectedly *** ERROR Aborted by user", Terminated, true, false, true},
      {"*** ERROR 17", Errored, true, false, true},
      {"*** ERROR\nAborted by user", Aborted, true, false, true},
      {"Aborted by user", Unknown, true, false, false},
      {"*** ERROR Run completed", CompletedNormally, true, true, false},
      {"*** ERROR Run in progress", InProgress, false, false, false},
      {"", Unknown, true, false, false},
      {"run completed", Unknown, true, false, false},
      {"RUN IN PROGRESS", Unknown, true, false, false},
      {"run terminated unexpectedly", Unknown, true, false, false},
      {"*** error", Unknown, true, false, false},
      {"***ERROR", Unknown, true, false, false},
      {"*** ERROR aborted by user", Errored, true, false, true},
      {"User-generated output group 'x.%01'\n", Unknown, true, false, false},
  };
  for (const Ending& ending : endings) {
    SCOPED_TRACE(ending.text);
    SumaraApi::TabulonApi::ClearRuns();
    Sample("run1", ending.text);
    const RunPtr run = Get("run1");
    EXPECT_EQ(run->GetCompletionState(), ending.state);
    EXPECT_EQ(run->HasFinished(), ending.hasFinished);
    EXPECT_EQ(run->WasSuccessful(), ending.wasSuccessful);
    EXPECT_EQ(run->WasUnsuccessful(), ending.wasUnsuccessful);
  }
}

TEST_F(RunTest, CompletionStateFollowsTheFile) {
  const auto sample = Sample("run1", "Run in progress");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetCompletionState(), CompletionState::InProgress);
  sample.Write(".$TE", "Run completed").Touch();
  EXPECT_EQ(run->GetCompletionState(), CompletionState::CompletedNormally);
}

// Times.

/// Local time of another zone while it lives.
class Zone {
 public:
  explicit Zone(const char* name) {
    if (const char* present = std::getenv("TZ")) m_before = present;
    Set(name);
  }
  ~Zone() { Set(m_before.c_str()); }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  static void Set(const char* name) {
    ::setenv("TZ", name, 1);
    ::tzset();
  }
  std::string m_before;
};

TEST_F(RunTest, TimestampIsLocalAndFloored) {
  Sample("run1");
  SetLastWrite(Path("run1.$TE"), 1'709'283'907, 999'999'999);  // 2024-03-01 09:05:07 UTC
  {
    const Zone zone("UTC0");
    EXPECT_EQ(Get("run1")->GetTimestamp(), "2024-03-01 09:05:07");
  }
  SumaraApi::TabulonApi::ClearRuns();
  const Zone zone("XYZ-5:30");
  EXPECT_EQ(Get("run1")->GetTimestamp(), "2024-03-01 14:35:07");
}

TEST_F(RunTest, TimestampIsCachedUntilTheFileChanges) {
  const Zone zone("UTC0");
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetTimestamp(), "2023-11-14 22:13:20");
  sample.Touch();
  EXPECT_EQ(run->GetTimestamp(), "2023-11-14 22:13:21");
  sample.Touch(2);
  EXPECT_TRUE(run->HasChanged());  // somebody else was first
  EXPECT_EQ(run->GetTimestamp(), "2023-11-14 22:13:21");
}

TEST_F(RunTest, TimestampOfARunThatIsGoneRaises5022) {
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  fs::remove(sample.Path(".$TE"));
  EXPECT_EQ(MessageOf([&] { run->GetTimestamp(); }),
            "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$TE") +
                "\nInner exception: Attempting to get last modified time");
}

TEST_F(RunTest, DurationIsTruncatedToWholeSeconds) {
  const auto sample = Sample("run1");
  sample.Write(".$VE", "");
  struct Case {
    std::int64_t seconds;
    std::int64_t nanoseconds;
    double duration;
  };
  for (const Case& start :
       {Case{kFirstWrite - 100, 0, 100.0}, Case{kFirstWrite - 100, 100, 99.0},
        Case{kFirstWrite - 1, 1, 1.0} /* below a tick */, Case{kFirstWrite - 1, 100, 0.0},
        Case{kFirstWrite, 0, 0.0}, Case{kFirstWrite, 500'000'000, 0.0},
        Case{kFirstWrite, 999'999'999, 0.0}, Case{kFirstWrite - 86'400'000, 0, 86'400'000.0}}) {
    SumaraApi::TabulonApi::ClearRuns();
    SetLastWrite(sample.Path(".$VE"), start.seconds, start.nanoseconds);
    EXPECT_EQ(Get("run1")->GetExecutionDurationSeconds(), start.duration) << start.nanoseconds;
  }
}

TEST_F(RunTest, VerificationFileASecondYoungerRaises143) {
  const auto sample = Sample("run1");
  sample.Write(".$VE", "");
  SetLastWrite(sample.Path(".$VE"), kFirstWrite + 1);
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetExecutionDurationSeconds(); }),
            "Sumara Tables error: Failed to calculate run execution time ($VE file had a more "
            "recent timestamp than $TE file).\nFurther information: Run: " +
                Path("run1"));
}

TEST_F(RunTest, DurationWithoutVerificationFileRaises5022) {
  Sample("run1");
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetExecutionDurationSeconds(); }),
            "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$VE") +
                "\nInner exception: Attempting to get run execution duration");
}

TEST_F(RunTest, DurationIsThatOfTheFilesAsTheyStand) {
  const auto sample = Sample("run1", "Run in progress");
  sample.Write(".$VE", "");
  SetLastWrite(sample.Path(".$VE"), kFirstWrite - 10);
  const RunPtr run = Get("run1");
  sample.Touch(50);
  EXPECT_EQ(run->GetExecutionDurationSeconds(), 60.0);
}

TEST_F(RunTest, DurationIsCachedUntilTheFileChanges) {
  const auto sample = Sample("run1");
  sample.Write(".$VE", "");
  SetLastWrite(sample.Path(".$VE"), kFirstWrite - 10);
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetExecutionDurationSeconds(), 10.0);
  SetLastWrite(sample.Path(".$VE"), kFirstWrite - 20);
  EXPECT_EQ(run->GetExecutionDurationSeconds(), 10.0);
  sample.Touch();
  EXPECT_EQ(run->GetExecutionDurationSeconds(), 21.0);
}

// What was calculated.

testing_support::SampleGroup GroupWithContent(const std::string& content) {
  testing_support::SampleGroup group;
  group.content = content;
  return group;
}

TEST_F(RunTest, CalculationTypeComesFromAHeader) {
  Sample("run1").Header("01", GroupWithContent("IDLING"));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetCalculationType(), CalculationType::IdlingSimulation);
  EXPECT_EQ(run->GetCalculationDescriptiveName(), "Idling simulation");
  EXPECT_TRUE(run->IsTurbineSimulation());
  EXPECT_FALSE(run->IsSupportingCalculation());
  EXPECT_FALSE(run->IsPostProcessingCalculation());
  EXPECT_TRUE(run->IsCalculationTypeSupported());
}

TEST_F(RunTest, ClassesOfOtherCalculations) {
  Sample("wind").Header("01", GroupWithContent("WIND"));
  EXPECT_FALSE(Get("wind")->IsTurbineSimulation());
  EXPECT_TRUE(Get("wind")->IsSupportingCalculation());
  EXPECT_FALSE(Get("wind")->IsCalculationTypeSupported());
  Sample("peak").Header("01", GroupWithContent("PEAK"));
  EXPECT_TRUE(Get("peak")->IsPostProcessingCalculation());
  EXPECT_TRUE(Get("peak")->IsCalculationTypeSupported());
  Sample("user").Header("01", GroupWithContent("UserDefined"));
  EXPECT_FALSE(Get("user")->IsTurbineSimulation());
  EXPECT_FALSE(Get("user")->IsSupportingCalculation());
  EXPECT_FALSE(Get("user")->IsPostProcessingCalculation());
  EXPECT_TRUE(Get("user")->IsCalculationTypeSupported());
}

TEST_F(RunTest, UnknownContentEndsTheScan) {
  Sample("run1").Header("01", GroupWithContent("powprod"));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetCalculationType(), CalculationType::Unknown);
  EXPECT_EQ(run->GetCalculationDescriptiveName(),
            "Unknown calculation (a type of calculation not recognised by the Tabulon API)");
  EXPECT_FALSE(run->IsCalculationTypeSupported());
}

TEST_F(RunTest, CalculationTypeComesFromAnExtension) {
  Sample("mx").Write(".$mx", "");
  Sample("fp").Write(".$FP", "");
  Sample("sea").Write(".Sea", "");
  EXPECT_EQ(Get("mx")->GetCalculationType(), CalculationType::UltimateLoadsAnalysis);
  EXPECT_EQ(Get("fp")->GetCalculationType(), CalculationType::ExtremeLoadExtrapolation);
  EXPECT_EQ(Get("sea")->GetCalculationType(), CalculationType::SeaState);
  EXPECT_EQ(Get("sea")->GetCalculationDescriptiveName(), "Sea state generation");
}

TEST_F(RunTest, HeadersAloneLeaveAnExtensionUnknownForGood) {
  Sample("run1").Write(".sea", "");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetCalculationTypeFromHeaders(), CalculationType::Unknown);
  EXPECT_EQ(run->GetCalculationType(), CalculationType::Unknown);
}

TEST_F(RunTest, OtherFilesTellNoCalculation) {
  const auto sample = Sample("run1");
  sample.Write(".%", "").Write(".%1a", "").Write(".$01", "").Write(".%-1", "").Write("", "");
  Sample("run10").Header("01", GroupWithContent("IDLING"));
  m_directory.Write("run1.x.%01", "CONTENT\t'IDLING'\n");
  m_directory.MakeDirectory("run1.%02");
  m_directory.MakeDirectory("run1.sea");
  EXPECT_EQ(Get("run1")->GetCalculationType(), CalculationType::Unknown);
}

TEST_F(RunTest, BaseNameOfAHeaderIsComparedWhateverItsCase) {
  Sample("run1");
  Sample("RUN1").Header("123", GroupWithContent("PLOAD"));
  SumaraApi::TabulonApi::ClearRuns();
  EXPECT_EQ(Get("run1")->GetCalculationType(), CalculationType::ParkedSimulation);
}

TEST_F(RunTest, LinkToAHeaderCounts) {
  Sample("other").Header("01", GroupWithContent("START"));
  Sample("run1");
  fs::create_symlink("other.%01", Path("run1.%01"));
  fs::create_symlink("missing", Path("run1.%02"));  // leads nowhere: no regular file
  EXPECT_EQ(Get("run1")->GetCalculationType(), CalculationType::StartUpSimulation);
}

TEST_F(RunTest, LinkLoopInTheDirectoryIsAnError) {
  Sample("run1");
  fs::create_symlink("loop", Path("loop"));
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetCalculationType(); }),
            "filesystem error: status: Too many levels of symbolic links [" + Path("loop") + "]");
}

TEST_F(RunTest, FilesWithoutPermissionAreErrors) {
  const auto sample = Sample("run1");
  sample.Header("01", {});
  fs::permissions(sample.Path(".$TE"), fs::perms::none);
  fs::permissions(sample.Path(".%01"), fs::perms::none);
  const RunPtr run = Get("run1");
  const Unprivileged user;
  EXPECT_EQ(MessageOf([&] { run->GetCompletionState(); }),
            "IO error 5009: Failed to read data.\nFurther information: File path: " +
                Path("run1.$TE") + "\nInner exception: Permission denied");
  EXPECT_EQ(
      MessageOf([&] { run->GetCalculationType(); }),
      "IO error 5007: Stream has error flag(s).\nFurther information: failbit: last operation "
      "on stream invalid - check file or directory exists, path does not contain illegal "
      "characters, and file is not locked by another process\nFurther information: "
      "Permission denied\nPath: " +
          Path("run1.%01"));
}

TEST_F(RunTest, DirectoryThatIsGoneIsAnError) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1");
  const RunPtr run = SumaraApi::TabulonApi::GetRun(Path("sub"), "run1");
  fs::remove_all(Path("sub"));
  EXPECT_EQ(MessageOf([&] { run->GetCalculationType(); }),
            "filesystem error: directory_iterator::directory_iterator: No such file or directory "
            "[" +
                Path("sub/") + "]");
}

TEST_F(RunTest, HeaderWithoutContentRaises5018) {
  Sample("run1").Write(".%01", "FILE\trun1.$01\nACCESS\tD\n");
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetCalculationType(); }),
            "IO error 5018: Label was not found - end of file encountered.\nFurther information: "
            "label sought = CONTENT; path: " +
                Path("run1.%01"));
}

TEST_F(RunTest, CalculationTypeIsKeptForGood) {
  const auto sample = Sample("run1");
  sample.Header("01", GroupWithContent("IDLING"));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetCalculationType(), CalculationType::IdlingSimulation);
  sample.Header("01", GroupWithContent("POWPROD")).Touch();
  EXPECT_EQ(run->GetCalculationType(), CalculationType::IdlingSimulation);
  EXPECT_EQ(run->GetCalculationDescriptiveName(), "Idling simulation");
  EXPECT_TRUE(run->HasChanged());  // the type did not ask
}

TEST_F(RunTest, ContentIsTakenWithOneKindOfQuotesOrNone) {
  for (const char* line : {"CONTENT\t'PLOAD'\n", "CONTENT PLOAD\n", "CONTENT\t\"PLOAD\"\r\n"}) {
    SumaraApi::TabulonApi::ClearRuns();
    Sample("run1").Write(".%01", line);
    EXPECT_EQ(Get("run1")->GetCalculationType(), CalculationType::ParkedSimulation) << line;
  }
}

}  // namespace
