#include "api/name_index.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using SumaraApi::NameIndex;
using Names = Sumara::NameList;
using Places = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

Places PlacesOf(const NameIndex& index, const std::string& name) {
  Places places;
  index.ForEach(
      name, [&](const NameIndex::Place& found) { places.emplace_back(found.list, found.place); });
  return places;
}

TEST(NameIndexTest, EmptyIndexFindsNothing) { EXPECT_EQ(PlacesOf(NameIndex(), "x"), Places{}); }

TEST(NameIndexTest, NamesAreFoundInAnyCaseInTheOrderOfTheLists) {
  const Names first = {"Speed", "Power", "SPEED"};
  const Names second = {"speed"};
  const Names third = {};
  NameIndex index;
  index.Add(first);
  index.Add(third);
  index.Add(second);
  EXPECT_EQ(index.ListCount(), 3u);
  EXPECT_EQ(PlacesOf(index, "sPEED"), (Places{{0, 0}, {0, 2}, {2, 0}}));
  EXPECT_EQ(PlacesOf(index, "power"), (Places{{0, 1}}));
  EXPECT_EQ(PlacesOf(index, "Spee"), Places{});
  EXPECT_EQ(PlacesOf(index, ""), Places{});
}

TEST(NameIndexTest, ManyListsOfManyNamesAreFoundAsTheyGrow) {
  constexpr std::uint32_t kLists = 40;
  constexpr std::uint32_t kNames = 60;
  std::vector<Names> lists(kLists);
  NameIndex index;
  for (std::uint32_t list = 0; list < kLists; ++list) {
    lists[list].Append("Time");
    for (std::uint32_t i = 1; i < kNames; ++i)
      lists[list].Append("Variable " + std::to_string(kNames * list + i));
    index.Add(lists[list]);
    for (std::uint32_t known = 0; known <= list; ++known) {
      const std::string name = "VARIABLE " + std::to_string(kNames * known + 7);
      ASSERT_EQ(PlacesOf(index, name), (Places{{known, 7}}));
    }
    ASSERT_EQ(PlacesOf(index, "time").size(), list + 1);
  }
}

}  // namespace
