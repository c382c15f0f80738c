#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "binding/python_object.h"

namespace Binding {

/// Values of the library that go out as an array over their own memory.
template <class T>
struct ArrayView {
  std::shared_ptr<std::vector<T>> values;
};

/// A writeable one-dimensional array over memory of T, which is float, double or int; it keeps
/// `base` alive. None, with an exception set, without memory for it. NumPy was imported.
template <class T>
PyObject* NewArray(T* values, std::size_t size, PyRef base);

/// What an array keeps alive: the script object it was asked of, and the values, which outlast an
/// unload there.
template <class T>
PyRef MakeBase(PyObject* owner, std::shared_ptr<std::vector<T>> values) {
  using Holder = std::shared_ptr<std::vector<T>>;
  auto holder = std::make_unique<Holder>(std::move(values));
  PyRef capsule(PyCapsule_New(holder.get(), nullptr, [](PyObject* object) {
    delete static_cast<Holder*>(PyCapsule_GetPointer(object, nullptr));
  }));
  if (!capsule) {
    return {};
  }
  static_cast<void>(holder.release());
  return PyRef(PyTuple_Pack(2, owner, capsule.Get()));
}

/// An array over the values; null with an exception set.
template <class T>
PyObject* MakeArray(PyObject* owner, const ArrayView<T>& view) noexcept {
  try {
    PyRef base = MakeBase(owner, view.values);
    return base ? NewArray(view.values->data(), view.values->size(), std::move(base)) : nullptr;
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

}  // namespace Binding
