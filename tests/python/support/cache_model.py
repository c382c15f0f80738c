"""What the library is to know of a changing run: a model of its caches in plain Python.

A run, the groups that it has read and the data of their variables are kept as of the time at which
each was read. Nothing here asks the library; what it refuses is `Refused` with its words.
"""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any

import numpy as np
from numpy.typing import NDArray

from support.changing_run import SHAPES, ChangingRun, data_figures, ending_text, stored_figures

NOT_THERE = "The file does not exist"
TARGETS = {0: None, 1: "float32", 2: "float64"}


class Refused(Exception):  # noqa: N818
    """A request that the library answers with an error that holds these words."""

    @property
    def words(self) -> str:
        return str(self.args[0])


@dataclass
class Loaded:
    """The values of a variable at a secondary index, which scripts may change through arrays."""

    values: NDArray[Any]
    changed: bool = False


class Registry(dict[int, "GroupCache"]):
    """The groups that a run has read since it last noticed a change."""

    def __init__(self, *, buffered: bool) -> None:
        super().__init__()
        self.buffered = buffered


@dataclass
class GroupCache:
    """An output group in a run's memory."""

    place: int
    dtype: str
    registry: Registry
    preview: bool = True
    #: Version of the header whose figures were read.
    figures: int | None = None
    #: Version of the data that lies in the raw buffer.
    buffer: int | None = None
    loaded: dict[tuple[int, int], Loaded] = field(default_factory=dict)

    @property
    def is_whole(self) -> bool:
        return len(self.loaded) == len(SHAPES[self.place].names) * SHAPES[self.place].rows


@dataclass
class Entry:
    """A place where a name was found; unloading empties it, and the name stays."""

    place: int
    filled: bool = True


