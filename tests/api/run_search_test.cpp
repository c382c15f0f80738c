#include "api/run_search.h"

#include <algorithm>
#include <filesystem>

#include "tests/api/api_test.h"
#include "tests/api/unprivileged.h"

namespace {

namespace fs = std::filesystem;
using SumaraApi::CalculationType;
using SumaraApi::CaseSensitivity;
using SumaraApi::CompletionState;
using SumaraApi::RunPtr;
using SumaraApi::SearchScope;
using SumaraApi::TabulonApi;
using SumaraApi::TabulonApi_CacheSettings;
using SumaraApi::TabulonApi_SearchSettings;
using testing_support::MessageOf;
using testing_support::Unprivileged;
using Names = std::vector<std::string>;

class RunSearchTest : public testing_support::ApiTest {
 protected:
  RunSearchTest() {
    m_directory.MakeDirectory("sub/deep");
    m_directory.MakeDirectory("empty");
  }

  /// The paths of the runs below the test's directory, sorted: nothing else sorts them.
  Names PathsOf(const std::vector<RunPtr>& runs) {
    Names paths;
    for (const RunPtr& run : runs) {
      paths.push_back(run->GetTerminationFilePath().substr(m_directory.Path().size() + 1));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }
  Names All(SearchScope scope = SearchScope::RecursiveSearch) {
    return PathsOf(TabulonApi::GetRuns(m_directory.Path(), scope));
  }
  Names Named(const std::string& name, SearchScope scope = SearchScope::RecursiveSearch) {
    return PathsOf(TabulonApi::GetRunsMatchingName(m_directory.Path(), name, scope));
  }
  Names Matching(const std::string& pattern, SearchScope scope = SearchScope::RecursiveSearch) {
    return PathsOf(TabulonApi::GetRunsMatchingNameRegex(m_directory.Path(), pattern, scope));
  }
  /// What an action raises while a directory may be listed, but not searched.
  template <class Action>
  std::string WithoutSearching(const std::string& directory, Action action) {
    constexpr auto kRead = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    fs::permissions(Path(directory), kRead);
    std::string message;
    {
      const Unprivileged user;
      message = MessageOf(action);
    }
    fs::permissions(Path(directory), fs::perms::owner_all);
    return message;
  }
  void Header(const std::string& run, const std::string& content) {
    testing_support::SampleGroup group;
    group.content = content;
    Sample(run).Header("01", group);
  }
};

// What is found.

TEST_F(RunSearchTest, FindsRunsAtAnyDepth) {
  Sample("run1");
  Sample("sub/run2");
  Sample("sub/deep/run3");
  m_directory.Write("other.txt", "");
  m_directory.Write("run1.$ME", "");
  EXPECT_EQ(All(), (Names{"run1.$TE", "sub/deep/run3.$TE", "sub/run2.$TE"}));
}

TEST_F(RunSearchTest, RootOnlyLeavesOutSubdirectories) {
  Sample("run1");
  Sample("sub/run2");
  Sample("sub/deep/run3");
  EXPECT_EQ(All(SearchScope::RootDirectoryOnly), (Names{"run1.$TE"}));
  EXPECT_EQ(Named("run2", SearchScope::RootDirectoryOnly), Names{});
  EXPECT_EQ(Matching("run.", SearchScope::RootDirectoryOnly), (Names{"run1.$TE"}));
}

TEST_F(RunSearchTest, TreeWithoutRunsGivesNone) { EXPECT_EQ(All(), Names{}); }

TEST_F(RunSearchTest, ExtensionIsComparedWhateverItsCase) {
  m_directory.Write("a.$te", "");
  m_directory.Write("b.$Te", "");
  m_directory.Write("c.$TE.bak", "");
  m_directory.Write("d$TE", "");
  m_directory.Write(".$TE", "");  // a name, not an extension
  EXPECT_EQ(All(), (Names{"a.$te", "b.$Te"}));
}

TEST_F(RunSearchTest, BaseNameEndsAtTheLastDot) {
  Sample("a.b");
  ASSERT_EQ(Named("a.b"), (Names{"a.b.$TE"}));
  EXPECT_EQ(Named("a"), Names{});
  EXPECT_EQ(TabulonApi::GetRuns(m_directory.Path()).front()->GetName(), "a.b");
}

TEST_F(RunSearchTest, DirectoryNamedLikeATerminationFileCounts) {
  m_directory.MakeDirectory("folder.$TE");
  Sample("folder.$TE/inner");
  EXPECT_EQ(All(), (Names{"folder.$TE", "folder.$TE/inner.$TE"}));
  // It is not looked at as a directory either, so that the walk goes down.
  EXPECT_EQ(All(SearchScope::RootDirectoryOnly), (Names{"folder.$TE", "folder.$TE/inner.$TE"}));
}

TEST_F(RunSearchTest, LinksToDirectoriesAreNotFollowed) {
  Sample("sub/run1");
  fs::create_directory_symlink("sub", Path("link"));
  fs::create_directory_symlink("..", Path("sub/up"));
  EXPECT_EQ(All(), (Names{"sub/run1.$TE"}));
}

TEST_F(RunSearchTest, RootMayBeALink) {
  Sample("sub/run1");
  fs::create_directory_symlink("sub", Path("link"));
  EXPECT_EQ(PathsOf(TabulonApi::GetRuns(Path("link"))), (Names{"sub/run1.$TE"}));
  EXPECT_EQ(PathsOf(TabulonApi::GetRuns(Path("empty/../sub/"))), (Names{"sub/run1.$TE"}));
}

TEST_F(RunSearchTest, LinkToATerminationFileIsCanonicalised) {
  Sample("sub/run1");
  m_directory.MakeDirectory("links");
  fs::create_symlink("../sub/run1.$TE", Path("links/alias.$TE"));
  const auto runs = TabulonApi::GetRuns(Path("links"));
  EXPECT_EQ(PathsOf(runs), (Names{"sub/run1.$TE"}));
  EXPECT_EQ(runs.front()->GetName(), "run1");
}

TEST_F(RunSearchTest, NamesOfAnyBytesAndLengthAreFound) {
  const std::string longest(251, 'n');
  Sample("\xFFL\xE4ufer");
  Sample(longest);
  EXPECT_EQ(Named("\xFFL\xE4ufer"), (Names{"\xFFL\xE4ufer.$TE"}));
  EXPECT_EQ(Named(longest), (Names{longest + ".$TE"}));
  EXPECT_EQ(Matching("n{251}"), (Names{longest + ".$TE"}));
  EXPECT_EQ(Matching(".L.ufer"), (Names{"\xFFL\xE4ufer.$TE"}));
}

// Names.

TEST_F(RunSearchTest, NameIsComparedWhateverItsCaseByDefault) {
  m_directory.Write("run1.$TE", "");
  m_directory.Write("sub/Run1.$te", "");
  m_directory.Write("sub/deep/RUN1.$TE", "");
  EXPECT_EQ(Named("RUN1"), (Names{"run1.$TE", "sub/Run1.$te", "sub/deep/RUN1.$TE"}));
  TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity::MatchCase);
  EXPECT_EQ(Named("RUN1"), (Names{"sub/deep/RUN1.$TE"}));
  EXPECT_EQ(Named("run1"), (Names{"run1.$TE"}));
}

TEST_F(RunSearchTest, NameIsTheWholeName) {
  Sample("run1");
  Sample("run");
  EXPECT_EQ(Named("run"), (Names{"run.$TE"}));
  EXPECT_EQ(Named("run11"), Names{});
  EXPECT_EQ(Named("run1.$TE"), Names{});
}

TEST_F(RunSearchTest, NameHasNoWildcards) {
  Sample("run1");
  Sample("r*");
  Sample("run?");
  EXPECT_EQ(Named("r*"), (Names{"r*.$TE"}));
  EXPECT_EQ(Named("run?"), (Names{"run?.$TE"}));
}

TEST_F(RunSearchTest, EmptyNameMatchesAll) {
  Sample("run1");
  Sample("sub/run2");
  EXPECT_EQ(Named(""), (Names{"run1.$TE", "sub/run2.$TE"}));
}

TEST_F(RunSearchTest, ExpressionMatchesTheWholeName) {
  for (const char* name : {"run1", "myrun1", "run12", "runx", "RUN2"}) Sample(name);
  EXPECT_EQ(Matching("run\\d"), (Names{"RUN2.$TE", "run1.$TE"}));
  EXPECT_EQ(Matching(".*run\\d+"), (Names{"RUN2.$TE", "myrun1.$TE", "run1.$TE", "run12.$TE"}));
  TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity::MatchCase);
  EXPECT_EQ(Matching("run\\d"), (Names{"run1.$TE"}));
}

