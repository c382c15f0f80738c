"""Configuration of the documentation site; `scripts/docs` builds it."""

from __future__ import annotations

import os
import re
import socket
import sys
from pathlib import Path

HERE = Path(__file__).parent
sys.path.insert(0, str(HERE / "_ext"))

project = "Tabulon"
author = "The Tabulon authors"
project_copyright = author
release = re.search(
    r"project\(Tabulon VERSION ([0-9.]+)", (HERE.parent / "CMakeLists.txt").read_text()
)[1]  # type: ignore[index]
version = release

extensions = [
    "command_reference",
    "cpp_reference",
    "flat_reference",
    "myst_nb",
    "numpydoc",
    "sphinx.ext.autodoc",
    "sphinx.ext.intersphinx",
    "sphinx.ext.viewcode",
    "sphinx_design",
]
exclude_patterns = ["_build", "_ext"]
nitpicky = False

# Pages and notebooks.
myst_enable_extensions = ["colon_fence", "deflist", "fieldlist"]
myst_heading_anchors = 3
nb_execution_mode = "cache"
nb_execution_cache_path = os.environ.get(
    "TABULON_NOTEBOOK_CACHE", str(HERE.parent / "build" / "cache" / "notebooks")
)
nb_execution_raise_on_error = True
nb_execution_timeout = 300
nb_merge_streams = True

# Kernels know nothing of who builds: no start-up files, and no word on how they are talked to.
IPYTHON = HERE.parent / "build" / "docs" / "ipython"
IPYTHON.joinpath("profile_default").mkdir(parents=True, exist_ok=True)
IPYTHON.joinpath("profile_default", "ipython_kernel_config.py").write_text(
    "c.IPKernelApp.log_level = 'ERROR'\n", encoding="utf-8"
)
os.environ["IPYTHONDIR"] = str(IPYTHON)

# The reference of the Python packages.
autodoc_typehints = "none"  # numpydoc sections tell the types
autodoc_member_order = "bysource"
numpydoc_show_class_members = False
numpydoc_xref_param_type = False


def reachable(host: str) -> bool:
    """Return whether a host can be asked; a build without a network has no links to others."""
    try:
        socket.create_connection((host, 443), timeout=2).close()
    except OSError:
        return False
    return True


intersphinx_mapping = {
    name: (f"https://{host}{path}", None)
    for name, host, path in (
        ("numpy", "numpy.org", "/doc/stable/"),
        ("pandas", "pandas.pydata.org", "/docs/"),
        ("xarray", "docs.xarray.dev", "/en/stable/"),
        ("dask", "docs.dask.org", "/en/stable/"),
    )
    if reachable(host)
}

# How it looks.
html_theme = "pydata_sphinx_theme"
html_title = "Tabulon"
html_static_path = ["_static"]
html_css_files = ["tabulon.css"]
html_show_sourcelink = False
# Pages that stand alone have nothing to navigate beside them.
html_sidebars = {
    page: []
    for page in ("start", "format", "architecture", "testing", "promises", "changelog", "genindex")
}
html_theme_options = {
    "show_prev_next": True,
    "navigation_with_keys": False,
    "header_links_before_dropdown": 6,
    "secondary_sidebar_items": ["page-toc"],
    "show_toc_level": 2,
    "footer_start": ["copyright"],
    "footer_end": [],
}
html_context = {"default_mode": "auto"}
