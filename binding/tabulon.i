// The extension module _TabulonAPI_Python: a flat module of functions `<Class>_<method>`, integers
// `<Enum>_<Enumerator>` and `cvar`. SWIG's proxy classes go into the package, as tabulon.api._proxy.
//
// Every class is declared again in these files with just the members that scripts get: what is
// exported is listed. The order of the includes is the order of the names in the module.
%module(moduleimport="import _TabulonAPI_Python") _proxy

%{
#include "api/cache_settings.h"
#include "api/group.h"
#include "api/independent_variable.h"
#include "api/output_group1d.h"
#include "api/output_group2d.h"
#include "api/output_specification.h"
#include "api/run.h"
#include "api/runs_iterator.h"
#include "api/runs_iterator_regex.h"
#include "api/search_settings.h"
#include "api/tabulon_api.h"
#include "api/types.h"
#include "api/variable.h"
#include "api/variable1d.h"
#include "api/variable2d.h"
%}

%include "errors.i"
%include "objects.i"
%include "strings.i"
%include "runtime.i"
%include "operations.i"
%include "iterator.i"
%include "vocabulary.i"
%include "sequences.i"
%include "numpy.i"

%include "classes.i"
%include "arrays.i"
%include "settings.i"
%include "output.i"
%include "variable.i"
%include "group.i"
%include "run.i"
%include "search.i"
%include "facade.i"
