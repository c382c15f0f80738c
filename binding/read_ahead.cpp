#include "binding/read_ahead.h"

#include "binding/held_object.h"

namespace Binding {
namespace {

/// Whether its items can be read as often as one likes. Not of a derived class, which may iterate
/// in a way of its own.
bool IsCollection(PyObject* object) {
  return PyList_CheckExact(object) || PyTuple_CheckExact(object) || PyUnicode_CheckExact(object) ||
         PyAnySet_CheckExact(object) || PyDict_CheckExact(object) || PyObject_CheckBuffer(object);
}

/// Whether it stands for an array of the library, or for none.
bool IsHeld(PyObject* object) {
  PyRef found;
  return object == Py_None || PointerObject(object, found);
}

/// The items of an iterable as a list of its own; none if it is not iterable.
PyRef ListOf(PyObject* object) {
  const PyRef iterator = IteratorOf(object);
  if (!iterator) {
    return {};
  }
  PyRef items(PySequence_List(iterator.Get()));
  return items ? items : throw ErrorAlreadySet();
}

}  // namespace

PyRef IteratorOf(PyObject* object) {
  PyRef iterator(PyObject_GetIter(object));
  ClearError();
  return iterator;
}

void ReadAhead::Read(bool ofItems) {
  if (m_items || (IsCollection(m_argument) && !ofItems)) {
    return;
  }
  m_items = ListOf(m_argument);
  if (!m_items) {
    return;
  }
  m_argument = m_items.Get();
  for (Py_ssize_t i = 0; ofItems && i < PyList_GET_SIZE(m_argument); ++i) {
    const PyRef item = PyRef::Borrowed(PyList_GET_ITEM(m_argument, i));
    if (!IsCollection(item.Get()) && !IsHeld(item.Get())) {
      PyRef items = ListOf(item.Get());
      if (items && PyList_SetItem(m_argument, i, items.Release()) < 0) {
        throw ErrorAlreadySet();
      }
    }
  }
}

}  // namespace Binding
