// How a member is exported: under which name, and with which words as its docstring. Stands before
// the member's declaration.

%define %operation(exported, Native, doc)
%rename(exported) Native;
%feature("docstring") Native doc;
%enddef

// The same for a figure of a variable, whose words tell when it is right.
%define %figure(exported, Native, doc)
%operation(exported, Native, doc "

If the header holds no statistics, load the data of all variables of the group first: while some are
not loaded, the figures of the others close up, and this may be that of another variable.")
%enddef

// What is constructed is said: no class gets a constructor of SWIG's own accord.
%nodefaultctor;
