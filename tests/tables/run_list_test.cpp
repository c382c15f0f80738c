#include "tables/run_list.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/api/unprivileged.h"
#include "tests/support/temp_directory.h"

namespace Tabulon {
namespace {

using SumaraApi::CompletionState;
using testing_support::TempDirectory;

class RunListTest : public testing::Test {
 protected:
  void Touch(const std::string& name, const std::string& text = "") {
    m_directory.Write(name, text);
  }

  std::vector<RunFiles> List(const ListOptions& options = {}) {
    std::vector<RunFiles> runs;
    m_unreadable.clear();
    ListRuns(
        m_directory.Path(), options, [&](RunFiles&& run) { runs.push_back(std::move(run)); },
        [&](UnreadableDirectory&& directory) { m_unreadable.push_back(std::move(directory)); });
    return runs;
  }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const RunFiles& run : List())
      names.push_back(run.Path().substr(m_directory.Path().size() + 1));
    return names;
  }

  TempDirectory m_directory;
  std::vector<UnreadableDirectory> m_unreadable;
};

TEST_F(RunListTest, FilesAreGroupedByRun) {
  for (const char* name : {"a.$TE", "a.$ME", "a.$VE", "a.%10", "a.%02", "a.$02", "a.%1x", "a.sea",
                           "b.%01", "c.$TE", "noise"})
    Touch(name);
  const std::vector<RunFiles> runs = List();
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[0].name, "a");
  EXPECT_EQ(runs[0].directory, m_directory.Path() + "/");
  EXPECT_EQ(runs[0].Path(), m_directory.Path("a"));
  EXPECT_EQ(runs[0].termination, "a.$TE");
  EXPECT_EQ(runs[0].messages, "a.$ME");
  EXPECT_EQ(runs[0].verification, "a.$VE");
  ASSERT_EQ(runs[0].headers.size(), 2u);
  EXPECT_EQ(runs[0].headers[0].name, "a.%02");
  EXPECT_EQ(runs[0].headers[0].number, 2);
  EXPECT_EQ(runs[0].headers[1].number, 10);
  EXPECT_EQ(runs[0].otherKinds, std::vector<std::string>{".sea"});
  EXPECT_EQ(runs[0].state, std::nullopt);
  EXPECT_EQ(runs[1].name, "c");
  EXPECT_EQ(runs[1].messages, "");
  EXPECT_TRUE(runs[1].headers.empty());
}

TEST_F(RunListTest, RunsComeInNaturalOrderBeforeTheDirectoriesBesideThem) {
  for (const char* directory : {"case10", "case9", "case9/deep"})
    m_directory.MakeDirectory(directory);
  for (const char* name :
       {"case10/x.$TE", "case9/y.$TE", "case9/deep/z.$TE", "run10.$TE", "run2.$TE", "zz.$TE"})
    Touch(name);
  EXPECT_EQ(Names(), (std::vector<std::string>{"run2", "run10", "zz", "case9/y", "case9/deep/z",
                                               "case10/x"}));
  EXPECT_EQ(List({.recursive = false}).size(), 3u);
}

TEST_F(RunListTest, FilesSpelledAsTheRunComeFirstAndANumberCountsOnce) {
  for (const char* name : {"Run.$te", "run.%01", "Run.%1", "RUN.$me", "run.%02"}) Touch(name);
  const std::vector<RunFiles> runs = List();
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].name, "Run");
  EXPECT_EQ(runs[0].termination, "Run.$te");
  EXPECT_EQ(runs[0].messages, "RUN.$me");
  ASSERT_EQ(runs[0].headers.size(), 2u);
  EXPECT_EQ(runs[0].headers[0].name, "Run.%1");
  EXPECT_EQ(runs[0].headers[1].name, "run.%02");
}

TEST_F(RunListTest, EachSpellingOfABaseNameIsARun) {
  for (const char* name : {"run.$TE", "RUN.$TE", "RUN.$te", "run.%01"}) Touch(name);
  const std::vector<RunFiles> runs = List();
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[0].termination, "RUN.$TE");
  EXPECT_EQ(runs[1].termination, "run.$TE");
  EXPECT_EQ(runs[0].headers.size(), 1u);
  EXPECT_EQ(runs[1].headers.size(), 1u);
}

TEST_F(RunListTest, TheStateIsReadOnRequest) {
  Touch("a.$TE", "Run completed");
  Touch("b.$TE", "*** ERROR");
  const std::vector<RunFiles> runs = List({.completion = true});
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[0].state, CompletionState::CompletedNormally);
  EXPECT_EQ(runs[1].state, CompletionState::Errored);
}

