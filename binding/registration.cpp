#include "binding/registration.h"

#include <memory>
#include <string>

namespace Binding {
namespace {

/// `__swig_destroy__` is called as C: anything else in its place is refused.
bool IsProxyClass(PyObject* object) {
  if (!PyType_Check(object)) {
    PyErr_SetString(PyExc_TypeError, "swigregister expected a class");
    return false;
  }
  const PyRef destroy(PyObject_GetAttrString(object, "__swig_destroy__"));
  PyErr_Clear();
  if (destroy && !PyCFunction_Check(destroy.Get())) {
    PyErr_SetString(PyExc_TypeError, "__swig_destroy__ must be a function of the module");
    return false;
  }
  return true;
}

/// `self` holds the type.
PyObject* RegisterClass(PyObject* self, PyObject* klass) {
  if (!IsMainInterpreter() || !IsProxyClass(klass)) {
    return nullptr;
  }
  auto* const type = static_cast<swig_type_info*>(PyCapsule_GetPointer(self, nullptr));
  Swig::Register(type, klass, Swig::DestroyOf(type));
  return Py_NewRef(Py_None);
}

/// Attaches the pointer that a constructor returned to a new instance of its class.
PyObject* InitInstance(PyObject*, PyObject* args) {
  PyObject* instance = nullptr;
  PyObject* made = nullptr;
  if (!PyArg_UnpackTuple(args, "swiginit", 2, 2, &instance, &made)) {
    return nullptr;
  }
  if (!Swig::IsPointerObject(made) || Swig::IsPointerObject(instance)) {
    PyErr_SetString(PyExc_TypeError,
                    "swiginit expected an instance and the result of its constructor");
    return nullptr;
  }
  return Swig::SetThis(instance, made) ? Py_NewRef(Py_None) : nullptr;
}

/// Replaces a function of the module. Its definition is there for as long as the process.
bool Replace(PyObject* module, const std::string& name, PyCFunction function, int flags,
             PyObject* self) {
  struct Definition {
    std::string name;
    PyMethodDef method;
  };
  auto* const definition = new Definition{name, {nullptr, function, flags, nullptr}};
  definition->method.ml_name = definition->name.c_str();
  const PyRef moduleName(PyModule_GetNameObject(module));
  const PyRef replaced(moduleName ? PyCFunction_NewEx(&definition->method, self, moduleName.Get())
                                  : nullptr);
  return replaced && PyObject_SetAttrString(module, name.c_str(), replaced.Get()) == 0;
}

}  // namespace

bool IsMainInterpreter() {
  if (PyInterpreterState_Get() == PyInterpreterState_Main()) {
    return true;
  }
  PyErr_SetString(PyExc_ImportError,
                  "_TabulonAPI_Python serves the main interpreter only, not a sub-interpreter");
  return false;
}

bool Publish(PyObject* module, const char* name, swig_type_info* type, Deleter deleter) {
  const std::string text(name);
  const PyRef capsule(PyCapsule_New(type, nullptr, nullptr));
  if (!capsule || !Replace(module, text + "_swigregister", RegisterClass, METH_O, capsule.Get())) {
    return false;
  }
  if (PyObject_HasAttrString(module, (text + "_swiginit").c_str()) &&
      !Replace(module, text + "_swiginit", InitInstance, METH_VARARGS, module)) {
    return false;
  }
  const PyRef destroy(PyObject_GetAttrString(module, ("delete_" + text).c_str()));
  if (!destroy) {
    PyErr_Clear();
    return true;
  }
  SetDeleter(type, deleter);
  if (!Swig::DestroyOf(type)) {
    Swig::Register(type, nullptr, destroy.Get());
  }
  return true;
}

}  // namespace Binding
