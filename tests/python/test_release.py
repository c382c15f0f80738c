"""What a release tells of itself: one version everywhere, and checks that can fail."""

from __future__ import annotations

import re
import shutil
import subprocess
from collections.abc import Callable
from importlib.metadata import PackageNotFoundError, version
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]


def found(file: str, pattern: str) -> list[str]:
    """What a pattern finds in a file of the project."""
    return re.findall(pattern, (ROOT / file).read_text(encoding="utf-8"), flags=re.MULTILINE)


def project_version() -> str:
    """The version of the project; all others follow it."""
    (only,) = found("CMakeLists.txt", r"^project\(Tabulon VERSION (\d+\.\d+\.\d+) ")
    return only


def as_numbers(text: str) -> tuple[int, ...]:
    return tuple(map(int, text.split(".")))


def test_the_package_takes_its_version_from_the_project() -> None:
    assert found("pyproject.toml", r'^input = "(.*)"') == ["CMakeLists.txt"]
    (pattern,) = found("pyproject.toml", r"^regex = '(.*)'")
    match = re.search(pattern, (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))
    assert match is not None
    assert match["value"] == project_version()


def test_the_installed_package_has_the_version_of_the_project() -> None:
    try:
        installed = version("tabulon")
    except PackageNotFoundError:
        pytest.skip("a build tree")
    assert installed == project_version()


def test_the_citation_has_the_version_of_the_project() -> None:
    assert found("CITATION.cff", r"^version: (.*)$") == [project_version()]


def test_the_changelog_tells_of_no_version_to_come() -> None:
    sections = found("CHANGELOG.md", r"^## \[(.*?)\]")
    assert sections[0] == "Unreleased"
    released = [as_numbers(section) for section in sections[1:]]
    assert released == sorted(released, reverse=True)
    assert all(one <= as_numbers(project_version()) for one in released)


def test_the_readme_asks_for_the_version_of_the_project() -> None:
    (asked,) = found("README.md", r"find_package\(Tabulon ([\d.]+) REQUIRED\)")
    assert asked == project_version().rpartition(".")[0]


CHANGELOG = "# Changelog\n\n## [Unreleased]\n\n## [0.1.0] - 2026-01-31\n\n- First.\n"


class Scratch:
    """A project that is ready to be released, with stand-ins for what takes long."""

    def __init__(self, root: Path) -> None:
        self.root = root
        (root / "scripts").mkdir()
        for name in ("lib.sh", "release"):
            shutil.copy(ROOT / "scripts" / name, root / "scripts")
        for name in ("test", "docs"):
            self.program(name, "true")
        self.program(
            "wheels",
            "mkdir -p build/dist && touch build/dist/tabulon-0.1.0.tar.gz\n"
            "for p in 310 311 312 313; do\n"
            "  touch build/dist/tabulon-0.1.0-cp$p-cp$p-manylinux_2_34_x86_64.whl\n"
            "done\n",
        )
        self.write("CMakeLists.txt", "project(Tabulon VERSION 0.1.0 LANGUAGES CXX)\n")
        self.write("CITATION.cff", "version: 0.1.0\n")
        self.write("README.md", "find_package(Tabulon 0.1 REQUIRED)\n")
        self.write("CHANGELOG.md", CHANGELOG)
        self.write(".gitignore", "/build/\n")
        self.git("init", "--quiet")
        self.commit()

    def write(self, name: str, text: str) -> None:
        (self.root / name).write_text(text, encoding="utf-8")

    def program(self, name: str, body: str) -> None:
        self.write(f"scripts/{name}", f"#!/usr/bin/env bash\n{body}\n")
        (self.root / "scripts" / name).chmod(0o755)

    def git(self, *arguments: str) -> str:
        identity = ("-c", "user.name=x", "-c", "user.email=x@example.org")
        return subprocess.run(
            ["git", *identity, *arguments],
            cwd=self.root,
            check=True,
            capture_output=True,
            text=True,
        ).stdout

    def commit(self) -> None:
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message", "x")

    def release(self, *arguments: str) -> tuple[int, str]:
        done = subprocess.run(
            ["bash", "scripts/release", *arguments],
            cwd=self.root,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
        )
        return done.returncode, done.stdout


