#include "model/group_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/model/written_group.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"

namespace {

using namespace Sumara;
using namespace testing_support;

class WriteDataTest : public ::testing::Test {
 protected:
  std::string Path() const { return m_directory.Path("run.%01"); }
  std::string Refusal(const std::string& text) const {
    return "Sumara Tables error: " + text +
           ".\nFurther information: File path: " + m_directory.Path("Rotor");
  }
  template <class T>
  std::string Data(const std::shared_ptr<IGroup>& group, bool check = true) const {
    return DataOf<T>(m_directory, group, check);
  }

  TempDirectory m_directory;
};

template <class T>
std::vector<T> RandomPoints(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<T> points;
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = static_cast<std::int32_t>(random() % 2001) - 1000;
    points.push_back(static_cast<T>(number) / static_cast<T>(8));
  }
  return points;
}

TEST_F(WriteDataTest, OneAxisHasTheSeriesInnermost) {
  const auto group = Group1D<float>(Path());
  AddSeries<float>(*group, "a", {1, 2, 3});
  AddSeries<float>(*group, "b", {10, 20, 30});
  EXPECT_EQ(Data<float>(group), Bytes<float>({1, 10, 2, 20, 3, 30}));
}

TEST_F(WriteDataTest, TwoAxesHaveTheSecondaryIndexBetween) {
  const auto group =
      Group2D<float>(Path(), /*binary=*/true, TimeAxis(), StringAxis({"x", "y", "z"}));
  AddSeries<float>(*group, "a", {{111, 211}, {112, 212}, {113, 213}});
  AddSeries<float>(*group, "b", {{-111, -211}, {-112, -212}, {-113, -213}});
  EXPECT_EQ(Data<float>(group), Bytes<float>({111, -111, 112, -112, 113, -113,  //
                                              211, -211, 212, -212, 213, -213}));
}

template <class T>
class WriteElementsTest : public WriteDataTest {};
TYPED_TEST_SUITE(WriteElementsTest, ElementTypes);

/// 32-bit integers stand for `long` too: its words have 4 bytes, whatever the header says.
template <class T>
using StoredWord = std::conditional_t<std::is_same_v<T, Long>, std::int32_t, T>;

TYPED_TEST(WriteElementsTest, BinaryStoresTheOwnType) {
  using T = TypeParam;
  using Word = StoredWord<T>;
  const auto oneAxis = Group1D<T>(this->Path());
  AddSeries<T>(*oneAxis, "a", {T(1), T(-2)});
  AddSeries<T>(*oneAxis, "b", {T(300), T(4)});
  EXPECT_EQ(this->template Data<T>(oneAxis), Bytes<Word>({1, 300, -2, 4}));

  const auto twoAxes =
      Group2D<T>(this->Path(), /*binary=*/true, StringAxis({"x", "y", "z"}), TimeAxis());
  AddSeries<T>(*twoAxes, "a", {{T(1), T(2)}, {T(3), T(4)}});
  EXPECT_EQ(this->template Data<T>(twoAxes), Bytes<Word>({1, 3, 2, 4}));
}

TYPED_TEST(WriteElementsTest, BinaryConvertsToTheTargetType) {
  using T = TypeParam;
  const auto group = Group1D<T>(this->Path());
  AddSeries<T>(*group, "a", {T(100), T(-7)});
  const auto as = [&](std::uint32_t target) {
    group->SetTargetType(target);
    return this->template Data<T>(group);
  };
  EXPECT_EQ(as(kFloatCode), Bytes<float>({100, -7}));
  EXPECT_EQ(as(kDoubleCode), Bytes<double>({100, -7}));
  EXPECT_EQ(as(kShortCode), Bytes<std::int16_t>({100, -7}));
  EXPECT_EQ(as(kIntCode), Bytes<std::int32_t>({100, -7}));
  EXPECT_EQ(as(kLongCode), Bytes<std::int32_t>({100, -7}));
}