TEST_F(RunListTest, LinksToFilesAreFilesAndLinksToDirectoriesAreNotFollowed) {
  m_directory.MakeDirectory("real");
  m_directory.MakeDirectory("x.$TE");
  Touch("real/a.$TE");
  std::filesystem::create_directory_symlink(m_directory.Path("real"), m_directory.Path("link"));
  std::filesystem::create_symlink(m_directory.Path("real/a.$TE"), m_directory.Path("b.$TE"));
  std::filesystem::create_symlink("nowhere", m_directory.Path("c.$TE"));
  std::filesystem::create_symlink("d.$TE", m_directory.Path("d.$TE"));
  EXPECT_EQ(Names(), (std::vector<std::string>{"b", "real/a"}));
}

TEST_F(RunListTest, ADirectoryThatCannotBeListedIsToldAndTheWalkGoesOn) {
  for (const char* directory : {"a", "b", "c"}) {
    m_directory.MakeDirectory(directory);
    Touch(std::string(directory) + "/run.$TE");
  }
  ::chmod(m_directory.Path("b").c_str(), 0);
  ::chmod(m_directory.Path().c_str(), 0755);
  std::vector<RunFiles> runs;
  {
    const testing_support::Unprivileged nobody;
    runs = List();
  }
  ::chmod(m_directory.Path("b").c_str(), 0755);
  EXPECT_EQ(runs.size(), 2u);
  ASSERT_EQ(m_unreadable.size(), 1u);
  EXPECT_EQ(m_unreadable[0].path, m_directory.Path("b") + "/");
  EXPECT_EQ(m_unreadable[0].text, "Permission denied");
}

TEST_F(RunListTest, AStopEndsTheWalkWithinADirectory) {
  for (int i = 0; i < 600; ++i) Touch("run_" + std::to_string(i) + ".$TE");
  const auto nothing = [](auto&&) {};
  int questions = 0;
  const auto third = [&] { return ++questions == 3; };
  EXPECT_THROW(ListRuns(m_directory.Path(), {}, nothing, nothing, third), Stopped);
  questions = 0;
  EXPECT_THROW(FindRun(m_directory.Path("run_7"), false, third), Stopped);
  int runs = 0;
  EXPECT_THROW(ListRuns(
                   m_directory.Path(), {.recursive = true, .completion = true},
                   [&](RunFiles&&) { ++runs; }, nothing, [&] { return runs == 5; }),
               Stopped);
  EXPECT_EQ(runs, 5);
}

TEST_F(RunListTest, AMissingRootIsAFailureAndAStopEndsTheWalk) {
  const auto nothing = [](auto&&) {};
  try {
    ListRuns(m_directory.Path("no"), {}, nothing, nothing);
    ADD_FAILURE();
  } catch (const TableError& failure) {
    EXPECT_EQ(failure.Code(), 139);
    EXPECT_EQ(failure.Path(), m_directory.Path("no"));
  }
  EXPECT_THROW(ListRuns(m_directory.Path(), {}, nothing, nothing, [] { return true; }), Stopped);
}

TEST_F(RunListTest, ManyRunsOfADirectoryAreKeptApart) {
  for (int i = 0; i < 300; ++i) {
    const std::string name = "r" + std::to_string(i);
    Touch(name + ".$TE");
    Touch(name + ".%01");
  }
  const std::vector<RunFiles> runs = List();
  ASSERT_EQ(runs.size(), 300u);
  for (std::size_t i = 0; i < runs.size(); ++i) {
    EXPECT_EQ(runs[i].name, "r" + std::to_string(i));
    EXPECT_EQ(runs[i].headers.size(), 1u);
  }
}

TEST_F(RunListTest, ARunIsFoundByAnyOfItsFiles) {
  for (const char* name : {"a.b.$TE", "a.b.%01", "a.$TE"}) Touch(name);
  EXPECT_EQ(FindRun(m_directory.Path("a.b"))->name, "a.b");
  EXPECT_EQ(FindRun(m_directory.Path("a.b.%01"))->name, "a.b");
  EXPECT_EQ(FindRun(m_directory.Path("a.$TE"))->name, "a");
  EXPECT_EQ(FindRun(m_directory.Path("a"))->name, "a");
  EXPECT_EQ(FindRun(m_directory.Path("A.B"))->name, "a.b");
  EXPECT_FALSE(FindRun(m_directory.Path("b")).has_value());
  EXPECT_EQ(FindRun(m_directory.Path("a"), true)->state, CompletionState::Unknown);
  EXPECT_THROW(FindRun(m_directory.Path("no/a")), TableError);
}

TEST_F(RunListTest, TheKindOfAHeaderIsThatOfItsContent) {
  Touch("a.%01", "FILE\tx\nCONTENT\t'WIND'\n");
  EXPECT_EQ(CalculationOfHeader(m_directory.Path("a.%01")),
            SumaraApi::CalculationType::WindTurbulence);
  Touch("b.%01", "FILE\tx\n");
  EXPECT_THROW(CalculationOfHeader(m_directory.Path("b.%01")), TableError);
  EXPECT_THROW(CompletionOf(m_directory.Path("none.$TE")), TableError);
}

}  // namespace
}  // namespace Tabulon
