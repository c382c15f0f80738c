#pragma once

#include "binding/python_object.h"

namespace Binding {

/// Stands between an argument and what chooses an overload by its items. An iterable that may give
/// its items only once is read into a list, which stands in for it in the call's arguments and goes
/// with this object: whichever way the call ends.
class ReadAhead {
 public:
  explicit ReadAhead(PyObject*& argument) : m_argument(argument), m_given(argument) {}
  ~ReadAhead() { m_argument = m_given; }
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// Reads the items, unless they can be read as often as one likes; with `ofItems` also those of
  /// each item. What is not iterable stays as it is. \throws ErrorAlreadySet
  void Read(bool ofItems);

  /// The argument, or what stands in for it.
  PyObject* Get() const { return m_argument; }

 private:
  PyObject*& m_argument;
  PyObject* m_given;
  PyRef m_items;
};

/// The iterator of an object; none if it has none. \throws ErrorAlreadySet
PyRef IteratorOf(PyObject* object);

}  // namespace Binding