TYPED_TEST(WriteElementsTest, TextPutsASignInPlaceOfABlank) {
  using T = TypeParam;
  const auto oneAxis = Group1D<T>(this->Path(), /*binary=*/false);
  AddSeries<T>(*oneAxis, "a", {T(1), T(-2)});
  AddSeries<T>(*oneAxis, "b", {T(-300), T(4)});
  const bool isDouble = std::is_same_v<T, double>;
  const auto real = [&](const char* digits, const char* exponent) {
    if (!std::is_floating_point_v<T>) return std::string();
    return std::string(digits) + (isDouble ? "00000000" : "") + exponent;
  };
  const bool isReal = std::is_floating_point_v<T>;
  EXPECT_EQ(this->template Data<T>(oneAxis),
            "  1" + real(".0000000", "e+00") + (isReal ? " -3" : " -300") +
                real(".0000000", "e+02") + "\n -2" + real(".0000000", "e+00") + "  4" +
                real(".0000000", "e+00") + "\n");
}

TEST_F(WriteDataTest, ConversionsCutAndWrap) {
  const auto reals = Group1D<double>(Path());
  AddSeries<double>(*reals, "a", {2.9, -2.9});
  reals->SetTargetType(kIntCode);
  EXPECT_EQ(Data<double>(reals), Bytes<std::int32_t>({2, -2}));
  const auto integers = Group1D<int>(Path());
  AddSeries<int>(*integers, "a", {65537, -1});
  integers->SetTargetType(kShortCode);
  EXPECT_EQ(Data<int>(integers), Bytes<std::int16_t>({1, -1}));
}

TEST_F(WriteDataTest, TextOfOneAxisHasALineForEachPoint) {
  const auto group = Group1D<float>(Path(), /*binary=*/false, StringAxis({"x", "y", "z"}));
  AddSeries<float>(*group, "a", {1.5F, -0.0F, 0.0F});
  AddSeries<float>(*group, "b", {-1.5F, 1e-30F, std::numeric_limits<float>::infinity()});
  EXPECT_EQ(Data<float>(group),
            "  1.5000000e+00 -1.5000000e+00\n"
            " -0.0000000e+00  1.0000000e-30\n"
            "  0.0000000e+00  inf\n");
}

TEST_F(WriteDataTest, TextOfNoNumberKeepsItsSign) {
  const float noNumber = std::numeric_limits<float>::quiet_NaN();
  const auto group = Group1D<float>(Path(), /*binary=*/false);
  AddSeries<float>(*group, "a", {noNumber, std::copysign(noNumber, -1.0F)});
  EXPECT_EQ(Data<float>(group), "  nan\n -nan\n");
}

TEST_F(WriteDataTest, TextOfTwoAxesAndOneSeriesHasALineForEachPoint) {
  const auto group =
      Group2D<float>(Path(), /*binary=*/false, TimeAxis(), ValueAxis({0.1, 0.2, 0.3}));
  AddSeries<float>(*group, "a", {{1, 2}, {3, 4}, {5, 6}});
  EXPECT_EQ(Data<float>(group),
            "  1.0000000e+00  3.0000000e+00  5.0000000e+00\n"
            "  2.0000000e+00  4.0000000e+00  6.0000000e+00\n");
}

TEST_F(WriteDataTest, TextOfTwoAxesAndMoreSeriesHasALineForEachSecondaryIndex) {
  const auto group = Group2D<int>(Path(), /*binary=*/false, TimeAxis(), TimeAxis(0, 1));
  AddSeries<int>(*group, "a", {{1, 2}, {3, 4}, {5, 6}});
  AddSeries<int>(*group, "b", {{-1, -2}, {-3, -4}, {-5, -6}});
  EXPECT_EQ(Data<int>(group), "  1 -1\n  3 -3\n  5 -5\n  2 -2\n  4 -4\n  6 -6\n");
}

TEST_F(WriteDataTest, TargetTypeDecidesTheDigitsOfText) {
  const struct {
    std::uint32_t target;
    const char* text;
  } table[] = {
      {kFloatCode, "  2.5000000e-01\n"}, {kDoubleCode, "  2.500000000000000e-01\n"},
      {kShortCode, "  2.500000e-01\n"},  {kIntCode, "  2.500000e-01\n"},
      {kLongCode, "  2.500000e-01\n"},
  };
  const auto group = Group1D<float>(Path(), /*binary=*/false);
  AddSeries<float>(*group, "a", {0.25F});
  for (const auto& [target, text] : table) {
    group->SetTargetType(target);
    EXPECT_EQ(Data<float>(group), text);
  }
}

