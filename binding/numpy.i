// NumPy arrays over the library's own memory.

%{
#include "binding/numpy_array.h"
%}

%define %array_view(Suffix, T)
%typemap(out) Binding::ArrayView< T > {
  $result = Binding::MakeArray< T >(swig_obj[0], static_cast<const Binding::ArrayView< T > &>($1));
  if (!$result) {
    SWIG_fail;
  }
}
%enddef
%array_view(Float32, float)
%array_view(Float64, double)
%array_view(Int32, int)

namespace Binding {
template <class T>
struct ArrayView;
}