TEST_F(RunSearchTest, ExpressionSeesNoExtension) {
  Sample("a.b");
  EXPECT_EQ(Matching("a\\.b"), (Names{"a.b.$TE"}));
  EXPECT_EQ(Matching("a\\.b\\.\\$TE"), Names{});
}

TEST_F(RunSearchTest, EmptyExpressionRaises169AtOnce) {
  EXPECT_EQ(MessageOf([&] { TabulonApi::GetRunsMatchingNameRegex(Path("none"), ""); }),
            "Sumara Tables error: Run name regular expression invalid.\nFurther information: "
            "Directory: " +
                Path("none"));
}

TEST_F(RunSearchTest, BadExpressionIsNoticedAtTheFirstTerminationFile) {
  m_directory.Write("other.txt", "");
  EXPECT_EQ(Matching("("), Names{});
  Sample("sub/run1");
  EXPECT_EQ(MessageOf([&] { Matching("("); }),
            "Sumara Tables error: Run name regular expression invalid.\nFurther information: "
            "Expression: (\nInner exception: Mismatched '(' and ')' in regular expression");
  for (const char* bad : {"[a", "a{2", "*", "\\", "(?<x>a)", "[z-a]"}) {
    EXPECT_EQ(MessageOf([&] { Matching(bad); })
                  .find("Sumara Tables error: Run name regular expression invalid.\n"
                        "Further information: Expression: " +
                        std::string(bad) + "\nInner exception: "),
              0u)
        << bad;
  }
}

