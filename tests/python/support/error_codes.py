"""What the sources tell of error codes: the texts, where codes are raised, which are tested."""

from __future__ import annotations

import ast
import re
from collections.abc import Iterator
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
LAYERS = ("core", "groupfiles", "vocabulary", "model", "api", "binding")
SUFFIXES = (".cpp", ".h", ".i")
EXCEPTIONS = ("exceptions.h", "exceptions.cpp", "error_tables.cpp")  # they raise nothing
TEXTS = ROOT / "tests" / "core" / "error_table_texts.h"

LITERAL = r'"(?:\\.|[^"\\\n])*"'
NOT_CODE = re.compile(
    rf"""(?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<text>R"\(.*?\)"|{LITERAL})
    |(?P<character>(?<!\w)'(?:\\.|[^'\\\n])+')""",
    re.VERBOSE | re.DOTALL,
)
CODE_PARAMETER = r"std::int32_t code"
CARRIER = re.compile(rf"(\w+)(?: = \[[^\]]*\])?\(([^()]*\b{CODE_PARAMETER}\b[^()]*)\)")
DECLARED = re.compile(r"(?:const|std::\w+) ")
CONSTANT = re.compile(r"constexpr std::u?int32_t (k\w+) = (\d+);")
CODE_FUNCTION = re.compile(r"std::int32_t (?:\w+::)?(\w*Code\w*)\([^()]*\)[\w\s]*\{")


def code_table() -> dict[int, str]:
    """All codes and their texts."""
    entry = re.compile(rf"\{{(-?\d+),\s*((?:{LITERAL}\s*)+)\}}")
    return {
        int(code): "".join(map(unquoted, re.findall(LITERAL, text)))
        for code, text in entry.findall(TEXTS.read_text(encoding="utf-8"))
    }


def unquoted(literal: str) -> str:
    escapes = {"n": "\n", "t": "\t"}
    return re.sub(r"\\(.)", lambda match: escapes.get(match[1], match[1]), literal[1:-1])


def without_words(source: str) -> str:
    """The source without comments, and with nothing in its texts."""
    return NOT_CODE.sub(lambda match: " " if match["comment"] else '""', source)


def library_sources() -> dict[str, str]:
    return {
        str(path.relative_to(ROOT)): without_words(path.read_text(encoding="utf-8"))
        for layer in LAYERS
        for path in sorted((ROOT / layer).rglob("*"))
        if path.suffix in SUFFIXES and path.name not in EXCEPTIONS
    }


def parts(text: str, separators: str = ",") -> list[str]:
    """Splits at separators outside of all brackets, up to the bracket that closes the text."""
    found, depth, start = [], 0, 0
    for at, character in enumerate(text):
        depth += (character in "([{") - (character in ")]}")
        if depth < 0:
            text = text[:at]
            break
        if depth == 0 and character in separators:
            found.append(text[start:at].strip())
            start = at + 1
    return [*found, text[start:].strip()]


class RaisedCodes:
    """The codes that sources pass to exceptions, also through functions that take a `code`.

    `unread` holds the arguments whose value does not show.
    """

    def __init__(self, sources: dict[str, str]) -> None:
        self.codes: set[int] = set()
        self.unread: list[str] = []
        self._constants = {
            name: int(value)
            for source in sources.values()
            for name, value in CONSTANT.findall(source)
        }
        self._functions: dict[str, list[str]] = {}
        carriers = {("CException", 0), ("CIOException", 0)}
        for source in sources.values():
            for match in CODE_FUNCTION.finditer(source):
                body = parts(source[match.end() :], separators="")[0]
                results = self._functions.setdefault(match[1], [])
                results += re.findall(r"return ([^;]*);", body)
            for name, parameters in CARRIER.findall(source):
                places = [CODE_PARAMETER in parameter for parameter in parts(parameters)]
                carriers.add((name, places.index(True)))
        for path, source in sources.items():
            for name, place in carriers:
                self._read_calls(path, source, name, place)

    def _read_calls(self, path: str, source: str, name: str, place: int) -> None:
        for match in re.finditer(rf"\b{name}(?: \w+)?\(", source):
            arguments = parts(source[match.end() :])
            argument = arguments[place] if place < len(arguments) else ""
            is_declaration = CODE_PARAMETER in argument or DECLARED.match(arguments[0])
            is_copy = argument.startswith("*")
            if not (is_declaration or is_copy or self._read(argument)):
                self.unread.append(f"{path}: {name}({', '.join(arguments)})")

    def _read(self, argument: str) -> bool:
        _, choice, alternatives = argument.partition("?")
        if choice:
            return all(map(self._read, re.split(r"(?<!:):(?!:)", alternatives)))
        argument = argument.strip()
        if argument == "code":  # passed on: what comes in is read at the call
            return True
        if argument in self._constants:
            self.codes.add(self._constants[argument])
            return True
        if re.fullmatch(r"-?\d+", argument):
            self.codes.add(int(argument))
            return True
        call = re.fullmatch(r"(\w+)\(.*\)", argument, re.DOTALL)
        return call is not None and all(map(self._read, self._functions.get(call[1], [""])))


def texts_of_cpp(source: str) -> Iterator[str]:
    """The texts of a source; adjacent literals are one."""
    run: list[str] = []
    end = 0
    for match in NOT_CODE.finditer(source):
        if source[end : match.start()].strip() and run:
            yield "".join(run)
            run = []
        if match["text"] and not match["text"].startswith("R"):
            run.append(unquoted(match["text"]))
        end = match.end()
    yield "".join(run)


def texts_of_python(source: str) -> Iterator[str]:
    """The texts of a source; in a formatted one a line feed stands for each value."""
    inner: set[int] = set()
    for node in ast.walk(ast.parse(source)):
        if isinstance(node, ast.JoinedStr):
            pieces = [value if isinstance(value, ast.Constant) else None for value in node.values]
            inner.update(map(id, node.values))
            yield "".join("\n" if piece is None else str(piece.value) for piece in pieces)
        elif isinstance(node, ast.Constant) and isinstance(node.value, str):
            if id(node) not in inner:
                yield node.value


def texts_of_tests() -> list[str]:
    """All texts of the tests, but not of those that only hold the table."""
    tables = {TEXTS.name, "exceptions_test.cpp", "error_codes.py", "test_error_codes.py"}
    found: list[str] = []
    for path in sorted((ROOT / "tests").rglob("*")):
        if path.name in tables or path.suffix not in (".cpp", ".h", ".py"):
            continue
        read = texts_of_python if path.suffix == ".py" else texts_of_cpp
        found += read(path.read_text(encoding="utf-8"))
    return found


def holds_text(texts: list[str], text: str) -> bool:
    """Whether `text` stands among `texts` from start to end, as an exception writes it."""
    whole = re.compile(rf"(?:^|: |\n){re.escape(text)}(?:$|[.\n]| The file name extension)")
    return any(text in candidate and whole.search(candidate) for candidate in texts)
