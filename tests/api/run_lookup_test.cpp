// The groups and variables of a run.

#include <cctype>
#include <filesystem>
#include <utility>

#include "api/group.h"
#include "api/independent_variable.h"
#include "api/output_group1d.h"
#include "api/variable1d.h"
#include "api/variable2d.h"
#include "tests/api/api_test.h"
#include "tests/api/unprivileged.h"

namespace {

namespace fs = std::filesystem;
using namespace SumaraApi;
using testing_support::IntervalAxis;
using testing_support::MessageOf;
using testing_support::SampleGroup;
using testing_support::SampleVariable;
using testing_support::ValueAxis;

class RunLookupTest : public testing_support::ApiTest {
 protected:
  static SampleGroup OneAxis(const std::string& name, const std::vector<SampleVariable>& variables,
                             double first = 0.0) {
    SampleGroup group;
    group.name = name;
    group.variables = variables;
    group.values.clear();
    for (std::size_t i = 0; i < 4 * variables.size(); ++i) {
      group.values.push_back(first + static_cast<double>(i));
    }
    return group;
  }
  static SampleGroup TwoAxes(const std::string& name,
                             const std::vector<SampleVariable>& variables) {
    SampleGroup group = OneAxis(name, variables);
    group.axes = {IntervalAxis("Time", "T", "0.0", "0.5", 2),
                  ValueAxis("Distance", "L", {"0.0", "5.0"})};
    return group;
  }
  std::string RunContext() const { return "Run: " + Path("run1"); }
  std::string VariableNotFound(const std::string& name, const std::string& group = {}) {
    return "Sumara Tables error: The variable was not found.\nFurther information: Variable "
           "name: '" +
           name + "'\n" + (group.empty() ? "" : "Specified group name: '" + group + "'\n") +
           RunContext();
  }
  std::string ListContext(const std::string& name, const std::vector<std::string>& groups) {
    std::string text = "\nFurther information: \n Variable name: '" + name + "'\n " + RunContext() +
                       "\n Output groups in run containing this variable:\n";
    for (const std::string& group : groups) text += " '" + group + "'\n";
    return text;
  }
  std::string Ambiguous(const std::string& name, const std::vector<std::string>& groups) {
    return "Sumara Tables error: The variable was found in more than one output group. Specify a "
           "disambiguating group name." +
           ListContext(name, groups);
  }
  /// The names of the two groups that hold `name`, in the order in which the run met them.
  std::vector<std::string> MetOrder(const RunPtr& run, const std::string& a, const std::string& b) {
    const std::string message = MessageOf([&] { run->GetVariable("x"); });
    return message.find("'" + a + "'") < message.find("'" + b + "'")
               ? std::vector<std::string>{a, b}
               : std::vector<std::string>{b, a};
  }
};

// Groups.

TEST_F(RunLookupTest, HeadersAreFilesOfTheRunWithANumber) {
  const auto sample = Sample("run1");
  sample.Group("1", OneAxis("one", {{"a", "L"}}));
  sample.Group("07", OneAxis("seven", {{"b", "L"}}));
  sample.Group("123", OneAxis("many", {{"c", "L"}}));
  sample.Write(".%", "x").Write(".%1a", "x").Write(".%-1", "x").Write(".x%1", "x");
  Sample("run10").Group("02", OneAxis("other", {{"d", "L"}}));
  m_directory.MakeDirectory("run1.%09");
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetAllGroups().size(), 3u);
  EXPECT_EQ(run->GetGroup("one")->GetNumber(), 1u);
  EXPECT_EQ(run->GetGroup("one")->GetHeaderFilePath(), Path("run1.%1"));
  EXPECT_EQ(run->GetGroup("SEVEN")->GetNumber(), 7u);
  EXPECT_EQ(run->GetGroup("many")->GetNumber(), 123u);
}

