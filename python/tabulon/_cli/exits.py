"""What the command line ends with."""

__all__ = ["WRONG_USE"]

WRONG_USE = 2
