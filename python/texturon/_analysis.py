# SPDX-License-Identifier: Apache-2.0
"""Analyses: from a profile to its parts and parameters."""

import html
import json
import os
from functools import cached_property
from typing import Any, Dict, Iterable, Iterator, List, Mapping, NamedTuple, Optional, Sequence, Tuple, TypeVar, Union

import numpy as np

from . import _engine, _steps
from ._arguments import Array, Path, input_path, nearest, sample_pair, system_path
from ._profile import Profile, as_profile, positions_mm
from ._settings import SettingsLike, Value, settings_of

OPTIONS = (  # of analyze() that are no settings
    *("region", "exclude", "whole_cutoffs", "all_data_for_form"),
    *("budget", "trials", "seed", "interval", "sensitivities"),
)
_RECORD = ("file", "identification", "date", "spacing_um", "point_count", "tip_radius_mm")
_ORIGIN = ("program", "input", "settings", "request")


class Uncertainty(NamedTuple):
    """What trials tell of a value, in its unit: deviation, twice that, the interval that holds the share `coverage` of
    them, their mean minus the value, how many they were, and the share in which the parameter was not defined."""

    standard: float
    expanded: float
    coverage: float
    low: float
    high: float
    bias: float
    trials: int
    undefined: float


class ParameterRow(NamedTuple):
    """A parameter: value in its unit (NaN where there is none: `reason` says why), verdict where it has limits."""

    name: str
    value: float
    unit: str
    valid: bool
    reason: str
    verdict: Optional[str]
    label: str
    uncertainty: Optional[Uncertainty] = None


class Parameters(Mapping[str, float]):
    """The parameters of an analysis by name, in the order of its settings: parameters["Ra"].

    Configurable rows are named with their number ("Rmr 1"), with `Edition="both"` rows of the new one with it ("Ra/2021").
    """

    def __init__(self, rows: Iterable[ParameterRow]) -> None:
        self._rows = list(rows)
        self._values = {row.name: row.value for row in reversed(self._rows)}

    def __getitem__(self, name: str) -> float:
        try:
            return self._values[name]
        except KeyError:
            raise KeyError(f"{name}: the analysis has no such parameter{nearest(name, self)}") from None

    def __iter__(self) -> Iterator[str]:
        return iter(dict.fromkeys(row.name for row in self._rows))

    def __len__(self) -> int:
        return len(self._values)

    def table(self) -> List[ParameterRow]:
        """Name, value, unit, valid, reason, verdict and label of each."""
        return list(self._rows)

    def to_frame(self) -> Any:
        """The same as a pandas.DataFrame with the names as index."""
        import pandas

        return pandas.DataFrame(self._rows, columns=ParameterRow._fields).set_index("name")

    def __repr__(self) -> str:
        lines = (f"{row.name:8} {row.value:12.6g} {row.unit:4} {row.verdict or row.reason}" for row in self._rows)
        return "\n".join(line.rstrip() for line in lines)

    def _repr_html_(self) -> str:
        lines = []
        for row in self._rows:
            cells = (row.name, f"{row.value:.6g}", row.unit, row.verdict or "", row.label.strip() or row.reason)
            lines.append("".join(f"<td>{html.escape(cell)}</td>" for cell in cells))
        return f"<table><tr>{'</tr><tr>'.join(lines)}</tr></table>"


class Range(NamedTuple):
    """Samples first to last, counted from 0; `slice` takes them out of an array."""

    first: int
    last: int
    points: int

    @property
    def slice(self) -> slice:
        """array[range.slice]"""
        return slice(self.first, self.first + self.points)


Curve = TypeVar("Curve", _steps.Spectrum, _steps.BearingRatio, _steps.Amplitudes)


def _frozen(curve: Curve) -> Curve:
    """The curve, which nobody may write into any more."""
    for array in curve:
        array.flags.writeable = False
    return curve


