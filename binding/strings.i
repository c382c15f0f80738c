// std::string and str. Bytes that are no UTF-8 come out as lone surrogates, and go back in as the
// bytes they were: a run name survives the round trip whatever it holds.

%fragment("SWIG_AsPtr_std_string", "header") {
SWIGINTERN int SWIG_AsPtr_std_string(PyObject* object, std::string** value) try {
  const Binding::StringArgument given = Binding::ToString(object, value != nullptr);
  if (value) {
    *value = given.text;
  }
  return !given.isString ? SWIG_TypeError : given.isNew ? SWIG_NEWOBJ : SWIG_OLDOBJ;
} catch (const std::bad_alloc&) {
  PyErr_NoMemory();
  return SWIG_MemoryError;
} catch (const Binding::ErrorAlreadySet&) {
  return SWIG_MemoryError;
}
}

%include <std_string.i>

// A string that memory lacks for is not one of the wrong type: no other overload is tried.
%typemap(typecheck, precedence=SWIG_TYPECHECK_STDSTRING, noblock=1,
         fragment="SWIG_AsPtr_std_string") std::string, const std::string & {
  $1 = SWIG_IsOK(SWIG_AsPtr_std_string($input, nullptr));
  if (PyErr_Occurred()) {
    return nullptr;
  }
}

%typemap(out, noblock=1, fragment="SWIG_From_std_string") std::string {
  $result = Binding::Result($1);
}
%typemap(out, noblock=1, fragment="SWIG_From_std_string") const std::string & {
  $result = Binding::Result(*$1);
}
