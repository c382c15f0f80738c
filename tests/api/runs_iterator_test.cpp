#include "api/runs_iterator.h"

#include <algorithm>
#include <filesystem>

#include "api/runs_iterator_regex.h"
#include "tests/api/api_test.h"
#include "tests/api/unprivileged.h"

namespace {

namespace fs = std::filesystem;
using SumaraApi::CaseSensitivity;
using SumaraApi::CompletionState;
using SumaraApi::RunPtr;
using SumaraApi::RunsIterator;
using SumaraApi::RunsIteratorRegex;
using SumaraApi::SearchScope;
using SumaraApi::TabulonApi;
using SumaraApi::TabulonApi_SearchSettings;
using testing_support::MessageOf;
using testing_support::Unprivileged;
using Names = std::vector<std::string>;

class RunsIteratorTest : public testing_support::ApiTest {
 protected:
  static Names Rest(RunsIterator iterator) {
    Names names;
    while (const RunPtr run = iterator.GetNextRun()) names.push_back(run->GetName());
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(RunsIteratorTest, FindsAllRunsOneByOne) {
  m_directory.MakeDirectory("sub/deep");
  Sample("run1");
  Sample("sub/run2");
  Sample("sub/deep/run3");
  m_directory.Write("sub/other", "");
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path())), (Names{"run1", "run2", "run3"}));
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path(), SearchScope::RootDirectoryOnly)),
            (Names{"run1"}));
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path(), "RUN2")), (Names{"run2"}));
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path(), "")), (Names{"run1", "run2", "run3"}));
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path(), "run2", SearchScope::RootDirectoryOnly)),
            Names{});
  EXPECT_EQ(Rest(RunsIteratorRegex(m_directory.Path(), "run[23]")), (Names{"run2", "run3"}));
  EXPECT_EQ(Rest(RunsIteratorRegex(m_directory.Path(), "run.", SearchScope::RootDirectoryOnly)),
            (Names{"run1"}));
}

TEST_F(RunsIteratorTest, EndIsNullForGood) {
  Sample("run1");
  RunsIterator iterator(m_directory.Path());
  EXPECT_NE(iterator.GetNextRun(), nullptr);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(iterator.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, ARunThatIsPutBackComesNext) {
  Sample("run1");
  Sample("run2");
  RunsIterator iterator(m_directory.Path());
  const RunPtr first = iterator.GetNextRun();
  iterator.PutBack(first);
  EXPECT_EQ(iterator.GetNextRun(), first);
  const RunPtr second = iterator.GetNextRun();
  EXPECT_NE(second, nullptr);
  EXPECT_NE(second, first);
  EXPECT_EQ(iterator.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, EmptyDirectoryIsAtItsEnd) {
  EXPECT_EQ(RunsIterator(m_directory.Path()).GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, PathIsCanonical) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1");
  fs::create_directory_symlink("sub", Path("link"));
  const RunPtr run = RunsIterator(Path("link")).GetNextRun();
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->GetTerminationFilePath(), Path("sub/run1.$TE"));
}

TEST_F(RunsIteratorTest, OnlyRegularFilesCount) {
  m_directory.MakeDirectory("folder.$TE");
  fs::create_symlink("missing", Path("broken.$TE"));
  m_directory.MakeDirectory("sub");
  Sample("sub/target");
  fs::create_symlink("sub/target.$TE", Path("alias.$TE"));
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path(), SearchScope::RootDirectoryOnly)),
            (Names{"target"}));
}

TEST_F(RunsIteratorTest, CacheIsNeitherAskedNorFilled) {
  Sample("run1");
  const RunPtr cached = Get("run1");
  RunsIterator iterator(m_directory.Path());
  const RunPtr found = iterator.GetNextRun();
  ASSERT_NE(found, nullptr);
  EXPECT_NE(found, cached);
  EXPECT_EQ(Get("run1"), cached);
  TabulonApi::ClearRuns();
  RunsIterator again(m_directory.Path());
  const RunPtr other = again.GetNextRun();
  EXPECT_NE(other, found);
  EXPECT_NE(Get("run1"), other);
}

