// The arrays: std::vector under eighteen names, each with just these functions.

%{
#include "binding/slices.h"

// What error texts call a slice.
using SWIGPY_SLICEOBJECT = PyObject;

namespace Binding {

template <class T>
const std::vector<T>* ArrayOf(PyObject* object) {
  void* array = nullptr;
  const bool found = SWIG_IsOK(SWIG_ConvertPtr(object, &array, TypeOf<std::vector<T>>(), 0));
  return found ? static_cast<const std::vector<T>*>(array) : nullptr;
}

}  // namespace Binding
%}

%typemap(in) SWIGPY_SLICEOBJECT * {
  if (!PySlice_Check($input)) {
    %argument_fail(SWIG_TypeError, "$type", $symname, $argnum);
  }
  $1 = $input;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) SWIGPY_SLICEOBJECT *
  "$1 = PySlice_Check($input);"

%feature("except") %translate(TranslateArrayException)

%newobject std::vector::iterator;
%newobject std::vector::__getslice__;
%newobject std::vector::__getitem__(SWIGPY_SLICEOBJECT *slice);

namespace std {

template <class T>
class allocator {};

template <class T, class Alloc = allocator< T > >
class vector {
 public:
  typedef size_t size_type;
  typedef ptrdiff_t difference_type;
  typedef T value_type;

  // Whatever the function, the text calls the array by its plain type.
  %typemap(in, noblock=1) std::vector< T, Alloc > *self (void *argp = 0, int res = 0),
                          const std::vector< T, Alloc > *self (void *argp = 0, int res = 0) {
    res = SWIG_ConvertPtr($input, &argp, $descriptor, $disown);
    if (!SWIG_IsOK(res)) {
      %argument_fail(res, "$*1_ltype *", $symname, $argnum);
    }
    if (!argp) {
      %argument_nullref("$*1_ltype *", $symname, $argnum);
    }
    $1 = %reinterpret_cast(argp, $ltype);
  }

  %checked_self(std::vector< T, Alloc >)

  %typemap(in) const std::vector< T, Alloc > & (int res = SWIG_OLDOBJ) {
    std::vector< T > *elements = nullptr;
    res = Binding::AsVector($input, &elements);
    if (!SWIG_IsOK(res)) {
      %argument_fail(res, "$type", $symname, $argnum);
    }
    if (!elements) {
      %argument_nullref("$type", $symname, $argnum);
    }
    $1 = elements;
  }
  %typemap(freearg, noblock=1) const std::vector< T, Alloc > & {
    if (SWIG_IsNewObj(res$argnum)) {
      delete $1;
    }
  }
  %typemap(typecheck, precedence=SWIG_TYPECHECK_VECTOR) const std::vector< T, Alloc > & {
    std::vector< T > **unwanted = nullptr;
    $1 = SWIG_CheckState(Binding::AsVector($input, unwanted));
  }
  // Any integer is meant for an index, so that one of more than 64 bits is told as such.
  %typemap(typecheck, precedence=SWIG_TYPECHECK_INTEGER) difference_type i, difference_type j
    "$1 = PyLong_Check($input);"

  %typemap(out, noblock=1) std::vector< T, Alloc > {
    $result = Binding::ToTuple(static_cast<const std::vector< T > &>($1));
  }
  %typemap(out, noblock=1) const std::vector< T, Alloc > & {
    $result = Binding::ToTuple(*$1);
  }

  %feature("docstring") vector
"An array: empty, a copy of an iterable, or a count of default elements or of copies of a value.";
  vector();
  vector(const vector &other);
  vector(size_type size);
  vector(size_type size, const value_type &value);
  ~vector();