TEST_F(WriteDataTest, AFullBlockIsFollowedByNoEmptyOne) {
  const auto group = Group1D<float>(Path());
  const auto points = RandomPoints<float>(2048, 1);
  AddSeries<float>(*group, "a", points);
  EXPECT_EQ(Data<float>(group), Bytes(points));
}

/// Shapes around the widths and heights in which values are gathered.
class WriteShapesTest : public WriteDataTest,
                        public ::testing::WithParamInterface<std::pair<std::size_t, std::size_t>> {
};

TEST_P(WriteShapesTest, ValuesFollowEachOtherRowByRow) {
  const auto [columns, rows] = GetParam();
  const auto binary = Group1D<float>(Path());
  const auto text = Group1D<float>(Path(), /*binary=*/false);
  std::vector<std::vector<float>> all;
  for (std::size_t c = 0; c < columns; ++c) {
    all.push_back(RandomPoints<float>(rows, static_cast<unsigned>(c)));
    AddSeries<float>(*binary, NameOf(c), all.back());
    AddSeries<float>(*text, NameOf(c), all.back());
  }
  std::vector<float> words;
  std::string lines;
  for (std::size_t row = 0; row < rows; ++row) {
    for (const auto& column : all) {
      words.push_back(column[row]);
      lines += TextValue(column[row], 7);
    }
    lines += "\n";
  }
  EXPECT_TRUE(Data<float>(binary) == Bytes(words));
  EXPECT_TRUE(Data<float>(text) == lines);
}

INSTANTIATE_TEST_SUITE_P(Shapes, WriteShapesTest,
                         ::testing::Values(std::pair{1u, 65536u}, std::pair{1u, 70001u},
                                           std::pair{15u, 5000u}, std::pair{16u, 4096u},
                                           std::pair{17u, 4097u}, std::pair{33u, 2500u},
                                           std::pair{300u, 230u}));

TEST_F(WriteDataTest, ARowMayBeLongerThanABlock) {
  constexpr std::size_t kSecondary = 9000;
  const auto group = Group2D<double>(Path(), /*binary=*/true, TimeAxis(), TimeAxis(0, 1));
  std::vector<std::vector<double>> vectors[4];
  std::vector<double> words;
  for (auto& series : vectors) series.assign(kSecondary, std::vector<double>(2));
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t s = 0; s < kSecondary; ++s) {
      for (auto& series : vectors) {
        words.push_back(static_cast<double>(words.size()));
        series[s][i] = words.back();
      }
    }
  }
  for (std::size_t v = 0; v < 4; ++v) AddSeries<double>(*group, NameOf(v), vectors[v]);
  EXPECT_TRUE(Data<double>(group) == Bytes(words));
}

TEST_F(WriteDataTest, EmptySeriesWriteNothing) {
  const auto oneAxis = Group1D<float>(Path());
  AddSeries<float>(*oneAxis, "a");
  AddSeries<float>(*oneAxis, "b");
  EXPECT_EQ(Data<float>(oneAxis), "");
  const auto labelled = Group2D<float>(Path(), /*binary=*/false, TimeAxis(), StringAxis({"x"}));
  AddSeries<float>(*labelled, "a");
  EXPECT_EQ(Data<float>(labelled), "");
  const auto interval = Group2D<float>(Path(), /*binary=*/true, TimeAxis(), TimeAxis());
  AddSeries<float>(*interval, "a");
  EXPECT_EQ(Data<float>(interval), "");
}

TEST_F(WriteDataTest, AxesLearnTheNumberOfPoints) {
  const auto group = Group2D<float>(Path(), /*binary=*/true, TimeAxis(), TimeAxis());
  AddSeries<float>(*group, "a", {{1, 2, 3}, {4, 5, 6}});
  EXPECT_EQ(group->GetAxis(kPrimary, true)->GetNumberOfPoints(), 0u);
  Data<float>(group);
  EXPECT_EQ(group->GetAxis(kPrimary, true)->GetNumberOfPoints(), 3u);
  EXPECT_EQ(group->GetAxis(kSecondary, true)->GetNumberOfPoints(), 2u);

  const auto labelled = Group1D<float>(Path(), /*binary=*/true, ValueAxis({1, 2, 3, 4}));
  AddSeries<float>(*labelled, "a", {1, 2});
  Data<float>(labelled);
  EXPECT_EQ(labelled->GetAxis(kPrimary, true)->GetNumberOfPoints(), 4u);
}

