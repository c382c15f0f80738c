"""What a release tells of itself: one version everywhere, and checks that can fail."""

from __future__ import annotations

import re
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