// Failures.

TEST_F(RunSearchTest, RootThatIsNoDirectoryRaises139) {
  m_directory.Write("file", "");
  for (const std::string& root : {Path("none"), Path("file"), std::string()}) {
    const std::string message =
        "Sumara Tables error: Run directory was not found.\nFurther information: Directory: " +
        root;
    EXPECT_EQ(MessageOf([&] { TabulonApi::GetRuns(root); }), message);
    EXPECT_EQ(MessageOf([&] { TabulonApi::GetRunsMatchingName(root, "run1"); }), message);
    EXPECT_EQ(MessageOf([&] { TabulonApi::GetRunsMatchingNameRegex(root, "run1"); }), message);
  }
}

TEST_F(RunSearchTest, RootThatCannotBeAskedForPassesTheIoErrorOn) {
  fs::create_symlink("loop", Path("loop"));
  EXPECT_EQ(MessageOf([&] { TabulonApi::GetRuns(Path("loop")); }),
            "IO error 5027: Failed to check whether directory exists.\nFurther information: "
            "Directory: " +
                Path("loop") + "\nInner exception: Too many levels of symbolic links");
}

TEST_F(RunSearchTest, LinkThatLeadsNowhereRaises141) {
  fs::create_symlink("missing", Path("run1.$TE"));
  EXPECT_EQ(MessageOf([&] { All(); }),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("run1.$TE"));
}

TEST_F(RunSearchTest, LinkThatLeadsNowhereIsNotAskedForUnderAnotherName) {
  fs::create_symlink("missing", Path("broken.$TE"));
  Sample("run1");
  EXPECT_EQ(Named("run1"), (Names{"run1.$TE"}));
}

