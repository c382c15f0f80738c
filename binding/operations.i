// How a member is exported: under which name, and with which words as its docstring. Stands before
// the member's declaration.

%define %operation(exported, Native, doc)
%rename(exported) Native;
%feature("docstring") Native doc;
%enddef

// What is constructed is said: no class gets a constructor of SWIG's own accord.
%nodefaultctor;