class Analysis:
    """The results of an analysis. Arrays are read-only and outlive the analysis; profiles are views without a copy.

    Profiles are as long as the record; outside their range (`ranges`) they hold what is left there, which means
    nothing.
    """

    def __init__(self, profile: Profile, engine: _engine.Analysis, has_trials: bool, reads: Sequence[bytes]) -> None:
        self.profile = profile
        self._engine = engine
        self._has_trials = has_trials
        self._reads = reads  # files beside the profile's own

    def part(self, name: str) -> Array:
        """The valid range alone of a profile by its name: "raw", "form_suppressed", "primary", "roughness" ..."""
        samples = self._engine.samples(name, True)
        return np.empty(0) if samples is None else samples

    def _samples(self, name: str) -> Array:
        samples = self._engine.samples(name, False)
        assert samples is not None
        return samples

    @property
    def raw(self) -> Array:
        """The measured heights in um."""
        return self._samples("raw")

    @property
    def form_suppressed(self) -> Array:
        """Heights above the form in um, over ranges["compute"]."""
        return self._samples("form_suppressed")

    @property
    def primary(self) -> Array:
        """The primary profile in um, over ranges["primary"]."""
        return self._samples("primary")

    @property
    def waviness(self) -> Array:
        """The waviness profile in um, over ranges["evaluation"]."""
        return self._samples("waviness")

    @property
    def roughness(self) -> Array:
        """The roughness profile in um, over ranges["evaluation"]."""
        return self._samples("roughness")

    @property
    def closing(self) -> Optional[Array]:
        """Closing envelope of the waviness in um; None where no parameter asked for it."""
        return self._engine.samples("closing", False)

    @property
    def opening(self) -> Optional[Array]:
        """Opening envelope of the waviness in um; None where no parameter asked for it."""
        return self._engine.samples("opening", False)

    @property
    def spacing_um(self) -> float:
        """Spacing of the derived profiles; perpendicular residuals stretch that of the record."""
        return self._engine.spacing_um

    @cached_property
    def x_mm(self) -> Array:
        """Positions of the derived profiles' samples in mm, from the first of the record on."""
        return positions_mm(len(self.raw), self.spacing_um)

    @cached_property
    def spectrum(self) -> _steps.Spectrum:
        """Amplitudes and wavelengths of the form-suppressed profile."""
        return _frozen(_steps.spectrum(self.part("form_suppressed"), self.spacing_um))

    @cached_property
    def bearing_ratio(self) -> _steps.BearingRatio:
        """Material-ratio curve of the roughness profile."""
        return _frozen(_steps.material_ratio(self.part("roughness")))

    @cached_property
    def amplitudes(self) -> _steps.Amplitudes:
        """Amplitude distribution of the roughness profile."""
        return _frozen(_steps.Amplitudes(*_engine.amplitudes(self.bearing_ratio.height_um)))

    @cached_property
    def parameters(self) -> Parameters:
        """The parameters that the settings select."""
        rows = [ParameterRow(*row) for row in self._engine.rows()]
        if self._has_trials:
            told = (*self._tree["parameters"], *self._tree["material_ratios"], *self._tree["htps"])
            for i, row in enumerate(told):
                known = row["uncertainty"] and Uncertainty(**row["uncertainty"])
                rows[i] = rows[i]._replace(verdict=row["verdict"], uncertainty=known)
        return Parameters(rows)

    @property
    def sensitivities(self) -> Dict[str, Dict[str, float]]:
        """What each line of the budget contributes to the uncertainty of each parameter, where that was asked for."""
        rows = (row for row in self._tree["parameters"] if row.get("sensitivities"))
        return {row["name"]: {line["line"]: line["contribution"] for line in row["sensitivities"]} for row in rows}

    @cached_property
    def _tree(self) -> Dict[str, Any]:
        return self.to_dict()

    @property
    def form(self) -> Dict[str, Any]:
        """The form that was taken out: caption and figures, under the names of `texturon analyze --json`."""
        return dict(self._tree["form"])

    @cached_property
    def ranges(self) -> Dict[str, Range]:
        """Where profiles mean something: "compute" (form-suppressed), "primary", "evaluation" (all others)."""
        return {name: Range(*ends) for name, ends in self._tree["ranges"].items()}

    @property
    def provenance(self) -> Dict[str, Any]:
        """Where the figures come from: input, settings and scope, as `texturon analyze --json` tells them."""
        return {name: self._tree[name] for name in (*_RECORD, *_ORIGIN) if name in self._tree}

    @property
    def messages(self) -> List[str]:
        """What a window would have shown meanwhile, in order."""
        return self._engine.messages

    @property
    def notices(self) -> List[str]:
        """Remarks on what was tolerated, guessed, or looks wrong."""
        return self._engine.notices

    def to_json(self, *, profiles: bool = False, indent: bool = True) -> str:
        """The text of `texturon analyze --json`; with profiles, that of `--profiles` too."""
        return self._engine.json(profiles, indent).decode("utf-8", "surrogateescape")

    def to_dict(self, *, profiles: bool = False) -> Dict[str, Any]:
        """The same as Python objects."""
        tree: Dict[str, Any] = json.loads(self.to_json(profiles=profiles, indent=False))
        return tree

    def plot(self) -> Any:
        """A matplotlib Figure: primary profile with waviness above, roughness below, over ranges["evaluation"]."""
        import matplotlib.pyplot

        figure, (above, below) = matplotlib.pyplot.subplots(2, 1, sharex=True, layout="constrained")
        evaluated = self.ranges["evaluation"].slice
        above.plot(self.x_mm[evaluated], self.primary[evaluated], label="primary", linewidth=0.5)
        above.plot(self.x_mm[evaluated], self.waviness[evaluated], label="waviness")
        below.plot(self.x_mm[evaluated], self.roughness[evaluated], label="roughness", linewidth=0.5)
        below.set_xlabel("mm")
        for axes in (above, below):
            axes.set_ylabel("µm")
            axes.legend(loc="upper right")
        return figure

    def __repr__(self) -> str:
        return f"<Analysis of {self.profile!r}: {len(self.parameters)} parameters>"

    def _repr_html_(self) -> str:
        heading = html.escape(f"{self.profile!r}; {self.form['caption']}")
        return f"<p>{heading}</p>{self.parameters._repr_html_()}"


