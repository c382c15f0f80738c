#include "model/load_request.h"

#include <gtest/gtest.h>

#include "tests/model/make_groups.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::AllSecondary;
using Sumara::CheckNotEmpty;
using Sumara::LoadRequest;
using testing_support::Interval;
using testing_support::MessageOf;
using testing_support::NewGroup2D;
using testing_support::Strings;
using testing_support::Values;

using Names = std::vector<std::string>;
using Numbers = std::vector<std::size_t>;
using Radii = std::vector<double>;

std::shared_ptr<Sumara::IGroup> GroupOver(const std::shared_ptr<Sumara::CAxisBase>& secondary) {
  auto group = NewGroup2D<float>(Interval(), secondary);
  group->SetSeriesNames({"Mx", "My", "Mz"}, {"FL", "FL", "FL"});
  return group;
}

class LoadRequestTest : public ::testing::Test {
 protected:
  Numbers Series(const LoadRequest& request) const { return PlacesOf(request, *m_group).variables; }
  Numbers Secondary(const LoadRequest& request) const {
    return PlacesOf(request, *m_group).secondary;
  }
  std::string Refusal(const LoadRequest& request) const {
    return MessageOf([&] { PlacesOf(request, *m_group); });
  }

  std::shared_ptr<Sumara::IGroup> m_group = GroupOver(Values({1.5, 2.5, 1.5}));
  const Names m_one{"Mx"};
};

std::string Failure(const std::string& words, const std::string& context) {
  return "Sumara Tables error: " + words + ".\nFurther information: " + context;
}

TEST_F(LoadRequestTest, PlacesAscendAndStandOnce) {
  const Names names{"Mz", "Mx", "Mz"};
  const Numbers numbers{2, 0, 2};
  EXPECT_EQ(Series({names, AllSecondary{}}), (Numbers{0, 2}));
  EXPECT_EQ(Series({numbers, AllSecondary{}}), (Numbers{0, 2}));
  EXPECT_EQ(Secondary({names, numbers}), (Numbers{0, 2}));
}

TEST_F(LoadRequestTest, NoNumberAsksForAll) {
  const Numbers none;
  EXPECT_EQ(Series({none, none}), (Numbers{0, 1, 2}));
  EXPECT_EQ(Secondary({none, none}), (Numbers{0, 1, 2}));
  EXPECT_EQ(Secondary({none, AllSecondary{}}), (Numbers{0, 1, 2}));
}

TEST_F(LoadRequestTest, NoNameAndNoValueAreRefused) {
  const Names names;
  const Radii values;
  const Numbers numbers;
  EXPECT_EQ(MessageOf([&] {
              CheckNotEmpty({names, values}, "run.%01");
            }),
            Failure("Requested variables vector empty", "File path: run.%01"));
  const std::string noValue =
      Failure("Requested secondary axis values vector empty", "File path: run.%01");
  EXPECT_EQ(MessageOf([&] { CheckNotEmpty({m_one, values}, "run.%01"); }), noValue);
  EXPECT_EQ(MessageOf([&] { CheckNotEmpty({m_one, names}, "run.%01"); }), noValue);
  CheckNotEmpty({numbers, numbers}, "run.%01");
}

TEST_F(LoadRequestTest, OfEqualValuesTheFirstIsMeant) {
  const Radii values{2.5, 1.5};
  EXPECT_EQ(Secondary({m_one, values}), (Numbers{0, 1}));
}

TEST_F(LoadRequestTest, LabelsAreSpelledExactly) {
  m_group = GroupOver(Strings({"Hub", "HUB", "Tip"}));
  const Names exact{"HUB"};
  const Names other{"tip"};
  EXPECT_EQ(Secondary({m_one, exact}), (Numbers{1}));
  EXPECT_EQ(Refusal({m_one, other}),
            Failure("Secondary axis value not found", "Requested item: 'tip'"));
}

TEST_F(LoadRequestTest, WhatTheGroupDoesNotHaveIsRefused) {
  const Names unknown{"mx"};
  const Numbers beyond{3};
  EXPECT_EQ(Refusal({unknown, AllSecondary{}}),
            Failure("Requested series was not found in the group", "Requested item: 'mx'"));
  EXPECT_EQ(Refusal({beyond, AllSecondary{}}),
            Failure("Requested series was not found in the group", "Requested item: '3'"));
  EXPECT_EQ(Refusal({m_one, beyond}),
            Failure("Axis index not found - unable to return corresponding axis value",
                    "Axis name: 'Radius'; axis index: 3; File path: ./Loads"));
  const Names four{"Mx", "Mx", "Mx", "Mx"};
  EXPECT_EQ(Refusal({four, AllSecondary{}}),
            Failure("Requested series exceed number of series in the group",
                    "Requested: 4 item(s); Present: 3 item(s)"));
}

}  // namespace