@pytest.fixture
def scratch(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Scratch:
    if shutil.which("git") is None:
        pytest.skip("no git")
    monkeypatch.setenv("GIT_CONFIG_GLOBAL", "/dev/null")
    monkeypatch.setenv("GIT_COMMITTER_NAME", "x")
    monkeypatch.setenv("GIT_COMMITTER_EMAIL", "x@example.org")
    return Scratch(tmp_path)


def test_a_version_that_is_ready_passes_and_is_tagged(scratch: Scratch) -> None:
    status, told = scratch.release("0.1.0", "--look")
    assert (status, "looks ready" in told) == (0, True), told
    assert scratch.git("tag") == ""
    status, told = scratch.release("0.1.0", "--tag")
    assert (status, "Version 0.1.0 is ready." in told) == (0, True), told
    assert scratch.git("tag") == "v0.1.0\n"


FAULTS: dict[str, tuple[Callable[[Scratch], object], str]] = {
    "another version of the project": (
        lambda it: it.write("CMakeLists.txt", "project(Tabulon VERSION 0.1.1 LANGUAGES CXX)\n"),
        "CMakeLists.txt has no line like",
    ),
    "another version of the citation": (
        lambda it: it.write("CITATION.cff", "version: 0.1.01\n"),
        "CITATION.cff has no line like",
    ),
    "another version in the readme": (
        lambda it: it.write("README.md", "find_package(Tabulon 0.2 REQUIRED)\n"),
        "README.md has no line like",
    ),
    "a section without a date": (
        lambda it: it.write("CHANGELOG.md", CHANGELOG.replace(" - 2026-01-31", "")),
        "CHANGELOG.md has no line like",
    ),
    "changes that are not released": (
        lambda it: it.write(
            "CHANGELOG.md", CHANGELOG.replace("[Unreleased]\n", "[Unreleased]\n- x\n")
        ),
        "CHANGELOG.md tells of changes that are not released",
    ),
    "a tag that is there": (
        lambda it: it.git("tag", "v0.1.0"),
        "the tag v0.1.0 is there already",
    ),
    "a newer tag": (
        lambda it: it.git("tag", "v0.10.0"),
        "version 0.10.0 is released, which is newer",
    ),
}


@pytest.mark.parametrize("fault", FAULTS)
def test_a_release_with_a_fault_is_refused(fault: str, scratch: Scratch) -> None:
    make, words = FAULTS[fault]
    make(scratch)
    if scratch.git("status", "--porcelain"):
        scratch.commit()
    status, told = scratch.release("0.1.0", "--look")
    assert (status, words in told) == (1, True), told


def test_a_release_of_a_changed_work_tree_is_refused(scratch: Scratch) -> None:
    scratch.write("new", "")
    status, told = scratch.release("0.1.0", "--look")
    assert (status, "the work tree has changes" in told) == (1, True), told


@pytest.mark.parametrize("given", ["0.1", "v0.1.0", "0.1.0rc1"])
def test_what_is_no_version_is_refused(given: str, scratch: Scratch) -> None:
    status, told = scratch.release(given, "--look")
    assert (status, f"{given} is no version" in told) == (1, True), told


@pytest.mark.parametrize(
    ("name", "body", "words"),
    [
        ("test", "exit 1", "Tests: FAILED"),
        ("docs", "exit 1", "Documentation: FAILED"),
        ("wheels", "exit 1", "Wheels: FAILED"),
        ("wheels", "true", "build/dist has no wheel of 0.1.0 for cp310"),
    ],
)
def test_a_long_check_that_fails_ends_in_no_tag(
    name: str, body: str, words: str, scratch: Scratch
) -> None:
    scratch.program(name, body)
    scratch.commit()
    status, told = scratch.release("0.1.0", "--tag")
    assert (status, words in told) == (1, True), told
    assert scratch.git("tag") == ""
