// The classes, and how script objects hold theirs. Known before any function takes or returns one.

// Calls `family` with each suffix of the class templates and its element type.
%define %for_each_element_type(family)
family(Float32, float)
family(Float64, double)
family(Int32, int)
%enddef

// Calls `family` with each class that scripts get in lists, and its name.
%define %for_each_listed_class(family)
family(Variable, SumaraApi::Variable)
family(Variable1D_Float32, SumaraApi::Variable1D< float >)
family(Variable1D_Float64, SumaraApi::Variable1D< double >)
family(Variable1D_Int32, SumaraApi::Variable1D< int >)
family(Variable2D_Float32, SumaraApi::Variable2D< float >)
family(Variable2D_Float64, SumaraApi::Variable2D< double >)
family(Variable2D_Int32, SumaraApi::Variable2D< int >)
family(IndependentVariable, SumaraApi::IndependentVariable)
family(Group, SumaraApi::Group)
family(Run, SumaraApi::Run)
%enddef
%for_each_listed_class(%shared_class)

%define %output_group_classes(Suffix, T)
%owned_class(OutputGroup1D_ ## Suffix, SumaraApi::OutputGroup1D< T >)
%owned_class(OutputGroup2D_ ## Suffix, SumaraApi::OutputGroup2D< T >)
%enddef
%for_each_element_type(%output_group_classes)

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