class RunCache:
    """A run, as the library holds it."""

    def __init__(self, files: ChangingRun, *, buffered: bool) -> None:
        self.files = files
        self.time: int | None = None
        self.headers: list[int] = []
        self.registry = Registry(buffered=buffered)
        self.entries: dict[str, list[Entry]] = {}
        self.groups: list[int] = []
        self.is_supported: bool | None = None
        self.ending = ""

    # Change of the termination file: whoever asks first notices it, and nobody after that.

    def has_changed(self) -> bool:
        now = self.files.ending
        if now is None:
            raise Refused("last_write_time")
        before, self.time = self.time, now
        return before is not None and before != now

    def note_time(self) -> None:
        if self.time is None:
            self.time = self.files.ending

    def refresh(self) -> bool:
        if not self.has_changed():
            return False
        self.headers, self.groups, self.entries = [], [], {}
        self.registry = Registry(buffered=self.registry.buffered)
        return True

    def ending_content(self) -> str:
        if self.ending and not self.has_changed():
            return self.ending
        self.note_time()
        self.ending = ""
        if self.files.ending is None:
            raise Refused("File not found")
        self.ending = ending_text(self.files.ending)
        return self.ending

    # Groups and variables.

    def list_headers(self) -> None:
        if not self.headers:
            self.note_time()
            self.headers = self.files.listed()

    def group(self, place: int, target: str | None) -> GroupCache:
        """Return a group as it was read; it is read now if it was not."""
        known = self.registry.get(place)
        if known is not None:
            if target not in (None, known.dtype):
                raise Refused("Target type for group cannot be changed")
            return known
        if self.files.headers[place] is None:
            raise Refused(NOT_THERE)
        known = self.registry[place] = GroupCache(
            place, target or SHAPES[place].stored, self.registry
        )
        return known

    def read_on(self, target: str | None) -> None:
        """Read headers as far as can be; one may spell the name of a group as asked."""
        try:
            for place in self.headers:
                self.group(place, target)
        except Refused:
            pass

    def find(self, name: str, group: str, target: str | None, *, exact: bool = False) -> GroupCache:
        """Return the group in which a name is found, in all groups or in one.

        The name of the group is asked for in another case, or `exact`.
        """
        if self.headers:
            self.refresh()
        entries = self.entries.get(name, [])
        if entries:
            entry = self._chosen(entries, group, tolerant=True)
            if entry is not None:
                if group and not exact:
                    self.read_on(target)
                if not entry.filled:
                    self.group(entry.place, target)
                    entry.filled = True
                return self.registry[entry.place]
        self.list_headers()
        found = []
        for place in self.headers:
            self.group(place, target)
            if group in ("", SHAPES[place].name) and name in SHAPES[place].names:
                found.append(place)
        for place in found:
            self._fill(name, place)
        entries = self.entries.get(name, [])
        if not entries:
            raise Refused("The variable was not found.")
        entry = self._chosen(entries, group, tolerant=False)
        assert entry is not None
        return self.registry[entry.place]

    def _fill(self, name: str, place: int) -> None:
        entries = self.entries.setdefault(name, [])
        for entry in entries:
            if entry.place == place:
                entry.filled = True
                return
        entries.append(Entry(place))

    @staticmethod
    def _chosen(entries: list[Entry], group: str, *, tolerant: bool) -> Entry | None:
        if not group:
            if len(entries) > 1:
                raise Refused("The variable was found in more than one output group")
            return entries[0]
        for entry in entries:
            if SHAPES[entry.place].name == group:
                return entry
        if not tolerant:
            raise Refused("The variable was found but not in the specified output group")
        return None

    def get_group(self, name: str, target: str | None) -> int:
        if self.groups and not self.refresh():
            known = [place for place in self.groups if SHAPES[place].name == name]
            if known:
                self.read_on(target)
                return known[0]
        self._load_groups(name, target)
        known = [place for place in self.groups if SHAPES[place].name == name]
        if not known:
            raise Refused("Specific group was not found")
        return known[0]

    def get_all_groups(self, target: str | None) -> list[int]:
        whole = bool(self.groups) and not self.refresh() and len(self.groups) == len(self.headers)
        if not whole:
            self._load_groups(None, target)
        return list(self.groups)

    def _load_groups(self, name: str | None, target: str | None) -> None:
        if self.is_supported is None:
            self.note_time()
            self.is_supported = bool(self.groups or self.files.listed())
        if not self.is_supported:
            raise Refused("The request cannot be fulfilled for an unsupported calculation type")
        self.list_headers()
        if name is not None:
            found = self._place_of(name, target)
            if found is not None:
                self._hand_out(found)
            return
        for place in self.headers:
            self.group(place, target)
            if place not in self.groups:
                self._hand_out(place)

    def _place_of(self, name: str, target: str | None) -> int | None:
        """Return the place of a group that is asked for in another case."""
        found = None
        try:
            for place in self.headers:
                self.group(place, target)
                if SHAPES[place].name == name:
                    found = place
        except Refused:
            if found is None:
                raise
        return found

    def _hand_out(self, place: int) -> None:
        for each in SHAPES[place].names:
            self._fill(each, place)
        self.groups.append(place)

    def unload(self, name: str, group: str) -> bool:
        entries = self.entries.get(name, [])
        if not entries:
            return False
        try:
            entry = self._chosen(entries, group, tolerant=False)
        except Refused:
            raise Refused("The variable to remove from the cache was not found") from None
        assert entry is not None
        if entry.filled:
            loaded = self.registry[entry.place].loaded
            variable = SHAPES[entry.place].names.index(name)
            for key in [key for key in loaded if key[0] == variable]:
                del loaded[key]
        entry.filled = False
        return True

    # Data and figures.

    def release_buffers(self) -> None:
        self.registry.buffered = False
        for group in self.registry.values():
            group.buffer = None

    def load(self, group: GroupCache, variable: int, rows: range) -> list[Loaded]:
        """Return the values of a variable; what is not in memory is read now."""
        group.preview = False
        missing = [row for row in rows if (variable, row) not in group.loaded]
        if missing:
            values = SHAPES[group.place].values(self._version(group)).astype(group.dtype)
            for row in missing:
                group.loaded[variable, row] = Loaded(values[variable, row].copy())
        if group.is_whole or not group.registry.buffered:
            group.buffer = None
        return [group.loaded[variable, row] for row in rows]

    def _version(self, group: GroupCache) -> int:
        """Return the version of the data that a read finds: that of the buffer, or of the file."""
        version = self.files.data[group.place] if group.buffer is None else group.buffer
        if version is None:
            raise Refused(NOT_THERE)
        if group.registry.buffered and not self.files.texts[group.place]:
            group.buffer = version
        return version

    def figures(self, group: GroupCache, row: int) -> tuple[NDArray[Any], NDArray[Any]] | None:
        """Return the figures that a group tells; None if changed data makes them doubtful."""
        shape = SHAPES[group.place]
        if group.figures is None and (group.preview or not group.is_whole):
            group.figures = self.files.headers[group.place]
            if group.figures is None:
                raise Refused(NOT_THERE)
        series = [group.loaded.get((variable, row)) for variable in range(len(shape.names))]
        in_memory = [each for each in series if each is not None]
        if group.preview or len(in_memory) < len(series):
            assert group.figures is not None
            extremes, means = stored_figures(shape, group.figures)
            return extremes[:, :, row], means[:, row]
        if any(each.changed for each in in_memory):
            return None
        extremes, means = data_figures(np.stack([each.values for each in in_memory])[:, None])
        return extremes[:, :, 0], means[:, 0]


class LibraryModel:
    """The process-wide state: the cached run, and the settings."""

    def __init__(self, files: ChangingRun) -> None:
        self.files = files
        self.cached: RunCache | None = None
        self.buffered, self.caching, self.target = True, True, 0

    def get_run(self) -> RunCache:
        known, self.cached = self.cached, None
        if self.files.ending is None:
            raise Refused("was previouly cached" if known else "Run was not found")
        if known is not None and not known.has_changed():
            self.cached = known
            return known
        run = RunCache(self.files, buffered=self.buffered)
        run.note_time()
        self.cached = run if self.caching else None
        return run

    def search(self) -> RunCache | None:
        """Return the run that a search finds: the cached one as it stands, or a new one."""
        if self.files.ending is None:
            return None
        run = self.cached or RunCache(self.files, buffered=self.buffered)
        if self.caching:
            self.cached = run
        return run

    def set_buffered(self, *, value: bool) -> None:
        if self.cached is not None:
            self.cached.release_buffers()
        self.buffered = value

    def set_caching(self, *, value: bool) -> None:
        if not value:
            self.cached = None
        self.caching = value
