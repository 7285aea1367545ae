# SPDX-License-Identifier: Apache-2.0
"""Profiles: of a file or of an array."""

import os
from typing import Any, List, Optional, Union

import numpy as np
import numpy.typing as npt

from . import _engine
from ._arguments import Array, Path, input_path, positive, real_numbers, texts, whole


def positions_mm(count: int, spacing_um: float) -> Array:
    """Positions of samples from the first one on, as exports have them; read-only."""
    positions: Array = np.arange(count, dtype=np.float64) * spacing_um * 0.001
    positions.flags.writeable = False
    return positions


class Profile:
    """A measured profile: heights at equal spacing along a line. It does not change.

    heights: real numbers, one-dimensional, at most 750 000 of them, in `unit` (um, nm, mm, m, inch ...). What is masked
    or not finite is an invalid point: at the ends it is cut off, inside it is interpolated between its neighbours;
    `notices` tell.
    spacing_um: distance of neighbouring samples in micrometres.
    tip_radius_mm: of the stylus, where it is known.
    """

    __slots__ = ("_record", "__weakref__")
    _record: _engine.Record

    def __init__(
        self,
        heights: npt.ArrayLike,
        spacing_um: float,
        *,
        unit: str = "um",
        identification: str = "",
        date: str = "",
        tip_radius_mm: Optional[float] = None,
    ) -> None:
        positive(spacing_um=spacing_um)
        texts(unit=unit, identification=identification, date=date)
        if tip_radius_mm is not None:
            positive(tip_radius_mm=tip_radius_mm)
        known = unit.replace("\N{GREEK SMALL LETTER MU}", "\N{MICRO SIGN}")
        self._record = _engine.record_of(
            real_numbers(heights), float(spacing_um), known, identification, date, tip_radius_mm
        )

    @property
    def heights(self) -> Array:
        """Heights in um; a read-only view without a copy."""
        return self._record.heights_um

    @property
    def spacing_um(self) -> float:
        """Distance of neighbouring samples in um."""
        return self._record.spacing_um

    @property
    def x_mm(self) -> Array:
        """Positions of the samples in mm, from the first one on."""
        return positions_mm(len(self), self.spacing_um)

    @property
    def identification(self) -> str:
        """What the file says it is; commas have become semicolons."""
        return self._record.identification

    @property
    def date(self) -> str:
        """When it was measured, as the file says it."""
        return self._record.date

    @property
    def tip_radius_mm(self) -> Optional[float]:
        """Of the stylus; None where the file does not state it."""
        return self._record.tip_radius_mm

    @property
    def file(self) -> str:
        """The path that it was loaded from, as it was given; empty for arrays."""
        return os.fsdecode(self._record.file)

    @property
    def notices(self) -> List[str]:
        """What was tolerated, guessed, or looks wrong in what was read."""
        return self._record.messages + self._record.notices

    def __len__(self) -> int:
        return len(self._record.heights_um)

    def __deepcopy__(self, memo: object) -> "Profile":
        return self

    def __array__(self, dtype: npt.DTypeLike = None) -> "npt.NDArray[Any]":
        return np.asarray(self.heights, dtype)

    def __repr__(self) -> str:
        return f"<Profile {self.identification or self.file!r}: {len(self)} points at {self.spacing_um!r} um>"


def load(
    path: Path,
    profile: int = 1,
    spacing_um: Optional[float] = None,
    column: Optional[int] = None,
    *,
    slope: bool = False,
    invert: bool = False,
) -> Profile:
    """Reads a profile of any format that `texturon formats` lists.

    profile: which one of a file of several, from 1.
    spacing_um: for texts that state none; column: of a table, from 1.
    slope: the file is a table of slopes, whose integral the heights are; invert: turn the heights upside down.

    Raises OSError where the file is not there or may not be read, texturon.ReadError where it holds no profile.
    """
    whole(profile=profile)
    if spacing_um is not None:
        positive(spacing_um=spacing_um)
    if column is not None:
        whole(column=column)
    loaded = Profile.__new__(Profile)
    loaded._record = _engine.load_record(
        input_path(path), profile if profile > 1 else None, spacing_um, column, slope, invert
    )
    return loaded


def as_profile(profile: Union[Profile, Path]) -> Profile:
    """The profile, or that of the file with this path."""
    if isinstance(profile, Profile):
        return profile
    if isinstance(profile, (str, bytes, os.PathLike)):
        return load(profile)
    kind = type(profile).__name__
    raise TypeError(f"profile: a Profile or a path is needed, not {kind}; arrays: texturon.Profile(heights, spacing_um)")