TEST_F(RunSearchTest, LinkLoopAsATerminationFilePassesTheIoErrorOn) {
  fs::create_symlink("loop.$TE", Path("loop.$TE"));
  EXPECT_EQ(
      MessageOf([&] { All(); }),
      "IO error 5026: Failed to check whether file exists.\nFurther information: File path: " +
          Path("loop.$TE") + "\nInner exception: Too many levels of symbolic links");
}

TEST_F(RunSearchTest, LinkLoopStopsASearchOfTheRootOnly) {
  Sample("run1");
  fs::create_symlink("loop", Path("loop"));
  EXPECT_EQ(All(), (Names{"run1.$TE"}));
  EXPECT_EQ(MessageOf([&] { All(SearchScope::RootDirectoryOnly); }),
            "Sumara Tables error: A filesystem error was encountered when finding runs.\n"
            "Further information: Directory: " +
                m_directory.Path() +
                "\nInner exception: filesystem error: status: Too many levels of symbolic links "
                "[" +
                Path("loop") + "]");
}

TEST_F(RunSearchTest, FailureOfAFilterIsAFileSystemErrorOfTheSearch) {
  Sample("sub/run1");
  fs::create_symlink("loop", Path("sub/loop"));
  TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(false);
  EXPECT_EQ(MessageOf([&] { All(); }),
            "Sumara Tables error: A filesystem error was encountered when finding runs.\n"
            "Further information: Directory: " +
                m_directory.Path() +
                "\nInner exception: filesystem error: status: Too many levels of symbolic links "
                "[" +
                Path("sub/loop") + "]");
}

TEST_F(RunSearchTest, FailedSearchCachesNothing) {
  Sample("run1");
  fs::create_symlink("missing", Path("run2.$TE"));
  const RunPtr kept = TabulonApi::GetRunsMatchingName(m_directory.Path(), "run1").front();
  TabulonApi::ClearRuns();
  EXPECT_NE(MessageOf([&] { All(); }), "no exception");
  EXPECT_EQ(MessageOf([&] { Get("run2"); }),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("run2.$TE"));
  EXPECT_NE(Get("run1"), kept);
}

TEST_F(RunSearchTest, DirectoryThatCannotBeEnteredLosesTheWholeSearch) {
  Sample("run1");
  fs::permissions(Path("sub"), fs::perms::none);
  std::string message;
  Names rootOnly;
  {
    const Unprivileged user;
    message = MessageOf([&] { All(); });
    rootOnly = All(SearchScope::RootDirectoryOnly);
  }
  fs::permissions(Path("sub"), fs::perms::owner_all);
  EXPECT_EQ(message,
            "Sumara Tables error: A filesystem error was encountered when finding runs.\n"
            "Further information: Directory: " +
                m_directory.Path() +
                "\nInner exception: filesystem error: recursive_directory_iterator::operator++: "
                "Permission denied [" +
                Path("sub") + "]");
  EXPECT_EQ(rootOnly, (Names{"run1.$TE"}));
}

TEST_F(RunSearchTest, DirectoryThatMayNotBeSearchedRaisesTheErrorOfTheFirstRunInIt) {
  Sample("sub/deep/run1");
  const std::string message = WithoutSearching("sub/deep", [&] { All(); });
  EXPECT_EQ(
      message,
      "IO error 5026: Failed to check whether file exists.\nFurther information: File path: " +
          Path("sub/deep/run1.$TE") + "\nInner exception: Permission denied");
}

TEST_F(RunSearchTest, RunsOfAnotherNameAreNotAskedForInADirectoryThatMayNotBeSearched) {
  Sample("sub/deep/run1");
  Sample("run2");
  EXPECT_EQ(WithoutSearching("sub/deep", [&] { EXPECT_EQ(Named("run2"), Names{"run2.$TE"}); }),
            "no exception");
}

