#pragma once

#include <memory>
#include <new>
#include <string>

#include "binding/held_object.h"
#include "binding/python_object.h"
#include "binding/swig_runtime.h"
#include "binding/type_names.h"

// Single values on their way over the boundary.

namespace Binding {

/// How a string argument was given.
struct StringArgument {
  bool isString = false;
  /// Null for None.
  std::string* text = nullptr;
  /// Whether the text was made for the caller, who deletes it.
  bool isNew = false;
};

/// The string of an argument: a `str`, None, or a string that another module wraps. Lone surrogates
/// become the bytes that they stand for. Without `isWanted` it is only checked.
/// \throws std::bad_alloc \throws ErrorAlreadySet
StringArgument ToString(PyObject* object, bool isWanted);

/// How an element of an array crosses the boundary. `Convert` takes it in, or only checks it if
/// there is no place for it; it throws `std::bad_alloc` and `ErrorAlreadySet`. `ToPython` gives a
/// new reference, or null with an exception set; it throws `std::bad_alloc`.
template <class T>
struct Element;

template <>
struct Element<double> {
  static bool Convert(PyObject* object, double* value) { return Swig::AsNumber(object, value); }
  static PyObject* ToPython(double value) { return PyFloat_FromDouble(value); }
};

template <>
struct Element<float> {
  static bool Convert(PyObject* object, float* value) { return Swig::AsNumber(object, value); }
  static PyObject* ToPython(float value) { return PyFloat_FromDouble(value); }
};

template <>
struct Element<int> {
  static bool Convert(PyObject* object, int* value) { return Swig::AsNumber(object, value); }
  static PyObject* ToPython(int value) { return PyLong_FromLong(value); }
};

template <>
struct Element<std::string> {
  static bool Convert(PyObject* object, std::string* value);
  static PyObject* ToPython(const std::string& value) { return Swig::FromString(value); }
};

/// None stands for a null pointer.
template <class T>
struct Element<std::shared_ptr<T>> {
  static bool Convert(PyObject* object, std::shared_ptr<T>* value) {
    std::shared_ptr<T> held;
    return TakeShared(object, TypeOf<std::shared_ptr<T>>(), value ? *value : held);
  }
  static PyObject* ToPython(std::shared_ptr<T> value) {
    auto held = value ? std::make_unique<std::shared_ptr<T>>(std::move(value)) : nullptr;
    return NewObject(held.release(), TypeOf<std::shared_ptr<T>>(), Swig::kOwned);
  }
};

/// A new reference to the result of a call; null with an exception set.
template <class T>
PyObject* Result(const T& value) noexcept {
  try {
    return Element<T>::ToPython(value);
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

/// The same for an object that a constructor made, which is held by shared pointer from here on.
template <class T>
PyObject* SharedResult(T* made, int flags) noexcept {
  try {
    std::unique_ptr<T> object(made);
    auto held = std::make_unique<std::shared_ptr<T>>(std::move(object));
    return NewObject(held.release(), TypeOf<std::shared_ptr<T>>(), flags);
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

}  // namespace Binding
