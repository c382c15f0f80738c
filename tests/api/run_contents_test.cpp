#include "api/run_contents.h"

#include <gtest/gtest.h>

#include "api/group.h"
#include "api/run.h"
#include "api/variable.h"
#include "tests/api/sample_run.h"
#include "tests/support/message_of.h"

namespace {

using namespace SumaraApi;
using testing_support::MessageOf;
using testing_support::SampleGroup;
using testing_support::SampleRun;
using testing_support::SampleVariable;

constexpr std::uint32_t kTypeOfTheFile = 0;

/// The contents of a run's files, without the run.
class RunContentsTest : public ::testing::Test {
 protected:
  void Header(const std::string& number, const std::string& name,
              const std::vector<SampleVariable>& variables) {
    SampleGroup group;
    group.name = name;
    group.variables = variables;
    m_sample.Header(number, group);
  }
  RunContents Contents() const { return {m_directory.Path(""), "run1", /*keepReadersOpen=*/true}; }
  VariablePtr Get(RunContents& contents, const std::string& name, const std::string& group = {}) {
    return contents.GetVariable(name, group, kTypeOfTheFile);
  }
  GroupPtr Load(RunContents& contents, const std::string& name) {
    return contents.LoadGroup(name, {}, kTypeOfTheFile);
  }

  testing_support::TempDirectory m_directory;
  SampleRun m_sample{m_directory, "run1"};
};

TEST_F(RunContentsTest, HeadersAreListedAtTheFirstQuestion) {
  RunContents contents = Contents();
  EXPECT_FALSE(contents.HasHeaders());
  Header("01", "one", {{"a", "L"}});
  EXPECT_EQ(Get(contents, "a")->GetParentGroupName(), "one");
  EXPECT_TRUE(contents.HasHeaders());
  Header("02", "two", {{"b", "L"}});
  EXPECT_NE(MessageOf([&] { Get(contents, "b"); }), "no exception");
}

TEST_F(RunContentsTest, GroupsAreHandedOutOnce) {
  Header("01", "one", {{"a", "L"}});
  Header("02", "two", {{"b", "L"}});
  RunContents contents = Contents();
  const GroupPtr two = Load(contents, "two");
  EXPECT_EQ(Load(contents, "TWO"), two);
  EXPECT_EQ(contents.FindGroup("one", kTypeOfTheFile), nullptr);
  EXPECT_FALSE(contents.HasAllGroups());
  contents.LoadAllGroups({}, kTypeOfTheFile);
  EXPECT_TRUE(contents.HasAllGroups());
  EXPECT_EQ(contents.Groups().front(), two);
  EXPECT_EQ(contents.FindGroup("ONE", kTypeOfTheFile), contents.Groups().back());
}

TEST_F(RunContentsTest, EachSpellingIsFoundWhicheverWasAskedForFirst) {
  Header("01", "one", {{"SPEED", "L"}, {"Speed", "L"}, {"Power", "L"}});
  const std::vector<std::string> spellings = {"SPEED", "Speed"};
  for (const bool isReversed : {false, true}) {
    RunContents contents = Contents();
    for (int i = 0; i < 6; ++i) {
      const std::string& name = spellings[static_cast<std::size_t>(i + isReversed) % 2];
      EXPECT_EQ(Get(contents, name)->GetName(), name);
      EXPECT_EQ(Get(contents, name, "ONE")->GetName(), name);
    }
    EXPECT_EQ(Get(contents, "speed")->GetName(), "SPEED");
  }
}

TEST_F(RunContentsTest, SpellingOfAnotherGroupIsNoSubstitute) {
  Header("01", "one", {{"SPEED", "L"}});
  Header("02", "two", {{"Speed", "L"}});
  RunContents contents = Contents();
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(Get(contents, "Speed", "one")->GetName(), "SPEED");
    EXPECT_EQ(Get(contents, "SPEED", "two")->GetName(), "Speed");
  }
}

TEST_F(RunContentsTest, NameThatIsKnownInAnotherCaseDoesNotHideOneThatIsSpelledSo) {
  Header("01", "one", {{"SPEED", "L"}});
  Header("02", "two", {{"Speed", "L"}});
  RunContents contents = Contents();
  EXPECT_EQ(Get(contents, "SPEED", "one")->GetName(), "SPEED");
  EXPECT_EQ(Get(contents, "speed")->GetName(), "SPEED");  // the only one that is known
  EXPECT_NE(MessageOf([&] { Get(contents, "Speed"); }).find("more than one output group"),
            std::string::npos);
  EXPECT_EQ(Get(contents, "Speed", "two")->GetName(), "Speed");
}

TEST_F(RunContentsTest, AnyNumberOfQuestionsGivesTheSameAnswers) {
  for (int i = 1; i <= 20; ++i) {
    const std::string number = std::to_string(i);
    Header(number, "group " + number, {{"common", "L"}, {"own " + number, "L"}, {"Own", "L"}});
  }
  RunContents contents = Contents();
  for (int round = 0; round < 3; ++round) {
    for (int i = 1; i <= 20; ++i) {
      const std::string number = std::to_string(i);
      EXPECT_EQ(Get(contents, "OWN " + number)->GetParentGroupName(), "group " + number);
      EXPECT_EQ(Get(contents, "Common", "GROUP " + number)->GetParentGroupName(),
                "group " + number);
    }
    EXPECT_NE(MessageOf([&] { Get(contents, "common"); }).find("more than one output group"),
              std::string::npos);
    EXPECT_NE(MessageOf([&] { Get(contents, "other"); }).find("The variable was not found."),
              std::string::npos);
  }
}

TEST_F(RunContentsTest, OnlyWhatWasAskedForCanBeUnloaded) {
  Header("01", "one", {{"a", "L"}, {"b", "L"}});
  RunContents contents = Contents();
  EXPECT_FALSE(contents.UnloadVariable("a", {}));
  const VariablePtr before = Get(contents, "a");
  EXPECT_FALSE(contents.UnloadVariable("b", {}));
  EXPECT_TRUE(contents.UnloadVariable("A", "ONE"));
  EXPECT_NE(Get(contents, "a"), before);
  Load(contents, "one");
  EXPECT_TRUE(contents.UnloadVariable("b", {}));
}

TEST_F(RunContentsTest, ListingNamesMakesNoVariable) {
  Header("01", "one", {{"a", "L"}, {"b", "L"}});
  RunContents contents = Contents();
  const GroupPtr group = Load(contents, "one");
  EXPECT_EQ(group->GetVariableNames(), (std::vector<std::string>{"a", "b"}));
  const std::weak_ptr<Variable> variable = Get(contents, "a");
  EXPECT_EQ(group->GetVariable("a"), variable.lock());
}

TEST_F(RunContentsTest, TypeThatCannotBeHandedOutIsRefusedWithItsGroup) {
  SampleGroup group;
  group.format = "I*2";
  m_sample.Header("01", group);
  RunContents contents = Contents();
  const std::string first = MessageOf([&] { Load(contents, "Rotor"); });
  EXPECT_NE(first.find("Series name: 'Speed'"), std::string::npos) << first;
  EXPECT_TRUE(contents.Groups().empty());
  const std::string second = MessageOf([&] { Get(contents, "Power"); });
  EXPECT_NE(second.find("Series name: 'Power'"), std::string::npos) << second;
  EXPECT_FALSE(contents.UnloadVariable("Power", {}));
}

}  // namespace
