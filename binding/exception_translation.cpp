#include "binding/exception_translation.h"

#include <new>
#include <stdexcept>

#include "binding/python_object.h"
#include "core/exceptions.h"

namespace Binding {

void TranslateException() {
  try {
    throw;
  } catch (const ErrorAlreadySet&) {
  } catch (const CExceptionBase& e) {
    SetError(PyExc_RuntimeError, e.Text());
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
