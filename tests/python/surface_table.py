"""The exported surface of the extension module, as data.

A function that has one form is a line ``name: parameters``, each parameter a key of `PARAMETERS` or
the class of ``self`` (with ``const`` where the operation does not change the object). Lines with
``<T>`` stand for the members of a family, and ``<t>`` for the suffix of its element type. Functions
with several forms stand in `OVERLOADS` with the prototypes that their error text lists.
"""

from __future__ import annotations

from collections.abc import Iterator
from dataclasses import dataclass

#: Suffix, suffix of member templates, element type.
FAMILY = (
    ("Float32", "float32", "float"),
    ("Float64", "float64", "double"),
    ("Int32", "int32", "int"),
)

_ALLOCATED = "std::vector< {0},std::allocator< {0} > >"


@dataclass(frozen=True)
class Parameter:
    """One parameter of a function: what its errors say and which arguments it takes or refuses."""

    type: str
    good: object = None
    """A fitting argument; an object of a class is named by ``object_of``."""
    object_of: str = ""
    wrong: tuple[object, ...] = ()
    """Arguments of the wrong type."""
    overflow: tuple[object, ...] = ()
    """Numbers that do not fit."""
    none_is_null: bool = False
    """None is a null reference; else it is of the wrong type."""


def _enumeration(name: str) -> Parameter:
    return Parameter(
        f"SumaraApi::{name}",
        good=0,
        wrong=(1.0, "0", b"0", None),
        overflow=(2**31, -(2**31) - 1, 2**64, -(2**64)),
    )


def _vector(element: str, good: object, wrong: tuple[object, ...]) -> Parameter:
    return Parameter(
        f"{element} const &", good=good, wrong=(*wrong, 5, object()), none_is_null=True
    )


PARAMETERS = {
    "string": Parameter(
        "std::string const &", good="x", wrong=(5, b"x", 1.5, ["x"], "\ud800"), none_is_null=True
    ),
    "bool": Parameter("bool", good=True, wrong=(1, 0, "True", 1.0, None)),
    "index": Parameter("size_t", good=0, wrong=(1.0, "0", None), overflow=(-1, 2**64, -(2**70))),
    "ptrdiff": Parameter("ptrdiff_t", good=0, wrong=(1.0, "0", None), overflow=(2**63,)),
    "iterator": Parameter(
        "swig::SwigPyIterator const &",
        object_of="SwigPyIterator",
        wrong=(5, "x"),
        none_is_null=True,
    ),
    "vector<float>": _vector(_ALLOCATED.format("float"), [1.5, 2], ([""], [None], "a", [1e39])),
    "vector<double>": _vector(_ALLOCATED.format("double"), [1.5, 2], ([""], [None], "a")),
    "vector<int>": _vector(_ALLOCATED.format("int"), [1, 2], ([1.0], [None], "a", [2**31])),
    **{
        f"table<{element}>": _vector(
            _ALLOCATED.format(_ALLOCATED.format(element)), [[1, 2], (3, 4)], ([1], [[None]], [None])
        )
        for element in ("float", "double", "int")
    },
    **{
        name: _enumeration(name)
        for name in (
            "DataTypeSpecifier",
            "CalculationType",
            "CompletionState",
            "CaseSensitivity",
            "TEFileCreation",
        )
    },
}

#: Exported classes but the arrays, and the library's names of them.
CLASSES = {
    "TabulonApi": "SumaraApi::TabulonApi",
    "TabulonApi_CacheSettings": "SumaraApi::TabulonApi_CacheSettings",
    "TabulonApi_SearchSettings": "SumaraApi::TabulonApi_SearchSettings",
    "Run": "SumaraApi::Run",
    "Group": "SumaraApi::Group",
    "IndependentVariable": "SumaraApi::IndependentVariable",
    "Variable": "SumaraApi::Variable",
    "IOutputSpecification": "SumaraApi::IOutputSpecification",
    "OutputGroup": "SumaraApi::OutputGroup",
    "RunsIterator": "SumaraApi::RunsIterator",
    "RunsIteratorRegex": "SumaraApi::RunsIteratorRegex",
    "SwigPyIterator": "swig::SwigPyIterator",
    **{
        f"{template}_{suffix}": f"SumaraApi::{template}< {element} >"
        for template in ("Variable1D", "Variable2D", "OutputGroup1D", "OutputGroup2D")
        for suffix, _, element in FAMILY
    },
}
#: Those that a script can construct.
CONSTRUCTED = (
    "TabulonApi_CacheSettings",
    "TabulonApi_SearchSettings",
    "IndependentVariable",
    "RunsIterator",
    "RunsIteratorRegex",
    *(f"OutputGroup{axes}D_{suffix}" for axes in (1, 2) for suffix, _, _ in FAMILY),
)

