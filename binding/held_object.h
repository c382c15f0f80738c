#pragma once

#include <memory>
#include <utility>

#include "binding/python_object.h"
#include "binding/swig_runtime.h"

// Script objects that hold objects of the library: what they hold, and how they go.

namespace Binding {

/// The pointer object of a script object: itself, or what its attribute `this` leads to in at most
/// two steps, since objects such as mocks have every attribute. Borrowed from the object, or from
/// `found`; null if there is none. \throws ErrorAlreadySet
PyObject* PointerObject(PyObject* object, PyRef& found);

/// Whether an argument may stand for a pointer to the type: None may. \return false also with an
/// exception set
bool IsOfType(PyObject* argument, swig_type_info* type);

/// The object of the library that an argument holds by plain pointer, during a call.
class HeldPointer {
 public:
  /// With `isDeleted` the call deletes the object. \return false if the argument is of another
  /// type, or with an exception set
  bool Take(PyObject* argument, swig_type_info* type, bool isDeleted);

  /// Null for None and for an object that was deleted, also if that was during the call: converting
  /// other arguments may run any code.
  void* Get() const { return m_part && Swig::RawPointer(m_part) ? m_pointer : nullptr; }

 private:
  /// Keeps the library's object though the script takes `this` away. An argument that is deleted is
  /// not kept: SWIG deletes from the end of a pointer object, which must not be revived.
  PyRef m_kept;
  PyObject* m_part = nullptr;
  void* m_pointer = nullptr;
};

/// Sets `held` to what a script object holds by shared pointer; to null for None and for an object
/// that was deleted. \return false if it is of another type
/// \throws std::bad_alloc \throws ErrorAlreadySet
template <class T>
bool TakeShared(PyObject* object, swig_type_info* type, std::shared_ptr<T>& held) {
  held = nullptr;
  if (object == Py_None) {
    return true;
  }
  PyRef found;
  PyObject* const pointerObject = PointerObject(object, found);
  PyObject* const part = pointerObject ? Swig::PartFor(pointerObject, type) : nullptr;
  if (!part) {
    return false;
  }
  bool isNew = false;
  auto* const shared = static_cast<std::shared_ptr<T>*>(Swig::Pointer(part, type, isNew));
  const std::unique_ptr<std::shared_ptr<T>> made(isNew ? shared : nullptr);
  if (shared) {
    held = *shared;
  }
  return true;
}

/// The same during a call. \return false if the argument is of another type, or with an exception
/// set
template <class T>
bool TakeSharedArgument(PyObject* argument, swig_type_info* type, std::shared_ptr<T>& held) {
  try {
    return TakeShared(argument, type, held);
  } catch (const ErrorAlreadySet&) {
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  }
  return false;
}

/// Deletes what a pointer of the type points to, and gives what stands for nothing instead.
using Deleter = void* (*)(void*);

template <class T>
struct Deletion {
  static void* Run(void* pointer) {
    delete static_cast<T*>(pointer);
    return nullptr;
  }
};

/// SWIG's casts to a base class follow the pointer: an empty shared pointer has to be there.
template <class T>
struct Deletion<std::shared_ptr<T>> {
  static void* Run(void* pointer) {
    static std::shared_ptr<T> empty;
    delete static_cast<std::shared_ptr<T>*>(pointer);
    return &empty;
  }
};

/// Makes the deleter of a type known. Later ones do not replace it.
void SetDeleter(swig_type_info* type, Deleter deleter);

/// Deletes what a script object holds, by the type as which it holds it. To whom uses the object
/// again, it is None.
void DeleteHeld(PyObject* object, swig_type_info* type);

/// A script object for a pointer, with SWIG's flags; None for null. Without memory for it the
/// pointer that it should own is deleted, and an exception set.
PyObject* NewObject(void* pointer, swig_type_info* type, int flags);

}  // namespace Binding