TEST_F(RunLookupTest, MissingGroupRaises157) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  const std::string message =
      "Sumara Tables error: Specific group was not found.\nFurther information: Group name: "
      "'none'";
  EXPECT_EQ(MessageOf([&] { run->GetGroup("none"); }), message);
  run->GetAllGroups();
  EXPECT_EQ(MessageOf([&] { run->GetGroup("none"); }), message);
  EXPECT_EQ(MessageOf([&] { run->GetGroup(""); }),
            "Sumara Tables error: Specific group was not found.\nFurther information: Group name: "
            "''");
}

TEST_F(RunLookupTest, RunWithoutHeadersIsUnsupported) {
  Sample("run1");
  const std::string message =
      "Sumara Tables error: The request cannot be fulfilled for an unsupported calculation "
      "type.\nFurther information: " +
      RunContext();
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetAllGroups(); }), message);
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetGroup("one"); }), message);
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetVariable("a"); }), VariableNotFound("a"));
}

TEST_F(RunLookupTest, UnsupportedCalculationIsRefusedOnTheRoadThroughGroupsOnly) {
  SampleGroup group = OneAxis("one", {{"a", "L"}});
  group.content = "WIND";
  Sample("run1").Group("01", group);
  const RunPtr run = Get("run1");
  EXPECT_EQ(MessageOf([&] { run->GetGroup("one"); }),
            "Sumara Tables error: The request cannot be fulfilled for an unsupported calculation "
            "type.\nFurther information: " +
                RunContext());
  EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (std::vector<float>{0, 1, 2, 3}));
  EXPECT_TRUE(run->ContainsVariable1D("a"));
}

TEST_F(RunLookupTest, LowerCaseContentIsUnsupported) {
  SampleGroup group = OneAxis("one", {{"a", "L"}});
  group.content = "powprod";
  Sample("run1").Group("01", group);
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetAllGroups(); }),
            "Sumara Tables error: The request cannot be fulfilled for an unsupported calculation "
            "type.\nFurther information: " +
                RunContext());
}

TEST_F(RunLookupTest, GroupsAreBuiltOnce) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}})).Group("02", OneAxis("two", {{"b", "L"}}));
  const RunPtr run = Get("run1");
  const GroupPtr two = run->GetGroup("two");
  EXPECT_EQ(run->GetGroup("TWO"), two);
  const auto all = run->GetAllGroups();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0], two);  // built first
  EXPECT_EQ(all[1]->GetName(), "one");
  EXPECT_EQ(run->GetAllGroups(), all);
  EXPECT_EQ(run->GetGroup("one"), all[1]);
}

TEST_F(RunLookupTest, GroupsOfOneNameAreBuiltOnceWithoutAFilter) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}})).Group("02", OneAxis("one", {{"a", "L"}}));
  sample.Group("03", OneAxis("ONE", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetAllGroups().size(), 2u);  // the name decides, compared exactly
  EXPECT_EQ(run->GetAllGroups().size(), 2u);
}

TEST_F(RunLookupTest, GroupSharesItsVariablesWithTheRun) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}, {"b", "T"}}));
  const RunPtr run = Get("run1");
  const VariablePtr before = run->GetVariable("A");
  const GroupPtr group = run->GetGroup("one");
  EXPECT_EQ(group->GetVariable("a"), before);
  EXPECT_EQ(run->GetVariable("b"), group->GetVariable("b"));
}

TEST_F(RunLookupTest, GroupOfAnUnloadedVariableGetsANewOne) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  run->GetVariable("a");
  EXPECT_TRUE(run->UnloadVariable("a"));
  const VariablePtr variable = run->GetGroup("one")->GetVariable("a");
  ASSERT_NE(variable, nullptr);
  EXPECT_EQ(run->GetVariable("a"), variable);
}

TEST_F(RunLookupTest, RewriteOfTheRunDropsGroupsAndVariables) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  const auto before = run->GetAllGroups();
  const VariablePtr variable = run->GetVariable("a");
  sample.Group("02", OneAxis("two", {{"b", "L"}}));
  EXPECT_EQ(run->GetAllGroups(), before);  // the termination file stands
  sample.Touch();
  EXPECT_EQ(run->GetAllGroups().size(), 2u);
  EXPECT_NE(run->GetGroup("one"), before.front());
  EXPECT_EQ(before.front()->GetName(), "one");
  EXPECT_NE(run->GetVariable("a"), variable);
  EXPECT_EQ(std::dynamic_pointer_cast<Variable1D<float>>(variable)->GetData(),
            (std::vector<float>{0, 1, 2, 3}));
}