#: Array classes and their elements.
ARRAYS = {
    "ArrayOfInt": "int",
    "ArrayOfFloat": "float",
    "ArrayOfDouble": "double",
    "ArrayOfString": "std::string",
    "ArrayOfArrayOfInt": "std::vector< int >",
    "ArrayOfArrayOfFloat": "std::vector< float >",
    "ArrayOfArrayOfDouble": "std::vector< double >",
    "ArrayOfArrayOfString": "std::vector< std::string >",
    **{
        f"ArrayOf{name}": f"std::shared_ptr< {CLASSES[name]} >"
        for name in (
            "Variable",
            *(f"Variable{axes}D_{suffix}" for axes in (1, 2) for suffix, _, _ in FAMILY),
            "IndependentVariable",
            "Group",
            "Run",
        )
    },
}
ARRAY_OPERATIONS = (
    "__len__",
    "__bool__",
    "__nonzero__",
    "__getitem__",
    "__setitem__",
    "__delitem__",
    "__getslice__",
    "__setslice__",
    "__delslice__",
    "iterator",
)

_SINGLE_FORMS = """
TabulonApi_get_run: string string
TabulonApi_clear_runs:

TabulonApi_CacheSettings_set_buffered_read_enabled: bool
TabulonApi_CacheSettings_set_run_caching_enabled: bool
TabulonApi_CacheSettings_set_data_type_for_reading: DataTypeSpecifier
new_TabulonApi_CacheSettings:
delete_TabulonApi_CacheSettings: TabulonApi_CacheSettings
TabulonApi_SearchSettings_set_calculation_type_filter: CalculationType
TabulonApi_SearchSettings_set_include_unsupported_calculations: bool
TabulonApi_SearchSettings_set_completion_state_filter: CompletionState
TabulonApi_SearchSettings_set_run_name_case_sensitivity: CaseSensitivity
new_TabulonApi_SearchSettings:
delete_TabulonApi_SearchSettings: TabulonApi_SearchSettings

Run_get_name: Run
Run_get_directory: Run
Run_get_termination_file_content: Run
Run_get_termination_file_path: const-Run
Run_get_message_file_content: Run
Run_get_verification_file_content: Run
Run_get_timestamp: Run
Run_get_execution_duration_seconds: Run
Run_get_completion_state: Run
Run_has_finished: Run
Run_was_successful: Run
Run_was_unsuccessful: Run
Run_get_calculation_descriptive_name: Run
Run_get_calculation_type: Run
Run_is_turbine_simulation: Run
Run_is_supporting_calculation: Run
Run_is_post_processing_calculation: Run
Run_is_calculation_type_supported: Run
Run_contains_variable_1d: Run string
Run_contains_variable_2d: Run string
Run__get_variable: Run string
Run__get_variable_from_specific_output_group: Run string string
Run_unload_variable: Run string
Run_unload_variable_from_specific_group: Run string string
Run__get_all_groups_native_array: Run
Run_get_group: Run string
Run__RUNPREFIX_get_variable_1d_<t>: Run string
Run__RUNPREFIX_get_variable_1d_from_specific_output_group_<t>: Run string string
Run__RUNPREFIX_get_variable_2d_<t>: Run string
Run__RUNPREFIX_get_variable_2d_from_specific_output_group_<t>: Run string string
delete_Run: Run

Group_get_name: const-Group
Group_get_number: const-Group
Group_get_header_file_path: const-Group
Group_get_number_of_variables: const-Group
Group_get_number_of_independent_variables: const-Group
Group_get_variable: const-Group string
Group__get_variable_names_native_array: const-Group
Group_contains_variable_1d: const-Group string
Group_contains_variable_2d: const-Group string
Group__get_independent_variables_native_array: const-Group
Group_get_calculation_short_name: const-Group
Group_get_calculation_descriptive_name: const-Group
Group_get_calculation_type: const-Group
Group_get_time_domain_simulation_length: const-Group
Group_get_data_point_count: const-Group
Group_get_variable_data_type: const-Group
Group_get_variable_data_format: const-Group
Group__GROUPPREFIX_get_variable_1d_<t>: const-Group string
Group__GROUPPREFIX_get_all_variables_1d_<t>_native_array: const-Group
Group__GROUPPREFIX_get_variable_2d_<t>: const-Group string
Group__GROUPPREFIX_get_all_variables_2d_<t>_native_array: const-Group
delete_Group: Group

IndependentVariable_get_name: IndependentVariable
IndependentVariable_get_siunit: IndependentVariable
IndependentVariable_get_axis_type: const-IndependentVariable
IndependentVariable_get_number_of_values: const-IndependentVariable
IndependentVariable__get_values_as_string_native_array: const-IndependentVariable
IndependentVariable__get_values_as_number_native_array: const-IndependentVariable
IndependentVariable__get_values_as_number_numpy_from_vector: IndependentVariable
delete_IndependentVariable: IndependentVariable

Variable_get_name: const-Variable
Variable_get_siunit: Variable
Variable_get_quantity_code: const-Variable
Variable_get_number_of_independent_variables: const-Variable
Variable_get_parent_group_name: const-Variable
Variable_get_parent_group_number: const-Variable
Variable_get_parent_group_header_file_full_path: Variable
Variable_get_time_domain_simulation_length: const-Variable
Variable_get_data_point_count: const-Variable
Variable_get_data_type: const-Variable
Variable_get_data_format: const-Variable
Variable__get_independent_variables_native_array: const-Variable
delete_Variable: Variable

Variable1D_<T>__get_data_native_array: Variable1D_<T>
Variable1D_<T>__get_data_numpy_from_vector: Variable1D_<T>
Variable1D_<T>_get_independent_variable: const-Variable1D_<T>
Variable1D_<T>_get_mean: Variable1D_<T>
Variable1D_<T>_get_maximum: Variable1D_<T>
Variable1D_<T>_get_minimum: Variable1D_<T>
Variable1D_<T>_get_minimum_contemporaneous: Variable1D_<T> string
Variable1D_<T>_get_maximum_contemporaneous: Variable1D_<T> string
delete_Variable1D_<T>: Variable1D_<T>

Variable2D_<T>__get_data_at_index_native_array: Variable2D_<T> index
Variable2D_<T>__get_data_at_index_numpy_from_vector: Variable2D_<T> index
Variable2D_<T>__get_data_for_all_independent_variable_values_native_array: Variable2D_<T>
Variable2D_<T>_get_mean_at_index: Variable2D_<T> index
Variable2D_<T>_get_maximum_at_index: Variable2D_<T> index
Variable2D_<T>_get_minimum_at_index: Variable2D_<T> index
Variable2D_<T>_get_minimum_contemporaneous_at_index: Variable2D_<T> string index
Variable2D_<T>_get_maximum_contemporaneous_at_index: Variable2D_<T> string index
delete_Variable2D_<T>: Variable2D_<T>

RunsIterator_get_next_run: RunsIterator
delete_RunsIterator: RunsIterator
delete_RunsIteratorRegex: RunsIteratorRegex

IOutputSpecification_get_path: const-IOutputSpecification
IOutputSpecification_get_file_format: const-IOutputSpecification
delete_IOutputSpecification: IOutputSpecification
OutputGroup_get_path: const-OutputGroup
OutputGroup_get_file_format: const-OutputGroup
OutputGroup_get_group_name: const-OutputGroup
OutputGroup_get_data_source: const-OutputGroup
OutputGroup_get_group_config: const-OutputGroup
OutputGroup_get_variable_data_format: const-OutputGroup
OutputGroup_get_data_file_path: const-OutputGroup
OutputGroup_set_tefile_creation: OutputGroup TEFileCreation
delete_OutputGroup: OutputGroup

OutputGroup1D_<T>_add_variable: OutputGroup1D_<T> string string
OutputGroup1D_<T>__add_variable_with_data_native_array: OutputGroup1D_<T> string string vector<<e>>
OutputGroup1D_<T>__append_data_native_array: OutputGroup1D_<T> string vector<<e>>
delete_OutputGroup1D_<T>: OutputGroup1D_<T>
OutputGroup2D_<T>_add_variable: OutputGroup2D_<T> string string
OutputGroup2D_<T>__add_variable_with_data_native_array: OutputGroup2D_<T> string string table<<e>>
OutputGroup2D_<T>__append_data_native_array: OutputGroup2D_<T> string table<<e>>
delete_OutputGroup2D_<T>: OutputGroup2D_<T>

SwigPyIterator_value: const-SwigPyIterator
SwigPyIterator_next: SwigPyIterator
SwigPyIterator___next__: SwigPyIterator
SwigPyIterator_previous: SwigPyIterator
SwigPyIterator_copy: const-SwigPyIterator
SwigPyIterator_advance: SwigPyIterator ptrdiff
SwigPyIterator_distance: const-SwigPyIterator iterator
SwigPyIterator_equal: const-SwigPyIterator iterator
SwigPyIterator___eq__: const-SwigPyIterator iterator
SwigPyIterator___ne__: const-SwigPyIterator iterator
SwigPyIterator___iadd__: SwigPyIterator ptrdiff
SwigPyIterator___isub__: SwigPyIterator ptrdiff
SwigPyIterator___add__: const-SwigPyIterator ptrdiff
delete_SwigPyIterator: SwigPyIterator

delete_TabulonApi: TabulonApi
"""