  %extend {
    %feature("docstring") iterator "An iterator that keeps the array alive.";
    swig::SwigPyIterator *iterator(PyObject **PYTHON_SELF) {
      return new Binding::ArrayIterator< T >(*PYTHON_SELF);
    }
    %feature("docstring") __nonzero__ "Whether there are elements.";
    bool __nonzero__() const { return !$self->empty(); }
    %feature("docstring") __bool__ "Whether there are elements.";
    bool __bool__() const { return !$self->empty(); }
    %feature("docstring") __len__ "The number of elements.";
    size_type __len__() const { return $self->size(); }

    %feature("docstring") __getslice__ "A new array of the elements from i to j.";
    std::vector< T, Alloc > *__getslice__(difference_type i, difference_type j) {
      return Binding::GetSlice(*$self, Binding::ToGet(*$self, i, j));
    }
    %feature("docstring") __setslice__
"Replaces the elements from i to j by those of an iterable, or by none.";
    void __setslice__(difference_type i, difference_type j) {
      Binding::DeleteSlice(*$self, Binding::ToChange(*$self, i, j));
    }
    void __setslice__(difference_type i, difference_type j, const std::vector< T, Alloc > &v) {
      Binding::SetSlice(*$self, Binding::ToChange(*$self, i, j), v);
    }
    %feature("docstring") __delslice__ "Deletes the elements from i to j.";
    void __delslice__(difference_type i, difference_type j) {
      Binding::DeleteSlice(*$self, Binding::ToChange(*$self, i, j));
    }

    %feature("docstring") __delitem__
"Deletes an element or a slice. IndexError outside the array.";
    void __delitem__(difference_type i) {
      $self->erase($self->begin() + Binding::ElementIndex(i, $self->size()));
    }
    void __delitem__(SWIGPY_SLICEOBJECT *slice) {
      Binding::DeleteSlice(*$self, Binding::ToChange(*$self, slice));
    }

    %feature("docstring") __getitem__
"An element, or a new array of a slice. IndexError outside the array.

A slice that starts past the end starts over at the first element.";
    std::vector< T, Alloc > *__getitem__(SWIGPY_SLICEOBJECT *slice) {
      return Binding::GetSlice(*$self, Binding::ToGet(*$self, slice));
    }
    const value_type &__getitem__(difference_type i) const {
      return (*$self)[Binding::ElementIndex(i, $self->size())];
    }

    %feature("docstring") __setitem__
"Replaces an element, or a slice by the elements of an iterable, or deletes a slice.

Only a slice of step 1 may change the size.";
    void __setitem__(SWIGPY_SLICEOBJECT *slice, const std::vector< T, Alloc > &v) {
      Binding::SetSlice(*$self, Binding::ToChange(*$self, slice), v);
    }
    void __setitem__(SWIGPY_SLICEOBJECT *slice) {
      Binding::DeleteSlice(*$self, Binding::ToChange(*$self, slice));
    }
    void __setitem__(difference_type i, const value_type &x) {
      (*$self)[Binding::ElementIndex(i, $self->size())] = x;
    }
  }

  %pythoncode %{
    def __iter__(self):
        return self.iterator()
  %}
};

}  // namespace std

// `Element` is the element type as SWIG spells it.
%define %array_type(Name, Element, T...)
%held_type(Name, "std::vector< " Element ",std::allocator< " Element " > >",
           std::vector< T >)
%feature("unref") std::vector< T >
  "Binding::DeleteHeld(swig_obj[0], Binding::TypeOf<std::vector< T > >());"
%template(Name) std::vector< T >;
%enddef

%define %array(Suffix, T...)
%array_type(ArrayOf ## Suffix, #T, T)
%enddef

%define %array_of_arrays(Suffix, T...)
%array_type(ArrayOfArrayOf ## Suffix, "std::vector< " #T ",std::allocator< " #T " > >",
            std::vector< T >)
%enddef

%define %array_of_shared(Suffix, Type...)
%array_type(ArrayOf ## Suffix, "std::shared_ptr< " #Type " >", std::shared_ptr< Type >)
%enddef

%array(Int, int)
%array(Float, float)
%array(Double, double)
%array(String, std::string)
// A sequence of strings is looked for after a sequence of numbers.
%typemap(typecheck, precedence=SWIG_TYPECHECK_STRING_ARRAY) const std::vector<std::string> & {
  std::vector<std::string> **unwanted = nullptr;
  $1 = SWIG_CheckState(Binding::AsVector($input, unwanted));
}
%array_of_arrays(Int, int)
%array_of_arrays(Float, float)
%array_of_arrays(Double, double)
%array_of_arrays(String, std::string)
%array_of_shared(Variable, SumaraApi::Variable)
%array_of_shared(Variable1D_Float32, SumaraApi::Variable1D< float >)
%array_of_shared(Variable1D_Float64, SumaraApi::Variable1D< double >)
%array_of_shared(Variable1D_Int32, SumaraApi::Variable1D< int >)
%array_of_shared(Variable2D_Float32, SumaraApi::Variable2D< float >)
%array_of_shared(Variable2D_Float64, SumaraApi::Variable2D< double >)
%array_of_shared(Variable2D_Int32, SumaraApi::Variable2D< int >)
%array_of_shared(IndependentVariable, SumaraApi::IndependentVariable)
%array_of_shared(Group, SumaraApi::Group)
%array_of_shared(Run, SumaraApi::Run)

%feature("except") %translate(TranslateException)
