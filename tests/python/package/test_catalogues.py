"""Catalogues: a campaign that a file knows."""

from __future__ import annotations

import os
import pickle
import shutil
from pathlib import Path

import numpy as np
import pytest
import tabulon as tb
from support.campaign_files import MOMENT, POWER, SPEED, break_runs, write_campaign, write_run

pd = pytest.importorskip("pandas")
pq = pytest.importorskip("pyarrow.parquet")
pa = pytest.importorskip("pyarrow")

FIGURES = ("min", "max", "mean")


@pytest.fixture
def root(tmp_path: Path) -> Path:
    write_campaign(tmp_path / "results")
    return tmp_path / "results"


@pytest.fixture
def file(root: Path, tmp_path: Path) -> Path:
    path = tmp_path / "campaign.parquet"
    tb.open_campaign(root).save(path)
    return path


def test_a_catalogue_answers_as_the_campaign_without_the_runs(root: Path, file: Path) -> None:
    campaign = tb.open_campaign(root)
    keys = [SPEED, ("Tower loads", MOMENT), (1, POWER)]
    expected = campaign.stats(keys, FIGURES)
    ended = [str(run.state) for run in campaign]
    root.rename(root.with_name("away"))
    saved = tb.open_campaign(file)
    assert list(saved) == list(campaign)
    assert saved.stats(keys, FIGURES).equals(expected)
    assert [one["state"] for one in saved.summary()] == ended
    assert len(saved.filter(ok=True)) == 12
    assert len(saved.filter(calculation=tb.CalculationType.PowerProductionSimulation)) == 12
    assert len(tb.open_campaign(file, name="run1*")) == 3


def test_extremes_of_a_catalogue_read_only_the_runs_that_hold_them(root: Path, file: Path) -> None:
    expected = tb.open_campaign(root).extremes([SPEED, MOMENT], also=POWER)
    holders = set(expected.path)
    for run in tb.open_campaign(root):
        if run.path not in holders:
            for path in Path(run.directory).glob(f"{run.name}.*"):
                path.unlink()
    assert tb.open_campaign(file).extremes([SPEED, MOMENT], also=POWER).equals(expected)


def test_names_in_any_case_pairs_and_misses(file: Path) -> None:
    saved = tb.open_campaign(file)
    assert len(saved.stats("rotor SPEED", FIGURES)) == 12
    assert len(saved.stats(("tower LOADS", MOMENT), FIGURES)) == 24
    with pytest.warns(UserWarning, match="12 failures in 12 runs"):
        assert saved.stats("nothing", FIGURES).empty
    with pytest.warns(UserWarning, match="no variable"):
        assert saved.stats(("Summary", MOMENT), FIGURES).empty


def test_figures_that_it_has_not_come_from_the_runs(root: Path, file: Path) -> None:
    saved = tb.open_campaign(file)
    assert saved.stats(SPEED).equals(tb.open_campaign(root).stats(SPEED))
    assert saved.stats(SPEED, FIGURES, verify=True).equals(
        tb.open_campaign(root).stats(SPEED, FIGURES)
    )


def test_groups_without_figures_are_read(tmp_path: Path) -> None:
    from dataclasses import replace

    from support.campaign_files import groups_of
    from support.run_files import RunFiles

    plain = [replace(group, statistics_blocks=0) for group in groups_of(3)]
    RunFiles(plain, "plain").write(tmp_path / "runs")
    campaign = tb.open_campaign(tmp_path / "runs")
    campaign.save(tmp_path / "c.parquet")
    saved = tb.open_campaign(tmp_path / "c.parquet")
    assert saved.stats([SPEED, MOMENT], FIGURES).equals(campaign.stats([SPEED, MOMENT], FIGURES))


def test_broken_runs_are_known_as_such(root: Path, tmp_path: Path) -> None:
    break_runs(root)
    path = tmp_path / "broken.parquet"
    tb.open_campaign(root).save(path)
    shutil.rmtree(root)
    with pytest.warns(UserWarning, match="failures in 16 runs"):
        table = tb.open_campaign(path).stats(SPEED, FIGURES)
    assert set(table.run) == {"half", "missing", *(f"run{i}" for i in range(12))}
    told = {one["run"]: one for one in table.attrs["failures"]}
    assert set(told) == {"empty", "header"}
    assert told["header"]["path"] == str(root / "broken" / "header.%01")


def reads_of(monkeypatch: pytest.MonkeyPatch) -> list[str]:
    """Return the headers that are opened from now on."""
    from tabulon import _native

    opened: list[str] = []
    original = _native.open_table

    def noted(path: str) -> object:
        opened.append(path)
        return original(path)

    monkeypatch.setattr(_native, "open_table", noted)
    return opened