def _self(word: str) -> Parameter:
    name = word.removeprefix("const-")
    constness = "const *" if word != name else "*"
    return Parameter(
        f"{CLASSES[name]} {constness}", object_of=name, wrong=(5, "x", object()), none_is_null=True
    )


def _expand(line: str) -> Iterator[str]:
    for suffix, small, element in FAMILY if "<T>" in line or "<t>" in line else FAMILY[:1]:
        yield line.replace("<T>", suffix).replace("<t>", small).replace("<e>", element)


def _read_single_forms() -> dict[str, tuple[Parameter, ...]]:
    functions = {}
    for template in filter(None, _SINGLE_FORMS.splitlines()):
        for line in _expand(template):
            name, _, words = line.partition(":")
            functions[name] = tuple(PARAMETERS.get(word) or _self(word) for word in words.split())
    return functions


def _array_forms(name: str, element: str) -> dict[str, tuple[Parameter, ...]]:
    array = f"std::vector< {element} >"
    difference = f"{array}::difference_type"
    itself = Parameter(
        f"{array} *", object_of=name, wrong=(5, "x", [1], object()), none_is_null=True
    )
    position = Parameter(difference, good=0, wrong=(1.0, "0", None), overflow=(2**63, -(2**63) - 1))
    return {
        f"delete_{name}": (itself,),
        f"{name}___len__": (itself,),
        f"{name}___bool__": (itself,),
        f"{name}___nonzero__": (itself,),
        f"{name}_iterator": (itself,),
        f"{name}___getslice__": (itself, position, position),
        f"{name}___delslice__": (itself, position, position),
    }


