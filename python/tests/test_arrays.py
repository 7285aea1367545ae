# SPDX-License-Identifier: Apache-2.0
import copy

import numpy as np
import pytest
import texturon
from conftest import SAMPLES
from hypothesis import given
from hypothesis import strategies as st
from hypothesis.extra import numpy as arrays

GROUND = texturon.load(SAMPLES / "ground.lmt")

STEPS = {
    "gaussian_filter": lambda z: texturon.gaussian_filter(z, 0.5, 0.01),
    "spline_filter": lambda z: texturon.spline_filter(z, 0.5, 0.01),
    "robust_filter": lambda z: texturon.robust_filter(z, 0.5, 0.01),
    "iso13565_filter": lambda z: texturon.iso13565_filter(z, 0.5, 0.01),
    "closing": lambda z: texturon.closing(z, 0.5, 0.1),
    "opening": lambda z: texturon.opening(z, 0.5, 0.1),
    "spectrum": lambda z: texturon.spectrum(z, 0.5).amplitude_um,
    "material_ratio": lambda z: texturon.material_ratio(z).height_um,
    "amplitudes": texturon.amplitudes,
    "motifs": lambda z: texturon.motifs(z, 0.5),
    "profile_elements": lambda z: texturon.profile_elements(z, 0.5, 0.1, 1.0),
    "remove_form": lambda z: texturon.remove_form(z, 0.5, "polynomial", PolynomialOrder=2),
}

# Heights of any real kind, whole or in steps, forward or backward, writable or not.
heights = st.builds(
    lambda kind, rows, length, seed, step, frozen: _made(kind, rows, length, seed, step, frozen),
    st.sampled_from(["f8", "f4", "f2", ">f8", "i2", "u1", "i8"]),
    st.integers(1, 3),
    st.integers(60, 90),
    st.integers(0, 99),
    st.sampled_from([1, 2, -1, -3]),
    st.booleans(),
)


def _made(kind, rows, length, seed, step, frozen):
    noise = np.random.default_rng(seed).integers(0, 100, (rows, length * abs(step))).astype(kind)[:, ::step]
    noise.flags.writeable = not frozen
    return noise


@pytest.mark.parametrize("step", STEPS.values(), ids=STEPS)
@given(heights)
def test_rows_are_profiles_whatever_their_kind(step, z):
    before = z.copy()
    together = step(z)
    for row, one in zip(z, together):
        alone = step(np.array(row.tolist(), dtype=float))
        np.testing.assert_equal(*((made if isinstance(made, tuple) else (made,)) for made in (alone, one)))
    assert np.array_equal(z, before) and len(together) == len(z)


@given(arrays.arrays(np.float64, st.integers(0, 80), elements=st.floats(width=64)))
def test_any_numbers_make_a_profile_or_a_sentence(z):
    if not np.isfinite(z).any():
        with pytest.raises(texturon.Error, match="heights: "):
            texturon.Profile(z, 0.5)
        return
    profile = texturon.Profile(z, 0.5)
    where = np.flatnonzero(np.isfinite(z))
    inside = z[where[0] : where[-1] + 1]
    known = np.isfinite(inside)
    assert np.array_equal(profile.heights[known], inside[known])
    bridged = np.interp(np.flatnonzero(~known), np.flatnonzero(known), inside[known] / 4) * 4
    assert np.allclose(profile.heights[~known] / 4, bridged / 4, rtol=1e-12, atol=1e-300)
    assert bool(profile.notices) == (len(where) < len(z))
    try:
        texturon.analyze(profile)
    except texturon.Error as error:
        assert str(error).endswith(".")


def test_invalid_points_are_treated_as_the_readers_treat_them():
    z = GROUND.heights[:300].round(6)
    z[[0, 1, 40, 41, 42, 298, 299]] = np.nan
    lines = (f"{0.5 * i:.1f},{-25400.0 if np.isnan(height) else height:.6f}" for i, height in enumerate(z))
    with open("gaps.csv", "w") as file:
        file.write("x/um,z/um\n" + "\n".join(lines) + "\n")
    read = texturon.load("gaps.csv")
    assert copy.deepcopy({"read": read})["read"] is read
    for gaps in (z, np.ma.masked_invalid(z), z.tolist()):
        assert np.allclose(texturon.Profile(gaps, 0.5).heights, read.heights, rtol=0, atol=1e-12)


def test_both_letters_mu_are_micro():
    assert all(texturon.Profile([1.0, 2.0], 1.0, unit=unit).heights[1] == 2.0 for unit in ("\u00b5m", "\u03bcm"))