TEST_F(RunLookupTest, RewriteStartsTheRegistryAnew) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  const auto before = run->GetVariable1D<float>("a");
  EXPECT_EQ(before->GetData(), (std::vector<float>{0, 2, 4, 6}));
  sample.Touch().Group("01", OneAxis("one", {{"b", "L"}, {"c", "L"}, {"a", "L"}}));
  EXPECT_EQ(run->GetVariable1D<float>("c")->GetData(), (std::vector<float>{1, 4, 7, 10}));
  EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (std::vector<float>{2, 5, 8, 11}));
  EXPECT_EQ(run->GetGroup("one")->GetNumberOfVariables(), 3u);
  EXPECT_EQ(Get("run1"), run);
  EXPECT_EQ(before->GetData(), (std::vector<float>{0, 2, 4, 6}));
}

TEST_F(RunLookupTest, RegistryOfAfterAChangeKeepsBuffersAsBefore) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  TabulonApi_CacheSettings::SetBufferedReadEnabled(true);  // the cached run loses its buffering
  sample.Touch();
  run->GetVariable1D<float>("a")->GetData();
  sample.Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}, 50));
  EXPECT_EQ(run->GetVariable1D<float>("b")->GetData().front(), 51.0f);
}

TEST_F(RunLookupTest, RewriteIsNoticedByTheVariableLookup) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  const VariablePtr before = run->GetVariable("a");
  sample.Group("02", OneAxis("two", {{"b", "L"}}));
  EXPECT_EQ(MessageOf([&] { run->GetVariable("b"); }), VariableNotFound("b"));
  sample.Touch();
  EXPECT_EQ(run->GetVariable("b")->GetParentGroupName(), "two");
  EXPECT_NE(run->GetVariable("a"), before);
}

TEST_F(RunLookupTest, ChangeThatAnotherItemNoticedKeepsTheLists) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  const VariablePtr before = run->GetVariable("a");
  sample.Touch();
  EXPECT_TRUE(run->HasChanged());
  EXPECT_EQ(run->GetVariable("a"), before);
}

TEST_F(RunLookupTest, DeletedTerminationFileEndsTheLookup) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  run->GetVariable("a");
  fs::remove(sample.Path(".$TE"));
  EXPECT_EQ(
      MessageOf([&] { run->GetVariable("a"); }),
      "filesystem error: last_write_time: No such file or directory [" + Path("run1.$TE") + "]");
}

TEST_F(RunLookupTest, DeletedDirectoryRaises139) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = TabulonApi::GetRun(Path("sub"), "run1");
  fs::remove_all(Path("sub"));
  EXPECT_EQ(MessageOf([&] { run->GetVariable("a"); }),
            "Sumara Tables error: Run directory was not found.\nFurther information: Directory: " +
                Path("sub/"));
}

TEST_F(RunLookupTest, DamagedHeaderEndsTheLookup) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}}));
  sample.Write(".%02", "FILE\trun1.$02\nACCESS\tX\nFORM\tF\nRECL\t4\n");
  const std::string message =
      "Sumara Tables error: Header does not specify access type (ACCESS).\nFurther information: "
      "File path: " +
      Path("run1.%02");
  EXPECT_EQ(MessageOf([&] { Get("run1")->GetVariable("a"); }), message);
  EXPECT_FALSE(Get("run1")->ContainsVariable1D("a"));
}

// Variables by name.

TEST_F(RunLookupTest, VariableIsFoundWhateverItsCase) {
  Sample("run1").Group("01", OneAxis("one", {{"Tip speed", "L/T"}}));
  const RunPtr run = Get("run1");
  const VariablePtr variable = run->GetVariable("TIP SPEED");
  EXPECT_EQ(variable->GetName(), "Tip speed");
  EXPECT_EQ(run->GetVariable("tip speed"), variable);
  EXPECT_EQ(run->GetVariableFromSpecificOutputGroup("tip SPEED", "ONE"), variable);
}

