# SPDX-License-Identifier: Apache-2.0
"""Settings: the keys of the settings file as attributes."""

import os
import re
from typing import Any, Callable, Dict, Iterable, Iterator, List, Mapping, Tuple, Union

import numpy as np

from . import _engine
from ._arguments import Path, input_path, nearest, system_path, texts
from ._engine import Error

Value = Union[str, bool, int, float]


class UnknownNameError(Error, AttributeError):
    """A setting or a parameter that there is not; the sentence names those that come near."""


def _words(choices: str) -> Dict[str, str]:
    """The numbers of "0 none (mean height), 1 least squares line" by their names."""
    named = re.findall(r"(?:^|, )(\d+) ([^,(]+)", choices)
    return {name.strip().lower(): number for number, name in named}


class Settings:
    """How a profile is analysed: every key of the settings file as an attribute, with its default to begin with.

    >>> settings = texturon.Settings(LcCutoffMM=2.5, FilterType="gaussian")
    >>> settings.FormRemovalType = "arc"

    A key that occurs in several sections is named with its own: settings["PARAMETERS.Selected00"]. Where a key's
    numbers have names (docs/settings.md), the name or its last words will do. What `texturon --set` refuses raises
    texturon.Error, and the settings stay as they were.
    """

    __slots__ = ("_engine",)
    _engine: _engine.Settings

    def __init__(self, **keys: Value) -> None:
        object.__setattr__(self, "_engine", _engine.Settings())
        self.update(keys)

    def _place(self, name: str) -> Tuple[str, str]:
        """The full name, and the names of its numbers."""
        places = _engine.places_of(name)
        if len(places) == 1:
            return places[0]
        if places:
            raise UnknownNameError(f"{name}: stands in several sections; one of {', '.join(place for place, _ in places)}.")
        known = self.keys()
        near = nearest(name, known + [key.split(".", 1)[1] for key in known])
        raise UnknownNameError(f"{name}: there is no such setting{near or '.'}")

    def __getitem__(self, name: str) -> Any:
        return self._engine.get(self._place(name)[0])

    def __setitem__(self, name: str, value: Value) -> None:
        place, choices = self._place(name)
        if isinstance(value, (bool, np.bool_)):
            text = "1" if value else "0"
        elif isinstance(value, (int, np.integer)):
            text = str(int(value))
        elif isinstance(value, (float, np.floating)):
            text = repr(float(value))
        elif isinstance(value, str):
            words = _words(choices)
            ends = [number for word, number in words.items() if word.endswith(" " + value.lower())]
            text = words.get(value.lower(), ends[0] if len(ends) == 1 else value)
        else:
            raise Error(f"{place}: {value!r} is neither a number nor a flag nor a text.")
        try:
            self._engine.set(place, text)
        except Error as error:
            if isinstance(value, str) and choices:
                raise Error(f"{error} Its values are {choices}.") from None
            raise

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        return self[name]

    def __setattr__(self, name: str, value: Value) -> None:
        self[name] = value

    def __dir__(self) -> List[str]:
        return [*super().__dir__(), *(key.split(".", 1)[1] for key in self.keys())]

    def keys(self) -> List[str]:
        """Every key, with its section: "ANALYSIS.LcCutoffMM"; lists have a key a row."""
        return self._engine.keys()

    def __iter__(self) -> Iterator[str]:
        return iter(self.keys())

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and len(_engine.places_of(name)) == 1

    def update(self, keys: Mapping[str, Value]) -> None:
        """Assigns several; where one is refused those before it are in force."""
        for name, value in keys.items():
            self[name] = value

    def select(self, parameters: Iterable[str]) -> None:
        """Asks for these parameters in this order, by their names in the edition in force (`Edition="2021"`).

        Rows that are there already keep their limits. Capital and small letters are one.
        """
        known = {other.lower(): other for other in _engine.parameter_names if self._engine.is_known_parameter(other)}
        letters = {other[0] for other in known}  # of the profiles; the engine gives others a row without a value
        names = []
        for name in [parameters] if isinstance(parameters, str) else parameters:
            texts(parameters=name)
            if name[:1].lower() not in letters or not self._engine.is_known_parameter(name):
                raise UnknownNameError(f"{name}: there is no such parameter{nearest(name, known.values()) or '.'}")
            names.append(known.get(name.lower(), name))
        self._engine.select(names)

    def copy(self) -> "Settings":
        """Settings of their own with the same values."""
        other = Settings()
        object.__setattr__(other, "_engine", _engine.Settings(self._engine))
        return other

    __copy__ = copy

    def save(self, path: Path) -> None:
        """Writes every key to a settings file, numbers with six decimals; what else the file holds stays."""
        self._engine.write(system_path(path))

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Settings) and self._engine.equals(other._engine)

    __hash__ = None  # type: ignore[assignment]

    def _changes(self) -> Dict[str, Value]:
        """What differs from the defaults."""
        usual = Settings()
        known = set(usual.keys())
        return {key: self[key] for key in self.keys() if key not in known or self[key] != usual[key]}

    def __reduce__(self) -> Tuple[Callable[..., "Settings"], Tuple[None, Dict[str, Value]]]:
        return settings_of, (None, self._changes())  # for pickle and deepcopy

    def __repr__(self) -> str:
        return f"Settings(**{self._changes()!r})"


SettingsLike = Union[Settings, Path, Mapping[str, Value], None]


def read_settings(path: Path, *, strict: bool = True) -> Settings:
    """Reads a settings file over the defaults.

    A file with values that are not wholly understood raises texturon.Error with the remarks on them; with strict=False
    they are read as far as they go, as the console does with exit status 1.
    """
    settings = Settings()
    understood, remarks = settings._engine.read(input_path(path))
    if strict and not understood:
        raise Error(f"{os.fspath(path)}: holds values that are not understood: {'; '.join(remarks)}")
    return settings


def settings_of(settings: SettingsLike, keys: Mapping[str, Value]) -> Settings:
    """Settings of their own from whatever names them, with some changes."""
    if settings is None:
        made = Settings()
    elif isinstance(settings, Settings):
        made = settings.copy()
    elif isinstance(settings, Mapping):
        made = Settings()
        made.update(settings)
    else:
        made = read_settings(settings)
    made.update(keys)
    return made
