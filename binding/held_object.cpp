#include "binding/held_object.h"

#include <unordered_map>

namespace Binding {
namespace {

/// Never destroyed: script objects may go after the statics of this library.
std::unordered_map<const swig_type_info*, Deleter>& Deleters() {
  static auto* const deleters = new std::unordered_map<const swig_type_info*, Deleter>;
  return *deleters;
}

/// The attribute `this`; none if the object has no such attribute.
PyRef This(PyObject* object) {
  PyRef found(PyObject_GetAttrString(object, "this"));
  ClearError();
  return found;
}

}  // namespace

PyObject* PointerObject(PyObject* object, PyRef& found) {
  if (Swig::IsPointerObject(object)) {
    return object;
  }
  found = This(object);
  if (found && !Swig::IsPointerObject(found.Get())) {
    found = This(found.Get());
  }
  return found && Swig::IsPointerObject(found.Get()) ? found.Get() : nullptr;
}

bool IsOfType(PyObject* argument, swig_type_info* type) try {
  if (argument == Py_None) {
    return true;
  }
  PyRef found;
  PyObject* const pointerObject = PointerObject(argument, found);
  return pointerObject && Swig::PartFor(pointerObject, type);
} catch (const ErrorAlreadySet&) {
  return false;
}

bool HeldPointer::Take(PyObject* argument, swig_type_info* type, bool isDeleted) try {
  if (argument == Py_None) {
    return true;
  }
  PyObject* const pointerObject = PointerObject(argument, m_kept);
  m_part = pointerObject ? Swig::PartFor(pointerObject, type) : nullptr;
  if (!m_part) {
    return false;
  }
  if (pointerObject == argument && !isDeleted) {
    m_kept = PyRef::Borrowed(argument);
  }
  bool isNew = false;
  m_pointer = Swig::Pointer(m_part, type, isNew);
  return true;
} catch (const ErrorAlreadySet&) {
  return false;
}

void SetDeleter(swig_type_info* type, Deleter deleter) { Deleters().emplace(type, deleter); }

void DeleteHeld(PyObject* object, swig_type_info* type) {
  PyRef found;
  PyObject* const pointerObject = PointerObject(object, found);
  PyObject* const part = pointerObject ? Swig::PartFor(pointerObject, type) : nullptr;
  const auto deleter = part ? Deleters().find(Swig::TypeOf(part)) : Deleters().end();
  if (deleter != Deleters().end()) {
    Swig::Disown(part);
    void* const pointer = std::exchange(Swig::RawPointer(part), nullptr);
    Swig::RawPointer(part) = deleter->second(pointer);
  }
}

PyObject* NewObject(void* pointer, swig_type_info* type, int flags) {
  if (!pointer) {
    return Py_NewRef(Py_None);
  }
  PyRef object(Swig::NewPointerObject(pointer, type, flags));
  if (!object && Swig::IsOwning(flags)) {
    const auto deleter = Deleters().find(type);
    if (deleter != Deleters().end()) {
      deleter->second(pointer);
    }
  }
  return object && Swig::HasClass(type, flags) ? Swig::NewInstance(object.Get(), type)
                                               : object.Release();
}

}  // namespace Binding
