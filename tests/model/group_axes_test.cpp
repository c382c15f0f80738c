#include "model/group_axes.h"

#include <gtest/gtest.h>

#include "tests/support/message_of.h"

namespace {

using Sumara::CIntervalAxis;
using Sumara::CLabelledStringAxis;
using Sumara::CLabelledValueAxis;
using Sumara::GroupAxes;
using Sumara::kPrimary;
using Sumara::kSecondary;
using Sumara::LabelMatch;
using testing_support::MessageOf;

constexpr LabelMatch kBoth[] = {LabelMatch::kFirst, LabelMatch::kUnique};

class GroupAxesTest : public ::testing::Test {
 protected:
  void Take(std::vector<double> labels) {
    m_axes.Add(std::make_shared<CLabelledValueAxis>("Radius", "L", std::move(labels), kPrimary));
  }
  void Take(std::vector<std::string> labels) {
    m_axes.Add(std::make_shared<CLabelledStringAxis>("Part", "N", std::move(labels), kPrimary));
  }
  void TakeInterval(std::uint64_t points) {
    m_axes.Add(std::make_shared<CIntervalAxis>("Time", "T", 0.5, 0.25));
    m_axes.Find(kPrimary)->SetNumberOfPoints(points);
  }
  template <class Value>
  std::string Failure(const Value& value, LabelMatch match) const {
    return MessageOf([&] { m_axes.IndexOf(kPrimary, value, match); });
  }

  GroupAxes m_axes{[] { return std::string("the group"); }};
};

const std::string kError = "Sumara Tables error: ";
const std::string kFurther = ".\nFurther information: ";
const std::string kMissing = kError + "Specified axis not found" + kFurther + "the group";
const std::string kMismatch =
    kError +
    "Axis does not match the type requested, e.g. a labelled value axis was requested but a "
    "labelled string axis was found" +
    kFurther + "the group";
const std::string kNotFound =
    kError + "Axis value not found - unable to return corresponding axis index" + kFurther;
const std::string kSeveral = kError + "Axis labels are not unique" + kFurther;

TEST_F(GroupAxesTest, AxesStandByPositionAndKind) {
  TakeInterval(3);
  Take(std::vector<std::string>{"Hub", "Blade"});
  EXPECT_EQ(m_axes.Count(), 2u);
  EXPECT_FALSE(m_axes.IsLabelled(kPrimary));
  EXPECT_TRUE(m_axes.IsLabelled(kSecondary));
  EXPECT_TRUE(m_axes.IsLabelled(2)) << "there is none";
  EXPECT_EQ(m_axes.LabelCount(kPrimary), 0u);
  EXPECT_EQ(m_axes.LabelCount(kSecondary), 2u);
  EXPECT_EQ(m_axes.LabelCount(2), 0u);
  EXPECT_EQ(m_axes.Find<CIntervalAxis>(kPrimary), m_axes.Get(kPrimary));
  EXPECT_EQ(m_axes.Find<CLabelledValueAxis>(kPrimary), nullptr);
  EXPECT_EQ(m_axes.Find(2), nullptr);
}

TEST_F(GroupAxesTest, AxesThatAreNotThereAreRefused) {
  TakeInterval(3);
  EXPECT_EQ(MessageOf([&] { m_axes.Get(kSecondary); }), kMissing);
  EXPECT_EQ(MessageOf([&] { m_axes.Get<CIntervalAxis>(kSecondary); }), kMissing);
  EXPECT_EQ(MessageOf([&] { m_axes.Get<CLabelledStringAxis>(kPrimary); }), kMismatch);
}

TEST_F(GroupAxesTest, ValuesAreFoundAmongLabels) {
  Take(std::vector<double>{1.5, 2.5, 1.5});
  for (const LabelMatch match : kBoth) {
    EXPECT_EQ(m_axes.IndexOf(kPrimary, 2.5, match), 1u);
    EXPECT_EQ(m_axes.IndexOf(kPrimary, " 2.5x", match), 1u)
        << "what the standard library makes of it";
    EXPECT_EQ(Failure(3.0, match), kNotFound + "Axis name: 'Radius'; axis value: 3");
    EXPECT_EQ(Failure("Hub", match), "stod");
    EXPECT_THROW(m_axes.IndexOf(kPrimary, "1e999", match), std::out_of_range);
  }
}

TEST_F(GroupAxesTest, OfEqualValuesTheFirstIsMeantOrNone) {
  Take(std::vector<double>{1.5, 2.5, 1.5});
  EXPECT_EQ(m_axes.IndexOf(kPrimary, 1.5, LabelMatch::kFirst), 0u);
  EXPECT_EQ(m_axes.IndexOf(kPrimary, "1.5", LabelMatch::kFirst), 0u);
  const std::string several = kSeveral + "Axis name: 'Radius'; axis value: 1.5; the group";
  EXPECT_EQ(Failure(1.5, LabelMatch::kUnique), several);
  EXPECT_EQ(Failure("1.5", LabelMatch::kUnique), several);
}

TEST_F(GroupAxesTest, TextsAreFoundInAnyCase) {
  Take(std::vector<std::string>{"Hub", "Blade", "HUB"});
  EXPECT_EQ(m_axes.IndexOf(kPrimary, "HUB", LabelMatch::kFirst), 2u) << "so spelled";
  EXPECT_EQ(m_axes.IndexOf(kPrimary, "hub", LabelMatch::kFirst), 0u);
  for (const LabelMatch match : kBoth) {
    EXPECT_EQ(m_axes.IndexOf(kPrimary, "BLADE", match), 1u);
    EXPECT_EQ(Failure("Tip", match), kNotFound + "Axis name: 'Part'; axis value: Tip");
    EXPECT_EQ(Failure(1.0, match), kMismatch);
  }
  EXPECT_EQ(Failure("HUB", LabelMatch::kUnique),
            kSeveral + "Axis name: 'Part'; axis value: HUB; the group");
}

TEST_F(GroupAxesTest, AnIntervalAxisHasValuesButNoLabels) {
  TakeInterval(3);
  EXPECT_EQ(m_axes.IndexOf(kPrimary, 1.0, LabelMatch::kFirst), 2u);
  EXPECT_EQ(m_axes.IndexOf(kPrimary, "0.75", LabelMatch::kFirst), 1u);
  EXPECT_EQ(Failure(1.25, LabelMatch::kFirst), kNotFound + "Axis name: 'Time'; axis value: 1.25");
  EXPECT_EQ(Failure(1.0, LabelMatch::kUnique), kMismatch);
  EXPECT_EQ(Failure("1", LabelMatch::kUnique), kMismatch);
}

}  // namespace
