#include "binding/elements.h"

#include <cstddef>

namespace Binding {

StringArgument ToString(PyObject* object, bool isWanted) {
  if (PyUnicode_Check(object)) {
    const PyRef bytes(PyUnicode_AsEncodedString(object, "utf-8", "surrogateescape"));
    if (!bytes) {
      ClearError();
      return {};
    }
    if (!isWanted) {
      return {true, nullptr, false};
    }
    const auto size = static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.Get()));
    return {true, new std::string(PyBytes_AS_STRING(bytes.Get()), size), true};
  }
  if (object == Py_None) {
    return {true, nullptr, false};
  }
  static swig_type_info* const wrapped = TypeOf<std::string>();
  PyRef found;
  PyObject* const pointerObject = wrapped ? PointerObject(object, found) : nullptr;
  PyObject* const part = pointerObject ? Swig::PartFor(pointerObject, wrapped) : nullptr;
  if (!part) {
    return {};
  }
  bool isNew = false;
  return {true, static_cast<std::string*>(Swig::Pointer(part, wrapped, isNew)), false};
}

bool Element<std::string>::Convert(PyObject* object, std::string* value) {
  const StringArgument given = ToString(object, value != nullptr);
  if (!value || !given.text) {
    return given.isString && !value && object != Py_None;
  }
  const std::unique_ptr<std::string> owned(given.isNew ? given.text : nullptr);
  *value = owned ? std::move(*owned) : *given.text;
  return true;
}

}  // namespace Binding
