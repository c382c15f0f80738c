"""Results of wind-turbine simulation runs.

A run is found by its directory and name, or by a search. It has output groups, and these have
variables over one or two independent variables, whose data come as NumPy arrays::

    run = tabulon.get_run("results", "powprod_12ms")
    power = run.get_variable_1d("Electrical power")
    print(power.get_mean(), power.get_siunit(), power.get_data()[:3])

Enumerators are there as members of a class, ``CompletionState.Terminated``, and as plain integers,
``CompletionState_Terminated``. What the library refuses is a ``RuntimeError`` with its words.
"""

# Each module lists in __all__ what is public.
# ruff: noqa: F403

from tabulon._api import *
from tabulon._arrays import *
from tabulon._constants import *
from tabulon._enumerations import *
from tabulon._group import *
from tabulon._output import *
from tabulon._run import *
from tabulon._search import *
from tabulon._settings import *
from tabulon._variables import *
