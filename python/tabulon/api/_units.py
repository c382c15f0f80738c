"""Units as a script reads and writes them."""

# The library's units hold the signs for square and cube as single bytes of Latin-1. They are no
# UTF-8, and come through as lone surrogates, which cannot be printed.
_READABLE = {0xDCB2: "\N{SUPERSCRIPT TWO}", 0xDCB3: "\N{SUPERSCRIPT THREE}"}
_NATIVE = {ord(sign): chr(byte) for byte, sign in _READABLE.items()}


def readable(unit: str) -> str:
    """Return a unit of the library as text that can be printed."""
    return unit.translate(_READABLE)


def native(unit: str) -> str:
    """Return a unit as the library spells it."""
    return unit.translate(_NATIVE)