TEST_F(RunsIteratorTest, AllIteratorsShareOneWalk) {
  m_directory.MakeDirectory("a");
  m_directory.MakeDirectory("b");
  for (const char* run : {"a/run1", "a/run2", "a/run3", "b/other1", "b/run4"}) Sample(run);
  RunsIterator first(Path("a"));
  EXPECT_NE(first.GetNextRun(), nullptr);
  RunsIterator second(Path("b"), "run4");
  const RunPtr taken = first.GetNextRun();  // on the walk of the second, under its own pattern
  ASSERT_NE(taken, nullptr);
  EXPECT_EQ(taken->GetDirectory(), Path("b/"));
  // The second finds what the first has left of its own.
  EXPECT_EQ(second.GetNextRun() != nullptr, taken->GetName() == "other1");
  EXPECT_EQ(second.GetNextRun(), nullptr);
  EXPECT_EQ(first.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, WalkOutlivesItsIterator) {
  m_directory.MakeDirectory("a");
  m_directory.MakeDirectory("b");
  Sample("a/run1");
  Sample("b/run2");
  RunsIterator first(Path("a"));
  { const RunsIterator second(Path("b")); }
  const RunPtr run = first.GetNextRun();
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->GetName(), "run2");
}

TEST_F(RunsIteratorTest, OlderIteratorKeepsItsOwnPatternAndScope) {
  m_directory.MakeDirectory("sub/deep");
  Sample("sub/run1");
  Sample("sub/deep/run1");
  Sample("sub/run2");
  RunsIterator first(m_directory.Path(), "run2", SearchScope::RootDirectoryOnly);
  const RunsIterator second(Path("sub"));
  const RunPtr run = first.GetNextRun();
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->GetName(), "run2");
  EXPECT_EQ(first.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, RootThatCannotBeWalkedIsAFileSystemError) {
  m_directory.Write("file", "");
  const std::string word =
      "filesystem error: recursive_directory_iterator::recursive_directory_iterator: ";
  EXPECT_EQ(MessageOf([&] { RunsIterator(Path("none")); }),
            word + "No such file or directory [" + Path("none") + "]");
  EXPECT_EQ(MessageOf([&] { RunsIterator(Path("file")); }),
            word + "Not a directory [" + Path("file") + "]");
  EXPECT_EQ(MessageOf([&] { RunsIteratorRegex(Path("file"), "run"); }),
            word + "Not a directory [" + Path("file") + "]");
}

TEST_F(RunsIteratorTest, FailedConstructorLeavesTheWalk) {
  Sample("run1");
  RunsIterator iterator(m_directory.Path());
  EXPECT_THROW(RunsIterator(Path("none")), fs::filesystem_error);
  EXPECT_NE(iterator.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, EmptyExpressionRaises169WithTheWalkReplaced) {
  m_directory.MakeDirectory("a");
  m_directory.MakeDirectory("b");
  Sample("a/run1");
  Sample("b/run2");
  RunsIterator iterator(Path("a"));
  EXPECT_EQ(MessageOf([&] { RunsIteratorRegex(Path("b"), ""); }),
            "Sumara Tables error: Run name regular expression invalid.\nFurther information: "
            "Directory: " +
                Path("b"));
  const RunPtr run = iterator.GetNextRun();
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->GetName(), "run2");
}

TEST_F(RunsIteratorTest, BadExpressionIsNoticedAtTheFirstRunAndStaysThere) {
  RunsIteratorRegex none(m_directory.Path(), "(");
  EXPECT_EQ(none.GetNextRun(), nullptr);
  Sample("run1");
  RunsIteratorRegex iterator(m_directory.Path(), "(");
  const std::string message =
      "Sumara Tables error: Run name regular expression invalid.\nFurther information: "
      "Expression: (\nInner exception: Mismatched '(' and ')' in regular expression";
  EXPECT_EQ(MessageOf([&] { iterator.GetNextRun(); }), message);
  EXPECT_EQ(MessageOf([&] { iterator.GetNextRun(); }), message);
}

