// Exceptions of the library, and null pointers, on their way to the interpreter.

%{
#include "binding/exception_translation.h"
%}

%define %translate(Translation)
{
  try {
    $action
  } catch (...) {
    Binding::Translation();
    SWIG_fail;
  }
}
%enddef

%feature("except") %translate(TranslateException)

// None stands for a null pointer. The library would follow the one of `self`, so it is refused.
%typemap(in, noblock=1) SWIGTYPE *self (void *argp = nullptr, int res = 0) {
  res = SWIG_ConvertPtr($input, &argp, $descriptor, 0);
  if (!SWIG_IsOK(res)) {
    %argument_fail(res, "$type", $symname, $argnum);
  }
  if (!argp) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = %reinterpret_cast(argp, $ltype);
}

// For a reference None is no wrong type either, so it must not lead to another overload: it is
// refused when the argument is converted.
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER, noblock=1) const SWIGTYPE & {
  void *vptr = 0;
  int res = SWIG_ConvertPtr($input, &vptr, $descriptor, 0);
  $1 = SWIG_CheckState(res);
}
