"""Makes the page of the command line from the commands themselves: usage, arguments, options."""

from __future__ import annotations

from collections.abc import Iterator
from pathlib import Path
from typing import Any

from pages import write_page

INTRODUCTION = """\
`tabulon COMMAND --help` tells the same. [How to use them](../../guide/command_line.md).

With `--json` each record is an object on a line. Records go to standard output, all else to
standard error. The exit status is 0, 1 where runs are broken, 2 for wrong use.
"""


def page() -> str:
    """Return the text of the page."""
    return "\n".join(_lines())


def _lines() -> Iterator[str]:
    from tabulon._cli.app import app
    from typer.main import get_command

    group: Any = get_command(app)
    yield "# Command line\n"
    yield INTRODUCTION
    for name, command in group.commands.items():
        arguments = [_called(one) for one in command.params if one.param_type_name == "argument"]
        yield f"## {name}\n"
        yield f"```sh\ntabulon {name} [OPTIONS] {' '.join(arguments)}\n```\n"
        yield f"{command.help}\n"
        yield "| | |\n|---|---|"
        yield from (f"| `{_called(one)}` | {_told(one)} |" for one in command.params)
        yield ""


def _called(param: Any) -> str:  # noqa: ANN401 - of the parser
    if param.param_type_name == "option":
        return "`, `".join([*param.opts, *param.secondary_opts])
    name = param.name.upper() + ("..." if param.nargs == -1 else "")
    return name if param.required else f"[{name}]"


def _told(param: Any) -> str:  # noqa: ANN401 - of the parser
    default = param.default
    if param.required or default is None or default == "" or isinstance(default, bool):
        return str(param.help)
    return f"{param.help} Default: `{default}`."


def setup(app: Any) -> dict[str, bool]:  # noqa: ANN401 - Sphinx
    """Have the page written before it is read."""
    app.connect("builder-inited", lambda app: write_page(Path(app.srcdir), "command_line", page()))
    return {"parallel_read_safe": True}
