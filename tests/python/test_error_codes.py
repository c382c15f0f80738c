"""Which of the numbered errors the library raises, and that each of them has a test."""

from __future__ import annotations

import pytest
from support.error_codes import (
    RaisedCodes,
    code_table,
    holds_text,
    library_sources,
    texts_of_cpp,
    texts_of_python,
    texts_of_tests,
    without_words,
)

# Codes that users know from the table, and that no operation of this library leads to.
NEVER_RAISED = {
    *(-1, 0),  # no failure, or one without a code
    *(11, 12, 18, 24, 95),  # setting or replacing the data of a series
    *(23, 137, 138),  # requests of several kinds at once
    *(35, 36, 41, 134, 136),  # what the types of this library rule out
    48,  # a miss in a registry, which is answered and not raised
    50,  # a group without series, which is allowed
    *(68, 69, 70, 71, 73, 74, 75, 76),  # appending to all series of a group at once
    *(77, 78),  # downcasts in scripts
    *(79, 83, 85, 92, 93, 94, 96, 135),  # writing all groups of a registry
    125,  # numbers of a header are counted before they are converted
    153,  # both extremes at once
    *(5005, 5011, 5012),  # files and readers that come so far are open, filled and of their kind
}

# Codes whose place in the sources no caller can come to.
UNREACHABLE = {
    15,  # points are appended and never set
    34,  # an axis without labels is refused when it is made
}


@pytest.fixture(scope="module")
def raised() -> RaisedCodes:
    return RaisedCodes(library_sources())


def test_all_other_codes_are_raised(raised: RaisedCodes) -> None:
    assert set(code_table()) - raised.codes == NEVER_RAISED


def test_raised_codes_have_a_text(raised: RaisedCodes) -> None:
    assert raised.codes <= set(code_table())


def test_code_of_each_failure_shows_in_the_source(raised: RaisedCodes) -> None:
    assert raised.unread == []


def test_raised_codes_have_a_test_of_their_text(raised: RaisedCodes) -> None:
    texts = texts_of_tests()
    table = code_table()
    untested = {code for code in raised.codes if not holds_text(texts, table[code])}
    assert untested == UNREACHABLE


# The scan itself


@pytest.mark.parametrize(
    ("source", "codes"),
    [
        ("throw CException(25, PointText(1, 2), failure.what());", {25}),
        ("throw Sumara::CException(\n    44, a + b);", {44}),
        ("return CIOException(5008);", {5008}),
        (
            "throw CIOException(a.Eof() ? 5008 : A::Bad() ? 5007 : 5009, Text());",
            {5007, 5008, 5009},
        ),
        ("CException Made(const A& a, std::uint64_t b);\nconst CException made(7, a);", {7}),
        ("throw CException(axes == 2 ? 27 : 26, Point(3));", {26, 27}),
        ('// throw CException(1);\nText("CException(2)"); c == \'"\'; CException(3);', {3}),
        ("constexpr std::int32_t kSeveral = 165;\nthrow CException(kSeveral, a);", {165}),
        ("void Field(const char* l, std::int32_t code, bool b = true);\nField(x(1, 2), 98);", {98}),
        (
            "const auto fail = [&](std::int32_t code) {\nthrow CException(code, a); };\nfail(163);",
            {163},
        ),
        (
            "std::int32_t C::RefusalCode() const {\nif (a) { return 5; }\nreturn b ? 0 : 7; }\n"
            "throw CException(RefusalCode(), x);",
            {0, 5, 7},
        ),
        ("throw CException(*failure);", set()),
        ("throw CException(table[3]);", None),
        ("throw CException(Unknown(3));", None),
    ],
)
def test_codes_of_a_source(source: str, codes: set[int] | None) -> None:
    found = RaisedCodes({"a.cpp": without_words(source)})
    if codes is None:
        assert len(found.unread) == 1
    else:
        assert (found.codes, found.unread) == (codes, [])


def test_texts_of_a_source() -> None:
    source = 'f("one " /* and */\n  "two", x + "three\\n", \'"\', R"(four)"); // "five"\n"six"'
    assert [text for text in texts_of_cpp(source) if text] == ["one two", "three\n", "six"]
    assert set(texts_of_python('a = "one " "two"\nb = f"three{a}four"')) == {
        "one two",
        "three\nfour",
    }


@pytest.mark.parametrize(
    ("text", "held"),
    [
        ("Run was not found", True),
        ("Sumara Tables error: Run was not found.\nFurther information: x", True),
        ("Run was not found: the file", False),
        ("The Run was not found", False),
        ("Run was not", False),
    ],
)
def test_a_text_is_held_from_start_to_end(text: str, held: bool) -> None:
    assert holds_text([text], "Run was not found") == held
