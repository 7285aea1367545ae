# SPDX-License-Identifier: Apache-2.0
"""Single steps of an analysis, for chains of one's own.

Heights are in um, one profile as a one-dimensional array or several of one length as rows of a two-dimensional one; the
result then has a row, or its list an entry, a profile. They must be numbers all of them. Python's lock is free while a
step runs.
"""

from typing import Any, Callable, Dict, List, NamedTuple, Optional, Tuple, Union

import numpy.typing as npt

from . import _engine
from ._arguments import Array, finite_rows, positive, sample_pair, within
from ._settings import Settings, Value


class Spectrum(NamedTuple):
    """Amplitudes of the harmonics: entry 0 is the mean and carries the longest wavelength."""

    wavelength_mm: Array
    amplitude_um: Array


class BearingRatio(NamedTuple):
    """Material-ratio curve: heights from the highest to the lowest, each with the share of the profile above it."""

    ratio_percent: Array
    height_um: Array


class Amplitudes(NamedTuple):
    """Amplitude distribution in 100 classes of height: counts, the fullest scaled to 100, and the classes' middles."""

    scaled_count: Array
    height_um: Array


class Motif(NamedTuple):
    """A motif of ISO 12085: samples of two peaks and the dale between them, and how far the peaks stand above it."""

    first_peak: int
    dale: int
    last_peak: int
    first_depth_um: float
    last_depth_um: float


class Motifs(NamedTuple):
    """Roughness motifs, and the waviness motifs of the envelope through their peaks."""

    roughness: List[Motif]
    waviness: List[Motif]


class ProfileElement(NamedTuple):
    """A hill with the dale that follows it: where it starts, between which mean-line crossings, from top to bottom."""

    start_um: float
    width_um: float
    height_um: float


class FormRemoval(NamedTuple):
    """What remove_form gives: heights above the form, the form, and its figures under the names of `analyze --json`.

    spacing_um is that of the residual, which perpendicular residuals stretch.
    """

    residual: Array
    form: Array
    spacing_um: float
    figures: Dict[str, Any]


def _by_row(heights: npt.ArrayLike, step: Callable[[Array], Any]) -> Any:
    rows = finite_rows(heights)
    return step(rows) if rows.ndim == 1 else [step(row) for row in rows]


def _filtered(word: str, z: npt.ArrayLike, spacing_um: float, cutoff_mm: float, tension: float = 0.0) -> Array:
    positive(spacing_um=spacing_um, cutoff_mm=cutoff_mm)
    within(0.0, 1.0, tension=tension)
    return _engine.filtered(word, finite_rows(z), spacing_um, cutoff_mm, tension)


def gaussian_filter(z: npt.ArrayLike, spacing_um: float, cutoff_mm: float) -> Array:
    """Mean line of the Gaussian filter of ISO 16610-21, in um and as long as z.

    A wavelength L keeps the share 2^-(cutoff / L)^2 of its amplitude, one half at the cutoff: the weights
    exp(-pi (x / (a cutoff))^2) / (a cutoff) with a = sqrt(ln 2 / pi), wrapped around the ends of the record. NaN behind
    the last point that the transform takes. The spacing must be at most a third of the cutoff.
    """
    return _filtered("GAUSSIAN", z, spacing_um, cutoff_mm)


def spline_filter(z: npt.ArrayLike, spacing_um: float, cutoff_mm: float, tension: float = 0.625242) -> Array:
    """Mean line of the linear spline filter of ISO 16610-22, in um and as long as z; it loses no ends.

    It solves (1 + t a^2 D1'D1 + (1 - t) a^4 D2'D2) w = z with the tension t, 0 to 1, a = 1 / (2 sin(pi spacing /
    cutoff)) and first and second differences D1, D2. The default tension comes closest to the Gaussian filter.
    """
    return _filtered("SPLINE", z, spacing_um, cutoff_mm, tension)


def robust_filter(z: npt.ArrayLike, spacing_um: float, cutoff_mm: float, tension: float = 0.625242) -> Array:
    """Mean line of the robust spline filter, in um and as long as z; scratches and pores do not pull it.

    The spline filter with Tukey's weights (1 - (r / c)^2)^2 of the residuals r, 0 beyond c = 4.4478 median |r|,
    repeated until c changes by less than a thousandth.
    """
    return _filtered("ROBUST", z, spacing_um, cutoff_mm, tension)


def iso13565_filter(z: npt.ArrayLike, spacing_um: float, cutoff_mm: float) -> Array:
    """Two-step mean line of ISO 13565-1 for plateau surfaces, in um and as long as z; NaN one cutoff from either end.

    A Gaussian mean line replaces the profile where that lies below it, the result is filtered again and shifted so that
    the profile has zero mean about it.
    """
    return _filtered("RK", z, spacing_um, cutoff_mm)


