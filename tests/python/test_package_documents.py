"""The documents tell the truth: what they show is run, and prints what they say."""

from __future__ import annotations

import doctest
import re
import runpy
import shlex
import subprocess
import sys
from importlib import import_module
from pathlib import Path
from types import ModuleType

import pytest
import tabulon as tb

ROOT = Path(__file__).resolve().parents[2]
DOCS = ROOT / "docs"
GUIDE = [*DOCS.joinpath("guide").glob("*.md"), DOCS / "campaigns.md", DOCS / "api.md"]
EXACT_BUT_FOR_PATHS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


def blocks(page: Path, kind: str) -> list[str]:
    """The blocks of a kind on a page."""
    text = page.read_text(encoding="utf-8")
    return re.findall(rf"^```{kind}\n(.*?)^```$", text, flags=re.MULTILINE | re.DOTALL)


SESSIONS = {str(page.relative_to(DOCS)): page for page in GUIDE if blocks(page, "pycon")}


def extension(name: str) -> ModuleType:
    """What makes pages of the reference."""
    sys.path.insert(0, str(DOCS / "_ext"))
    try:
        return import_module(name)
    finally:
        sys.path.pop(0)


@pytest.fixture
def project(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """The working directory: the samples of the project, and room for what is written."""
    tmp_path.joinpath("examples").symlink_to(ROOT / "examples", target_is_directory=True)
    monkeypatch.chdir(tmp_path)
    return tmp_path


@pytest.mark.parametrize("page", SESSIONS)
def test_sessions_of_a_page(page: str, project: Path) -> None:
    sessions = "\n\n".join(blocks(SESSIONS[page], "pycon"))
    test = doctest.DocTestParser().get_doctest(
        sessions, {"__name__": "__main__"}, page, f"docs/{page}", 0
    )
    assert len(test.examples) > 6
    report: list[str] = []
    runner = doctest.DocTestRunner(optionflags=EXACT_BUT_FOR_PATHS)
    assert runner.run(test, out=report.append).failed == 0, "".join(report)


def test_commands_of_the_page_on_the_command_line(project: Path) -> None:
    session = "".join(blocks(DOCS / "guide" / "command_line.md", "console"))
    steps = re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", session, flags=re.MULTILINE)
    assert len(steps) > 10
    python = shlex.quote(sys.executable)
    for line, wanted in steps:
        command = re.sub(r"\bpython -c", f"{python} -c", line)
        command = re.sub(r"^tabulon ", f"{python} -m tabulon ", command)
        done = subprocess.run(
            command, shell=True, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT
        )
        same = doctest.OutputChecker().check_output(wanted, done.stdout, EXACT_BUT_FOR_PATHS)
        assert same, f"$ {line}\n{done.stdout}"


def test_each_name_stands_on_a_task_page_and_in_the_reference() -> None:
    guide = "\n".join(page.read_text(encoding="utf-8") for page in GUIDE)
    reference = (DOCS / "reference" / "tabulon.md").read_text(encoding="utf-8")
    missing = [name for name in tb.__all__ if not re.search(rf"\b{name}\b", guide)]
    assert missing == []
    listed = re.findall(r"^\.\. (?!currentmodule)\w+:: (\w+)$", reference, flags=re.MULTILINE)
    assert sorted(listed) == sorted(tb.__all__)


def test_each_command_stands_on_the_task_page_and_in_the_reference() -> None:
    pytest.importorskip("typer")
    guide = (DOCS / "guide" / "command_line.md").read_text(encoding="utf-8")
    reference = extension("command_reference").page()
    commands = re.findall(r"^## (\w+)$", reference, flags=re.MULTILINE)
    assert {"ls", "stats", "watch"} <= set(commands)
    assert [name for name in commands if f"$ tabulon {name} " not in guide] == []
    assert "| `--figures` | Which figures. Default: `min,max,mean,std`. |" in reference


@pytest.mark.parametrize("layer", ["api", "tables"])
def test_each_public_header_stands_in_the_reference(layer: str) -> None:
    sources = (ROOT / layer / "CMakeLists.txt").read_text(encoding="utf-8")
    (listed,) = re.findall(r"^  HEADERS\n((?:    \w+\.h\n)+)", sources, flags=re.MULTILINE)
    pages = extension("cpp_reference").PAGES.values()
    told = {name for _, headers, folder in pages if folder == layer for name in headers.split()}
    assert told == {Path(name).stem for name in listed.split()}


def test_a_header_is_told_with_its_comments_and_without_what_is_private(tmp_path: Path) -> None:
    header = tmp_path / "thing.h"
    header.write_text(
        "/// A thing.\nclass Thing {\n public:\n  /// Adds.\n  /// \\throws 5 for none.\n"
        "  int Add(int a,\n          int b) const { return a + b; }\n"
        "  int size = 0;  ///< in bytes\n"
        " private:\n  int m_hidden;\n};\n"
    )
    text = "\n".join(extension("cpp_reference").page("Things", [("api/thing", header)]))
    assert "### class Thing\n\nA thing." in text
    assert "int Add(int a, int b) const;\nint size = 0;  // in bytes\n" in text
    assert "Adds.\n\n**Throws** 5 for none." in text
    assert "hidden" not in text


@pytest.mark.parametrize("page", ["promises.md", "testing.md"])
def test_what_a_page_names_as_proof_is_there(page: str) -> None:
    text = (DOCS / page).read_text(encoding="utf-8")
    tests = {path.name for path in (ROOT / "tests").rglob("test_*.py")}
    named = set(re.findall(r"`(?:\w+/)*(test_\w+\.py)", text))
    assert len(named) > 5
    assert named - tests == set()
    scripts = set(re.findall(r"`(scripts/[\w-]+)", text))
    assert [name for name in scripts if not (ROOT / name).exists()] == []


def test_quick_start(project: Path, capsys: pytest.CaptureFixture[str]) -> None:
    code = "".join(blocks(ROOT / "README.md", "python"))
    exec(compile(code, "README.md", "exec"), {})
    printed = capsys.readouterr().out
    assert printed.startswith("Run idling_live\n")
    assert "[0.0455921 0.0455479 0.0455069] rad/s\n" in printed
    assert "Hub wind speed    6.608" in printed
    assert "power_curve" in printed


@pytest.mark.parametrize("run", ["powprod_12ms", "power_curve"])
def test_example_shows_a_run(
    run: str, project: Path, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    pytest.importorskip("matplotlib")
    picture = project / "picture.png"
    arguments = ["show_run.py", "examples/runs", run, "--output", str(picture)]
    monkeypatch.setattr(sys, "argv", arguments)
    with pytest.raises(SystemExit) as ended:
        runpy.run_path(str(ROOT / "examples" / "show_run.py"), run_name="__main__")
    printed = capsys.readouterr()
    assert ended.value.code == 0, printed.err
    assert printed.out.startswith(f"Run {run}\n")
    assert picture.read_bytes().startswith(b"\x89PNG")
