#include "core/pages.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

TEST(PagesTest, VectorsHaveTheirRoomAndKeepWhatTheyHold) {
  constexpr std::size_t kCount = 100000;  // 800 KB each: all of them fill several large pages
  std::vector<std::vector<double>> vectors(30);
  std::vector<std::vector<double>*> places;
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    vectors[i].assign(i, double(i));
    places.push_back(&vectors[i]);
  }
  Sumara::Pages::Reserve<double>(places, kCount);
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    const double* const data = vectors[i].data();
    EXPECT_GE(vectors[i].capacity(), kCount);
    EXPECT_EQ(vectors[i], std::vector<double>(i, double(i)));
    vectors[i].resize(kCount);
    std::iota(vectors[i].begin(), vectors[i].end(), double(i));
    EXPECT_EQ(vectors[i].data(), data);
  }
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    std::vector<double> expected(kCount);
    std::iota(expected.begin(), expected.end(), double(i));
    EXPECT_EQ(vectors[i], expected);
  }
}

TEST(PagesTest, NoRoomIsReservedInNoVector) {
  std::vector<int> empty;
  std::vector<int>* const place = &empty;
  Sumara::Pages::Reserve<int>({}, 5);
  Sumara::Pages::Reserve<int>({&place, 1}, 0);
  EXPECT_EQ(empty.capacity(), 0u);
}

}  // namespace