#: Functions with one form, by name.
FUNCTIONS: dict[str, tuple[Parameter, ...]] = _read_single_forms()
for _name, _element in ARRAYS.items():
    FUNCTIONS.update(_array_forms(_name, _element))


@dataclass(frozen=True)
class Overloads:
    """The forms of an overloaded function."""

    least: int
    most: int
    prototypes: tuple[str, ...]


_S = "std::string const &"
_OVERLOADS: dict[str, tuple[int, int, tuple[str, ...]]] = {
    "Group_get_independent_variable": (
        2,
        2,
        (
            f"SumaraApi::Group::GetIndependentVariable({_S}) const",
            "SumaraApi::Group::GetIndependentVariable"
            "(SumaraApi::IndependentVariableId const) const",
        ),
    ),
    "new_IndependentVariable": (
        3,
        4,
        tuple(
            f"SumaraApi::IndependentVariable::IndependentVariable({_S},{_S},{rest})"
            for rest in (
                f"{_ALLOCATED.format('double')} const &",
                f"{_ALLOCATED.format('std::string')} const &",
                "double const,double const",
            )
        ),
    ),
    "new_RunsIterator": (
        1,
        3,
        tuple(
            f"SumaraApi::RunsIterator::RunsIterator({forms})"
            for forms in (
                f"{_S},{_S},SumaraApi::SearchScope const",
                f"{_S},{_S}",
                f"{_S},SumaraApi::SearchScope const",
                _S,
            )
        ),
    ),
    "new_RunsIteratorRegex": (
        2,
        3,
        tuple(
            f"SumaraApi::RunsIteratorRegex::RunsIteratorRegex({_S},{_S}{rest})"
            for rest in (",SumaraApi::SearchScope const", "")
        ),
    ),
    "TabulonApi_write_output": (
        1,
        2,
        tuple(
            f"SumaraApi::TabulonApi::WriteOutput(SumaraApi::IOutputSpecification const &{rest})"
            for rest in (",SumaraApi::OverwriteBehaviour const", "")
        ),
    ),
    **{
        f"TabulonApi__{exported}_native_array": (
            strings,
            strings + 1,
            tuple(
                f"SumaraApi::TabulonApi::{native}({','.join([_S] * strings)}{rest})"
                for rest in (",SumaraApi::SearchScope const", "")
            ),
        )
        for exported, native, strings in (
            ("get_runs", "GetRuns", 1),
            ("get_runs_matching_name", "GetRunsMatchingName", 2),
            ("get_runs_matching_name_regex", "GetRunsMatchingNameRegex", 2),
        )
    },
    **{
        f"new_OutputGroup{axes}D_<T>": (
            4 + axes,
            5 + axes,
            tuple(
                f"SumaraApi::OutputGroup{axes}D< <e> >::OutputGroup{axes}D({','.join([_S] * 4)}"
                f"{',SumaraApi::IndependentVariable &' * axes}{rest})"
                for rest in (",SumaraApi::VariableDataFormat const", "")
            ),
        )
        for axes in (1, 2)
    },
    "Variable2D_<T>_get_independent_variable": (
        2,
        2,
        tuple(
            f"SumaraApi::Variable2D< <e> >::GetIndependentVariable({key}) const"
            for key in (_S, "SumaraApi::IndependentVariableId const")
        ),
    ),
    **{
        f"Variable2D_<T>_{exported}": (
            2,
            2,
            tuple(f"SumaraApi::Variable2D< <e> >::{native}({key})" for key in ("double const", _S)),
        )
        for exported, native in (
            ("get_mean_at_value", "GetMeanAtValue"),
            ("get_maximum_at_value", "GetMaximumAtValue"),
            ("get_minimum_at_value", "GetMinimumAtValue"),
            ("_get_data_at_value_native_array", "GetDataAtValue"),
        )
    },
    "Variable2D_<T>__get_data_at_value_numpy_from_vector": (
        2,
        2,
        tuple(
            f"SumaraApi::Variable2D< <e> >::_get_data_at_value_numpy_from_vector({key})"
            for key in (_S, "double const")
        ),
    ),
    **{
        f"Variable2D_<T>_get_{extreme}_contemporaneous_at_value": (
            3,
            3,
            tuple(
                f"SumaraApi::Variable2D< <e> >::Get{extreme.title()}ContemporaneousAtValue"
                f"({_S},{key})"
                for key in (_S, "double const")
            ),
        )
        for extreme in ("minimum", "maximum")
    },
    **{
        f"SwigPyIterator_{name}": (
            1,
            2,
            tuple(f"swig::SwigPyIterator::{name}({n})" for n in ("size_t", "")),
        )
        for name in ("incr", "decr")
    },
    "SwigPyIterator___sub__": (
        2,
        2,
        tuple(
            f"swig::SwigPyIterator::__sub__({x}) const"
            for x in ("ptrdiff_t", "swig::SwigPyIterator const &")
        ),
    ),
}