TEST_F(WriteDataTest, AGroupMayGrowAndBeWrittenAgain) {
  const auto group = Group1D<float>(Path());
  const auto a = AddSeries<float>(*group, "a", {1, 2});
  Data<float>(group);
  a->AddSeriesPoints(std::vector<float>{3}, /*check=*/true);
  EXPECT_EQ(Data<float>(group), Bytes<float>({1, 2, 3}));
  AddSeries<float>(*group, "b", {4, 5, 6});
  EXPECT_EQ(Data<float>(group), Bytes<float>({1, 4, 2, 5, 3, 6}));
  group->RemoveSeries(std::string("a"));
  AddSeries<float>(*group, "c", {7, 8, 9});
  EXPECT_EQ(Data<float>(group), Bytes<float>({4, 7, 5, 8, 6, 9}));
}

TEST_F(WriteDataTest, ClassOfAnotherTypeRaises64) {
  const auto group = Group1D<double>(Path());
  AddSeries<double>(*group, "a", {1});
  EXPECT_EQ(MessageOf([&] { Data<float>(group); }),
            Refusal("Group has invalid number of dimensions - must be 1D or 2D"));
}

TEST_F(WriteDataTest, UnknownTargetTypeRaises65) {
  const auto group = Group1D<float>(Path());
  AddSeries<float>(*group, "a", {1});
  group->SetTargetType(6);
  EXPECT_EQ(MessageOf([&] { Data<float>(group); }),
            Refusal("Invalid data type used to create a group"));
}

constexpr const char* kAsymmetric =
    "Asymmetric group cannot be serialised; only symmetric groups may be serialised";

TEST_F(WriteDataTest, GroupsThatHoldNoDataOfTheirOwnAreRefusedInOrder) {
  const auto group = Group1D<float>(Path());
  const auto refusal = [&] { return MessageOf([&] { CheckSerialisable({group}); }); };
  EXPECT_EQ(refusal(), Refusal("Group containing no series cannot be serialised"));
  group->SetDeserialised();
  const std::string deserialised = Refusal(
      "Group deserialised in the current session cannot be serialised; only new "
      "(non-deserialised) groups may be serialised");
  EXPECT_EQ(refusal(), deserialised);
  EXPECT_EQ(MessageOf([&] { Data<float>(group); }), deserialised);
  group->SetPreviewMode(PreviewMode::kWithStatistics);
  EXPECT_EQ(refusal(),
            Refusal("Preview group does not contain data therefore is not eligible for data "
                    "serialisation; only preview group headers may be serialised"));
}

TEST_F(WriteDataTest, SeriesOfDifferentLengthsAreRefused) {
  const auto oneAxis = Group1D<float>(Path());
  AddSeries<float>(*oneAxis, "a", {1, 2});
  AddSeries<float>(*oneAxis, "b", {1});
  EXPECT_EQ(MessageOf([&] { CheckSerialisable({oneAxis}); }), Refusal(kAsymmetric));
  EXPECT_EQ(MessageOf([&] { Data<float>(oneAxis, /*check=*/false); }), Refusal(kAsymmetric));
  EXPECT_EQ(m_directory.Read("data"), "");

  const auto twoAxes = Group2D<float>(Path(), /*binary=*/true, TimeAxis(), StringAxis({"x"}));
  AddSeries<float>(*twoAxes, "a", {{1, 2}});
  AddSeries<float>(*twoAxes, "b", {{1}});
  EXPECT_EQ(MessageOf([&] { Data<float>(twoAxes); }), Refusal(kAsymmetric));
  EXPECT_EQ(MessageOf([&] { Data<float>(twoAxes, /*check=*/false); }), Refusal(kAsymmetric));
}

}  // namespace
