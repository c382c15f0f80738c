// Script objects that hold library objects: how they are known, how they come, and how they go.

%begin %{
// SWIG looks for the pointer of a script object in its attribute `this`, in `this` of what it finds
// there, and so on: without end for objects that have every attribute, such as mocks. Two steps do.
#include <Python.h>

#include <cstring>

static bool IsPointerObject(PyObject* object) {
  return std::strcmp(Py_TYPE(object)->tp_name, "SwigPyObject") == 0;
}

static PyObject* FindThis(PyObject* object, PyObject* name) {
  PyObject* found = PyObject_GetAttr(object, name);
  if (found && !IsPointerObject(found)) {
    PyObject* inner = PyObject_GetAttr(found, name);
    Py_DECREF(found);
    found = inner;
  }
  // SWIG goes on with the pointer object without a reference to it: someone else must have one.
  if (found && (!IsPointerObject(found) || Py_REFCNT(found) == 1)) {
    Py_DECREF(found);
    PyErr_SetObject(PyExc_AttributeError, name);
    return nullptr;
  }
  return found;
}
#define PyObject_GetAttr(object, name) FindThis(object, name)
%}

%{
#include <cstdlib>
#include <memory>
#include <unordered_map>
#include <utility>

#include "binding/python_object.h"

namespace Binding {

/// The type as which script objects hold a T.
template <class T>
swig_type_info* TypeOf();

/// The part of a script object that holds a pointer of the type; none if there is no such part.
SwigPyObject* Holder(PyObject* object, swig_type_info* type) {
  SwigPyObject* holder = SWIG_Python_GetSwigThis(object);
  while (holder && holder->ty != type && !SWIG_TypeCheck(holder->ty->name, type)) {
    holder = reinterpret_cast<SwigPyObject*>(holder->next);
  }
  return holder;
}

/// Deletes what a pointer of an exported type points to, and gives what stands for nothing instead.
using Deleter = void* (*)(void*);

std::unordered_map<const swig_type_info*, Deleter>& Deleters() {
  static std::unordered_map<const swig_type_info*, Deleter> deleters;
  return deleters;
}

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

/// Deletes what a script object holds, by the type as which it holds it. To whom uses the object
/// again, it is None.
void DeleteHeld(PyObject* object, swig_type_info* type) {
  SwigPyObject* holder = Holder(object, type);
  const auto deleter = holder ? Deleters().find(holder->ty) : Deleters().end();
  if (deleter != Deleters().end()) {
    holder->own = 0;
    void* pointer = std::exchange(holder->ptr, nullptr);
    holder->ptr = deleter->second(pointer);
  }
}

bool HasClass(const swig_type_info* type) {
  return type->clientdata && static_cast<SwigPyClientData*>(type->clientdata)->klass;
}

/// A script object for the pointer: an instance of the registered class, or a bare one without.
PyObject* NewObject(void* pointer, swig_type_info* type, int flags) {
  return SWIG_Python_NewPointerObj(nullptr, pointer, type,
                                   HasClass(type) ? flags : flags | SWIG_POINTER_NOSHADOW);
}

/// Makes a type known for deletion, and has bare objects delete what they own, which SWIG does for
/// those of a registered class only.
template <class T>
void Own(PyObject* module, const char* deleteFunction) {
  swig_type_info* type = TypeOf<T>();
  PyObject* destroy = PyDict_GetItemString(module, deleteFunction);
  if (!type || !destroy) {
    return;
  }
  Deleters()[type] = Deletion<T>::Run;
  auto* data = static_cast<SwigPyClientData*>(std::calloc(1, sizeof(SwigPyClientData)));
  if (data && !type->clientdata) {
    data->destroy = Py_NewRef(destroy);
    data->delargs = !(PyCFunction_GET_FLAGS(destroy) & METH_O);
    SWIG_TypeNewClientData(type, data);
  }
}

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

/// Attaches the pointer that a constructor returned to a new instance of its class.
PyObject* InitInstance(PyObject* args) {
  PyObject* objects[2];
  if (!SWIG_Python_UnpackTuple(args, "swiginit", 2, 2, objects)) {
    return nullptr;
  }
  if (!SwigPyObject_Check(objects[1]) || SwigPyObject_Check(objects[0])) {
    PyErr_SetString(PyExc_TypeError,
                    "swiginit expected an instance and the result of its constructor");
    return nullptr;
  }
  return SWIG_Python_SetSwigThis(objects[0], objects[1]) == 0 ? Py_NewRef(Py_None) : nullptr;
}

}  // namespace Binding

#undef SWIG_NewPointerObj
#define SWIG_NewPointerObj(pointer, type, flags) Binding::NewObject(pointer, type, flags)
#undef SWIG_InternalNewPointerObj
#define SWIG_InternalNewPointerObj(pointer, type, flags) Binding::NewObject(pointer, type, flags)
#undef SWIG_TypeNewClientData
#define SWIG_TypeNewClientData(type, data)    \
  do {                                        \
    if (!Binding::IsProxyClass(obj)) {        \
      return nullptr;                         \
    }                                         \
    (SWIG_TypeNewClientData)(type, data);     \
  } while (false)
#define SWIG_Python_InitShadowInstance(args) Binding::InitInstance(args)
%}

%include <std_shared_ptr.i>

// A type that script objects hold, under the name by which SWIG knows it. It goes with its object,
// through the function `delete_<Name>`.
%define %held_type(Name, CppName, Type...)
%{
namespace Binding {
template <>
swig_type_info* TypeOf< Type >() {
  static swig_type_info* const type = SWIG_TypeQuery(CppName " *");
  return type;
}
}  // namespace Binding
%}
%init %{
  Binding::Own< Type >(d, "delete_" #Name);
%}
%enddef

// Converting the other arguments may run any code, which may delete the object: a last look.
%define %checked_self(Type...)
%typemap(check) Type *self, const Type *self {
  if (!SWIG_Python_GetSwigThis(swig_obj[0])->ptr) {
    %argument_nullref("$*1_ltype *", $symname, $argnum);
  }
}
%enddef

// A class whose objects are held by plain pointer or by value.
%define %owned_class(Name, Type...)
%held_type(Name, #Type, Type)
%checked_self(Type)
%feature("unref") Type "Binding::DeleteHeld(swig_obj[0], Binding::TypeOf< Type >());"
%enddef

// A class whose objects are held by shared pointer.
%define %shared_class(Name, Type...)
%held_type(Name, "std::shared_ptr< " #Type " >", std::shared_ptr< Type >)
%shared_ptr(Type)
// As SWIG has it, but None is refused, and the object lives on during the call, come what may.
%typemap(in) Type *self (std::shared_ptr< Type > held),
             const Type *self (std::shared_ptr< Type > held),
             Type & (std::shared_ptr< Type > held) {
  void *argp = nullptr;
  int newmem = 0;
  const int res = SWIG_ConvertPtrAndOwn($input, &argp, $descriptor(std::shared_ptr< Type > *), 0,
                                        &newmem);
  if (!SWIG_IsOK(res)) {
    %argument_fail(res, "$type", $symname, $argnum);
  }
  if (auto *shared = %reinterpret_cast(argp, std::shared_ptr< Type > *)) {
    held = *shared;
    if (newmem & SWIG_CAST_NEW_MEMORY) {
      delete shared;
    }
  }
  if (!held) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = held.get();
}
%feature("unref") Type
  "Binding::DeleteHeld(swig_obj[0], Binding::TypeOf<std::shared_ptr< Type > >());"
%enddef