TEST_F(RunLookupTest, MissingNamesAreRefused) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  const std::string noName = "Sumara Tables error: Variable name was not specified.";
  const std::string noGroup =
      "Sumara Tables error: Specific group name was not specified.\nFurther information: ";
  EXPECT_EQ(MessageOf([&] { run->GetVariable(""); }), noName);
  EXPECT_EQ(MessageOf([&] { run->GetVariable1D<float>(""); }), noName);
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("", "one"); }), noName);
  EXPECT_EQ(MessageOf([&] { run->UnloadVariable(""); }), noName);
  EXPECT_EQ(MessageOf([&] { run->UnloadVariableFromSpecificGroup("", "one"); }), noName);
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("a", ""); }),
            noGroup + "Variable name: 'a'\n" + RunContext());
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("", ""); }),
            noGroup + RunContext());
  EXPECT_EQ(MessageOf([&] { run->UnloadVariableFromSpecificGroup("a", ""); }),
            noGroup + "Variable name: 'a'\n" + RunContext());
  EXPECT_EQ(MessageOf([&] { run->UnloadVariableFromSpecificGroup("", ""); }),
            noGroup + RunContext());
}

TEST_F(RunLookupTest, MissingVariableRaises159) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_EQ(MessageOf([&] { run->GetVariable("b"); }), VariableNotFound("b"));
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("b", "one"); }),
            VariableNotFound("b", "one"));
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("a", "none"); }),
            VariableNotFound("a", "none"));
}

TEST_F(RunLookupTest, NameInTwoGroupsIsAmbiguous) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}})).Group("02", TwoAxes("two", {{"X", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_TRUE(run->ContainsVariable1D("x"));
  EXPECT_TRUE(run->ContainsVariable2D("x"));
  const auto groups = MetOrder(run, "one", "two");
  EXPECT_EQ(MessageOf([&] { run->GetVariable("x"); }), Ambiguous("x", groups));
  EXPECT_EQ(MessageOf([&] { run->GetVariable1D<float>("X"); }), Ambiguous("X", groups));
  EXPECT_EQ(run->GetVariable1DFromSpecificOutputGroup<float>("x", "ONE")->GetName(), "x");
  EXPECT_EQ(run->GetVariable2DFromSpecificOutputGroup<float>("x", "two")->GetName(), "X");
}

TEST_F(RunLookupTest, NameInTwoGroupsOfOneNameIsAmbiguous) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}}, 0)).Group("02", OneAxis("one", {{"x", "L"}}, 50));
  const RunPtr run = Get("run1");
  const std::string message = Ambiguous("x", {"one", "one"});
  EXPECT_EQ(MessageOf([&] { run->GetVariable("x"); }), message);
  const VariablePtr first = run->GetVariableFromSpecificOutputGroup("x", "one");
  EXPECT_EQ(run->GetVariableFromSpecificOutputGroup("x", "one"), first);
  EXPECT_TRUE(run->UnloadVariableFromSpecificGroup("x", "one"));
  const VariablePtr again = run->GetVariableFromSpecificOutputGroup("x", "one");
  EXPECT_NE(again, first);
  EXPECT_EQ(again->GetParentGroupNumber(), first->GetParentGroupNumber());
  EXPECT_EQ(MessageOf([&] { run->GetVariable("x"); }), message);  // no entry was added
}

TEST_F(RunLookupTest, GroupsThatDifferInCaseOnlyHaveAnEntryEach) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}}, 0)).Group("02", OneAxis("ONE", {{"x", "L"}}, 50));
  const RunPtr run = Get("run1");
  const auto groups = MetOrder(run, "one", "ONE");
  EXPECT_EQ(MessageOf([&] { run->GetVariable("x"); }), Ambiguous("x", groups));
  EXPECT_TRUE(run->ContainsVariable1D("x"));
  EXPECT_TRUE(run->ContainsVariable2D("x"));
  const auto groupOf = [&](const char* name) {
    return run->GetVariableFromSpecificOutputGroup("x", name)->GetParentGroupName();
  };
  EXPECT_EQ(groupOf("one"), "one");
  EXPECT_EQ(groupOf("ONE"), "ONE");
  EXPECT_EQ(groupOf("One"), groups[0]);
}

