#pragma once

#include <new>
#include <stdexcept>

#include "binding/python_object.h"
#include "core/exceptions.h"

namespace Binding {

/// Thrown by an iterator at either end of its array.
struct StopIteration {};

// Each of these turns the exception in flight into a Python one. What is no `std::exception` is not
// theirs to handle.

/// Functions of the public classes, and constructors.
inline void TranslateException() {
  try {
    throw;
  } catch (const ErrorAlreadySet&) {
  } catch (const CExceptionBase& e) {
    SetError(PyExc_RuntimeError, e.Text());
  } catch (const std::exception& e) {
    SetError(PyExc_RuntimeError, e.what());
  }
}

/// Functions of the arrays.
inline void TranslateArrayException() {
  try {
    throw;
  } catch (const std::out_of_range& e) {
    SetError(PyExc_IndexError, e.what());
  } catch (const std::invalid_argument& e) {
    SetError(PyExc_ValueError, e.what());
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::length_error&) {
    PyErr_NoMemory();
  } catch (...) {
    TranslateException();
  }
}

/// Functions of the iterator.
inline void TranslateIteratorException() {
  try {
    throw;
  } catch (const StopIteration&) {
    PyErr_SetObject(PyExc_StopIteration, Py_None);
  } catch (...) {
    TranslateArrayException();
  }
}

}  // namespace Binding
