"""The enumerations of the library as classes.

Members are integers, and go where the library asks for one.
"""

from enum import IntEnum

import _TabulonAPI_Python as _native

from tabulon._vocabulary import CalculationType, CompletionState

__all__ = [
    "AxisTypeId",
    "CalculationType",
    "CaseSensitivity",
    "CompletionState",
    "DataTypeSpecifier",
    "FileFormat",
    "IndependentVariableId",
    "OverwriteBehaviour",
    "SearchScope",
    "TEFileCreation",
    "VariableDataFormat",
    "VariableDataType",
]


class DataTypeSpecifier(IntEnum):
    """The type in which data is read."""

    ReadAsSerialisedType = _native.DataTypeSpecifier_ReadAsSerialisedType
    ReadAsFloat32 = _native.DataTypeSpecifier_ReadAsFloat32
    ReadAsFloat64 = _native.DataTypeSpecifier_ReadAsFloat64


class VariableDataType(IntEnum):
    """The type of a variable's values."""

    Float32 = _native.VariableDataType_Float32
    Float64 = _native.VariableDataType_Float64
    Int32 = _native.VariableDataType_Int32


class VariableDataFormat(IntEnum):
    """The form of a group's data file."""

    ASCII = _native.VariableDataFormat_ASCII
    Binary = _native.VariableDataFormat_Binary


class SearchScope(IntEnum):
    """How far a search for runs goes."""

    RecursiveSearch = _native.SearchScope_RecursiveSearch
    RootDirectoryOnly = _native.SearchScope_RootDirectoryOnly


class CaseSensitivity(IntEnum):
    """How a search compares run names."""

    IgnoreCase = _native.CaseSensitivity_IgnoreCase
    MatchCase = _native.CaseSensitivity_MatchCase


class AxisTypeId(IntEnum):
    """The kind of values of an independent variable."""

    IntervalAxis = _native.AxisTypeId_IntervalAxis
    LabelledValueAxis = _native.AxisTypeId_LabelledValueAxis
    LabelledStringAxis = _native.AxisTypeId_LabelledStringAxis


class TEFileCreation(IntEnum):
    """Whether writing an output group writes a termination file too."""

    Create = _native.TEFileCreation_Create
    DoNotCreate = _native.TEFileCreation_DoNotCreate


class OverwriteBehaviour(IntEnum):
    """What writing does where there is a header file already."""

    OverwriteExistingOutput = _native.OverwriteBehaviour_OverwriteExistingOutput
    DoNotOverwriteExistingOutput = _native.OverwriteBehaviour_DoNotOverwriteExistingOutput


class IndependentVariableId(IntEnum):
    """The place of an independent variable in its group."""

    PrimaryIndependentVariable = _native.IndependentVariableId_PrimaryIndependentVariable
    SecondaryIndependentVariable = _native.IndependentVariableId_SecondaryIndependentVariable


class FileFormat(IntEnum):
    """The format of what is written."""

    Tolvan = _native.FileFormat_Tolvan