TEST_F(RunLookupTest, GroupsThatDifferInCaseOnlyHaveVariablesOfTheirOwn) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("Alpha", {{"x", "L"}}, 0));
  sample.Group("02", OneAxis("ALPHA", {{"x", "L"}, {"y", "L"}}, 50));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetGroup("ALPHA")->GetVariable1D<float>("x")->GetData().front(), 50.0f);
  EXPECT_EQ(run->GetGroup("Alpha")->GetVariable1D<float>("x")->GetData().front(), 0.0f);
  EXPECT_EQ(run->GetGroup("alpha")->GetName(), "ALPHA");  // the one that was asked for first
  EXPECT_EQ(run->GetAllGroups().size(), 2u);
  for (const GroupPtr& group : run->GetAllGroups()) {
    const auto x = std::dynamic_pointer_cast<Variable1D<float>>(group->GetVariable("x"));
    EXPECT_EQ(x->GetData().front(), group->GetName() == "Alpha" ? 0.0f : 50.0f);
  }
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("y", "Alpha"); }),
            "Sumara Tables error: The variable was found but not in the specified output group." +
                ListContext("y", {"ALPHA"}));
}

TEST_F(RunLookupTest, GroupInAnotherCaseDoesNotHideOneThatIsSpelledSo) {
  for (const char* asked : {"one", "ONE"}) {
    const std::string other = asked == std::string("one") ? "ONE" : "one";
    const auto sample = Sample("run1");
    sample.Group("01", OneAxis("one", {{"x", "L"}})).Group("02", OneAxis("ONE", {{"x", "L"}}));
    const RunPtr run = std::make_shared<SumaraApi::Run>(sample.Path(".$TE"), true);
    EXPECT_EQ(run->GetVariableFromSpecificOutputGroup("x", asked)->GetParentGroupName(), asked);
    EXPECT_EQ(run->GetVariableFromSpecificOutputGroup("x", other)->GetParentGroupName(), other);
    EXPECT_EQ(run->GetGroup(other)->GetName(), other);
    EXPECT_EQ(run->GetGroup(asked)->GetName(), asked);
  }
}

TEST_F(RunLookupTest, GroupInAnotherCaseIsFoundThoughAHeaderBehindItIsDamaged) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}})).Group("02", OneAxis("two", {{"x", "L"}}));
  const auto names = Get("run1")->GetAllGroups();
  const std::string first = names[0]->GetName();
  sample.Touch().Write(first == "one" ? ".%02" : ".%01", "damaged");
  const RunPtr run = Get("run1");
  std::string upper = first;
  for (char& c : upper) c = static_cast<char>(std::toupper(c));
  EXPECT_EQ(run->GetGroup(upper)->GetName(), first);
  EXPECT_EQ(run->GetGroup(upper), run->GetGroup(first));
  EXPECT_EQ(run->GetVariableFromSpecificOutputGroup("x", upper)->GetParentGroupName(), first);
}

TEST_F(RunLookupTest, NamesThatDifferInCaseOnlyAreOneNameOfTheirGroup) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"Speed", "L"}, {"SPEED", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetVariable("SPEED")->GetName(), "SPEED");
  EXPECT_EQ(run->GetVariable("speed")->GetName(), "Speed");
  EXPECT_EQ(run->GetVariable("Speed")->GetName(), "Speed");
  EXPECT_TRUE(run->UnloadVariable("SPEED"));
  EXPECT_EQ(run->GetVariable("SPEED")->GetName(), "SPEED");
}

