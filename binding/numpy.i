// NumPy arrays over the library's own memory.

%{
#include "binding/numpy_array.h"
#include "binding/numpy_import.h"
%}

%define %array_view(Suffix, T)
%typemap(out) Binding::ArrayView< T > {
  $result = Binding::MakeArray< T >(swig_obj[0], static_cast<const Binding::ArrayView< T > &>($1));
}
%enddef
%array_view(Float32, float)
%array_view(Float64, double)
%array_view(Int32, int)

namespace Binding {
template <class T>
struct ArrayView;
}
