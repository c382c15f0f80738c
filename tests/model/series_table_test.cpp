#include "model/series_table.h"

#include <gtest/gtest.h>

namespace {

using Sumara::SeriesTable;
using Names = std::vector<std::string>;

SeriesTable TableOf(const Names& names) {
  SeriesTable table;
  table.SetNames(names, Names(names.size(), "FL"));
  return table;
}

constexpr auto kNone = std::optional<std::size_t>{};

/// The first lookup of a table goes another way than later ones: each is asked twice.
#define EXPECT_PLACE(lookup, place)              \
  do {                                           \
    EXPECT_EQ(lookup, place) << "first lookup";  \
    EXPECT_EQ(lookup, place) << "later lookups"; \
  } while (false)

TEST(SeriesTableTest, NamesStandAsTheyWereSet) {
  SeriesTable table;
  table.SetNames({"Mx", "My"}, {"FL", "L"});
  EXPECT_EQ(table.Size(), 2u);
  EXPECT_EQ(table.Names(), (Names{"Mx", "My"}));
  EXPECT_EQ(table.Quantities(), (Names{"FL", "L"}));
  EXPECT_EQ(table.Series()[1], nullptr);
  EXPECT_EQ(table.FirstSeries(), nullptr);
}

TEST(SeriesTableTest, ExactSpellingComesFirst) {
  const SeriesTable table = TableOf({"Speed", "SPEED", "speed", "Power"});
  EXPECT_PLACE(table.PlaceOf("SPEED"), 1u);
  EXPECT_PLACE(table.PlaceOf("speed"), 2u);
  EXPECT_PLACE(table.PlaceOf("sPEED"), 0u);
  EXPECT_PLACE(table.PlaceOf("POWER"), 3u);
  EXPECT_PLACE(table.PlaceOf("Powe"), kNone);
  EXPECT_PLACE(TableOf({"a", "A", "a"}).PlaceOf("a"), 0u);
}

TEST(SeriesTableTest, ExactLookupKeepsToTheSpelling) {
  const SeriesTable table = TableOf({"Speed", "SPEED"});
  EXPECT_PLACE(table.PlaceOfExact("SPEED"), 1u);
  EXPECT_PLACE(table.PlaceOfExact("speed"), kNone);
  EXPECT_PLACE(TableOf({}).PlaceOfExact(""), kNone);
  EXPECT_PLACE(TableOf({}).PlaceOf("x"), kNone);
}

TEST(SeriesTableTest, ThousandsOfNamesAreFound) {
  Names names;
  for (int i = 0; i < 5000; ++i) names.push_back("Name " + std::to_string(i));
  const SeriesTable table = TableOf(names);
  for (std::size_t i = 0; i < names.size(); ++i) {
    ASSERT_EQ(table.PlaceOfExact(names[i]), i);
    ASSERT_EQ(table.PlaceOf("nAME " + std::to_string(i)), i);
  }
  EXPECT_EQ(table.PlaceOf("name 5000"), kNone);
}

TEST(SeriesTableTest, AppendedNamesAreFoundAtOnce) {
  SeriesTable table;
  for (std::size_t i = 0; i < 200; ++i) {
    const std::string name = "v" + std::to_string(i);
    EXPECT_EQ(table.PlaceOf(name), kNone);
    table.Append(name, "L", nullptr);
    ASSERT_EQ(table.PlaceOf("V" + std::to_string(i)), i);
  }
  for (std::size_t i = 0; i < 200; ++i) ASSERT_EQ(table.PlaceOfExact("v" + std::to_string(i)), i);
}

TEST(SeriesTableTest, RemovalMovesTheRestUp) {
  SeriesTable table = TableOf({"a", "b", "c"});
  EXPECT_PLACE(table.PlaceOf("c"), 2u);
  table.Remove(0);
  EXPECT_EQ(table.Names(), (Names{"b", "c"}));
  EXPECT_PLACE(table.PlaceOf("c"), 1u);
  EXPECT_PLACE(table.PlaceOf("a"), kNone);
  table.Append("A", "L", nullptr);
  EXPECT_PLACE(table.PlaceOf("a"), 2u);
}

TEST(SeriesTableTest, NewNamesReplaceTheOldOnes) {
  SeriesTable table = TableOf({"a", "b"});
  EXPECT_PLACE(table.PlaceOf("b"), 1u);
  table.SetNames({"x"}, {"L"});
  EXPECT_PLACE(table.PlaceOf("b"), kNone);
  EXPECT_PLACE(table.PlaceOf("X"), 0u);
}

TEST(SeriesTableTest, FreeNameCountsBehindTheLastUnderscore) {
  const SeriesTable table = TableOf({"Rotor", "rotor_1", "Rotor_x", "_1", "a_9"});
  EXPECT_EQ(table.FreeName("Rotor"), "Rotor_2");
  EXPECT_EQ(table.FreeName("ROTOR_1"), "ROTOR_2");
  EXPECT_EQ(table.FreeName("Rotor_x"), "Rotor_x_1");
  EXPECT_EQ(table.FreeName("_1"), "_1_1");
  EXPECT_EQ(table.FreeName("a_9"), "a_10");
}

}  // namespace
