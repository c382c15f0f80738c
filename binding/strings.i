// std::string and str. Bytes that are no UTF-8 come out as lone surrogates, and go back in as the
// bytes they were: a run name survives the round trip whatever it holds.

%{
#include "binding/python_object.h"
%}

%fragment("SWIG_AsPtr_std_string", "header") {
SWIGINTERN int SWIG_AsPtr_std_string(PyObject* object, std::string** value) try {
  if (PyUnicode_Check(object)) {
    const Binding::PyRef bytes(PyUnicode_AsEncodedString(object, "utf-8", "surrogateescape"));
    if (!bytes) {
      PyErr_Clear();
      return SWIG_TypeError;
    }
    if (value) {
      *value = new std::string(PyBytes_AS_STRING(bytes.Get()),
                               static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.Get())));
    }
    return SWIG_NEWOBJ;
  }
  // None is a null string. Another module may wrap strings.
  static swig_type_info* const wrapped = SWIG_TypeQuery("std::string *");
  void* pointer = nullptr;
  const bool isNull = object == Py_None;
  if (!isNull && (!wrapped || !SWIG_IsOK(SWIG_ConvertPtr(object, &pointer, wrapped, 0)))) {
    return SWIG_TypeError;
  }
  if (value) {
    *value = static_cast<std::string*>(pointer);
  }
  return SWIG_OLDOBJ;
} catch (const std::bad_alloc&) {
  return SWIG_MemoryError;
}
}

%include <std_string.i>