def _array_overloads(name: str, element: str) -> dict[str, tuple[int, int, tuple[str, ...]]]:
    array = f"std::vector< {element} >"
    spelled = element
    if element.startswith("std::vector< "):
        spelled = _ALLOCATED.format(element.removeprefix("std::vector< ").removesuffix(" >"))
    argument = f"{_ALLOCATED.format(spelled)} const &"
    other = f"std::vector< {spelled} > const &"
    index, size, value = (
        f"{array}::{kind}" for kind in ("difference_type", "size_type", "value_type")
    )
    cut = "SWIGPY_SLICEOBJECT *"

    def forms(operation: str, *parameters: str) -> tuple[str, ...]:
        return tuple(f"{array}::{operation}({form})" for form in parameters)

    return {
        f"new_{name}": (0, 2, forms("vector", "", other, size, f"{size},{value} const &")),
        f"{name}___getitem__": (
            2,
            2,
            (*forms("__getitem__", cut), f"{array}::__getitem__({index}) const"),
        ),
        f"{name}___setitem__": (
            2,
            3,
            forms("__setitem__", f"{cut},{argument}", cut, f"{index},{value} const &"),
        ),
        f"{name}___delitem__": (2, 2, forms("__delitem__", index, cut)),
        f"{name}___setslice__": (
            3,
            4,
            forms("__setslice__", f"{index},{index}", f"{index},{index},{argument}"),
        ),
    }


