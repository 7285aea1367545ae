# SPDX-License-Identifier: Apache-2.0
import copy
import os
import pickle
import shutil
from pathlib import Path

import numpy as np
import pytest
import texturon
from conftest import SAMPLES, console

NAMES = ["ground", "honed", "turned"]


def test_a_batch_keeps_order_and_tells_failures():
    Path("wrong.lmt").write_text("nothing")
    paths = [*(f"samples/{name}.lmt" for name in NAMES), "wrong.lmt", "missing.lmt"] * 5
    rows = list(texturon.batch(paths, jobs=3, parameters=["Ra", "Pt"], LcCutoffMM=0.25))
    assert [row.path for row in rows] == paths
    for row in rows[:3]:
        assert row.error is None
        assert row.values == dict(texturon.analyze(row.path, LcCutoffMM=0.25, parameters=["Ra", "Pt"]).parameters)
    assert not rows[3].values and "wrong.lmt" in rows[3].error and "missing.lmt" in rows[4].error
    frame = texturon.batch(paths[:5], parameters=["Ra"]).to_frame()
    assert frame["Ra"].notna().tolist() == [True] * 3 + [False] * 2 == frame["error"].isna().tolist()
    with pytest.raises(texturon.ReadError):
        list(texturon.batch(paths, errors="raise"))
    folder = [row.path for row in texturon.batch("samples", mask="*ed.lmt")]
    assert folder == ["samples/honed.lmt", "samples/turned.lmt"]


def test_exports_are_those_of_the_console():
    analysis = texturon.analyze("samples/honed.lmt")
    for kind in ("roughness", "primary-adf", "roughness-brc", "spectrum", "probability"):
        text = texturon.export(analysis, kind, "out.csv")
        assert Path("out.csv").read_bytes() == console("export", "--no-trace", "samples/honed.lmt", kind)
        assert text.encode("cp1252") == Path("out.csv").read_bytes()


def test_what_is_read_is_never_written():
    analysis = texturon.analyze("samples/ground.lmt", shutil.copy("samples/production.ini", "own.ini"))
    before = Path("own.ini").read_bytes()
    for target in ("own.ini", SAMPLES / "ground.lmt"):
        with pytest.raises(texturon.Error, match="is read"):
            texturon.export(analysis, "roughness", target)
    assert Path("own.ini").read_bytes() == before
    with pytest.raises(texturon.Error, match="LcCutoffMM"):
        texturon.export(analysis, "roughness", LcCutoffMM=0.25)
    with pytest.raises(ValueError, match="null byte"):
        texturon.convert("samples/ground.lmt", "cut\0.sdf")
    assert not Path("cut").exists()


def test_converted_profiles_hold_the_heights():
    written = texturon.convert(texturon.Profile([0.0, 0.125, -2.5] * 100, 0.25, identification="a, b"), "out.sdf")
    assert written == "out.sdf" and np.allclose(texturon.load(written).heights, [0.0, 0.125, -2.5] * 100, atol=1e-6)
    names = os.fsdecode(b"caf\xe9.lmt"), "Größe, µm.lmt"
    for name in names:
        shutil.copy("samples/ground.lmt", name)
        assert texturon.load(name).file == name and texturon.analyze(name).to_json()


def test_settings_are_checked_as_they_are_assigned():
    settings = texturon.Settings(FilterType="gaussian", lccutoffmm=np.float32(0.25), Metric=np.False_)
    assert (settings.FilterType, settings.LcCutoffMM, settings.Metric) == (0, 0.25, False)
    settings["PARAMETERS.Toleranced00"] = True
    wrong = [("FilterType", "fourier"), ("FilterType", 1.5), ("LcCutoffMM", None), ("AvailableParameters", 999)]
    for name, value in wrong:
        with pytest.raises(texturon.Error):
            setattr(settings, name, value)
    assert not hasattr(settings, "NoSuchKey") and "LcCutoffMM" in dir(settings)
    assert "LcCutoffMM" in settings and "NoSuchKey" not in settings and list(settings) == settings.keys()
    settings.save("kept.ini")
    again = texturon.read_settings("kept.ini")
    changed = {key for key in settings.keys() if settings[key] != again[key]}  # more digits than a file has
    assert changed == {"ASPHERIC_PARAMETERS.C_CurvatureMM", "ASPHERIC_PARAMETERS.E_ConicConstant"}
    assert settings == copy.copy(settings) != texturon.Settings() and again["PARAMETERS.Toleranced00"]
    assert eval(f"texturon.{settings!r}") == settings == copy.deepcopy(settings) == pickle.loads(pickle.dumps(settings))
    kept = settings.copy()
    settings.select(["Rq", "Ft"])
    assert settings["PARAMETERS.Name01"] == "Ft" and settings["PARAMETERS.Toleranced01"] and kept != settings
    Path("broken.ini").write_text("[ANALYSIS]\nLcCutoffMM=wide\n")
    with pytest.raises(texturon.Error, match="LcCutoffMM"):
        texturon.read_settings("broken.ini")
    assert texturon.read_settings("broken.ini", strict=False).LcCutoffMM == 0.0


def test_reports_come_from_the_desktop_program(monkeypatch):
    with pytest.raises(OSError, match="desktop"):
        texturon.report("samples/arc.lmt", "arc.html", program="no-such-desktop")
    program = os.environ.get("TEXTURON_DESKTOP_PROGRAM")
    if not program:
        pytest.skip("the desktop program is not built")
    monkeypatch.setenv("QT_QPA_PLATFORM", "offscreen")
    texturon.report("samples/arc.lmt", "arc.html", SAMPLES / "production.ini", program=program)
    assert "Arc of 12 mm" in Path("arc.html").read_text()
    with pytest.raises(texturon.Error):
        texturon.report("samples/arc.lmt", "samples/arc.lmt", program=program)
