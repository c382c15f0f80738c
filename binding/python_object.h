#pragma once

#include <Python.h>

#include <string_view>
#include <utility>

namespace Binding {

/// An owned reference to a Python object, or none.
class PyRef {
 public:
  PyRef() = default;
  /// Takes over a new reference.
  explicit PyRef(PyObject* owned) : m_object(owned) {}
  static PyRef Borrowed(PyObject* object) { return PyRef(Py_XNewRef(object)); }

  PyRef(PyRef&& other) noexcept : m_object(other.Release()) {}
  PyRef(const PyRef& other) : m_object(Py_XNewRef(other.m_object)) {}
  PyRef& operator=(PyRef other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~PyRef() { Py_XDECREF(m_object); }

  PyObject* Get() const { return m_object; }
  PyObject* Release() { return std::exchange(m_object, nullptr); }
  explicit operator bool() const { return m_object != nullptr; }

 private:
  PyObject* m_object = nullptr;
};

/// Thrown where a Python exception is set already.
struct ErrorAlreadySet {};

/// Clears an exception that stands for "no": the caller has an answer of its own for it. One that
/// is no `Exception`, such as an interrupt, is not the caller's to swallow, nor is a lack of
/// memory. \throws ErrorAlreadySet for these
inline void ClearError() {
  if (PyErr_Occurred()) {
    if (!PyErr_ExceptionMatches(PyExc_Exception) || PyErr_ExceptionMatches(PyExc_MemoryError)) {
      throw ErrorAlreadySet();
    }
    PyErr_Clear();
  }
}

/// The text as a `str`; bytes that are no UTF-8 become lone surrogates, as in a file name.
inline PyObject* ToPython(std::string_view text) {
  return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
}

/// Sets a Python exception, whatever bytes its text holds.
inline void SetError(PyObject* type, std::string_view text) {
  const PyRef message(ToPython(text));
  if (message) {
    PyErr_SetObject(type, message.Get());
  }
}

}  // namespace Binding
