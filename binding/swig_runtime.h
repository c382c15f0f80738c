#pragma once

#include <Python.h>

#include <cstddef>
#include <string>

struct swig_type_info;

/// What the binding uses of SWIG's run time. The functions are defined in runtime.i, beside that
/// run time; nothing else of the binding names it.
///
/// A *pointer object* is what SWIG keeps a pointer in: a script object of the flat module, or the
/// attribute `this` of an instance of a registered class. Its *part* for a type is the pointer in
/// it that converts to the type; nearly always there is one part.
namespace Binding::Swig {

/// The type whose pointers are called by the name, for example "SumaraApi::Run *"; null if unknown.
swig_type_info* FindType(const char* pointerName);

bool IsPointerObject(PyObject* object);
/// Borrowed; null if the pointer object holds nothing that converts to the type.
PyObject* PartFor(PyObject* pointerObject, swig_type_info* type);
swig_type_info* TypeOf(PyObject* part);

/// The pointer as one to the type; null after the object was deleted. With `isNew` it was made for
/// the caller. \throws std::bad_alloc
void* Pointer(PyObject* part, swig_type_info* type, bool& isNew);
/// The pointer as it stands.
void*& RawPointer(PyObject* part);
/// The part no longer deletes what it points to.
void Disown(PyObject* part);

/// New references; null, with an exception set, without memory. `flags` are SWIG's.
PyObject* NewPointerObject(void* pointer, swig_type_info* type, int flags);
bool IsOwning(int flags);
/// The flags of a result that its script object owns.
extern const int kOwned;
/// Whether results of the type are instances of a registered class, and the flags do not ask for
/// the pointer object itself.
bool HasClass(const swig_type_info* type, int flags);
PyObject* NewInstance(PyObject* pointerObject, swig_type_info* type);

/// From now on results of the type are instances of the class, and are deleted by `destroy` unless
/// the class has `__swig_destroy__`. Without a class they stay bare.
void Register(swig_type_info* type, PyObject* klass, PyObject* destroy);
/// The function that deletes objects of the type, borrowed; null if nothing is registered.
PyObject* DestroyOf(const swig_type_info* type);
/// Sets the attribute `this`. \return false with an exception set
bool SetThis(PyObject* instance, PyObject* pointerObject);

/// Has pointer objects compared with what is none as unequal, not by what stands in its memory.
void CompareSafely();

/// Numbers by the rules of arguments; with a null `value` they are only checked.
bool AsNumber(PyObject* object, double* value);
bool AsNumber(PyObject* object, float* value);
bool AsNumber(PyObject* object, int* value);
PyObject* FromString(const std::string& text);

}  // namespace Binding::Swig
