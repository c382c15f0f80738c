"""The rows of the benchmark, a module for each kind of job."""

from rows import directories, formats, headers, memory, reading, text, writing

__all__ = ["directories", "formats", "headers", "memory", "reading", "text", "writing"]