TEST_F(RunLookupTest, NameThatWasUnloadedInOneOfTwoGroupsOfOneNameKeepsTheOther) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}}, 0)).Group("02", OneAxis("one", {{"x", "L"}}, 50));
  const RunPtr run = Get("run1");
  EXPECT_EQ(MessageOf([&] { run->GetVariable1D<float>("x"); }), Ambiguous("x", {"one", "one"}));
  const auto before = run->GetVariable1DFromSpecificOutputGroup<float>("x", "one");
  const float first = before->GetData().front();
  EXPECT_TRUE(run->UnloadVariableFromSpecificGroup("x", "one"));
  EXPECT_EQ(MessageOf([&] { run->UnloadVariable("x"); }),
            "Sumara Tables error: The variable to remove from the cache was not found.\nFurther "
            "information: Variable name: 'x'\n" +
                RunContext() + "\nInner exception: " + Ambiguous("x", {"one", "one"}));
  const auto after = run->GetVariable1DFromSpecificOutputGroup<float>("x", "one");
  EXPECT_EQ(after->GetData().front(), first);
}

TEST_F(RunLookupTest, NameOfOtherGroupsRaises164) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}})).Group("02", OneAxis("two", {{"y", "L"}}));
  const RunPtr run = Get("run1");
  run->GetVariable("x");
  EXPECT_EQ(MessageOf([&] { run->GetVariableFromSpecificOutputGroup("x", "two"); }),
            "Sumara Tables error: The variable was found but not in the specified output group." +
                ListContext("x", {"one"}));
}

TEST_F(RunLookupTest, OneGroupAfterTheOtherIsFound) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}}, 0)).Group("02", OneAxis("two", {{"x", "L"}}, 50));
  const RunPtr run = Get("run1");
  const auto one = run->GetVariable1DFromSpecificOutputGroup<float>("x", "one");
  EXPECT_EQ(run->GetVariable("x"), one);  // the only entry so far
  const auto two = run->GetVariable1DFromSpecificOutputGroup<float>("x", "two");
  EXPECT_EQ(one->GetData().front(), 0.0f);
  EXPECT_EQ(two->GetData().front(), 50.0f);
  EXPECT_EQ(run->GetVariableFromSpecificOutputGroup("x", "one"), one);
  EXPECT_EQ(MessageOf([&] { run->GetVariable("x"); }), Ambiguous("x", {"one", "two"}));
}

TEST_F(RunLookupTest, TypedVariableOfTheWrongKindIsRefused) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}})).Group("02", TwoAxes("two", {{"b", "L"}}));
  const RunPtr run = Get("run1");
  const auto context = [&](const std::string& name, const std::string& group) {
    return "\nFurther information: Variable name: '" + name + "'\nSpecified group name: '" + group +
           "'\n" + RunContext();
  };
  EXPECT_EQ(MessageOf([&] { run->GetVariable2D<float>("A"); }),
            "Sumara Tables error: The variable requested is not 2D - call equivalent 1D function "
            "to get variable." +
                context("a", "one"));
  EXPECT_EQ(MessageOf([&] { run->GetVariable1DFromSpecificOutputGroup<float>("b", "two"); }),
            "Sumara Tables error: The variable requested is not 1D - call equivalent 2D function "
            "to get variable." +
                context("b", "two"));
  const std::string type =
      "Sumara Tables error: The variable was requested using a data type that does not match the "
      "data type used when the variable was read. Call the function appropriate to the data type "
      "of the variable to get variable.";
  EXPECT_EQ(MessageOf([&] { run->GetVariable1D<double>("a"); }), type + context("a", "one"));
  EXPECT_EQ(MessageOf([&] { run->GetVariable2DFromSpecificOutputGroup<int>("b", "two"); }),
            type + context("b", "two"));
}

