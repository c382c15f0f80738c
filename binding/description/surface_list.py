"""What the extension module exports, as data for its tests.

Each type is written as the error texts of the module write it.
"""

from __future__ import annotations

import json

from .interface import Class, Function, Interface, spelled
from .types import element_of


def _types(function: Function, exported: Class) -> tuple[str, ...]:
    form = function.forms[0]
    types = [spelled(parameter.type) for parameter in form.parameters]
    if function.kind in ("method", "destructor"):
        # The texts of arrays leave constness out.
        constness = " const *" if form.is_const and not exported.is_array else " *"
        types.insert(0, spelled(exported.native) + constness)
    return tuple(types)


def _overloads(function: Function) -> tuple[int, int, tuple[str, ...]]:
    itself = function.kind == "method"
    counts = [len(form.parameters) + itself for form in function.forms]
    return min(counts), max(counts), tuple(form.prototype for form in function.forms)


def surface_list(interface: Interface) -> str:
    """Return the list as JSON."""
    classes = [exported for exported in interface.classes if not exported.is_array]
    arrays = [exported for exported in interface.classes if exported.is_array]
    pairs = [
        (function, exported)
        for exported in interface.classes
        for function in exported.functions.values()
    ]
    surface = {
        "classes": {found.name: spelled(found.native) for found in classes},
        "constructed": [found.name for found in classes if found.has_constructor],
        "arrays": {found.name: spelled(element_of(found.native) or "") for found in arrays},
        "functions": {
            function.flat_name: _types(function, exported)
            for function, exported in pairs
            if len(function.forms) == 1
        },
        "overloads": {
            function.flat_name: _overloads(function)
            for function, _ in pairs
            if len(function.forms) > 1
        },
        "constants": interface.constants,
    }
    return json.dumps(surface, indent=1) + "\n"
