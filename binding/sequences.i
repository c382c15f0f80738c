// Vectors: as arguments any iterable or the exported array class, as results tuples.

%{
#include "binding/vectors.h"
%}

// Vectors of the element type `T`.
%define %vector_of(T, Vector...)
%typemap(in) const Vector & (Binding::VectorArgument< T > elements) {
  if (!elements.Take($input)) {
    %wrong_type("$type")
  }
  if (!elements.Get()) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = elements.Get();
}
%typemap(freearg) const Vector & ""
// What stands in for an iterable here is there until the call has ended.
%typemap(typecheck, precedence=SWIG_TYPECHECK_VECTOR, noblock=1) const Vector & {
  Binding::ReadAhead items($input);
  $1 = Binding::Fits< T >(items);
  if (PyErr_Occurred()) {
    return nullptr;
  }
}
%typemap(out, noblock=1) Vector {
  $result = Binding::Result(static_cast<std::vector< T > &&>($1));
}
%typemap(out, noblock=1) const Vector & {
  $result = Binding::Result(*$1);
}
%enddef
