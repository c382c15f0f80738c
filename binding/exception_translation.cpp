#include "binding/exception_translation.h"

#include <new>
#include <stdexcept>

#include "binding/python_object.h"
#include "core/exceptions.h"

namespace Binding {
namespace {

/// The text is a copy, for which memory may lack too: nobody behind this takes an exception.
void SetLibraryError(const CExceptionBase& failure) {
  try {
    SetError(PyExc_RuntimeError, failure.Text());
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  }
}

}  // namespace

void TranslateException() {
  try {
    throw;
  } catch (const ErrorAlreadySet&) {
  } catch (const CExceptionBase& e) {
    SetLibraryError(e);
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& e) {
    SetError(PyExc_RuntimeError, e.what());
  }
}

void TranslateArrayException() {
  try {
    throw;
  } catch (const std::out_of_range& e) {
    SetError(PyExc_IndexError, e.what());
  } catch (const std::invalid_argument& e) {
    SetError(PyExc_ValueError, e.what());
  } catch (const std::length_error&) {
    PyErr_NoMemory();
  } catch (...) {
    TranslateException();
  }
}

void TranslateIteratorException() {
  try {
    throw;
  } catch (const StopIteration&) {
    PyErr_SetObject(PyExc_StopIteration, Py_None);
  } catch (...) {
    TranslateArrayException();
  }
}

}  // namespace Binding
