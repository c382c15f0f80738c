"""A random walk over what a script may do, beside a model of what it must see.

The walk gets runs, groups, variables and data, keeps arrays and writes into them, drops objects,
unloads, changes settings, and meanwhile rewrites, removes and puts back the files of the run.
"""

from __future__ import annotations

import gc
import os
import shutil
import tempfile
from pathlib import Path
from typing import Any

import _TabulonAPI_Python as native
from hypothesis import HealthCheck, settings
from hypothesis import strategies as st
from hypothesis.stateful import RuleBasedStateMachine, initialize, invariant, precondition, rule
from support.cache_model import TARGETS, GroupCache, LibraryModel, Refused, RunCache
from support.changing_run import SHAPES, ChangingRun
from support.data_work import WORK, DataWork, HeldArray, HeldVariable
from support.flat import DATA_TYPES, SUFFIXES, Flat, get_run
from tabulon import api

EXAMPLES = int(os.environ.get("TABULON_STATEFUL_EXAMPLES", "200"))
STEPS = int(os.environ.get("TABULON_STATEFUL_STEPS", "30"))
CACHE = "TabulonApi_CacheSettings_set_"
HOLDS = ("runs", "groups", "variables", "arrays")
NAMES = sorted({name for shape in SHAPES for name in shape.names})

places = st.integers(0, len(SHAPES) - 1)
#: Which of the objects that are held.
picks = st.integers(0, 1000)


def use_defaults() -> None:
    """Begin as a new process does."""
    api.clear_runs()
    api.set_buffered_read_enabled(True)
    api.set_run_caching_enabled(True)
    api.set_data_type_for_reading(0)


