"""The command line: ``python -m tabulon``."""

from tabulon._cli import main

if __name__ == "__main__":
    main()
