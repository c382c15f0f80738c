"""The engine ``"tabulon"`` of xarray.

xarray finds it by its entry point::

    xr.open_dataset("results/powprod_12ms.$TE", engine="tabulon", group="Tower loads")
"""

from __future__ import annotations

import os
from collections.abc import Iterable
from typing import Any, ClassVar

import numpy as np
import xarray as xr
from xarray.backends import BackendEntrypoint

from tabulon._errors import DataError
from tabulon._group import Group
from tabulon._run import open_run

__all__ = ["TabulonEntrypoint"]


class TabulonEntrypoint(BackendEntrypoint):
    """Opens groups of runs, by a header or by a termination file and the group's name."""

    description: ClassVar[str] = "Open results of wind-turbine simulation runs"
    open_dataset_parameters: ClassVar[tuple[str, ...]] = (
        "filename_or_obj",
        "drop_variables",
        "group",
        "partial",
    )

    def guess_can_open(self, filename_or_obj: Any) -> bool:  # noqa: ANN401 - as of xarray
        """Return whether a file is a header or a termination file."""
        if not isinstance(filename_or_obj, str | os.PathLike):
            return False
        suffix = os.path.splitext(os.fspath(filename_or_obj))[1]  # noqa: PTH122
        return suffix == ".$TE" or (suffix[:2] == ".%" and suffix[2:].isdigit())

    def open_dataset(
        self,
        filename_or_obj: Any,  # noqa: ANN401 - as of xarray
        *,
        drop_variables: str | Iterable[str] | None = None,
        group: str | int | None = None,
        partial: bool = False,
    ) -> xr.Dataset:
        """Return a group as a Dataset, which reads what is asked of it.

        Parameters
        ----------
        filename_or_obj
            A header; or a termination file, or any other file of a run, with `group`.
        drop_variables
            Variables to leave out.
        group
            The name or number of the group; not needed for a header, or the only group of a run.
        partial
            As of ``tabulon.open_run``.

        Returns
        -------
        xarray.Dataset
            The dataset of ``Group.to_xarray``, and a coordinate `run` of one value, the path: by it
            ``open_mfdataset`` puts runs beside each other.

        Raises
        ------
        RunNotFoundError, NameNotFoundError
            If there is no such run or group.
        DataError
            If a run has several groups, and `group` does not say which.
        """
        found = _group_of(os.fspath(filename_or_obj), group, partial)
        dataset = found.to_xarray()
        dropped = [drop_variables] if isinstance(drop_variables, str) else drop_variables or []
        dataset = dataset.drop_vars([name for name in dropped if name in dataset])
        path = np.array([found.run.path], dtype=object)
        return dataset.assign_coords(run=("run", path, {"long_name": "Run"}))

    def open_datatree(
        self,
        filename_or_obj: Any,  # noqa: ANN401 - as of xarray
        *,
        drop_variables: str | Iterable[str] | None = None,
        partial: bool = False,
    ) -> xr.DataTree:
        """Return a run as a DataTree, a child for each group; parameters as of ``open_dataset``."""
        tree = open_run(os.fspath(filename_or_obj), partial=partial).to_xarray()
        dropped = [drop_variables] if isinstance(drop_variables, str) else drop_variables or []
        for child in tree.children.values():
            child.dataset = child.to_dataset().drop_vars(dropped, errors="ignore")
        return tree

    def open_groups_as_dict(
        self,
        filename_or_obj: Any,  # noqa: ANN401 - as of xarray
        *,
        drop_variables: str | Iterable[str] | None = None,
        partial: bool = False,
    ) -> dict[str, xr.Dataset]:
        """Return the groups of a run as Datasets by their paths in the tree."""
        tree = self.open_datatree(filename_or_obj, drop_variables=drop_variables, partial=partial)
        return {node.path: node.to_dataset() for node in tree.subtree}


def _group_of(path: str, group: str | int | None, partial: bool) -> Group:
    run = open_run(path, partial=partial)
    suffix = os.path.splitext(path)[1]  # noqa: PTH122
    if group is None and suffix[:2] == ".%" and suffix[2:].isdigit():
        group = int(suffix[2:])
    if group is not None:
        return run.groups[group]
    groups = list(run.groups.values())
    if len(groups) != 1:
        names = ", ".join(repr(one.name) for one in groups) or "none"
        raise DataError(f"name the group: group=...; there are {names}", path=run.path)
    return groups[0]
