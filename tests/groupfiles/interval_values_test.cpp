#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "groupfiles/interval_value.h"

namespace {

constexpr std::size_t kCount = 1000;
constexpr double kMinimum = 0.05;
constexpr double kStep = 0.1;

/// The product and the sum as two roundings, whatever the compiler would like.
std::vector<double> RoundedTwice() {
  std::vector<double> values;
  for (std::size_t i = 0; i < kCount; ++i) {
    const volatile double product = static_cast<double>(i) * kStep;
    values.push_back(product + kMinimum);
  }
  return values;
}

void Fill(double minimum, double step, std::vector<double>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = Sumara::IntervalValue(minimum, step, i);
  }
}

TEST(IntervalValuesTest, AreMultipliedFirstThenAdded) {
  std::vector<double> values(kCount);
  Fill(kMinimum, kStep, values);
  EXPECT_EQ(values, RoundedTwice());
}

#if defined(__GNUC__) && defined(__x86_64__)

/// The same for a processor that can do both in one operation, with one rounding.
[[gnu::target("avx2,fma"), gnu::flatten]] void FillOnNewerProcessor(double minimum, double step,
                                                                    std::vector<double>& values) {
  Fill(minimum, step, values);
}

TEST(IntervalValuesTest, AreNotContractedOnProcessorsThatCould) {
  if (!__builtin_cpu_supports("fma")) GTEST_SKIP() << "a processor without such an operation";
  std::vector<double> values(kCount);
  FillOnNewerProcessor(kMinimum, kStep, values);
  EXPECT_EQ(values, RoundedTwice());
}

#endif

}  // namespace
