#pragma once

#include "binding/held_object.h"
#include "binding/type_names.h"

// How a class of the script layer is bound to an exported one.

namespace Binding {

/// Refuses the module to an interpreter other than the main one: types and registered classes are
/// those of the process. \return false with ImportError set
bool IsMainInterpreter();

/// Publishes `<name>_swigregister` for a type, and `<name>_swiginit` if there is a constructor, in
/// place of those that SWIG generates; they check their arguments. Bare objects of the type go
/// through `delete_<name>`.
/// \return false with an exception set
bool Publish(PyObject* module, const char* name, swig_type_info* type, Deleter deleter);

template <class T>
bool Publish(PyObject* module, const char* name) {
  return Publish(module, name, TypeOf<T>(), Deletion<T>::Run);
}

}  // namespace Binding
