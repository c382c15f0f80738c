#include <array>
#include <type_traits>
#include <utility>

#include "binding/numpy_array.h"
#include "binding/numpy_import.h"

// This is the only source that uses NumPy's functions. They are those of NumPy 1.21, which stand at
// the same places in the tables of all later releases.
#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#define NPY_TARGET_VERSION NPY_1_20_API_VERSION
#include <numpy/arrayobject.h>

namespace Binding {
namespace {

// What the module was compiled against, as far as its texts are concerned.
constexpr unsigned kAbiVersion = 0x1000009;
constexpr unsigned kAbiVersionOfNumPy2 = 0x2000000;
constexpr unsigned kLeastApiVersion = 0xd;

PyRef ImportCore() {
  // NumPy 2 keeps its core under another name, and warns of whom uses the old one.
  PyRef core(PyImport_ImportModule("numpy._core._multiarray_umath"));
  if (!core && PyErr_ExceptionMatches(PyExc_ModuleNotFoundError)) {
    PyErr_Clear();
    core = PyRef(PyImport_ImportModule("numpy.core._multiarray_umath"));
  }
  return core;
}

/// The table of NumPy's functions; null with an exception set.
void** FunctionTable() {
  const PyRef core = ImportCore();
  const PyRef capsule(core ? PyObject_GetAttrString(core.Get(), "_ARRAY_API") : nullptr);
  if (!capsule) {
    return nullptr;
  }
  if (!PyCapsule_CheckExact(capsule.Get())) {
    PyErr_SetString(PyExc_RuntimeError, "_ARRAY_API is not PyCapsule object");
    return nullptr;
  }
  auto* const table = static_cast<void**>(PyCapsule_GetPointer(capsule.Get(), nullptr));
  if (!table) {
    PyErr_SetString(PyExc_RuntimeError, "_ARRAY_API is NULL pointer");
  }
  return table;
}

/// Whether the functions of the current table are those that the module knows.
bool IsCompatible() {
  const unsigned abi = PyArray_GetNDArrayCVersion();
  if (abi != kAbiVersion && abi != kAbiVersionOfNumPy2) {
    PyErr_Format(PyExc_RuntimeError,
                 "module compiled against ABI version 0x%x but this version of numpy is 0x%x",
                 kAbiVersion, abi);
    return false;
  }
  const unsigned api = PyArray_GetNDArrayCFeatureVersion();
  if (api < kLeastApiVersion) {
    PyErr_Format(PyExc_RuntimeError,
                 "module compiled against API version 0x%x but this version of numpy is 0x%x . "
                 "Check the section C-API incompatibility at the Troubleshooting ImportError "
                 "section at https://numpy.org/devdocs/user/troubleshooting-importerror.html"
                 "#c-api-incompatibility for indications on how to solve this problem .",
                 kLeastApiVersion, api);
    return false;
  }
  const int order = PyArray_GetEndianness();
  if (order == NPY_CPU_UNKNOWN_ENDIAN) {
    PyErr_SetString(PyExc_RuntimeError, "FATAL: module compiled as unknown endian");
  } else if (order != NPY_CPU_LITTLE) {
    PyErr_SetString(PyExc_RuntimeError,
                    "FATAL: module compiled as little endian, but detected different endianness "
                    "at runtime");
  }
  return order == NPY_CPU_LITTLE;
}

template <class T>
constexpr int TypeNumber() {
  if constexpr (std::is_same_v<T, float>) {
    return NPY_FLOAT;
  } else if constexpr (std::is_same_v<T, double>) {
    return NPY_DOUBLE;
  } else {
    static_assert(std::is_same_v<T, int>);
    return NPY_INT;
  }
}

}  // namespace

void ImportNumPy() {
  if (void** const table = FunctionTable()) {
    void** const before = std::exchange(PyArray_API, table);
    if (IsCompatible()) {
      return;
    }
    PyArray_API = before;
  }
  if (PyErr_ExceptionMatches(PyExc_MemoryError) != 0) {
    throw ErrorAlreadySet();
  }
  PyErr_Print();
  PyErr_SetString(PyExc_ImportError, "numpy.core.multiarray failed to import");
  throw ErrorAlreadySet();
}

template <class T>
PyObject* NewArray(T* values, std::size_t size, PyRef base) {
  auto length = static_cast<npy_intp>(size);
  PyRef array(PyArray_New(&PyArray_Type, 1, &length, TypeNumber<T>(), nullptr, values, 0,
                          NPY_ARRAY_CARRAY, nullptr));
  if (!array ||
      PyArray_SetBaseObject(reinterpret_cast<PyArrayObject*>(array.Get()), base.Release()) < 0) {
    return nullptr;
  }
  return array.Release();
}

template PyObject* NewArray(float* values, std::size_t size, PyRef base);
template PyObject* NewArray(double* values, std::size_t size, PyRef base);
template PyObject* NewArray(int* values, std::size_t size, PyRef base);

}  // namespace Binding
