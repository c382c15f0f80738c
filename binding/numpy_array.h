#pragma once

#include <memory>
#include <vector>

// The wrapper is the only source that uses NumPy's functions.
#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#include <numpy/arrayobject.h>

#include "binding/python_object.h"

namespace Binding {

/// Values of the library that go out as an array over their own memory.
template <class T>
struct ArrayView {
  std::shared_ptr<std::vector<T>> values;
};

template <class T>
struct NumPyType;
template <>
struct NumPyType<float> {
  static constexpr int kNumber = NPY_FLOAT;
};
template <>
struct NumPyType<double> {
  static constexpr int kNumber = NPY_DOUBLE;
};
template <>
struct NumPyType<int> {
  static constexpr int kNumber = NPY_INT;
};

/// Makes NumPy's functions known, on each use: the module loads and works without NumPy.
/// \throws ErrorAlreadySet after the reason was printed
inline void ImportNumPy() {
  if (_import_array() < 0) {
    PyErr_Print();
    PyErr_SetString(PyExc_ImportError, "numpy.core.multiarray failed to import");
    throw ErrorAlreadySet();
  }
}

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
    return PyRef();
  }
  holder.release();
  return PyRef(PyTuple_Pack(2, owner, capsule.Get()));
}

/// A writeable array over the values; none, with an exception set, if there is no memory for it.
template <class T>
PyObject* MakeArray(PyObject* owner, const ArrayView<T>& view) {
  PyRef base = MakeBase(owner, view.values);
  if (!base) {
    return nullptr;
  }
  npy_intp length = static_cast<npy_intp>(view.values->size());
  PyRef array(PyArray_New(&PyArray_Type, 1, &length, NumPyType<T>::kNumber, nullptr,
                          view.values->data(), 0, NPY_ARRAY_CARRAY, nullptr));
  if (!array ||
      PyArray_SetBaseObject(reinterpret_cast<PyArrayObject*>(array.Get()), base.Release()) < 0) {
    return nullptr;
  }
  return array.Release();
}

}  // namespace Binding
