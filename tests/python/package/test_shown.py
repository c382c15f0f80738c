"""How runs, groups and variables are shown."""

from __future__ import annotations

import re
from html.parser import HTMLParser
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from support.run_files import GroupFiles, IntervalAxis, RunFiles, Variable
from support.scenarios import group_1d, group_2d


def many(folder: Path, count: int, groups: int = 1) -> tb.Run:
    values = np.zeros(1, np.float32)
    variables = [Variable(f"Channel number {n}", "FL", values) for n in range(count)]
    axis = IntervalAxis(size=1)
    made = [
        GroupFiles(f"Group {n}", variables, axis, number=n, statistics_blocks=0)
        for n in range(1, groups + 1)
    ]
    RunFiles(made).write(folder)
    return tb.open_run(folder, "run")


class Balanced(HTMLParser):
    """Reads HTML, and makes sure that what is opened is closed."""

    def __init__(self) -> None:
        super().__init__()
        self.open: list[str] = []
        self.seen: set[str] = set()

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        self.open.append(tag)
        self.seen.add(tag)

    def handle_endtag(self, tag: str) -> None:
        assert self.open.pop() == tag


def tags_of(html: str) -> set[str]:
    parser = Balanced()
    parser.feed(html)
    parser.close()
    assert parser.open == []
    return parser.seen


def test_a_run_as_text(tmp_path: Path) -> None:
    RunFiles([group_1d()]).write(tmp_path)
    lines = str(tb.open_run(tmp_path, "run")).splitlines()
    assert lines[0] == "Run run"
    assert lines[2].split() == ["Ended", "CompletedNormally"]
    assert lines[-4:] == [
        "  1 Summary  (time 5)",
        "    Electrical power  W",
        "    Rotor speed       rad/s",
        "    Tower moment      N m",
    ]


def test_html_of_the_nouns(tmp_path: Path) -> None:
    RunFiles([group_2d()]).write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    for shown in (run, run.groups[1], run["Blade moment"]):
        html = shown._repr_html_()
        assert {"div", "style", "table", "details", "summary"} <= tags_of(html)
        assert "Blade moment" in html
        assert not re.search(r"#[0-9a-f]{3,6}\b|color:(?!inherit)", html)


def test_names_are_escaped(tmp_path: Path) -> None:
    name = "<script>alert(1)</script>&\x07"
    group = group_1d()
    variables = [Variable(name, "L", variable.values) for variable in group.variables[:1]]
    RunFiles([GroupFiles(name, variables, group.primary)], "<b>run").write(tmp_path)
    run = tb.open_run(tmp_path, "<b>run")
    for shown in (run, run.groups[1], run[name]):
        html = shown._repr_html_()
        assert "script" not in tags_of(html)
        assert "\x07" not in html
        assert "&lt;script&gt;" in html
        assert "\x07" not in str(shown)
        assert "\n" not in repr(shown)


def test_html_is_small(tmp_path: Path) -> None:
    assert len(many(tmp_path, 100)._repr_html_().encode()) < 20_000
    big = many(tmp_path, 10_000)
    assert len(big._repr_html_().encode()) < 25_000
    assert len(big.groups[1]._repr_html_().encode()) < 25_000
    assert "9,880 more" in big._repr_html_()
    assert len(str(big)) < 25_000
    wide = many(tmp_path, 500, groups=90)._repr_html_()
    assert len(wide.encode()) < 40_000
    tags_of(wide)


def test_one_line_touches_no_file(tmp_path: Path) -> None:
    RunFiles([group_1d()]).write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    group, variable = run.groups[1], run["Rotor speed"]
    for file in tmp_path.iterdir():
        file.unlink()
    assert len({repr(run), repr(group), repr(variable)}) == 3
    assert repr(tb.Run(tmp_path / "nothing"))


def test_keys_for_completion(tmp_path: Path) -> None:
    again = GroupFiles("Again", group_1d().variables[:1], group_1d().primary, number=2)
    RunFiles([group_1d(), again]).write(tmp_path)
    run = tb.open_run(tmp_path, "run")
    assert run._ipython_key_completions_() == [
        ("Summary", "Electrical power"),
        ("Again", "Electrical power"),
        "Rotor speed",
        "Tower moment",
    ]
    assert run.groups["Again"]._ipython_key_completions_() == ["Electrical power"]
    assert run.groups._ipython_key_completions_() == ["Summary", "Again"]


@pytest.mark.parametrize("missing", [".$VE", ".$ME", ".%01"])
def test_a_run_without_some_files_is_shown(tmp_path: Path, missing: str) -> None:
    RunFiles([group_1d()]).write(tmp_path)
    (tmp_path / f"run{missing}").unlink()
    run = tb.open_run(tmp_path, "run")
    assert str(run).startswith("Run run")
    tags_of(run._repr_html_())
