// Exceptions of the library on their way to the interpreter.

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
