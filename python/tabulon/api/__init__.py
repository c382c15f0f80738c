"""The library word for word: its classes and functions under the names that it gives them.

A run is found by its directory and name, or by a search. It has output groups, and these have
variables over one or two independent variables, whose data come as NumPy arrays::

    from tabulon import api

    run = api.get_run("results", "powprod_12ms")
    power = run.get_variable_1d("Electrical power")
    print(power.get_mean(), power.get_siunit(), power.get_data()[:3])

Enumerators are there as members of a class, ``CompletionState.Terminated``, and as plain integers,
``CompletionState_Terminated``. What the library refuses is a ``RuntimeError`` with its words.
"""

# Each module lists in __all__ what is public.
# ruff: noqa: F403

from tabulon.api._arrays import *
from tabulon.api._constants import *
from tabulon.api._enumerations import *
from tabulon.api._group import *
from tabulon.api._operations import *
from tabulon.api._output import *
from tabulon.api._run import *
from tabulon.api._search import *
from tabulon.api._settings import *
from tabulon.api._variables import *
