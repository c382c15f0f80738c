// Script objects that hold library objects: how they are known, how they come, and how they go.

%{
#include "binding/elements.h"
#include "binding/held_object.h"
#include "binding/registration.h"
#include "binding/type_names.h"
%}

%include <std_shared_ptr.i>

%init %{
  if (!Binding::IsMainInterpreter()) {
    return nullptr;
  }
  Binding::Swig::CompareSafely();
%}

// None stands for a null pointer. The library would follow the one of `self`, so it is refused, also
// where the object was deleted while other arguments were converted. `text` is the type in errors.
%define %self_of(text, Parameter...)
%typemap(in, noblock=1) Parameter (Binding::HeldPointer held) {
  if (!held.Take($input, $descriptor, $disown != 0)) {
    %wrong_type(text)
  }
  if (!held.Get()) {
    %argument_nullref(text, $symname, $argnum);
  }
  $1 = %static_cast(held.Get(), $ltype);
}
%typemap(check, noblock=1) Parameter {
  if (!held$argnum.Get()) {
    %argument_nullref(text, $symname, $argnum);
  }
}
%enddef

// An argument that was refused: with the exception that script code raised meanwhile, if it did.
%define %wrong_type(text)
  if (PyErr_Occurred()) {
    SWIG_fail;
  }
  %argument_fail(SWIG_TypeError, text, $symname, $argnum);
%enddef

%self_of("$type", SWIGTYPE *self)

// None is no wrong type, so it must not lead to another overload: it is refused when the argument is
// converted.
%define %checked_pointer(Type, Parameters...)
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER, noblock=1) Parameters {
  $1 = Binding::IsOfType($input, Type);
  if (PyErr_Occurred()) {
    return nullptr;
  }
}
%enddef
%checked_pointer($descriptor, SWIGTYPE *, SWIGTYPE &, const SWIGTYPE &)

%typemap(in) SWIGTYPE & (Binding::HeldPointer held), const SWIGTYPE & (Binding::HeldPointer held) {
  if (!held.Take($input, $descriptor, false)) {
    %wrong_type("$type")
  }
  if (!held.Get()) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = %static_cast(held.Get(), $ltype);
}

%typemap(out, noblock=1) SWIGTYPE * {
  $result = Binding::NewObject($1, $descriptor, $owner | %newpointer_flags);
}

// What all exported classes have. `Held` is the type as which script objects hold a `Type`.
%define %exported_class(Name, Held, Type...)
%{
namespace Binding {
template <>
struct TypeName< Type > {
  static std::string Text() { return #Type; }
};
}  // namespace Binding
%}
%published(Name, Held)
%enddef

// A type that goes with its script object, through the function `delete_<Name>`.
%define %published(Name, Held...)
%init %{
  if (!Binding::Publish< Held >(m, #Name)) {
    return nullptr;
  }
%}
%enddef

%define %deleted_as(Type, Held...)
%feature("unref") Type "Binding::DeleteHeld(swig_obj[0], Binding::TypeOf< Held >());"
%enddef

// A class whose objects are held by plain pointer or by value.
%define %owned_class(Name, Type...)
%exported_class(Name, %arg(Type), Type)
%deleted_as(%arg(Type), Type)
%enddef

// A class whose objects are held by shared pointer. As SWIG has it, but None is refused, the object
// lives on during the call, come what may, and memory may run out.
%define %shared_class(Name, Type...)
%exported_class(Name, std::shared_ptr< Type >, Type)
%shared_ptr(Type)
%typemap(in) Type *self (std::shared_ptr< Type > held),
             const Type *self (std::shared_ptr< Type > held),
             Type & (std::shared_ptr< Type > held) {
  if (!Binding::TakeSharedArgument($input, $descriptor(std::shared_ptr< Type > *), held)) {
    %wrong_type("$type")
  }
  if (!held) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = held.get();
}
%typemap(in) const std::shared_ptr< Type > & (std::shared_ptr< Type > held) {
  if (!Binding::TakeSharedArgument($input, $descriptor(std::shared_ptr< Type > *), held)) {
    %wrong_type("$type")
  }
  $1 = &held;
}
%typemap(check) Type *self, const Type *self ""
%checked_pointer($descriptor(std::shared_ptr< Type > *), Type *, const Type *, Type &, const Type &,
                 const std::shared_ptr< Type > &)
%typemap(out, noblock=1) Type * {
  $result = Binding::SharedResult($1, $owner);
}
%typemap(out, noblock=1) std::shared_ptr< Type > {
  $result = Binding::Result($1);
}
%typemap(out, noblock=1) const std::shared_ptr< Type > & {
  $result = Binding::Result(*$1);
}
%deleted_as(%arg(Type), std::shared_ptr< Type >)
%enddef
