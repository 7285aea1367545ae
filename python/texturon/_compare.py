# SPDX-License-Identifier: Apache-2.0
"""Why two ways of evaluating give different figures."""

import os
from typing import Iterable, List, NamedTuple, Optional, Union

from . import _engine
from ._arguments import Path, input_path, nearest
from ._profile import Profile, as_profile
from ._settings import SettingsLike, settings_of


class Step(NamedTuple):
    """What one step from a to b does to a parameter: after the steps before it, and by itself from a."""

    name: str
    change: Optional[float]
    alone: Optional[float]


class ComparedRow(NamedTuple):
    """A parameter by both ways, their difference, the steps that make it up, and what these do to each other."""

    name: str
    unit: str
    a: Optional[float]
    b: Optional[float]
    difference: Optional[float]
    interaction: Optional[float]
    steps: List[Step]


def practices() -> List[str]:
    """Names of the built-in ways of evaluating (docs/compare.md)."""
    return list(_engine.practice_names)


def _practice(named: SettingsLike, parameters: Optional[List[str]]) -> _engine.Practice:
    base = settings_of(None, {})
    if parameters is not None:
        base.select(parameters)
    file = b""
    if isinstance(named, (str, os.PathLike)):
        if not os.path.exists(named):
            name = os.fspath(named)
            found = _engine.named_practice(base._engine, name)
            if found is None:
                raise _engine.Error(f"{name}: is no file and no practice{nearest(name, practices()) or '.'}")
            return found
        file = input_path(named)
    made = settings_of(named, {})
    if parameters is not None:
        made.select(parameters)
    return _engine.practice_of(made._engine, file)


def compare(
    profile: Union[Profile, Path],
    a: SettingsLike,
    b: SettingsLike,
    *,
    parameters: Optional[Iterable[str]] = None,
) -> List[ComparedRow]:
    """The way from the figures of one way of evaluating to those of another, as `texturon compare` tells it.

    a, b: Settings, a mapping of keys, a settings file, or the name of a built-in practice (practices()).
    parameters: names of those wanted; None: those that either selects.
    The changes of the steps add up to the difference. None where a value is missing.
    """
    names = [parameters] if isinstance(parameters, str) else None if parameters is None else list(parameters)
    record = as_profile(profile)
    rows = _engine.compare(record._record, _practice(a, names), _practice(b, names))
    return [ComparedRow(*row[:-1], [Step(*step) for step in row[-1]]) for row in rows]
