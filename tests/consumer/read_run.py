"""Reads a run with the package of the build tree, as a user's script does."""

import argparse
import math

import numpy as np
from tabulon import api

parser = argparse.ArgumentParser()
parser.add_argument("directory")
parser.add_argument("run")
arguments = parser.parse_args()

run = api.get_run(arguments.directory, arguments.run)
groups = [g for g in run.get_all_groups() if g.get_number_of_independent_variables() == 1]
assert groups
for group in groups:
    variable = run.get_variable_1d(group.get_variable_names()[0])
    data = variable.get_data()
    assert isinstance(data, np.ndarray)
    assert len(data) == group.get_data_point_count()
    # A header keeps its statistics with few digits.
    assert math.isclose(data.mean(), variable.get_mean(), rel_tol=1e-3, abs_tol=1e-3)
    print(f"{group.get_name()}: {variable.get_name()} [{variable.get_siunit()}] {data.shape}")
