"""Results of wind-turbine simulation runs.

What the library offers stands in ``tabulon.api``, and is handed on here.
"""

from tabulon import api as api
from tabulon.api import *  # noqa: F403
