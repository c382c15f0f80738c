"""The shim through which calls of the system fail, built when it is first asked for."""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest


@pytest.fixture(scope="session")
def shim(tmp_path_factory: pytest.TempPathFactory) -> Path:
    compiler = shutil.which(os.environ.get("CXX", "c++"))
    if sys.platform != "linux" or compiler is None:
        pytest.skip("the shim is for Linux, and needs a C++ compiler")
    library = tmp_path_factory.mktemp("shim") / "libfaults.so"
    sources = sorted(Path(__file__).with_name("shim").glob("*.cpp"))
    options = ["-std=c++20", "-O1", "-fPIC", "-shared", "-Wall", "-Wextra"]
    subprocess.run([compiler, *options, "-o", library, *sources, "-ldl"], check=True)
    return library
