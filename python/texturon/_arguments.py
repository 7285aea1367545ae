# SPDX-License-Identifier: Apache-2.0
"""Checks of arguments: shape and kind of arrays, paths, near names. The engine is given what passes."""

import difflib
import errno
import math
import numbers
import operator
import os
from typing import Any, Iterable, Optional, Sequence, Tuple, Union

import numpy as np
import numpy.typing as npt

from ._engine import Error

Array = npt.NDArray[np.float64]
Path = Union[str, "os.PathLike[str]"]


def real_numbers(heights: npt.ArrayLike, ranks: Sequence[int] = (1,)) -> Array:
    """Float64, contiguous, masked points as NaN. Refuses other shapes and what are no real numbers."""
    try:
        array = np.asanyarray(heights)
    except ValueError as error:
        raise Error(f"heights: they make no array: {error}") from None
    if array.dtype.kind not in "fiu":
        raise Error(f"heights: real numbers are needed, not {array.dtype}.")
    if array.ndim not in ranks:
        wanted = " or ".join(f"{rank}" for rank in ranks)
        raise Error(f"heights: an array of {wanted} dimensions is needed, not one of shape {array.shape}.")
    if array.size == 0:
        raise Error("heights: there are none.")
    with np.errstate(over="ignore"):  # beyond float64: infinite, and an invalid point
        array = array.astype(np.float64)
    if isinstance(array, np.ma.MaskedArray):
        masked: Any = array  # numpy.ma tells no types
        array = masked.filled(np.nan)
    return np.ascontiguousarray(array)


def finite_rows(heights: npt.ArrayLike) -> Array:
    """One row of heights or several, all of them numbers."""
    rows = real_numbers(heights, (1, 2))
    if not np.isfinite(rows).all():
        raise Error("heights: some are no numbers; texturon.Profile closes gaps as the readers do.")
    return rows


def positive(**named: float) -> None:
    """Refuses what is no finite number above 0, by its name."""
    for name, number in named.items():
        if not (isinstance(number, numbers.Real) and math.isfinite(number) and number > 0.0):
            raise Error(f"{name}: must be a finite number above 0, not {number!r}.")


def within(least: float, most: float, **named: float) -> None:
    """Refuses what is no number from `least` to `most`, by its name."""
    for name, number in named.items():
        if not (isinstance(number, numbers.Real) and least <= number <= most):
            raise Error(f"{name}: must be a number from {least:g} to {most:g}, not {number!r}.")


def whole(**named: int) -> None:
    """Refuses what is no whole number from 1 on, by its name."""
    for name, number in named.items():
        if not (isinstance(number, numbers.Integral) and 1 <= number < 2**31):
            raise Error(f"{name}: must be a whole number from 1 on, not {number!r}.")


def texts(**named: str) -> None:
    """Refuses what is no text, by its name."""
    for name, text in named.items():
        if not isinstance(text, str):
            raise Error(f"{name}: must be a text, not {text!r}.")


def sample_pair(exclude: Optional[Tuple[int, int]]) -> Optional[Tuple[int, int]]:
    """First and last sample of a stretch."""
    if exclude is None:
        return None
    try:
        first, last = (max(-(2**31), min(operator.index(sample), 2**31 - 1)) for sample in exclude)
    except (TypeError, ValueError):
        raise Error(f"exclude: must be the first and the last sample, not {exclude!r}.") from None
    return first, last


def system_path(path: Path) -> bytes:
    """A path in the system's own bytes."""
    encoded = os.fsencode(path)
    if b"\0" in encoded:
        raise ValueError("embedded null byte")  # as Python's own functions
    return encoded


def input_path(path: Path) -> bytes:
    """The path of a file that is there and may be read; OSError where it is not."""
    encoded = system_path(path)
    if os.path.isdir(path):
        raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), os.fspath(path))
    os.stat(path)
    if not os.access(path, os.R_OK):
        raise PermissionError(errno.EACCES, os.strerror(errno.EACCES), os.fspath(path))
    return encoded


def nearest(name: str, known: Iterable[str]) -> str:
    """", did you mean A or B?" where names are near; else an empty text."""
    by_lower = {other.lower(): other for other in known}
    near = [other for other in by_lower if other.startswith(name.lower())][:3]
    near += [other for other in difflib.get_close_matches(name.lower(), by_lower) if other not in near][: 3 - len(near)]
    return f"; did you mean {' or '.join(by_lower[other] for other in near)}?" if near else ""
