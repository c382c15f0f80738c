// The narrow face of SWIG's run time (swig_runtime.h). Of SWIG 4.1's it relies on
// - the layout of SwigPyObject (ptr, ty, own, next) and SwigPyClientData (klass, destroy, delargs),
// - a pointer object being taken by SWIG_ConvertPtrAndOwn as it is, without a look at its attributes,
// - SWIG_Python_NewPointerObj making a bare object for SWIG_POINTER_NOSHADOW,
// - SwigPyObject_dealloc calling `destroy`, a function that takes one object, with the pointer object.
// tests/python/test_swig_runtime.py fails where a release does otherwise.

%fragment("SWIG_AsVal_double");
%fragment("SWIG_AsVal_float");
%fragment("SWIG_AsVal_int");
%fragment("SWIG_From_std_string");

%{
#include <cstdlib>

#include "binding/swig_runtime.h"

namespace Binding::Swig {

swig_type_info* FindType(const char* pointerName) { return SWIG_TypeQuery(pointerName); }

bool IsPointerObject(PyObject* object) { return SwigPyObject_Check(object); }

PyObject* PartFor(PyObject* pointerObject, swig_type_info* type) {
  auto* part = reinterpret_cast<SwigPyObject*>(pointerObject);
  while (part && part->ty != type && !SWIG_TypeCheck(part->ty->name, type)) {
    part = reinterpret_cast<SwigPyObject*>(part->next);
  }
  return reinterpret_cast<PyObject*>(part);
}

swig_type_info* TypeOf(PyObject* part) { return reinterpret_cast<SwigPyObject*>(part)->ty; }

void* Pointer(PyObject* part, swig_type_info* type, bool& isNew) {
  void* pointer = nullptr;
  int own = 0;
  static_cast<void>(SWIG_ConvertPtrAndOwn(part, &pointer, type, 0, &own));
  isNew = (own & SWIG_CAST_NEW_MEMORY) != 0;
  return pointer;
}

void*& RawPointer(PyObject* part) { return reinterpret_cast<SwigPyObject*>(part)->ptr; }

void Disown(PyObject* part) { reinterpret_cast<SwigPyObject*>(part)->own = 0; }

PyObject* NewPointerObject(void* pointer, swig_type_info* type, int flags) {
  return SWIG_Python_NewPointerObj(nullptr, pointer, type, flags | SWIG_POINTER_NOSHADOW);
}

const int kOwned = SWIG_POINTER_OWN;

bool IsOwning(int flags) { return (flags & SWIG_POINTER_OWN) != 0; }

bool HasClass(const swig_type_info* type, int flags) {
  const auto* data = static_cast<const SwigPyClientData*>(type->clientdata);
  return data && data->klass && !(flags & SWIG_POINTER_NOSHADOW);
}

PyObject* NewInstance(PyObject* pointerObject, swig_type_info* type) {
  return SWIG_Python_NewShadowInstance(static_cast<SwigPyClientData*>(type->clientdata),
                                       pointerObject);
}

PyObject* DestroyOf(const swig_type_info* type) {
  const auto* data = static_cast<const SwigPyClientData*>(type->clientdata);
  return data ? data->destroy : nullptr;
}

void Register(swig_type_info* type, PyObject* klass, PyObject* destroy) {
  auto* data = klass ? SwigPyClientData_New(klass)
                     : static_cast<SwigPyClientData*>(std::calloc(1, sizeof(SwigPyClientData)));
  if (!data) {
    return;
  }
  if (!data->destroy) {
    data->destroy = Py_XNewRef(destroy);
    data->delargs = destroy && !(PyCFunction_GET_FLAGS(destroy) & METH_O);
  }
  SWIG_TypeNewClientData(type, data);
}

bool SetThis(PyObject* instance, PyObject* pointerObject) {
  return SWIG_Python_SetSwigThis(instance, pointerObject) == 0;
}

static PyObject* Compare(PyObject* one, PyObject* other, int operation) {
  if (!SwigPyObject_Check(other)) {
    Py_RETURN_NOTIMPLEMENTED;
  }
  return SwigPyObject_richcompare(reinterpret_cast<SwigPyObject*>(one),
                                  reinterpret_cast<SwigPyObject*>(other), operation);
}

void CompareSafely() {
  PyTypeObject* type = SwigPyObject_type();
  type->tp_richcompare = Compare;
  // The methods were made of the function that stood there before.
  for (const char* name : {"__eq__", "__ne__", "__lt__", "__le__", "__gt__", "__ge__"}) {
    PyObject* method = PyDict_GetItemString(type->tp_dict, name);
    if (method && Py_IS_TYPE(method, &PyWrapperDescr_Type)) {
      reinterpret_cast<PyWrapperDescrObject*>(method)->d_wrapped =
          reinterpret_cast<void*>(Compare);
    }
  }
}

bool AsNumber(PyObject* object, double* value) {
  return SWIG_IsOK(SWIG_AsVal_double(object, value));
}
bool AsNumber(PyObject* object, float* value) {
  return SWIG_IsOK(SWIG_AsVal_float(object, value));
}
bool AsNumber(PyObject* object, int* value) { return SWIG_IsOK(SWIG_AsVal_int(object, value)); }

PyObject* FromString(const std::string& text) { return SWIG_From_std_string(text); }

}  // namespace Binding::Swig
%}