TEST_F(RunSearchTest, RootThatMayNotBeSearchedRaisesTheErrorOfTheFirstEntry) {
  m_directory.Write("sub/deep/other.txt", "");
  const std::string message = WithoutSearching(
      "sub/deep", [&] { TabulonApi::GetRuns(Path("sub/deep"), SearchScope::RootDirectoryOnly); });
  EXPECT_EQ(message,
            "Sumara Tables error: A filesystem error was encountered when finding runs.\n"
            "Further information: Directory: " +
                Path("sub/deep") +
                "\nInner exception: filesystem error: status: Permission denied [" +
                Path("sub/deep/other.txt") + "]");
}

// The run cache.

TEST_F(RunSearchTest, CachedRunsAreReturned) {
  Sample("run1");
  const RunPtr run = Get("run1");
  EXPECT_EQ(TabulonApi::GetRuns(m_directory.Path()), (std::vector<RunPtr>{run}));
  EXPECT_EQ(TabulonApi::GetRunsMatchingName(m_directory.Path(), "run1"),
            (std::vector<RunPtr>{run}));
}

TEST_F(RunSearchTest, CachedRunIsReturnedWithoutATestForChange) {
  const auto sample = Sample("run1");
  const RunPtr run = Get("run1");
  sample.Touch();
  EXPECT_EQ(TabulonApi::GetRuns(m_directory.Path()), (std::vector<RunPtr>{run}));
  EXPECT_NE(Get("run1"), run);
}

TEST_F(RunSearchTest, RunsThatAFilterRejectsAreNotCached) {
  Sample("good", "Run completed");
  Sample("bad", "*** ERROR");
  TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::CompletedNormally);
  const auto runs = TabulonApi::GetRuns(m_directory.Path());
  ASSERT_EQ(PathsOf(runs), (Names{"good.$TE"}));
  EXPECT_EQ(Get("good"), runs.front());
  fs::remove(Path("bad.$TE"));
  EXPECT_EQ(MessageOf([&] { Get("bad"); }),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("bad.$TE"));
}

TEST_F(RunSearchTest, CachedRunThatAFilterRejectsStaysCached) {
  Sample("run1", "*** ERROR");
  const RunPtr run = Get("run1");
  TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::CompletedNormally);
  EXPECT_EQ(All(), Names{});
  EXPECT_EQ(Get("run1"), run);
}

TEST_F(RunSearchTest, WithoutCachingEachSearchGivesNewRuns) {
  Sample("run1");
  TabulonApi_CacheSettings::SetRunCachingEnabled(false);
  const auto first = TabulonApi::GetRuns(m_directory.Path());
  const auto second = TabulonApi::GetRuns(m_directory.Path());
  EXPECT_NE(first.front(), second.front());
  TabulonApi_CacheSettings::SetRunCachingEnabled(true);
  EXPECT_NE(Get("run1"), second.front());
}

// Filters.

TEST_F(RunSearchTest, CalculationFilterByCategory) {
  Header("power", "POWPROD");
  Header("linear", "CAMPBELL");
  Header("peak", "PEAK");
  Header("user", "UserDefined");
  Sample("sea").Write(".sea", "");
  Sample("plain");
  const auto filtered = [&](CalculationType filter) {
    TabulonApi_SearchSettings::SetCalculationTypeFilter(filter);
    return All();
  };
  using enum CalculationType;
  EXPECT_EQ(filtered(AllCalculationTypes),
            (Names{"linear.$TE", "peak.$TE", "plain.$TE", "power.$TE", "sea.$TE", "user.$TE"}));
  EXPECT_EQ(filtered(AllTurbineSimulations), (Names{"power.$TE"}));
  EXPECT_EQ(filtered(AllSupportingCalculations), (Names{"linear.$TE", "sea.$TE"}));
  EXPECT_EQ(filtered(AllPostProcessingCalculations), (Names{"peak.$TE"}));
  EXPECT_EQ(filtered(PowerProductionSimulation), (Names{"power.$TE"}));
  EXPECT_EQ(filtered(UserDefined), (Names{"user.$TE"}));
  EXPECT_EQ(filtered(SeaState), (Names{"sea.$TE"}));
  EXPECT_EQ(filtered(Unknown), (Names{"plain.$TE"}));
  EXPECT_EQ(filtered(static_cast<CalculationType>(12345)), Names{});
  EXPECT_EQ(filtered(static_cast<CalculationType>(-6)), Names{});
}