def _read_overloads() -> dict[str, Overloads]:
    forms = dict(_OVERLOADS)
    for name, element in ARRAYS.items():
        forms.update(_array_overloads(name, element))
    read = {}
    for template, (least, most, prototypes) in forms.items():
        for suffix, _, element in FAMILY if "<T>" in template else FAMILY[:1]:
            read[template.replace("<T>", suffix)] = Overloads(
                least, most, tuple(line.replace("<e>", element) for line in prototypes)
            )
    return read


#: Functions with several forms, by name.
OVERLOADS: dict[str, Overloads] = _read_overloads()


def overload_text(name: str) -> str:
    """The error of a call that no form of the function takes."""
    lines = "".join(f"    {line}\n" for line in OVERLOADS[name].prototypes)
    return (
        f"Wrong number or type of arguments for overloaded function '{name}'.\n"
        f"  Possible C/C++ prototypes are:\n{lines}"
    )


REGISTRATION = {
    *(f"{name}_swigregister" for name in (*CLASSES, *ARRAYS)),
    *(f"{name}_swiginit" for name in (*CONSTRUCTED, *ARRAYS)),
}

#: The integer constants in the order of the module, without the housekeeping one before them.
CONSTANTS: dict[str, int] = {
    f"{enumeration}_{name}": value
    for enumeration, members in {
        "DataTypeSpecifier": {"ReadAsSerialisedType": 0, "ReadAsFloat32": 1, "ReadAsFloat64": 2},
        "VariableDataType": {"Float32": 0, "Float64": 1, "Int32": 2},
        "VariableDataFormat": {"ASCII": 0, "Binary": 1},
        "SearchScope": {"RecursiveSearch": 0, "RootDirectoryOnly": 1},
        "CaseSensitivity": {"IgnoreCase": 0, "MatchCase": 1},
        "AxisTypeId": {"IntervalAxis": 0, "LabelledValueAxis": 1, "LabelledStringAxis": 2},
        "TEFileCreation": {"Create": 0, "DoNotCreate": 1},
        "OverwriteBehaviour": {"OverwriteExistingOutput": 0, "DoNotOverwriteExistingOutput": 1},
        "CalculationType": {
            "AllCalculationTypes": -5,
            "AllTurbineSimulations": -4,
            "AllSupportingCalculations": -3,
            "AllPostProcessingCalculations": -2,
            "Unknown": -1,
            "WindTurbulence": 3,
            "AerodynamicInformation": 4,
            "PerformanceCoefficients": 5,
            "SteadyPowerCurve": 6,
            "SteadyOperationalLoads": 7,
            "SteadyParkedLoads": 8,
            "DynamicPowerCurve": 9,
            "PowerProductionSimulation": 10,
            "NormalStopSimulation": 11,
            "EmergencyStopSimulation": 12,
            "StartUpSimulation": 13,
            "IdlingSimulation": 14,
            "ParkedSimulation": 15,
            "BasicStatistics": 16,
            "FourierHarmonicsAnalysis": 17,
            "PeriodicComponentAnalysis": 18,
            "ExtremePredictionAnalysis": 19,
            "AutoSpectralDensityAnalysis": 20,
            "CrossSpectralDensityAnalysis": 21,
            "ProbabilityDensityAnalysis": 22,
            "PeakAnalysis": 23,
            "LevelCrossingFrequencyAnalysis": 24,
            "RainflowCycleAnalysis": 25,
            "FatigueAnalysis": 26,
            "AnnualEnergyYieldAnalysis": 27,
            "ChannelCombination": 28,
            "UltimateLoadsAnalysis": 29,
            "UltimateLoadCasesAnalysis": 30,
            "FlickerAnalysis": 31,
            "EarthquakeGeneration": 32,
            "ModelLinearisation": 33,
            "ExtremeLoadExtrapolation": 35,
            "ElectricalPerformance": 38,
            "SeaState": 40,
            "MooringStiffness": 41,
            "UserDefined": 1000,
        },
        "CompletionState": {
            "AllCompletionStates": -3,
            "UnsuccessfulRunsOnly": -2,
            "Unknown": -1,
            "InProgress": 0,
            "CompletedNormally": 1,
            "Terminated": 2,
            "Errored": 3,
            "Aborted": 4,
        },
        "IndependentVariableId": {
            "PrimaryIndependentVariable": 0,
            "SecondaryIndependentVariable": 1,
        },
        "FileFormat": {"Tolvan": 0},
    }.items()
    for name, value in members.items()
}

#: The variables of the link object, in the order in which they were linked.
VARIABLES = {
    "Run_termination_file_extension": ".$TE",
    "Run_verification_file_extension": ".$VE",
    "Run_message_file_extension": ".$ME",
}
