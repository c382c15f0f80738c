#pragma once

#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tables/selection.h"

namespace Tabulon::Module {

namespace nb = nanobind;

/// Memory of a script for columns of T: it must be of that very type.
template <class T>
using Target = nb::ndarray<T, nb::numpy, nb::ndim<2>, nb::device::cpu>;

/// The columns of a target. \throws std::invalid_argument if its shape is another, or if the values
/// of a column do not lie behind each other.
template <class T>
std::vector<T*> Checked(const Target<T>& target, const Shape& shape) {
  if (target.shape(0) != shape.columns || target.shape(1) != shape.rows) {
    throw std::invalid_argument("out has the shape (" + std::to_string(target.shape(0)) + ", " +
                                std::to_string(target.shape(1)) + "), wanted is (" +
                                std::to_string(shape.columns) + ", " + std::to_string(shape.rows) +
                                ")");
  }
  const bool lineUp = shape.rows < 2 || target.stride(1) == 1;
  const bool apart = shape.columns < 2 || target.stride(0) >= static_cast<std::int64_t>(shape.rows);
  if (!lineUp || !apart) {
    throw std::invalid_argument("the values of each row of out must lie behind each other");
  }
  std::vector<T*> columns(shape.columns);
  for (std::size_t c = 0; c < columns.size(); ++c)
    columns[c] = target.data() + static_cast<std::int64_t>(c) * target.stride(0);
  return columns;
}

/// An array that takes over `values`.
template <class T>
nb::ndarray<nb::numpy, T> Array(std::vector<T> values, std::initializer_list<std::size_t> shape) {
  auto kept = std::make_unique<std::vector<T>>(std::move(values));
  T* const data = kept->data();
  const nb::capsule owner(kept.get(), [](void* held) noexcept {
    delete static_cast<std::vector<T>*>(held);  // NOLINT: taken over from a unique_ptr
  });
  kept.release();  // NOLINT: the capsule owns it
  return nb::ndarray<nb::numpy, T>(data, shape.size(), shape.begin(), owner);
}

}  // namespace Tabulon::Module