def test_refresh_reads_what_is_new_changed_or_gone(
    root: Path, file: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    saved = tb.open_campaign(file)
    write_run(root / "seed1", "run3", 333)  # rewritten
    write_run(root / "seed2", "run100", 100)  # new
    for path in (root / "seed3").glob("run8.*"):  # gone
        path.unlink()
    opened = reads_of(monkeypatch)
    now = saved.refresh(progress=False)
    assert {Path(path).stem for path in opened} == {"run3", "run100"}
    opened.clear()
    expected = tb.open_campaign(root)
    assert list(now) == list(expected)
    table = now.stats([SPEED, MOMENT], FIGURES)
    assert not opened
    assert table.equals(expected.stats([SPEED, MOMENT], FIGURES))
    opened.clear()
    again = tmp_path / "again.parquet"
    now.save(again)
    assert tb.open_campaign(again).stats([SPEED, MOMENT], FIGURES).equals(table)
    assert tb.open_campaign(again).refresh() == now
    assert not opened
    assert pickle.loads(pickle.dumps(now)) == now


@pytest.mark.parametrize("extension", [".$TE", ".%01", ".$01", ".$02"])
def test_refresh_notices_the_last_write_of_each_file(
    root: Path, file: Path, extension: str, monkeypatch: pytest.MonkeyPatch
) -> None:
    path = root / "seed1" / f"run6{extension}"
    status = path.stat()
    os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns + 1_000_000))
    opened = reads_of(monkeypatch)
    tb.open_campaign(file).refresh()
    assert {Path(one).stem for one in opened} == {"run6"}


def test_a_catalogue_can_be_sliced_and_pickled(file: Path) -> None:
    saved = tb.open_campaign(file)
    some = pickle.loads(pickle.dumps(saved[3:6]))
    table = some.stats(SPEED, FIGURES)
    whole = saved.stats(SPEED, FIGURES)
    assert table.run.tolist() == [run.name for run in some] == whole.run.tolist()[3:6]
    assert table["max"].tolist() == whole["max"].tolist()[3:6]


def test_a_catalogue_that_is_none_is_told(tmp_path: Path, file: Path) -> None:
    text = tmp_path / "text.parquet"
    text.write_text("no catalogue\n")
    with pytest.raises(tb.DataError, match=r"text\.parquet is no catalogue, or is damaged: "):
        tb.open_campaign(text)
    other = tmp_path / "other.parquet"
    pq.write_table(pa.table({"a": [1]}), other)
    with pytest.raises(tb.DataError, match=r"other\.parquet is no catalogue"):
        tb.open_campaign(other)
    cut = tmp_path / "cut.parquet"
    cut.write_bytes(file.read_bytes()[:-200])
    with pytest.raises(tb.DataError, match=r"cut\.parquet is no catalogue, or is damaged"):
        tb.open_campaign(cut)


def test_a_catalogue_of_another_version_is_told(tmp_path: Path, file: Path) -> None:
    content = file.read_bytes()
    at = content.rindex(b"tabulon.catalogue", 0, content.rindex(b"tabulon.catalogue") - 100) + 17
    later = tmp_path / "later.parquet"
    later.write_bytes(content[:at] + (99).to_bytes(4, "little") + content[at + 4 :])
    with pytest.raises(tb.DataError, match="is a catalogue of version 99; this release reads 1"):
        tb.open_campaign(later)


def test_other_programs_can_read_a_catalogue(root: Path, file: Path) -> None:
    table = pq.read_table(file).to_pandas()
    assert table[table.level == 0].path.tolist() == [run.path for run in tb.open_campaign(root)]


def test_damage_anywhere_is_an_error_and_no_wrong_value(tmp_path: Path, file: Path) -> None:
    whole = file.read_bytes()
    saved = tb.open_campaign(file)
    expected = [saved.stats([SPEED, MOMENT], FIGURES), saved.summary()]
    random = np.random.default_rng(1)
    damaged = tmp_path / "damaged.parquet"
    footer = int.from_bytes(whole[-8:-4], "little")
    told = 0
    for first in (4, len(whole) - footer - 40):
        for _ in range(100):
            content = bytearray(whole)
            for at in random.integers(first, len(whole), random.integers(1, 8)):
                content[at] ^= random.integers(1, 256)
            damaged.write_bytes(content)
            try:
                again = tb.open_campaign(damaged)
                found = [again.stats([SPEED, MOMENT], FIGURES), again.summary()]
            except tb.DataError:
                told += 1
                continue
            assert found[0].equals(expected[0])
            assert found[1] == expected[1]
    assert told > 100


def test_a_catalogue_that_was_replaced_is_not_mixed_with_the_old_one(
    root: Path, file: Path
) -> None:
    saved = tb.open_campaign(file)
    tb.open_campaign(root)[:3].save(file)
    with pytest.raises(tb.DataError, match="has changed since it was opened: open it again"):
        saved.stats(SPEED, FIGURES)


def test_a_catalogue_that_cannot_be_written_leaves_the_old_one(root: Path, tmp_path: Path) -> None:
    with pytest.raises(tb.TabulonError, match="cannot be written"):
        tb.open_campaign(root).save(tmp_path / "nowhere" / "c.parquet")
