// The classes, and how script objects hold theirs. Known before any function takes or returns one.

%shared_class(Run, SumaraApi::Run)
%shared_class(Group, SumaraApi::Group)
%shared_class(IndependentVariable, SumaraApi::IndependentVariable)
%shared_class(Variable, SumaraApi::Variable)

// Calls `family` with each suffix of the class templates and its element type.
%define %for_each_element_type(family)
family(Float32, float)
family(Float64, double)
family(Int32, int)
%enddef

%define %hold_variables(Suffix, T)
%shared_class(Variable1D_ ## Suffix, SumaraApi::Variable1D< T >)
%shared_class(Variable2D_ ## Suffix, SumaraApi::Variable2D< T >)
%enddef
%for_each_element_type(%hold_variables)

%define %hold_output_groups(Suffix, T)
%owned_class(OutputGroup1D_ ## Suffix, SumaraApi::OutputGroup1D< T >)
%owned_class(OutputGroup2D_ ## Suffix, SumaraApi::OutputGroup2D< T >)
%enddef
%for_each_element_type(%hold_output_groups)

%owned_class(TabulonApi, SumaraApi::TabulonApi)
%owned_class(TabulonApi_CacheSettings, SumaraApi::TabulonApi_CacheSettings)
%owned_class(TabulonApi_SearchSettings, SumaraApi::TabulonApi_SearchSettings)
%owned_class(IOutputSpecification, SumaraApi::IOutputSpecification)
%owned_class(OutputGroup, SumaraApi::OutputGroup)
%owned_class(RunsIterator, SumaraApi::RunsIterator)
%owned_class(RunsIteratorRegex, SumaraApi::RunsIteratorRegex)

namespace SumaraApi {
class Run;
class Group;
class IndependentVariable;
class Variable;
template <class T>
class Variable1D;
template <class T>
class Variable2D;
}  // namespace SumaraApi