def _region(region: Sequence[float]) -> Tuple[int, float, float, float]:
    """Mode and lengths of `texturon --region`; two numbers are start and end."""
    try:
        numbers = [float(number) for number in region]
    except (TypeError, ValueError):
        numbers = []
    if len(numbers) == 2 and np.isfinite(numbers).all():
        return 1, numbers[0], 0.0, numbers[1] - numbers[0]
    if len(numbers) == 4 and np.isfinite(numbers).all() and numbers[0] in range(256):
        return int(numbers[0]), numbers[1], numbers[2], numbers[3]
    raise _engine.Error("region: must be (start_mm, end_mm) or (mode, start_mm, end_mm, length_mm).")


def trials_of(
    budget: Union[Path, Mapping[str, Union[str, float]]], trials: int, seed: int, interval: str, sensitivities: bool
) -> _engine.Trials:
    """Trials by a budget."""
    if isinstance(budget, Mapping):
        entries = {key: value if isinstance(value, str) else repr(float(value)) for key, value in budget.items()}
        request = _engine.trials_of_entries(entries)
    else:
        request = _engine.trials_of_file(input_path(budget))
    if not 2 <= trials <= _engine.most_trials:
        raise _engine.Error(f"trials: must be 2 to {_engine.most_trials}.")
    if not 0 <= seed <= 2**53:
        raise _engine.Error("seed: must be a whole number from 0 to 2^53.")
    request.trials, request.seed, request.sensitivities = trials, seed, sensitivities
    request.set_interval(interval)
    return request


def analyze(
    profile: Union[Profile, Path],
    settings: SettingsLike = None,
    *,
    parameters: Optional[Iterable[str]] = None,
    region: Optional[Sequence[float]] = None,
    exclude: Optional[Tuple[int, int]] = None,
    whole_cutoffs: bool = False,
    all_data_for_form: bool = False,
    budget: Union[Path, Mapping[str, Union[str, float]], None] = None,
    trials: int = 1000,
    seed: int = 1,
    interval: str = "symmetric",
    sensitivities: bool = False,
    **keys: Value,
) -> Analysis:
    """Takes the form out of a profile, filters it and computes its parameters, as `texturon analyze` does.

    profile: a Profile, or the path of a file with one.
    settings: Settings, a settings file, a mapping of keys, or None for the defaults; keys: changes to them
    (LcCutoffMM=0.8).
    parameters: names of the parameters wanted, in their order; None: those of the settings, which are all to begin
    with.
    region: (start_mm, end_mm) of the record, or the four numbers of `texturon --region`.
    exclude: first and last sample of a stretch that no form is fitted to.
    whole_cutoffs: evaluate a whole number of long-wave cutoffs.
    all_data_for_form: fit the form over the whole record, whatever the region.
    budget: what the measurement is uncertain by (docs/uncertainty.md), a file or its keys and values; every row then
    has an Uncertainty, of so many `trials` with random numbers of this `seed`, over the "symmetric" or the "shortest"
    interval.
    sensitivities: also what each line of the budget contributes.

    Python's lock is free meanwhile, so that threads compute side by side; Ctrl+C ends long fits and filters. What the
    console refuses raises texturon.Error with its sentence, a file that is not there OSError.
    """
    made = settings_of(settings, keys)
    if parameters is not None:
        made.select(parameters)
    scope = _engine.Scope()
    scope.region = None if region is None else _region(region)
    scope.exclude = sample_pair(exclude)
    scope.whole_cutoffs = bool(whole_cutoffs)
    scope.all_data_for_form = bool(all_data_for_form)
    request = None
    if budget is not None:
        request = trials_of(budget, trials, seed, interval, sensitivities)
    reads = [system_path(path) for path in (settings, budget) if isinstance(path, (str, os.PathLike))]
    file = reads[0] if isinstance(settings, (str, os.PathLike)) else b""
    record = as_profile(profile)
    engine = _engine.analyze(record._record, made._engine, scope, file, request)
    return Analysis(record, engine, request is not None, reads)