TEST_F(RunsIteratorTest, LinkLoopIsAnErrorOfItsStatus) {
  fs::create_symlink("loop", Path("loop"));
  RunsIterator iterator(m_directory.Path());
  const std::string message =
      "filesystem error: status: Too many levels of symbolic links [" + Path("loop") + "]";
  EXPECT_EQ(MessageOf([&] { iterator.GetNextRun(); }), message);
  EXPECT_EQ(MessageOf([&] { iterator.GetNextRun(); }), message);  // the walk stays where it was
}

TEST_F(RunsIteratorTest, DirectoryThatCannotBeEnteredIsAnErrorOfTheAdvance) {
  m_directory.MakeDirectory("sub");
  RunsIterator iterator(m_directory.Path());  // stands at the only entry
  fs::remove(Path("sub"));
  const std::string message =
      "filesystem error: recursive_directory_iterator::operator++: No such file or directory [" +
      Path("sub") + "]";
  EXPECT_EQ(MessageOf([&] { iterator.GetNextRun(); }), message);
  EXPECT_EQ(MessageOf([&] { iterator.GetNextRun(); }), message);
}

TEST_F(RunsIteratorTest, DirectoryWithoutPermissionIsAnErrorOfTheAdvance) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1");
  fs::permissions(Path("sub"), fs::perms::none);
  std::string message;
  {
    const Unprivileged user;
    message = MessageOf([&] { RunsIterator(m_directory.Path()).GetNextRun(); });
  }
  fs::permissions(Path("sub"), fs::perms::owner_all);
  EXPECT_EQ(message,
            "filesystem error: recursive_directory_iterator::operator++: Permission denied [" +
                Path("sub") + "]");
}

TEST_F(RunsIteratorTest, DirectoryThatMayNotBeSearchedIsAnErrorOfTheStatus) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1");
  fs::permissions(Path("sub"),
                  fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  RunsIterator iterator(m_directory.Path());
  std::string first;
  std::string second;
  {
    const Unprivileged user;
    first = MessageOf([&] { iterator.GetNextRun(); });
    second = MessageOf([&] { iterator.GetNextRun(); });
  }
  fs::permissions(Path("sub"), fs::perms::owner_all);
  EXPECT_EQ(first.find("filesystem error: status: Permission denied [" + Path("sub/run1.")), 0u)
      << first;
  EXPECT_EQ(second, first);
  EXPECT_NE(iterator.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, FiltersApplyAsTheyStandAtEachCall) {
  Sample("run1", "Run completed");
  Sample("run2", "*** ERROR");
  TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::UnsuccessfulRunsOnly);
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path())), (Names{"run2"}));
  RunsIterator iterator(m_directory.Path());
  TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::InProgress);
  EXPECT_EQ(iterator.GetNextRun(), nullptr);
}

TEST_F(RunsIteratorTest, CaseOfNamesFollowsTheSetting) {
  Sample("run1");
  TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity::MatchCase);
  EXPECT_EQ(Rest(RunsIterator(m_directory.Path(), "RUN1")), Names{});
  EXPECT_EQ(Rest(RunsIteratorRegex(m_directory.Path(), "RUN1")), Names{});
  TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity::IgnoreCase);
  EXPECT_EQ(Rest(RunsIteratorRegex(m_directory.Path(), "RUN1")), (Names{"run1"}));
}

TEST_F(RunsIteratorTest, RunThatIsDeletedOnTheWayIsFoundAsTheDirectoryToldIt) {
  Sample("run1");
  RunsIterator iterator(m_directory.Path());  // stands at the file
  fs::remove(Path("run1.$TE"));
  // The directory told that it is a file; whoever asks the run for its files learns better.
  const RunPtr run = iterator.GetNextRun();
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(MessageOf([&] { run->GetCompletionState(); }),
            "IO error 5022: File not found.\nFurther information: File path: " + Path("run1.$TE") +
                "\nInner exception: run termination file");
}

}  // namespace