TEST_F(RunSearchTest, RunOfUnknownTypeIsNoSupportingCalculation) {
  Sample("run1");
  TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::AllSupportingCalculations);
  EXPECT_EQ(All(), Names{});
}

TEST_F(RunSearchTest, UnsupportedCalculationsCanBeExcluded) {
  Header("power", "POWPROD");
  Header("wind", "WIND");
  Sample("plain");
  TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(false);
  EXPECT_EQ(All(), (Names{"power.$TE"}));
}

TEST_F(RunSearchTest, ExclusionLeavesARunOfUnknownTypeForGood) {
  Sample("run1").Write(".sea", "");
  const RunPtr run = Get("run1");  // cached, so that the search asks this object
  TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(false);
  EXPECT_EQ(All(), Names{});
  EXPECT_EQ(run->GetCalculationType(), CalculationType::Unknown);
  TabulonApi::ClearRuns();
  EXPECT_EQ(Get("run1")->GetCalculationType(), CalculationType::SeaState);
}

TEST_F(RunSearchTest, CalculationFilterComesBeforeTheExclusion) {
  Sample("run1").Write(".sea", "");
  const RunPtr run = Get("run1");
  TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::SeaState);
  TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(false);
  EXPECT_EQ(All(), Names{});
  EXPECT_EQ(run->GetCalculationType(), CalculationType::SeaState);
}

TEST_F(RunSearchTest, CompletionFilter) {
  Sample("done", "Run completed");
  Sample("going", "Run in progress");
  Sample("broken", "Run terminated unexpectedly");
  Sample("failed", "*** ERROR");
  Sample("stopped", "*** ERROR Aborted by user");
  Sample("empty_file", "");
  const auto filtered = [&](CompletionState filter) {
    TabulonApi_SearchSettings::SetCompletionStateFilter(filter);
    return All();
  };
  using enum CompletionState;
  EXPECT_EQ(filtered(AllCompletionStates).size(), 6u);
  EXPECT_EQ(filtered(UnsuccessfulRunsOnly), (Names{"broken.$TE", "failed.$TE", "stopped.$TE"}));
  EXPECT_EQ(filtered(Unknown), (Names{"empty_file.$TE"}));
  EXPECT_EQ(filtered(InProgress), (Names{"going.$TE"}));
  EXPECT_EQ(filtered(CompletedNormally), (Names{"done.$TE"}));
  EXPECT_EQ(filtered(Terminated), (Names{"broken.$TE"}));
  EXPECT_EQ(filtered(Errored), (Names{"failed.$TE"}));
  EXPECT_EQ(filtered(Aborted), (Names{"stopped.$TE"}));
  EXPECT_EQ(filtered(static_cast<CompletionState>(9)), Names{});
}

TEST_F(RunSearchTest, RunThatTheFirstFilterRejectsIsNotRead) {
  m_directory.MakeDirectory("run1.$TE");  // reading it would be an error
  TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::IdlingSimulation);
  TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::CompletedNormally);
  EXPECT_EQ(All(), Names{});
  TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::AllCalculationTypes);
  EXPECT_EQ(MessageOf([&] { All(); }),
            "IO error 5009: Failed to read data.\nFurther information: File path: " +
                Path("run1.$TE") + "\nInner exception: Is a directory");
}

TEST_F(RunSearchTest, WithoutFiltersNoRunIsAskedForItsType) {
  Sample("run1").Write(".%01", "no header\n");
  EXPECT_EQ(All(), (Names{"run1.$TE"}));
  TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::AllTurbineSimulations);
  EXPECT_EQ(MessageOf([&] { All(); }),
            "IO error 5018: Label was not found - end of file encountered.\nFurther information: "
            "label sought = CONTENT; path: " +
                Path("run1.%01"));
}

}  // namespace
