"""What the command line ends with."""

__all__ = ["BROKEN", "WRONG_USE"]

BROKEN = 1
WRONG_USE = 2
