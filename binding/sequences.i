// Vectors. Results come out as tuples. For an argument any iterable serves, and the exported array
// class, whose vector is used in place.

%{
#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "binding/buffer_copy.h"
#include "binding/read_ahead.h"
%}

%fragment("SWIG_AsVal_double");
%fragment("SWIG_AsVal_float");
%fragment("SWIG_AsVal_int");
%fragment("SWIG_From_int");
%fragment("SWIG_AsPtr_std_string");
%fragment("SWIG_From_std_string");

%{
namespace Binding {

/// How an element crosses the boundary: `Convert` takes it in, or only checks it if there is no
/// place for it; `ToPython` gives a new reference.
template <class T>
struct Element;

template <>
struct Element<double> {
  static bool Convert(PyObject* object, double* value) {
    return SWIG_IsOK(SWIG_AsVal_double(object, value));
  }
  static PyObject* ToPython(double value) { return PyFloat_FromDouble(value); }
};

template <>
struct Element<float> {
  static bool Convert(PyObject* object, float* value) {
    return SWIG_IsOK(SWIG_AsVal_float(object, value));
  }
  static PyObject* ToPython(float value) { return PyFloat_FromDouble(value); }
};

template <>
struct Element<int> {
  static bool Convert(PyObject* object, int* value) {
    return SWIG_IsOK(SWIG_AsVal_int(object, value));
  }
  static PyObject* ToPython(int value) { return SWIG_From_int(value); }
};

template <>
struct Element<std::string> {
  static bool Convert(PyObject* object, std::string* value) {
    std::string* text = nullptr;
    const int state = SWIG_AsPtr_std_string(object, value ? &text : nullptr);
    if (!value || !text) {
      return SWIG_IsOK(state) && !value && object != Py_None;
    }
    *value = *text;
    if (SWIG_IsNewObj(state)) {
      delete text;
    }
    return true;
  }
  static PyObject* ToPython(const std::string& value) { return SWIG_From_std_string(value); }
};

/// None stands for a null pointer.
template <class T>
struct Element<std::shared_ptr<T>> {
  static bool Convert(PyObject* object, std::shared_ptr<T>* value) {
    void* pointer = nullptr;
    int newMemory = 0;
    swig_type_info* const type = TypeOf<std::shared_ptr<T>>();
    if (!SWIG_IsOK(SWIG_ConvertPtrAndOwn(object, &pointer, type, 0, &newMemory))) {
      return false;
    }
    auto* shared = static_cast<std::shared_ptr<T>*>(pointer);
    if (value) {
      *value = shared ? *shared : nullptr;
    }
    if (newMemory & SWIG_CAST_NEW_MEMORY) {
      delete shared;
    }
    return true;
  }
  static PyObject* ToPython(const std::shared_ptr<T>& value) {
    return SWIG_NewPointerObj(value ? new std::shared_ptr<T>(value) : nullptr,
                              TypeOf<std::shared_ptr<T>>(), SWIG_POINTER_OWN);
  }
};

template <class T>
PyObject* ElementToPython(const T& element) {
  return Element<T>::ToPython(element);
}

template <class T>
PyObject* ToTuple(const std::vector<T>& elements) {
  if (elements.size() > INT_MAX) {
    PyErr_SetString(PyExc_OverflowError, "sequence size not valid in python");
    return nullptr;
  }
  PyRef tuple(PyTuple_New(static_cast<Py_ssize_t>(elements.size())));
  for (std::size_t i = 0; tuple && i < elements.size(); ++i) {
    PyObject* element = Element<T>::ToPython(elements[i]);
    if (!element) {
      return nullptr;
    }
    PyTuple_SET_ITEM(tuple.Get(), static_cast<Py_ssize_t>(i), element);
  }
  return tuple.Release();
}

/// Calls `take` with each item until one is refused.
template <class Take>
bool ForEachItem(PyObject* iterable, Take take) {
  const PyRef iterator(PyObject_GetIter(iterable));
  bool taken = static_cast<bool>(iterator);
  while (taken) {
    const PyRef item(PyIter_Next(iterator.Get()));
    if (!item) {
      break;
    }
    taken = take(item.Get());
  }
  return taken && !PyErr_Occurred();
}

/// Whether items can be read from it as often as one likes.
bool IsCollection(PyObject* object) {
  return PyList_Check(object) || PyTuple_Check(object) || PyUnicode_Check(object) ||
         PyAnySet_Check(object) || PyDict_Check(object) || PyObject_CheckBuffer(object);
}

template <class T>
bool CheckItems(PyObject* iterable) {
  const ReadAhead::Argument argument(iterable);
  const PyRef items =
      IsCollection(iterable) ? PyRef::Borrowed(iterable) : ReadAhead::Items(iterable);
  return items && ForEachItem(items.Get(), [](PyObject* item) {
    return Element<T>::Convert(item, nullptr);
  });
}

template <class T>
bool ConvertItems(PyObject* iterable, std::vector<T>& elements) {
  const PyRef items = ReadAhead::Take(iterable);
  return ForEachItem(items ? items.Get() : iterable, [&](PyObject* item) {
    return Element<T>::Convert(item, &elements.emplace_back());
  });
}

template <class T>
bool ConvertIterable(PyObject* object, std::vector<T>* elements) {
  if constexpr (std::is_arithmetic_v<T>) {
    Buffer buffer(object);
    if (buffer.Holds<T>()) {
      return !elements || buffer.CopyTo(*elements);
    }
  }
  return elements ? ConvertItems(object, *elements) : CheckItems<T>(object);
}

/// The vector of an argument, in SWIG's terms: a wrapped vector as it is (null for None), or a new
/// one filled from an iterable. Without a place for it the argument is only checked.
template <class T>
int AsVector(PyObject* object, std::vector<T>** vector) try {
  if (object == Py_None || SWIG_Python_GetSwigThis(object)) {
    void* wrapped = nullptr;
    if (!SWIG_IsOK(SWIG_ConvertPtr(object, &wrapped, TypeOf<std::vector<T>>(), 0))) {
      return SWIG_TypeError;
    }
    if (vector) {
      *vector = static_cast<std::vector<T>*>(wrapped);
    }
    return SWIG_OLDOBJ;
  }
  auto elements = vector ? std::make_unique<std::vector<T>>() : nullptr;
  if (!ConvertIterable(object, elements.get())) {
    PyErr_Clear();
    return SWIG_TypeError;
  }
  if (vector) {
    *vector = elements.release();
  }
  return SWIG_NEWOBJ;
} catch (const std::bad_alloc&) {
  return SWIG_MemoryError;
}

template <class T>
struct Element<std::vector<T>> {
  static bool Convert(PyObject* object, std::vector<T>* value) {
    std::vector<T>* elements = nullptr;
    const int state = AsVector<T>(object, value ? &elements : nullptr);
    if (!value || !elements) {
      return SWIG_IsOK(state) && !value && object != Py_None;
    }
    const std::unique_ptr<std::vector<T>> owned(SWIG_IsNewObj(state) ? elements : nullptr);
    *value = owned ? std::move(*owned) : *elements;
    return true;
  }
  static PyObject* ToPython(const std::vector<T>& value) { return ToTuple(value); }
};

}  // namespace Binding

// No overload takes the call: what was read ahead to find one is not needed.
#define SWIG_Python_RaiseOrModifyTypeError(message) \
  (Binding::ReadAhead::Drop(argv), (SWIG_Python_RaiseOrModifyTypeError)(message))
%}
