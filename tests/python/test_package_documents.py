"""The documents tell the truth: their sessions run, and print what they say."""

from __future__ import annotations

import doctest
import re
import runpy
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]


@pytest.fixture
def project(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """The working directory: the samples of the project, and room for what is written."""
    tmp_path.joinpath("examples").symlink_to(ROOT / "examples", target_is_directory=True)
    monkeypatch.chdir(tmp_path)
    return tmp_path


@pytest.mark.parametrize("page", ["python.md", "api.md"])
def test_sessions_of_a_page(page: str, project: Path) -> None:
    text = ROOT.joinpath("docs", page).read_text(encoding="utf-8")
    sessions = re.sub(r"^```.*$", "", text, flags=re.MULTILINE)
    test = doctest.DocTestParser().get_doctest(sessions, {}, page, f"docs/{page}", 0)
    assert len(test.examples) > 40
    report: list[str] = []
    result = doctest.DocTestRunner().run(test, out=report.append)
    assert result.failed == 0, "".join(report)


def test_quick_start(project: Path, capsys: pytest.CaptureFixture[str]) -> None:
    text = ROOT.joinpath("README.md").read_text(encoding="utf-8")
    code = "".join(re.findall(r"^```python\n(.*?)^```$", text, flags=re.MULTILINE | re.DOTALL))
    exec(compile(code, "README.md", "exec"), {})
    printed = capsys.readouterr().out
    assert printed.startswith("Run powprod_12ms\n")
    assert "[3929140. 3959560. 3990750.] W\n" in printed
    assert "Rotor speed         1.160459e+01" in printed


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
