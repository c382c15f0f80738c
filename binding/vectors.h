#pragma once

#include <climits>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "binding/buffer_copy.h"
#include "binding/elements.h"
#include "binding/read_ahead.h"

// Vectors. Results come out as tuples. For an argument any iterable serves, and the exported array
// class, whose vector is used in place.

namespace Binding {

template <class T>
constexpr bool kIsVector = false;
template <class T>
constexpr bool kIsVector<std::vector<T>> = true;

/// Calls `take` with each item until one is refused, which ends in false. \throws ErrorAlreadySet
template <class Take>
bool ForEachItem(PyObject* iterable, Take take) {
  const PyRef iterator = IteratorOf(iterable);
  while (iterator) {
    const PyRef item(PyIter_Next(iterator.Get()));
    if (!item) {
      return PyErr_Occurred() ? throw ErrorAlreadySet() : true;
    }
    if (!take(item.Get())) {
      return false;
    }
  }
  return false;
}

/// Fills the vector from an iterable, or only checks its items if there is no place for them.
/// \return false if something does not convert
/// \throws std::bad_alloc \throws ErrorAlreadySet
template <class T>
bool ConvertIterable(PyObject* object, std::vector<T>* elements) {
  if constexpr (std::is_arithmetic_v<T>) {
    Buffer buffer(object);
    if (buffer.Holds<T>()) {
      if (elements) {
        buffer.CopyTo(*elements);
      }
      return true;
    }
  }
  return ForEachItem(object, [elements](PyObject* item) {
    return Element<T>::Convert(item, elements ? &elements->emplace_back() : nullptr);
  });
}

/// A vector argument, for as long as its call lasts.
template <class T>
class VectorArgument {
 public:
  /// \return false if the argument is of another type, or with an exception set
  bool Take(PyObject* argument) noexcept {
    try {
      return Convert(argument);
    } catch (const ErrorAlreadySet&) {
    } catch (const std::bad_alloc&) {
      PyErr_NoMemory();
    }
    return false;
  }

  /// Null for None and for an array that was deleted.
  std::vector<T>* Get() const { return m_made ? m_made.get() : m_array; }

  /// The elements for the callee to keep: those of an array of the script are copied.
  std::vector<T> HandOver() { return m_made ? std::move(*m_made) : *m_array; }

  /// As `Take`, with the exceptions of the conversion.
  bool Convert(PyObject* object) {
    if (object == Py_None) {
      return true;
    }
    if (PyObject* const pointerObject = PointerObject(object, m_kept)) {
      PyObject* const part = Swig::PartFor(pointerObject, TypeOf<std::vector<T>>());
      bool isNew = false;
      m_array =
          part ? static_cast<std::vector<T>*>(Swig::Pointer(part, TypeOf<std::vector<T>>(), isNew))
               : nullptr;
      return part != nullptr;
    }
    m_made = std::make_unique<std::vector<T>>();
    return ConvertIterable(object, m_made.get());
  }

 private:
  PyRef m_kept;
  std::vector<T>* m_array = nullptr;
  std::unique_ptr<std::vector<T>> m_made;
};

/// Whether an argument serves as a vector; None does. \throws ErrorAlreadySet
template <class T>
bool IsVector(PyObject* object) {
  PyRef found;
  if (object == Py_None) {
    return true;
  }
  if (PyObject* const pointerObject = PointerObject(object, found)) {
    return Swig::PartFor(pointerObject, TypeOf<std::vector<T>>()) != nullptr;
  }
  return ConvertIterable<T>(object, nullptr);
}

/// Whether the argument serves as a vector, for the choice of an overload.
/// \return false if it does not, or with an exception set
template <class T>
bool Fits(ReadAhead& argument) noexcept {
  try {
    PyRef found;
    if (argument.Get() != Py_None && !PointerObject(argument.Get(), found)) {
      argument.Read(kIsVector<T>);
    }
    return IsVector<T>(argument.Get());
  } catch (const ErrorAlreadySet&) {
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  }
  return false;
}

template <class T>
PyRef ToTuple(const std::vector<T>& elements) {
  if (elements.size() > INT_MAX) {
    PyErr_SetString(PyExc_OverflowError, "sequence size not valid in python");
    return {};
  }
  PyRef tuple(PyTuple_New(static_cast<Py_ssize_t>(elements.size())));
  for (std::size_t i = 0; tuple && i < elements.size(); ++i) {
    PyObject* element = nullptr;
    if constexpr (kIsVector<T>) {
      element = ToTuple(elements[i]).Release();
    } else {
      element = Element<T>::ToPython(elements[i]);
    }
    if (!element) {
      return {};
    }
    PyTuple_SET_ITEM(tuple.Get(), static_cast<Py_ssize_t>(i), element);
  }
  return tuple;
}

template <class T>
struct Element<std::vector<T>> {
  static bool Convert(PyObject* object, std::vector<T>* value) {
    if (object == Py_None || !value) {
      return object != Py_None && IsVector<T>(object);
    }
    VectorArgument<T> elements;
    if (!elements.Convert(object) || !elements.Get()) {
      return false;
    }
    *value = elements.HandOver();
    return true;
  }
  /// Made of a copy: making tuples may collect garbage, which runs code of the script, which may
  /// unload or change the vector.
  static PyObject* ToPython(std::vector<T> value) { return ToTuple(value).Release(); }
};

/// A tuple of what a call returned by value.
template <class T>
PyObject* Result(std::vector<T>&& value) noexcept {
  try {
    return ToTuple(value).Release();
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

}  // namespace Binding