def closing(z: npt.ArrayLike, spacing_um: float, radius_mm: float) -> Array:
    """Closing envelope of ISO 16610-41, in um and as long as z: what a disc rolled over z cannot reach."""
    positive(spacing_um=spacing_um, radius_mm=radius_mm)
    return _engine.envelope(True, finite_rows(z), spacing_um, radius_mm)


def opening(z: npt.ArrayLike, spacing_um: float, radius_mm: float) -> Array:
    """Opening envelope, in um and as long as z: the closing of -z, negated."""
    positive(spacing_um=spacing_um, radius_mm=radius_mm)
    return _engine.envelope(False, finite_rows(z), spacing_um, radius_mm)


def spectrum(z: npt.ArrayLike, spacing_um: float) -> Spectrum:
    """Amplitudes (um, mean to peak, a row a profile) of the harmonics with their wavelengths (mm, one for all
    profiles).

    Line k of K has 2 |X[k]| / m of the Fourier sums X over m points, the last line of an even m that over sqrt(2); its
    wavelength is 2 K spacing / k, slightly longer than m spacing / k. Line 0 is the mean with its sign, at the
    wavelength of line 1.
    """
    positive(spacing_um=spacing_um)
    return Spectrum(*_engine.spectrum(finite_rows(z), spacing_um))


def material_ratio(z: npt.ArrayLike) -> BearingRatio:
    """Material-ratio curve of heights about their mean line: point i of n, from the highest, has the ratio 100 i / n
    percent.

    The ratios are one row for all profiles, the heights (um) a row a profile.
    """
    return BearingRatio(*_engine.bearing_ratio(_engine.sorted_heights(finite_rows(z))))


def amplitudes(z: npt.ArrayLike) -> Any:
    """Amplitude distribution, an Amplitudes: points in 100 classes of equal width from the lowest to the highest
    height.

    The fullest class is scaled to 100. A list of them for a two-dimensional z.
    """
    return _by_row(z, lambda row: Amplitudes(*_engine.amplitudes(_engine.sorted_heights(row))))


def motifs(z: npt.ArrayLike, spacing_um: float, **keys: Value) -> Any:
    """Motifs of ISO 12085 on a primary profile, a Motifs; depths in um, peaks and dales as sample indices.

    keys: MotifAMM (0.5 mm, longest roughness motif), MotifBMM (2.5 mm, longest waviness motif), UseTHMotif,
    UseTHShortMotifCombination. A list for a two-dimensional z.
    """
    positive(spacing_um=spacing_um)
    settings = Settings(**keys)

    def of_row(row: Array) -> Motifs:
        roughness, waviness = _engine.motifs(row, spacing_um, settings._engine)
        return Motifs([Motif(*motif) for motif in roughness], [Motif(*motif) for motif in waviness])

    return _by_row(z, of_row)


def profile_elements(z: npt.ArrayLike, spacing_um: float, height_um: float = 0.0, width_um: float = 0.0) -> Any:
    """Profile elements of ISO 4287 about the mean line at height 0, a list of ProfileElement: places and widths in um
    along the profile.

    height_um: full width of the band about the mean line that a hill or dale must leave; width_um: least width of an
    element. RSm takes 10 % of Rz and 1 % of the sampling length. A list of lists for a two-dimensional z.
    """
    positive(spacing_um=spacing_um)
    within(0.0, float("inf"), height_um=height_um, width_um=width_um)

    def of_row(row: Array) -> List[ProfileElement]:
        return [ProfileElement(*element) for element in _engine.profile_elements(row, spacing_um, height_um, width_um)]

    return _by_row(z, of_row)


def remove_form(
    z: npt.ArrayLike,
    spacing_um: float,
    kind: Union[str, int] = "line",
    *,
    exclude: Optional[Tuple[int, int]] = None,
    **keys: Value,
) -> Any:
    """Takes a nominal form out of heights, as the first step of an analysis does, a FormRemoval; residual and form in
    um, as long as z.

    kind: "none" (the mean), "line", "arc", "fixed radius", "polynomial", "filter", "asphere", "free form", or its
    number.
    exclude: first and last sample of a stretch that the fit leaves out.
    keys: settings of the form, such as PolynomialOrder=4, FixedRadiusMM=-10.0, ResidualType=1 for vertical residuals
    (the default is perpendicular to the form), FormRemovalDataReductionMethod.
    A list for a two-dimensional z. A form that cannot be fitted raises texturon.Error.
    """
    positive(spacing_um=spacing_um)
    changes: Dict[str, Value] = {"FormRemovalType": kind, **keys}
    settings = Settings(**changes)
    pair = sample_pair(exclude)
    return _by_row(z, lambda row: FormRemoval(*_engine.form_removed(row, spacing_um, settings._engine, pair)))