@pytest.mark.parametrize("points", [16, 17, 8000])
def test_lines_of_the_spectrum_are_fourier_sums(points):
    z = GROUND.heights[:points]
    wavelength, amplitude = texturon.spectrum(z, 0.5)
    sums = 2.0 * np.abs(np.fft.rfft(z)) / points
    sums[0] = z.mean()
    sums[-1] /= 1.0 if points % 2 else np.sqrt(2.0)
    assert np.allclose(amplitude, sums, rtol=0, atol=1e-13)
    assert np.allclose(wavelength[1:], 0.001 * len(sums) / np.arange(1, len(sums)))


WRONG = [
    (lambda: texturon.Profile([[1.0, 2.0]], 1.0), "1 dimensions"),
    (lambda: texturon.Profile(["a"], 1.0), "real numbers"),
    (lambda: texturon.Profile([1j], 1.0), "complex"),
    (lambda: texturon.Profile([True, False], 1.0), "bool"),
    (lambda: texturon.Profile([1.0], 0.0), "spacing_um"),
    (lambda: texturon.Profile([1.0], np.inf), "spacing_um"),
    (lambda: texturon.Profile([1.0], 1.0, unit="litre"), "litre"),
    (lambda: texturon.Profile(np.zeros(750_001), 1.0), "750000"),
    (lambda: texturon.Profile([[1.0], [1.0, 2.0]], 1.0), "heights: "),
    (lambda: texturon.Profile([1.0], 1.0, unit=3), "unit: "),
    (lambda: texturon.Profile([1.0], "1"), "spacing_um"),
    (lambda: texturon.Profile([1.0], 1.0, tip_radius_mm=-0.002), "tip_radius_mm"),
    (lambda: texturon.spline_filter(GROUND, 0.5, 0.8, tension=2.0), "tension"),
    (lambda: texturon.profile_elements(GROUND, 0.5, height_um=-1.0), "height_um"),
    (lambda: texturon.gaussian_filter([], 1.0, 1.0), "there are none"),
    (lambda: texturon.gaussian_filter([1.0, np.nan], 1.0, 1.0), "no numbers"),
    (lambda: texturon.gaussian_filter(GROUND, 0.5, 0.001), "third of the cutoff"),
    (lambda: texturon.gaussian_filter(GROUND, 0.5, -1.0), "cutoff_mm"),
    (lambda: texturon.closing(np.zeros((2, 2, 2)), 0.5, 1.0), "shape"),
    (lambda: texturon.closing(GROUND, 0.5, np.nan), "radius_mm"),
    (lambda: texturon.spectrum([1.0], 0.5), "too short"),
    (lambda: texturon.remove_form([0.0, 0.0], 1.0, "arc"), "cannot be fitted"),
    (lambda: texturon.remove_form(GROUND, 1.0, "cone"), "7 free form"),
]


@pytest.mark.parametrize("call, fragment", WRONG)
def test_wrong_arguments_are_named(call, fragment):
    with pytest.raises(texturon.Error, match=fragment):
        call()


def test_steps_make_what_an_analysis_makes():
    analysis = texturon.analyze(GROUND, FilterType="Gaussian")
    removal = texturon.remove_form(GROUND, 0.5)
    assert np.array_equal(removal.residual, analysis.form_suppressed) and removal.spacing_um == analysis.spacing_um
    assert removal.figures["slope"] == analysis.form["slope"]
    line = texturon.gaussian_filter(analysis.part("primary"), analysis.spacing_um, 0.8)
    assert np.array_equal(line, analysis.waviness)
    assert np.array_equal(texturon.closing(analysis.waviness, analysis.spacing_um, 1000.0), analysis.closing)
    whole = analysis.to_dict(profiles=True)["spectrum"]
    assert analysis.spectrum.amplitude_um.tolist() == whole["amplitude_um"]
    assert analysis.spectrum.wavelength_mm.tolist() == whole["wavelength_mm"]
    lines = texturon.export(analysis, "roughness-brc").splitlines()
    columns = [line.split(", ") for line in lines if line[:1].isdigit()]
    assert len(columns) == 8000
    for ratio, height, told in zip(*analysis.bearing_ratio, columns):
        assert [f"{ratio:.3f}", f"{height:.3f}"] == told[:2]
    motifs = texturon.motifs(analysis.part("primary"), analysis.spacing_um).roughness
    lengths = [(motif.last_peak - motif.first_peak) * analysis.spacing_um for motif in motifs]
    assert np.isclose(np.mean(lengths), analysis.parameters["AR"], rtol=1e-12)