TEST_F(RunLookupTest, ContainsAsksForTheDimensions) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}})).Group("02", TwoAxes("two", {{"b", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_TRUE(run->ContainsVariable1D("A"));
  EXPECT_FALSE(run->ContainsVariable2D("a"));
  EXPECT_FALSE(run->ContainsVariable1D("b"));
  EXPECT_TRUE(run->ContainsVariable2D("b"));
  EXPECT_FALSE(run->ContainsVariable1D("c"));
  EXPECT_FALSE(run->ContainsVariable1D(""));
}

TEST_F(RunLookupTest, LookupThatHitsTheMapReadsNoHeader) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  const VariablePtr variable = run->GetVariable("a");
  sample.Write(".%01", "damaged");
  EXPECT_EQ(run->GetVariable("a"), variable);
  EXPECT_EQ(run->GetVariable("b")->GetName(), "b");  // the group is in memory
}

TEST_F(RunLookupTest, NamesOfAnyBytesAreFound) {
  const std::string name = "Drehmoment \xE4\xFF";
  Sample("run1").Group("01", OneAxis("Gr\xFCppe", {{name, "FL"}}));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetVariableFromSpecificOutputGroup(name, "gr\xFCPPE")->GetName(), name);
}

TEST_F(RunLookupTest, FilesAreOpenedByTheNameThatTheDirectoryLists) {
  const auto sample = Sample("run1");
  Sample("RUN1").Group("02", OneAxis("two", {{"b", "L"}}));
  sample.Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_EQ(run->GetGroup("two")->GetHeaderFilePath(), Path("RUN1.%02"));
  EXPECT_EQ(run->GetVariable1D<float>("b")->GetData().size(), 4u);
}

TEST_F(RunLookupTest, RunsThatDifferInCaseOnlyKeepTheirOwnGroups) {
  SampleGroup other = OneAxis("other", {{"b", "L"}});
  other.content = "IDLING";
  Sample("RUN1").Group("01", other);
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  for (const auto& [name, group] : {std::pair("run1", "one"), std::pair("RUN1", "other")}) {
    TabulonApi::ClearRuns();
    const RunPtr run = Get(name);
    ASSERT_EQ(run->GetAllGroups().size(), 1u);
    EXPECT_EQ(run->GetAllGroups().front()->GetName(), group);
    EXPECT_EQ(run->IsTurbineSimulation(), true);
    EXPECT_EQ(run->GetCalculationType() == CalculationType::IdlingSimulation, name[0] == 'R');
  }
}

TEST_F(RunLookupTest, DirectoryThatMayNotBeSearchedRaisesTheErrorOfItsFirstEntry) {
  m_directory.MakeDirectory("sub");
  Sample("sub/run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = TabulonApi::GetRun(Path("sub"), "run1");
  fs::permissions(Path("sub"),
                  fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  std::string message;
  {
    const testing_support::Unprivileged user;
    message = MessageOf([&] { run->GetCalculationType(); });
  }
  fs::permissions(Path("sub"), fs::perms::owner_all);
  EXPECT_EQ(message.find("filesystem error: status: Permission denied [" + Path("sub/run1.")), 0u)
      << message;
}

// Unloading.

TEST_F(RunLookupTest, UnloadedVariableIsLoadedAnew) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  const auto before = run->GetVariable1D<float>("a");
  before->GetData();
  EXPECT_TRUE(run->UnloadVariable("A"));
  const auto after = run->GetVariable1D<float>("a");
  EXPECT_NE(after, before);
  EXPECT_EQ(after->GetData(), (std::vector<float>{0, 2, 4, 6}));
  EXPECT_EQ(before->GetData(), (std::vector<float>{0, 2, 4, 6}));  // the old handle still works
  EXPECT_TRUE(run->UnloadVariableFromSpecificGroup("a", "ONE"));
}

TEST_F(RunLookupTest, UnloadedNameIsReadFromItsGroupOnly) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}}, 0)).Group("02", OneAxis("two", {{"x", "L"}}, 50));
  for (const char* group : {"one", "two"}) {
    TabulonApi::ClearRuns();
    const RunPtr run = Get("run1");
    const auto before = run->GetVariableFromSpecificOutputGroup("x", group);
    EXPECT_TRUE(run->UnloadVariable("x"));
    const VariablePtr after = run->GetVariable("x");
    EXPECT_NE(after, before);
    EXPECT_EQ(after->GetParentGroupName(), group);
  }
}

