#include "groupfiles/data_layout.h"

#include <limits>

namespace Sumara {
namespace {

std::uint64_t Multiply(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  return a != 0 && b > kMost / a ? kMost : a * b;
}

}  // namespace

std::uint64_t ProductOf(const std::vector<std::uint64_t>& dimensions) {
  std::uint64_t product = 1;
  for (const std::uint64_t size : dimensions) {
    if (size == 0) return 0;
    product = Multiply(product, size);
  }
  return product;
}

std::vector<std::uint64_t> DataDimensions(std::vector<std::uint64_t> dimensions, std::size_t axes) {
  if (axes == 1 && dimensions.size() > 2) dimensions = {dimensions.front(), dimensions.back()};
  return dimensions;
}

DataLayout DataLayout::Of(const std::vector<std::uint64_t>& dimensions,
                          std::uint64_t headerRecords) {
  DataLayout layout;
  layout.variables = dimensions.empty() ? 0 : dimensions.front();
  layout.twoAxes = dimensions.size() > 2;
  layout.secondary = layout.twoAxes ? dimensions[1] : 1;
  layout.headerRecords = headerRecords;
  return layout;
}

std::uint64_t DataLayout::OffsetOf(std::uint64_t index, std::uint64_t step, std::uint64_t base) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t steps = Multiply(index, step);
  return steps > kMost - base ? kMost : steps + base;
}

std::uint64_t DataLayout::Stride() const { return Multiply(variables, secondary); }

std::uint64_t DataLayout::PointsWithin(std::uint64_t words, std::uint64_t base) const {
  const std::uint64_t stride = Stride();
  return words <= base || stride == 0 ? 0 : (words - base - 1) / stride + 1;
}

}  // namespace Sumara
