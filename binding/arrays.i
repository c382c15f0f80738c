// The arrays: std::vector under eighteen names, each with just these functions.

%{
#include "binding/slices.h"

// What error texts call a slice.
using SWIGPY_SLICEOBJECT = PyObject;
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
  %self_of("$*1_ltype *", std::vector< T, Alloc > *self)
  %self_of("$*1_ltype *", const std::vector< T, Alloc > *self)

  %vector_of(T, std::vector< T, Alloc >)
  // Any integer is meant for an index, so that one of more than 64 bits is told as such.
  %typemap(typecheck, precedence=SWIG_TYPECHECK_INTEGER) difference_type i, difference_type j
    "$1 = PyLong_Check($input);"

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

    def __copy__(self):
        return type(self)(self)

    def __deepcopy__(self, memo):
        return type(self)(self)
  %}
};

}  // namespace std

%define %array(Suffix, T...)
%published(ArrayOf ## Suffix, std::vector< T >)
%deleted_as(std::vector< T >, std::vector< T >)
%template(ArrayOf ## Suffix) std::vector< T >;
%enddef
%define %array_of_arrays(Suffix, T...)
%array(ArrayOf ## Suffix, std::vector< T >)
%enddef
%define %array_of_shared(Suffix, Type...)
%array(Suffix, std::shared_ptr< Type >)
%enddef

%array(Int, int)
%array(Float, float)
%array(Double, double)
%array(String, std::string)
%array_of_arrays(Int, int)
%array_of_arrays(Float, float)
%array_of_arrays(Double, double)
%array_of_arrays(String, std::string)
%for_each_listed_class(%array_of_shared)

%feature("except") %translate(TranslateException)
