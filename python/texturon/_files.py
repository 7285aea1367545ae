# SPDX-License-Identifier: Apache-2.0
"""Files that are written: converted profiles, exports, reports."""

import errno
import os
import shutil
import subprocess
import tempfile
from typing import Any, Optional, Union

from . import _engine
from ._analysis import Analysis, analyze
from ._arguments import Path, input_path, system_path
from ._profile import Profile, as_profile
from ._settings import SettingsLike, Value, settings_of


def convert(source: Union[Profile, Path], target: Path) -> str:
    """Writes a profile in the format of the target's extension (.lmt, .prf, .sdf, .pr, ...; .lmt for any other).

    Returns the path that was written. An input is never destroyed.
    """
    return os.fsdecode(_engine.convert(as_profile(source)._record, system_path(target)))


def export(
    source: Union[Analysis, Profile, Path],
    kind: str,
    target: Optional[Path] = None,
    *,
    mod: bool = False,
    **options: Any,
) -> str:
    """One profile, curve or table as `texturon export` writes it: "roughness", "primary-brc", "spectrum", ...

    source: an analysis, or what analyze() takes, with its options. target: file to write, in Windows-1252; None: none.
    mod: as form data for instruments. Returns the text, with CR LF line ends.
    """
    if isinstance(source, Analysis) and options:
        raise _engine.Error(f"{', '.join(options)}: the analysis is made; options are for a profile or a file.")
    analysis = source if isinstance(source, Analysis) else analyze(source, **options)
    text = analysis._engine.export(kind, mod)
    if target is not None:
        for read in analysis._reads:
            if os.path.exists(target) and os.path.exists(read) and os.path.samefile(read, target):
                raise _engine.Error(f"{os.fsdecode(read)} is read and must not be written.")
        _engine.write_text(analysis.profile._record, system_path(target), text)
    return _engine.text_of(text)


def report(
    path: Path, target: Path, settings: SettingsLike = None, *, program: str = "texturon-desktop", **keys: Value
) -> None:
    """Writes the report of a file as .pdf or .html, with the desktop program where that is installed.

    OSError where it is not; texturon.Error with its sentence where it refuses.
    """
    found = shutil.which(program)
    if found is None:
        raise FileNotFoundError(errno.ENOENT, "the desktop program is not installed", program)
    input_path(path)
    with tempfile.TemporaryDirectory() as folder:
        file = os.path.join(folder, "settings.ini")
        if isinstance(settings, (str, os.PathLike)) and not keys:
            file = os.fspath(settings)
        else:
            settings_of(settings, keys).save(file)  # with six decimals
        call = [found, "--report", os.fspath(path), "-o", os.fspath(target), "--settings", file]
        done = subprocess.run(call, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    if done.returncode != 0:
        raise _engine.Error(done.stderr.decode("utf-8", "replace").strip() or f"{program} failed.")
