"""The rows of the benchmark, a module for each kind of job."""

from rows import (
    campaign,
    directories,
    formats,
    headers,
    memory,
    package,
    reading,
    tables,
    text,
    writing,
)

__all__ = [
    "campaign",
    "directories",
    "formats",
    "headers",
    "memory",
    "package",
    "reading",
    "tables",
    "text",
    "writing",
]
