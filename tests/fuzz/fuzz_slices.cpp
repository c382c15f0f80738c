// Slices and indices of the arrays that scripts get, held against the rules in plain steps.
//
// An input decides the size of an array and the three figures of a slice.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

#include "binding/slices.h"
#include "tests/fuzz/byte_source.h"
#include "tests/fuzz/fuzzing.h"

namespace {

using Binding::SliceUse;
using Fuzzing::ByteSource;
using Fuzzing::Require;
using Array = std::vector<int>;

struct Slice {
  std::ptrdiff_t i = 0;
  std::ptrdiff_t j = 0;
  std::ptrdiff_t step = 0;
};

/// Mostly a figure near the array, at times any.
std::ptrdiff_t TakeFigure(ByteSource& source) {
  switch (source.Pick(8)) {
    case 0:
      return source.Take<std::ptrdiff_t>();
    case 1:
      return std::numeric_limits<std::ptrdiff_t>::max() - source.Take<std::uint8_t>() % 4;
    case 2:
      return std::numeric_limits<std::ptrdiff_t>::min() + source.Take<std::uint8_t>() % 4;
    default:
      return source.Take<std::int8_t>();
  }
}

// The rules.

struct Bounds {
  std::ptrdiff_t ii;
  std::ptrdiff_t jj;
};

Bounds AdjustByModel(const Slice& slice, std::size_t size, SliceUse use) {
  const auto& [i, j, step] = slice;
  const auto n = static_cast<std::ptrdiff_t>(size);
  Bounds bounds{i, j};
  auto& [ii, jj] = bounds;
  if (step > 0) {
    if (i < 0) ii = 0;
    if (i >= n) ii = use == SliceUse::Get ? 0 : n;
    jj = std::max(ii, j < 0 ? 0 : std::min(j, n));
  } else {
    if (i < -1) ii = -1;
    if (i >= n) ii = n - 1;
    if (j < -1) jj = -1;
    if (j >= n) jj = n - 1;
    ii = std::max(ii, jj);
  }
  return bounds;
}

/// The places that a slice reaches, in its order.
std::vector<std::size_t> PlacesByModel(const Slice& slice, const Bounds& bounds) {
  std::vector<std::size_t> places;
  const std::ptrdiff_t step = slice.step;
  std::ptrdiff_t left = bounds.jj - bounds.ii;
  for (std::ptrdiff_t at = bounds.ii; left != 0; at += step, left -= step) {
    places.push_back(static_cast<std::size_t>(at));
    if (step > 0 ? step >= left : step <= left) break;  // a further step might not be a number
  }
  return places;
}

Array DeleteByModel(Array array, const std::vector<std::size_t>& places) {
  std::vector<bool> isDeleted(array.size());
  for (const std::size_t place : places) isDeleted[place] = true;
  Array kept;
  for (std::size_t i = 0; i < array.size(); ++i) {
    if (!isDeleted[i]) kept.push_back(array[i]);
  }
  return kept;
}

// What the library makes of them.

Binding::SliceRange RangeOf(const Slice& slice, std::size_t size, SliceUse use) {
  return Binding::AdjustSlice(slice.i, slice.j, slice.step, static_cast<std::ptrdiff_t>(size), use);
}

void CheckGet(const Array& array, const Slice& slice) {
  const Bounds bounds = AdjustByModel(slice, array.size(), SliceUse::Get);
  Array expected;
  for (const std::size_t place : PlacesByModel(slice, bounds)) expected.push_back(array[place]);
  const std::unique_ptr<Array> found(
      Binding::GetSlice(array, RangeOf(slice, array.size(), SliceUse::Get)));
  Require(*found == expected, "a slice gives other elements");
}

void CheckDelete(const Array& array, const Slice& slice) {
  const Bounds bounds = AdjustByModel(slice, array.size(), SliceUse::Change);
  Array found = array;
  Binding::DeleteSlice(found, RangeOf(slice, array.size(), SliceUse::Change));
  Require(found == DeleteByModel(array, PlacesByModel(slice, bounds)),
          "deleting a slice leaves other elements");
}

void CheckReplace(const Array& array, const Slice& slice, const Array& values) {
  const Bounds bounds = AdjustByModel(slice, array.size(), SliceUse::Change);
  Array expected(array.begin(), array.begin() + bounds.ii);
  expected.insert(expected.end(), values.begin(), values.end());
  expected.insert(expected.end(), array.begin() + bounds.jj, array.end());
  Array found = array;
  Binding::SetSlice(found, RangeOf(slice, array.size(), SliceUse::Change), values);
  Require(found == expected, "replacing a range leaves other elements");
}

void CheckAssign(const Array& array, const Slice& slice, const Array& values) {
  const Bounds bounds = AdjustByModel(slice, array.size(), SliceUse::Change);
  const std::vector<std::size_t> places = PlacesByModel(slice, bounds);
  Array expected = array;
  std::string expectedRefusal;
  if (places.size() == values.size()) {
    for (std::size_t n = 0; n < places.size(); ++n) expected[places[n]] = values[n];
  } else {
    expectedRefusal = "attempt to assign sequence of size " + std::to_string(values.size()) +
                      " to extended slice of size " + std::to_string(places.size());
  }
  Array found = array;
  std::string refusal;
  try {
    Binding::SetSlice(found, RangeOf(slice, array.size(), SliceUse::Change), values);
  } catch (const std::invalid_argument& failure) {
    refusal = failure.what();
  }
  Fuzzing::RequireSame(refusal, expectedRefusal, "another refusal to assign to a slice");
  Require(found == expected, "assigning to a slice leaves other elements");
}

void CheckZeroStep(std::size_t size, const Slice& slice) {
  try {
    RangeOf(slice, size, SliceUse::Get);
  } catch (const std::invalid_argument& failure) {
    Fuzzing::RequireSame(failure.what(), "slice step cannot be zero", "another refusal of step 0");
    return;
  }
  Fuzzing::Fail("a slice of step 0 is taken");
}

void CheckIndex(std::ptrdiff_t i, std::size_t size) {
  const auto n = static_cast<std::ptrdiff_t>(size);
  const bool isWithin = i < 0 ? i >= -n : i < n;
  try {
    const std::size_t place = Binding::ElementIndex(i, size);
    Require(isWithin, "an index outside the array is taken");
    Require(static_cast<std::ptrdiff_t>(place) == (i < 0 ? i + n : i),
            "an index means another place");
  } catch (const std::out_of_range& failure) {
    Require(!isWithin, "an index within the array is refused");
    Fuzzing::RequireSame(failure.what(), "index out of range", "another refusal of an index");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteSource source(Fuzzing::TextOf(data, size));
  Array array(source.Pick(24));
  std::iota(array.begin(), array.end(), 100);
  Array values(source.Pick(24));
  std::iota(values.begin(), values.end(), -100);
  while (!source.IsUsedUp()) {
    Slice slice;
    slice.step = TakeFigure(source);
    slice.i = TakeFigure(source);
    slice.j = TakeFigure(source);
    CheckIndex(slice.i, array.size());
    if (slice.step == 0) {
      CheckZeroStep(array.size(), slice);
      continue;
    }
    CheckGet(array, slice);
    CheckDelete(array, slice);
    if (slice.step == 1) {
      CheckReplace(array, slice, values);
    } else {
      CheckAssign(array, slice, values);
    }
  }
  return 0;
}