class Walk(RuleBasedStateMachine, DataWork):
    """The walk; each rule is something that a script, or another program, may do."""

    @initialize(texts=st.tuples(*[st.booleans() for _ in SHAPES]))
    def start(self, texts: tuple[bool, ...]) -> None:
        use_defaults()
        self.root = Path(tempfile.mkdtemp(prefix="tabulon"))
        folder = self.root / "runs"
        folder.mkdir()
        self.files = ChangingRun(folder, texts)
        self.model = LibraryModel(self.files)
        self.runs: list[tuple[Flat, RunCache]] = []
        self.groups: list[tuple[Flat, RunCache, int]] = []
        self.variables: list[HeldVariable] = []
        self.arrays: list[HeldArray] = []
        self.get_a_run(by_search=False)
        self.get_all_variables(0)

    def teardown(self) -> None:
        if hasattr(self, "root"):
            self.runs, self.groups, self.variables, self.arrays = [], [], [], []
            use_defaults()
            shutil.rmtree(self.root)

    def is_alive(self, run: RunCache) -> bool:
        return self.model.cached is run or any(held is run for _, held in self.runs)

    # Runs.

    @rule(by_search=st.booleans())
    def get_a_run(self, by_search: bool) -> None:
        if not by_search:
            answer = self.ask(self.model.get_run, lambda: get_run(self.files.folder))
            if answer is not None:
                self.hold(self.runs, (answer[1], answer[0]))
            return
        expected = self.model.search()
        found = native.TabulonApi__get_runs_native_array(str(self.files.folder))
        assert len(found) == (0 if expected is None else 1)
        if expected is not None:
            self.hold(self.runs, (Flat("Run", found[0]), expected))

    @precondition(lambda self: self.runs)
    @rule(which=picks)
    def read_the_ending(self, which: int) -> None:
        flat, run = self.runs[which % len(self.runs)]
        answer = self.ask(run.ending_content, flat.get_termination_file_content)
        if answer is not None:
            assert answer[0] == answer[1]

    # Groups.

    @precondition(lambda self: self.runs)
    @rule(which=picks, place=st.none() | places)
    def get_groups(self, which: int, place: int | None) -> None:
        flat, run = self.runs[which % len(self.runs)]
        target = TARGETS[self.model.target]
        if place is None:
            answer = self.ask(lambda: run.get_all_groups(target), flat._get_all_groups_native_array)
        else:
            name = SHAPES[place].name
            answer = self.ask(
                lambda: [run.get_group(name, target)], lambda: [flat.get_group(name.upper())]
            )
        for place_found, found in zip(*answer, strict=True) if answer else ():
            self._check_group(Flat("Group", found), run, place_found)

    def _check_group(self, flat: Flat, run: RunCache, place: int) -> None:
        shape = SHAPES[place]
        assert flat.get_name() == shape.name
        assert flat._get_variable_names_native_array() == shape.names
        assert flat.get_variable_data_type() == DATA_TYPES[run.registry[place].dtype]
        self.hold(self.groups, (flat, run, place))

    @precondition(lambda self: self.groups)
    @rule(which=picks, variable=picks)
    def get_a_variable_of_a_group(self, which: int, variable: int) -> None:
        flat, run, place = self.groups[which % len(self.groups)]
        shape = SHAPES[place]
        name = shape.names[variable % len(shape.names)]
        known = run.registry.get(place)
        dtype = shape.stored if known is None else known.dtype

        def predict() -> GroupCache:
            if not self.is_alive(run):
                raise Refused("the run it belongs to was unloaded")
            found = run.find(name, shape.name, TARGETS[self.model.target], exact=True)
            if found.dtype != dtype:
                raise Refused("The variable was requested using a data type that does not match")
            return found

        axes = 2 if shape.two_axes else 1
        call = getattr(flat, f"_GROUPPREFIX_get_variable_{axes}d_{dtype}")
        self._hold_variable(run, name, dtype, self.ask(predict, lambda: call(name)))

    # Variables.

    @precondition(lambda self: self.runs)
    @rule(which=picks, name=st.sampled_from(NAMES), group=st.none() | places, kind=picks)
    def get_a_variable(self, which: int, name: str, group: int | None, kind: int) -> None:
        flat, run = self.runs[which % len(self.runs)]
        home = next(p for p, shape in enumerate(SHAPES) if name in shape.names)
        asked = "" if group is None else SHAPES[group].name
        dtype = self._likely_type(run, home if group is None else group, kind)
        two_axes = SHAPES[home].two_axes

        def predict() -> GroupCache:
            found = run.find(name, asked, TARGETS[self.model.target])
            if found.dtype != dtype:
                raise Refused("The variable was requested using a data type that does not match")
            return found

        way = f"_RUNPREFIX_get_variable_{2 if two_axes else 1}d"
        way += "" if group is None else "_from_specific_output_group"
        call = getattr(flat, f"{way}_{dtype}")
        names = (name.lower(),) if group is None else (name.lower(), asked.lower())
        self._hold_variable(run, name, dtype, self.ask(predict, lambda: call(*names)))

    @precondition(lambda self: self.runs)
    @rule(which=picks)
    def get_all_variables(self, which: int) -> None:
        for place, shape in enumerate(SHAPES):
            for name in shape.names:
                self.get_a_variable(which, name, place, kind=1)

    def _likely_type(self, run: RunCache, place: int, kind: int) -> str:
        if kind % 8 == 0:
            return list(SUFFIXES)[kind % 3]
        known = run.registry.get(place)
        if known is not None:
            return known.dtype
        return TARGETS[self.model.target] or SHAPES[place].stored

    def _hold_variable(
        self, run: RunCache, name: str, dtype: str, answer: tuple[Any, object] | None
    ) -> None:
        if answer is None:
            return
        group, pointer = answer
        shape = SHAPES[group.place]
        flat = Flat(f"Variable{2 if shape.two_axes else 1}D_{SUFFIXES[dtype]}", pointer)
        variable = Flat("Variable", pointer)
        assert variable.get_name() == name
        assert variable.get_parent_group_name() == shape.name
        assert variable.get_data_type() == DATA_TYPES[dtype]
        self.hold(self.variables, HeldVariable(flat, run, group, shape.names.index(name)))

    @precondition(lambda self: self.runs)
    @rule(which=picks, name=st.sampled_from(NAMES), group=st.none() | places)
    def unload(self, which: int, name: str, group: int | None) -> None:
        flat, run = self.runs[which % len(self.runs)]
        if group is None:
            answer = self.ask(lambda: run.unload(name, ""), lambda: flat.unload_variable(name))
        else:
            asked = SHAPES[group].name
            answer = self.ask(
                lambda: run.unload(name, asked),
                lambda: flat.unload_variable_from_specific_group(name, asked),
            )
        assert answer is None or answer[0] is answer[1]

    # Data and figures.

    @precondition(lambda self: self.variables)
    @rule(steps=st.lists(st.tuples(st.sampled_from(WORK), picks, picks), min_size=6, max_size=25))
    def do_work(self, steps: list[tuple[str, int, int]]) -> None:
        """Work with the variables that are held, as scripts mostly do."""
        for what, which, how in steps:
            held = self.variables[which % len(self.variables)]
            getattr(self, f"_{what}")(held, how % held.shape.rows, how // 2)

    # Drops.

    @rule(what=st.sampled_from((*HOLDS, "cache", "all but arrays", "all")), which=picks)
    def drop(self, what: str, which: int) -> None:
        if what in HOLDS:
            held = getattr(self, what)
            if held:
                self._drop_one(held.pop(which % len(held)), by_its_function=which % 2 == 0)
            return
        native.TabulonApi_clear_runs()
        self.model.cached = None
        if what != "cache":
            self.runs, self.groups, self.variables = [], [], []
            self.arrays = self.arrays if what == "all but arrays" else []
        gc.collect(0)  # the whole heap of the tests would take longer than the walk

    def _drop_one(self, held: object, *, by_its_function: bool) -> None:
        if by_its_function and isinstance(held, HeldVariable):
            getattr(native, f"delete_{held.flat.family}")(held.flat.pointer)

    # Settings.

    @rule(what=st.sampled_from(("buffered_read", "run_caching", "type")), value=picks)
    def change_a_setting(self, what: str, value: int) -> None:
        on = value % 3 != 0
        if what == "type":
            self.model.target = value % len(TARGETS)
            getattr(native, f"{CACHE}data_type_for_reading")(self.model.target)
        elif what == "run_caching":
            self.model.set_caching(value=on)
            getattr(native, f"{CACHE}run_caching_enabled")(on)
        else:
            self.set_buffered(on=on, by_package=value % 2 == 0)

    # What other programs do to the files.

    @rule(what=st.sampled_from(("all", "noted", "ending", "one", "missing")), place=places)
    def write_files(self, what: str, place: int) -> None:
        files = self.files
        for each in range(len(SHAPES)):
            wanted = what in ("all", "noted") or (what == "one" and each == place)
            if wanted or (what == "missing" and files.headers[each] is None):
                files.write_header(each)
            if wanted or (what == "missing" and files.data[each] is None):
                files.write_data(each)
        if what in ("noted", "ending") or (what == "missing" and files.ending is None):
            files.write_ending()

    @rule(what=st.sampled_from(("header", "data", "ending")), place=places)
    def remove_a_file(self, what: str, place: int) -> None:
        remove = getattr(self.files, f"remove_{what}")
        remove() if what == "ending" else remove(place)

    @invariant()
    def arrays_keep_their_values(self) -> None:
        for held in getattr(self, "arrays", ()):
            assert held.array.tolist() == held.loaded.values.tolist()


class TestAnyOrderOfCallsAgreesWithTheModel(Walk.TestCase):
    settings = settings(
        max_examples=EXAMPLES,
        stateful_step_count=STEPS,
        deadline=None,
        suppress_health_check=[HealthCheck.too_slow, HealthCheck.data_too_large],
        print_blob=True,
    )