TEST_F(RunLookupTest, VariableThatTheRunUnloadedStaysInItsGroup) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  const GroupPtr group = run->GetGroup("one");
  const VariablePtr before = run->GetVariable("a");
  EXPECT_TRUE(run->UnloadVariable("a"));
  EXPECT_TRUE(run->UnloadVariable("b"));  // of a group that was handed out each name is known
  EXPECT_EQ(group->GetVariable("a"), before);
  const VariablePtr after = run->GetVariable("a");
  EXPECT_NE(after, before);
  EXPECT_EQ(group->GetVariable("a"), before);
}

TEST_F(RunLookupTest, IndependentVariablesAreOneSetForAGroup) {
  Sample("run1").Group("01", TwoAxes("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  const auto ofGroup = run->GetGroup("one")->GetIndependentVariables();
  ASSERT_EQ(ofGroup.size(), 2u);
  EXPECT_EQ(run->GetVariable("a")->GetIndependentVariables(), ofGroup);
  EXPECT_EQ(run->GetVariable("b")->GetIndependentVariables(), ofGroup);
}

TEST_F(RunLookupTest, IndependentVariableThatAnOutputGroupTookIsReplaced) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}, {"b", "L"}}));
  const RunPtr run = Get("run1");
  const IndependentVariablePtr time = run->GetVariable("a")->GetIndependentVariables().front();
  const OutputGroup1D<float> output(Path("out.%01"), "output", "POWPROD", "TRANSIENT", *time,
                                    VariableDataFormat::Binary);
  EXPECT_EQ(time->GetNumberOfValues(), 0u);
  const IndependentVariablePtr other = run->GetVariable("b")->GetIndependentVariables().front();
  EXPECT_NE(other, time);
  EXPECT_EQ(other->GetNumberOfValues(), 4u);
  EXPECT_EQ(run->GetGroup("one")->GetIndependentVariables().front(), other);
}

TEST_F(RunLookupTest, UnloadOfAVariableThatWasNeverAskedForIsFalse) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  const RunPtr run = Get("run1");
  EXPECT_FALSE(run->UnloadVariable("a"));
  EXPECT_FALSE(run->UnloadVariableFromSpecificGroup("a", "one"));
  run->GetVariable("a");
  EXPECT_FALSE(run->UnloadVariable("b"));
  EXPECT_TRUE(run->UnloadVariable("a"));
  EXPECT_TRUE(run->UnloadVariable("a"));  // the entry stays
}

TEST_F(RunLookupTest, UnloadThatIsNotClearRaises160) {
  const auto sample = Sample("run1");
  sample.Group("01", OneAxis("one", {{"x", "L"}})).Group("02", OneAxis("two", {{"x", "L"}}));
  const RunPtr run = Get("run1");
  const auto groups = MetOrder(run, "one", "two");
  const std::string failed =
      "Sumara Tables error: The variable to remove from the cache was not found.\nFurther "
      "information: Variable name: 'x'\n";
  EXPECT_EQ(MessageOf([&] { run->UnloadVariable("x"); }),
            failed + RunContext() + "\nInner exception: " + Ambiguous("x", groups));
  EXPECT_EQ(MessageOf([&] { run->UnloadVariableFromSpecificGroup("x", "three"); }),
            failed + "Specified group name: 'three'\n" + RunContext() +
                "\nInner exception: Sumara Tables error: The variable was found but not in the "
                "specified output group." +
                ListContext("x", groups));
  EXPECT_TRUE(run->UnloadVariableFromSpecificGroup("x", "two"));
  EXPECT_EQ(MessageOf([&] { run->GetVariable("x"); }), Ambiguous("x", groups));
}

TEST_F(RunLookupTest, VariablesOfADroppedRunLiveOn) {
  Sample("run1").Group("01", OneAxis("one", {{"a", "L"}}));
  auto variable = Get("run1")->GetVariable1D<float>("a");
  TabulonApi::ClearRuns();
  EXPECT_EQ(variable->GetData(), (std::vector<float>{0, 1, 2, 3}));
  EXPECT_EQ(variable->GetParentGroupHeaderFileFullPath(), Path("run1.%01"));
  variable->Unload();
  EXPECT_EQ(variable->GetData().size(), 4u);
}

}  // namespace
