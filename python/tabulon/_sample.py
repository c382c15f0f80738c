"""Small runs that come with the package."""

from __future__ import annotations

from pathlib import Path

from tabulon._errors import NameNotFoundError
from tabulon._names import did_you_mean, quoted
from tabulon._public import public

__all__ = ["sample"]

_SAMPLES = Path(__file__).with_name("_samples")


@public
def sample(name: str) -> Path:
    """Return the path of a small run that comes with the package, without extension.

    Parameters
    ----------
    name
        ``"power_curve"``: a steady power curve. ``"idling_live"``: the first minute of an idling
        run that is in progress, with loads along a blade.

    Raises
    ------
    NameNotFoundError
        If there is no such sample.

    Examples
    --------
    >>> import tabulon as tb
    >>> tb.sample("power_curve").name
    'power_curve'
    """
    known = sorted(file.stem for file in _SAMPLES.glob("*.$TE"))
    if name not in known:
        text = f"no sample {name!r}{did_you_mean(name, known)}; there are {quoted(known)}"
        raise NameNotFoundError(text)
    return _SAMPLES / name
