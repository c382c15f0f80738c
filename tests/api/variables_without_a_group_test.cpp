// What a variable says where its group does not hold it, or is of no shape that scripts know.

#include <gtest/gtest.h>

#include "api/variable.h"
#include "api/variable_factory.h"
#include "model/control.h"
#include "tests/model/make_groups.h"
#include "tests/model/unusual_group.h"
#include "tests/support/message_of.h"

namespace {

using SumaraApi::CreateVariable;
using SumaraApi::IndependentVariables;
using testing_support::Add;
using testing_support::MessageOf;
using testing_support::NewGroup1D;
using testing_support::UnusualGroup;

TEST(VariableWithoutAGroupTest, QuantityAndUnitOfANameThatTheGroupLost) {
  const auto group = NewGroup1D<float>();
  Add<float>(*group, "Mx");
  const auto control = std::make_shared<Sumara::CControl>();
  const auto variable = CreateVariable(
      "Mx", group, control, std::make_shared<IndependentVariables>(group), /*dataType=*/0);
  EXPECT_EQ(variable->GetQuantityCode(), "FL");
  group->RemoveSeries("Mx");
  const std::string cause =
      ".\nFurther information: Series name: 'Mx'; File path: ./Loads\nInner exception: "
      "Sumara Tables error: Requested series not found in current group.\nFurther information: "
      "File path: ./Loads";
  EXPECT_EQ(MessageOf([&] { variable->GetQuantityCode(); }),
            "Sumara Tables error: Getting variable quantity identifier failed" + cause);
  EXPECT_EQ(MessageOf([&] { variable->GetSIUnit(); }),
            "Sumara Tables error: Getting variable SI unit failed" + cause);
}

TEST(VariableWithoutAGroupTest, GroupHasOneAxisOrTwo) {
  const auto group = std::make_shared<UnusualGroup>();
  const auto create = [&] { CreateVariable("Mx", group, nullptr, nullptr, /*dataType=*/0); };
  const std::string failure =
      "Sumara Tables error: Group has unsupported number of axes.\nFurther information: File "
      "path: ./Loads";
  EXPECT_EQ(MessageOf(create), failure);
  for (std::uint32_t position = 0; position < 3; ++position) {
    group->AddAxis(testing_support::Interval(), position);
  }
  EXPECT_EQ(MessageOf(create), failure);
}

}  // namespace
