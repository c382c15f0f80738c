#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "binding/python_object.h"

namespace Binding {

/// What a slice is for. Past the end, a get starts over at the first element; changes stay at the
/// end.
enum class SliceUse { Get, Change };

/// The elements that a slice reaches in an array: `count` of them from `first`, `step` apart. For
/// step 1 `first` is also where elements are inserted.
struct SliceRange {
  std::ptrdiff_t first;
  std::ptrdiff_t step;
  std::ptrdiff_t count;
};

/// The range of a slice's own figures, as `PySlice_GetIndices` gives them.
/// \throws std::invalid_argument for step 0
inline SliceRange AdjustSlice(std::ptrdiff_t i, std::ptrdiff_t j, std::ptrdiff_t step,
                              std::ptrdiff_t size, SliceUse use) {
  if (step == 0) {
    throw std::invalid_argument("slice step cannot be zero");
  }
  if (step > 0) {
    const std::ptrdiff_t pastEnd = use == SliceUse::Get ? 0 : size;
    const std::ptrdiff_t first = i < 0 ? 0 : i < size ? i : pastEnd;
    const std::ptrdiff_t last = std::max(first, j < 0 ? 0 : std::min(j, size));
    return {first, step, last == first ? 0 : (last - first - 1) / step + 1};
  }
  const std::ptrdiff_t last = j < -1 ? -1 : j < size ? j : size - 1;
  const std::ptrdiff_t first = std::max(last, i < -1 ? -1 : i < size ? i : size - 1);
  // The step is divided by as it stands: its opposite may not exist.
  return {first, step, last == first ? 0 : (last - first + 1) / step + 1};
}

/// The range from i to j.
inline SliceRange RangeSlice(std::ptrdiff_t i, std::ptrdiff_t j, std::size_t size, SliceUse use) {
  return AdjustSlice(i, j, 1, static_cast<std::ptrdiff_t>(size), use);
}

/// The range of a slice object.
/// \throws ErrorAlreadySet if a bound is neither an integer of 64 bits nor None
inline SliceRange ResolveSlice(PyObject* slice, std::size_t size, SliceUse use) {
  const auto* bounds = reinterpret_cast<const PySliceObject*>(slice);
  for (PyObject* bound : {bounds->start, bounds->stop, bounds->step}) {
    if (bound != Py_None && !PyLong_Check(bound)) {
      PyErr_SetString(PyExc_TypeError, "slice indices must be integers or None");
      throw ErrorAlreadySet();
    }
  }
  Py_ssize_t i = 0;
  Py_ssize_t j = 0;
  Py_ssize_t step = 0;
  const auto length = static_cast<Py_ssize_t>(size);
  // The result only says that a bound lies outside, which the adjustment handles.
  static_cast<void>(PySlice_GetIndices(slice, length, &i, &j, &step));
  if (PyErr_Occurred()) {
    throw ErrorAlreadySet();
  }
  return AdjustSlice(i, j, step, length, use);
}

/// What a get from the array, or a change of it, reaches: by a slice object, or from i to j.
template <class T>
SliceRange ToGet(const std::vector<T>& elements, PyObject* slice) {
  return ResolveSlice(slice, elements.size(), SliceUse::Get);
}
template <class T>
SliceRange ToGet(const std::vector<T>& elements, std::ptrdiff_t i, std::ptrdiff_t j) {
  return RangeSlice(i, j, elements.size(), SliceUse::Get);
}
template <class T>
SliceRange ToChange(const std::vector<T>& elements, PyObject* slice) {
  return ResolveSlice(slice, elements.size(), SliceUse::Change);
}
template <class T>
SliceRange ToChange(const std::vector<T>& elements, std::ptrdiff_t i, std::ptrdiff_t j) {
  return RangeSlice(i, j, elements.size(), SliceUse::Change);
}

/// The place of an element; a negative index counts from the end.
/// \throws std::out_of_range
inline std::size_t ElementIndex(std::ptrdiff_t i, std::size_t size) {
  const auto length = static_cast<std::ptrdiff_t>(size);
  const bool within = i < 0 ? i >= -length : i < length;
  if (!within) {
    throw std::out_of_range("index out of range");
  }
  return static_cast<std::size_t>(i < 0 ? i + length : i);
}

template <class T>
std::vector<T>* GetSlice(const std::vector<T>& elements, const SliceRange& range) {
  auto result = std::make_unique<std::vector<T>>();
  result->reserve(static_cast<std::size_t>(range.count));
  for (std::ptrdiff_t n = 0; n < range.count; ++n) {
    result->push_back(elements[static_cast<std::size_t>(range.first + n * range.step)]);
  }
  return result.release();
}

template <class T>
void DeleteSlice(std::vector<T>& elements, const SliceRange& range) {
  const std::ptrdiff_t other =
      range.first + std::max<std::ptrdiff_t>(range.count - 1, 0) * range.step;
  const auto lowest = static_cast<std::size_t>(std::min(range.first, other));
  const auto step = static_cast<std::size_t>(range.step);
  const std::size_t stride = range.step > 0 ? step : std::size_t{0} - step;
  const std::size_t end = lowest + static_cast<std::size_t>(range.count) * stride;
  std::size_t index = 0;
  const auto isDeleted = [&](const T&) {
    const std::size_t place = index++;
    return place >= lowest && place < end && (place - lowest) % stride == 0;
  };
  elements.erase(std::remove_if(elements.begin(), elements.end(), isDeleted), elements.end());
}

/// Replaces the elements of a range; with step 1 by any number of others.
/// \throws std::invalid_argument if the counts differ with another step
template <class T>
void SetSlice(std::vector<T>& elements, const SliceRange& range, std::vector<T> values) {
  const auto count = static_cast<std::size_t>(range.count);
  if (range.step == 1) {
    const std::size_t kept = std::min(count, values.size());
    const auto rest = values.begin() + static_cast<std::ptrdiff_t>(kept);
    const auto place = std::move(values.begin(), rest, elements.begin() + range.first);
    const auto end = elements.erase(place, elements.begin() + range.first + range.count);
    elements.insert(end, std::make_move_iterator(rest), std::make_move_iterator(values.end()));
    return;
  }
  if (values.size() != count) {
    throw std::invalid_argument("attempt to assign sequence of size " +
                                std::to_string(values.size()) + " to extended slice of size " +
                                std::to_string(count));
  }
  for (std::ptrdiff_t n = 0; n < range.count; ++n) {
    elements[static_cast<std::size_t>(range.first + n * range.step)] =
        std::move(values[static_cast<std::size_t>(n)]);
  }
}

}  // namespace Binding
