#include "vocabulary/quantity_codes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/message_of.h"

namespace {

using SumaraApi::CodeForWriting;
using SumaraApi::QuantityCodeOfUnit;
using SumaraApi::UnitOfQuantityCode;
using testing_support::MessageOf;

constexpr bool kLenient = true;
constexpr bool kStrict = false;

/// Code and unit, but for the dimensionless pair, which is shown in words.
const std::vector<std::pair<std::string, std::string>> kTable = {
    {"L", "m"},
    {"L/T", "m/s"},
    {"A", "rad"},
    {"A/T", "rad/s"},
    {"M", "kg"},
    {"M/L", "kg/m"},
    {"MLL", "kgm\xB2"},
    {"F", "N"},
    {"FL", "Nm"},
    {"F/L", "N/m"},
    {"FL/A", "Nm/rad"},
    {"FLT/A", "Nms/rad"},
    {"FLL", "Nm\xB2"},
    {"FLTT/AA", "Nms\xB2/rad\xB2"},
    {"T", "s"},
    {"1/T", "1/s"},
    {"P", "W"},
    {"PT", "J"},
    {"A/P", "rad/W"},
    {"A/PT", "rad/Ws"},
    {"A/PTT", "rad/Ws\xB2"},
    {"M/LLL", "kg/m\xB3"},
    {"M/LT", "kg/ms"},
    {"L/TT", "m/s\xB2"},
    {"SPARE", "Spare"},
    {"FL/L", "Nm/m"},
    {"LLL", "m\xB3"},
    {"F/LL", "N/m\xB2"},
    {"LLL/A", "m\xB3/rad"},
    {"Q", "VAr"},
    {"I", "A"},
    {"V", "V"},
    {"VI", "VA"},
    {"A/TT", "rad/s\xB2"},
};

TEST(QuantityCodesTest, CodesAndUnitsTranslateBothWays) {
  ASSERT_EQ(kTable.size(), 34u);  // and the dimensionless pair
  for (const auto& [code, unit] : kTable) {
    EXPECT_EQ(UnitOfQuantityCode(code, kLenient), unit);
    EXPECT_EQ(UnitOfQuantityCode(code, kStrict), unit);
    EXPECT_EQ(QuantityCodeOfUnit(unit, kLenient), code);
    EXPECT_EQ(QuantityCodeOfUnit(unit, kStrict), code);
    EXPECT_EQ(CodeForWriting(unit), code);
  }
}

TEST(QuantityCodesTest, DimensionlessIsToldInWords) {
  EXPECT_EQ(UnitOfQuantityCode("N", kStrict), "Unitless");
  EXPECT_EQ(QuantityCodeOfUnit(".", kStrict), "Unquantifiable");
  EXPECT_EQ(CodeForWriting("."), "Unquantifiable");
}

TEST(QuantityCodesTest, TheWordsThemselvesAreNotInTheTable) {
  EXPECT_EQ(QuantityCodeOfUnit("Unitless", kLenient), "");
  EXPECT_EQ(CodeForWriting("Unitless"), "Unitless");
  EXPECT_EQ(UnitOfQuantityCode("Unitless", kLenient), "");
  EXPECT_EQ(UnitOfQuantityCode("Unquantifiable", kLenient), "");
}

TEST(QuantityCodesTest, RaisedFiguresAreSingleBytes) {
  const std::string unit = UnitOfQuantityCode("MLL", kLenient);
  ASSERT_EQ(unit.size(), 4u);
  EXPECT_EQ(static_cast<unsigned char>(unit.back()), 0xB2);
  EXPECT_EQ(CodeForWriting("kgm\xC2\xB2"), "kgm\xC2\xB2");
}

TEST(QuantityCodesTest, ComparisonIsExact) {
  for (const char* code : {"l", "L ", " L", "", ".", "m", "LL", "FLTT/A"}) {
    EXPECT_EQ(UnitOfQuantityCode(code, kLenient), "") << code;
  }
  for (const char* unit : {"M", "m ", "", "L", "rad/S", "kgm2"}) {
    EXPECT_EQ(QuantityCodeOfUnit(unit, kLenient), "") << unit;
    EXPECT_EQ(CodeForWriting(unit), unit);
  }
}

TEST(QuantityCodesTest, StrictMissShowsTheCode) {
  EXPECT_EQ(MessageOf([] { UnitOfQuantityCode("XYZ", kStrict); }),
            "Sumara Tables error: Getting SI unit from quantity identifier failed.\n"
            "Further information: Quantity code: XYZ");
}

TEST(QuantityCodesTest, StrictMissOfAUnitShowsNoUnit) {
  EXPECT_EQ(MessageOf([] { QuantityCodeOfUnit("furlong", kStrict); }),
            "Sumara Tables error: Getting SI unit from quantity identifier failed.\n"
            "Further information: Quantity code: ");
}

}  // namespace
