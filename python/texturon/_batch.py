# SPDX-License-Identifier: Apache-2.0
"""Many files: a row each, several at once."""

import os
import sys
from concurrent.futures import Future, ThreadPoolExecutor
from typing import Any, Dict, Iterable, Iterator, List, NamedTuple, Optional, Union

from . import _engine
from ._analysis import OPTIONS, analyze
from ._arguments import Path, system_path, whole
from ._profile import load
from ._settings import SettingsLike, Value, settings_of


class BatchRow(NamedTuple):
    """What one file gave: its parameters by name, or why there are none."""

    path: str
    values: Dict[str, float]
    error: Optional[str]


class Batch:
    """The rows of several files in their order, each computed when it is near: iterate over it, or `to_frame()`."""

    def __init__(
        self,
        paths: List[str],
        jobs: int,
        progress: bool,
        raises: bool,
        reading: Dict[str, Any],
        options: Dict[str, Any],
    ) -> None:
        self._paths = paths
        self._reading = reading
        self._jobs = jobs
        self._shows = progress and sys.stderr.isatty()
        self._raises = raises
        self._options = options

    def __len__(self) -> int:
        return len(self._paths)

    def _row(self, path: str) -> BatchRow:
        try:
            profile = load(path, **self._reading)
            return BatchRow(path, dict(analyze(profile, **self._options).parameters), None)
        except (_engine.Error, OSError, MemoryError) as error:
            if self._raises:
                raise
            return BatchRow(path, {}, str(error))

    def __iter__(self) -> Iterator[BatchRow]:
        with ThreadPoolExecutor(self._jobs, "texturon") as pool:
            waiting: List[Future[BatchRow]] = []
            done = 0
            try:
                for path in self._paths:
                    waiting.append(pool.submit(self._row, path))
                    if len(waiting) > 2 * self._jobs:
                        yield waiting.pop(0).result()
                        done += 1
                        self._show(done)
                while waiting:
                    yield waiting.pop(0).result()
                    done += 1
                    self._show(done)
            finally:
                for future in waiting:
                    future.cancel()

    def _show(self, done: int) -> None:
        if self._shows:
            print(f"\r{done} of {len(self)}", end="\n" if done == len(self) else "", file=sys.stderr, flush=True)

    def to_frame(self) -> Any:
        """A pandas.DataFrame with a line a file, a column a parameter, and a column `error`."""
        import pandas

        rows = list(self)
        paths = pandas.Index([row.path for row in rows], name="path")
        frame = pandas.DataFrame([row.values for row in rows], index=paths)
        return frame.assign(error=[row.error for row in rows])


def batch(
    paths: Union[Path, Iterable[Path]],
    settings: SettingsLike = None,
    jobs: Optional[int] = None,
    progress: bool = True,
    *,
    mask: str = "",
    errors: str = "rows",
    spacing_um: Optional[float] = None,
    column: Optional[int] = None,
    parameters: Optional[Iterable[str]] = None,
    **options: Any,
) -> Batch:
    """Analyses many files on several threads.

    paths: a folder, whose files with a known extension are taken, or that match `mask` ("*.prf"), by name; or paths of
    files.
    spacing_um, column: as for load(); settings, parameters, and options such as region and keys: as for analyze().
    jobs: files at once; None: one a processor core. progress: a line on standard error where that is a terminal.
    errors: "rows": a file that fails is a row with its sentence; "raise": it ends the batch.
    """
    if errors not in ("rows", "raise"):
        raise _engine.Error(f'errors: must be "rows" or "raise", not {errors!r}.')
    if jobs is not None:
        whole(jobs=jobs)
    if isinstance(paths, (str, os.PathLike)):
        os.scandir(paths).close()  # OSError where it is no folder
        names = [os.fsdecode(path) for path in _engine.files_of(system_path(paths), mask)]
    else:
        names = [os.fsdecode(path) for path in paths]
    others = {name: options.pop(name) for name in OPTIONS if name in options}
    keys: Dict[str, Value] = options
    made = settings_of(settings, keys)
    if parameters is not None:
        made.select(parameters)
    reading = {"spacing_um": spacing_um, "column": column}
    return Batch(names, jobs or os.cpu_count() or 1, progress, errors == "raise", reading, {"settings": made, **others})
