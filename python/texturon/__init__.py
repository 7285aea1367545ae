# SPDX-License-Identifier: Apache-2.0
"""Surface texture of profiles: the engine of Texturon for scripts, notebooks and pipelines.

>>> import texturon
>>> analysis = texturon.analyze("samples/ground.lmt", LcCutoffMM=0.8)
>>> analysis.parameters["Ra"]

Heights and point spacings are micrometres, lengths of settings millimetres, as their names say (_um, UM, _mm, MM).
Values are those of `texturon analyze`, to the last bit. What Texturon refuses raises texturon.Error, a ValueError, with
its sentence.
"""

from ._analysis import Analysis, ParameterRow, Parameters, Range, Uncertainty, analyze
from ._batch import Batch, BatchRow, batch
from ._compare import ComparedRow, Step, compare, practices
from ._engine import Error, ReadError, __version__
from ._files import convert, export, report
from ._profile import Profile, load
from ._settings import Settings, UnknownNameError, read_settings
from ._steps import (
    Amplitudes,
    BearingRatio,
    FormRemoval,
    Motif,
    Motifs,
    ProfileElement,
    Spectrum,
    amplitudes,
    closing,
    gaussian_filter,
    iso13565_filter,
    material_ratio,
    motifs,
    opening,
    profile_elements,
    remove_form,
    robust_filter,
    spectrum,
    spline_filter,
)

__all__ = [
    "Amplitudes",
    "Analysis",
    "Batch",
    "BatchRow",
    "BearingRatio",
    "ComparedRow",
    "Error",
    "FormRemoval",
    "Motif",
    "Motifs",
    "ParameterRow",
    "Parameters",
    "Profile",
    "ProfileElement",
    "Range",
    "ReadError",
    "Settings",
    "Spectrum",
    "Step",
    "Uncertainty",
    "UnknownNameError",
    "__version__",
    "amplitudes",
    "analyze",
    "batch",
    "closing",
    "compare",
    "convert",
    "export",
    "gaussian_filter",
    "iso13565_filter",
    "load",
    "material_ratio",
    "motifs",
    "opening",
    "practices",
    "profile_elements",
    "read_settings",
    "remove_form",
    "report",
    "robust_filter",
    "spectrum",
    "spline_filter",
]
