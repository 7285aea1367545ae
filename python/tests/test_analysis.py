# SPDX-License-Identifier: Apache-2.0
import gc
import json
import math
import os
import signal
import subprocess
import sys
import threading
import time

import numpy as np
import pytest
import texturon
from conftest import ROOT, SAMPLES, console

GROUND = SAMPLES / "ground.lmt"
BUDGET = ROOT / "tests/golden/files/budget.ini"

# Words of the console, and the same as arguments.
CALLS = [
    ("ground.lmt", [], {}),
    ("turned.lmt", ["--region", "1,0.5,0,2.5", "--exclude", "1200,1300"], {"region": (0.5, 3), "exclude": (1200, 1300)}),
    (
        "honed.lmt",
        ["--set", "ANALYSIS.FilterType=2", "--whole-cutoffs"],
        {"FilterType": "ISO 13565", "whole_cutoffs": True},
    ),
    ("honed.lmt", ["--set", "ANALYSIS.LcCutoffMM=50"], dict(LcCutoffMM=50)),
    ("honed.lmt", ["--set", "ANALYSIS.LcCutoffMM=0.001"], dict(LcCutoffMM=0.001)),
    ("arc.lmt", ["--settings", SAMPLES / "production.ini"], dict(settings=SAMPLES / "production.ini")),
    (
        "arc.lmt",
        ["--set", "ANALYSIS.FormRemovalType=2", "--region", "4,1,1,0", "--all-data-for-form", "--imperial"],
        dict(FormRemovalType="arc", region=(4, 1, 1, 0), all_data_for_form=True, Metric=False),
    ),
    ("asphere.lmt", ["--settings", SAMPLES / "asphere.ini"], dict(settings=SAMPLES / "asphere.ini")),
    ("freeform.lmt", ["--settings", SAMPLES / "freeform.ini"], dict(settings=str(SAMPLES / "freeform.ini"))),
    (
        "arc.lmt",
        ["--settings", SAMPLES / "production.ini", "--budget", BUDGET, "--set", "DECISION.DecisionRule=1"]
        + ["--trials", "20", "--seed", "7", "--interval", "shortest", "--sensitivities"],
        dict(settings=SAMPLES / "production.ini", budget=BUDGET, DecisionRule=1, trials=20, seed=7, interval="shortest")
        | dict(sensitivities=True),
    ),
    ("honed.lmt", ["--edition", "both"], {"Edition": "both"}),
    ("turned.lmt", ["--set", "STANDARD.Edition=2021"], {"Edition": "2021"}),
    (
        "ground.lmt",
        ["--set", "ROUGHNESS_BEARING_RATIOS.Selected00=1", "--set", "PRIMARY_HTPS.Selected03=1"],
        dict(settings={"ROUGHNESS_BEARING_RATIOS.Selected00": True, "PRIMARY_HTPS.Selected03": 1}),
    ),
]


@pytest.mark.parametrize("name, words, options", CALLS)
def test_equals_the_console_to_the_last_byte(name, words, options):
    analysis = texturon.analyze(f"samples/{name}", **options)
    printed = console("analyze", "--json", "--no-trace", "--profiles", f"samples/{name}", *words)
    assert analysis.to_json(profiles=True) + "\n" == printed.decode()
    tree = analysis.to_dict()
    told = [*tree["parameters"], *tree["material_ratios"], *tree["htps"]]
    rows = analysis.parameters.table()
    assert len(told) == len(rows) > 0
    for row, other in zip(rows, told):
        of_both = "/2021" if options.get("Edition") == "both" and other.get("edition") == "2021" else ""
        assert row.name == other["name"] + (f" {other['row'] + 1}" if "row" in other else of_both)
        assert row.value == other["value"] or (other["value"] is None and not math.isfinite(row.value))
        assert (row.valid, row.verdict, row.label) == (other["valid"], other["verdict"], other["label"])
        assert row.reason == other.get("reason", "")
        assert row.uncertainty == (tuple(other["uncertainty"].values()) if "uncertainty" in other else None)
    assert analysis.raw.tolist() == analysis.to_dict(profiles=True)["profiles"]["raw"]


def test_arrays_are_views_that_outlive_the_analysis():
    analysis = texturon.analyze(GROUND)
    names = ["raw", "form_suppressed", "primary", "waviness", "roughness", "closing", "opening"]
    views = {name: getattr(analysis, name) for name in names}
    copies = {name: view.copy() for name, view in views.items()}
    for name, view in views.items():
        assert np.shares_memory(view, getattr(analysis, name)) and view.shape == (8000,)
        with pytest.raises(ValueError):
            view[0] = 1.0
        with pytest.raises(ValueError):
            view.setflags(write=True)
    for curve in (analysis.spectrum, analysis.bearing_ratio, analysis.amplitudes):
        assert not any(array.flags.writeable for array in curve)
    del analysis
    gc.collect()
    filler = [texturon.analyze(GROUND) for _ in range(5)]
    assert all(np.array_equal(views[name], copies[name]) for name in names) and filler


REFUSED = [
    (lambda: texturon.analyze("missing.lmt"), FileNotFoundError, "missing.lmt"),
    (lambda: texturon.analyze("samples"), IsADirectoryError, "samples"),
    (lambda: texturon.load(SAMPLES / "production.ini"), texturon.ReadError, "no line is a row of numbers"),
    (lambda: texturon.analyze(np.zeros(99)), TypeError, "texturon.Profile(heights, spacing_um)"),
    (lambda: texturon.analyze(GROUND, parameters=["Xa"]), texturon.UnknownNameError, "Xa: "),
    (lambda: texturon.analyze(GROUND, Edition="2021", parameters=["RzDIN"]), texturon.Error, "no such parameter."),
    (lambda: texturon.analyze(GROUND, exclude=(1,)), texturon.Error, "exclude: "),
    (lambda: texturon.load(GROUND, spacing_um=-1.0), texturon.Error, "spacing_um: "),
    (lambda: texturon.load(GROUND, column=0), texturon.Error, "column: "),
    (lambda: texturon.batch("no-folder"), OSError, "no-folder"),
    (lambda: texturon.load(GROUND, profile=0), texturon.Error, "profile: must be a whole number"),
    (lambda: texturon.analyze(GROUND, region=(0, 0.001)), texturon.Error, "ground.lmt: not analysed, "),
    (lambda: texturon.analyze(GROUND, region=(0, np.nan)), texturon.Error, "region"),
    (lambda: texturon.analyze(GROUND, LcCutofMM=0.8), texturon.UnknownNameError, "did you mean LcCutoffMM"),
    (lambda: texturon.analyze(GROUND, LcCutoffMM="wide"), texturon.Error, "ANALYSIS.LcCutoffMM"),
    (lambda: texturon.analyze(GROUND, LcCutoffMM=np.nan), texturon.Error, "ANALYSIS.LcCutoffMM"),
    (lambda: texturon.analyze(GROUND, parameters=["Rz"]), texturon.UnknownNameError, "RzDIN"),
    (lambda: texturon.analyze(GROUND, parameters=["Rmrc(5)"]), texturon.UnknownNameError, "Rmrc"),
    (lambda: texturon.analyze(texturon.Profile([1.0, 2.0], 1.0)), texturon.Error, "the profile: not analysed"),
    (lambda: texturon.analyze(GROUND).parameters["RA"], KeyError, "Ra"),
    (lambda: texturon.analyze(GROUND, budget={"HeightNoise": 1}), texturon.Error, "HeightNoise"),
    (lambda: texturon.analyze(GROUND, budget=BUDGET, trials=1), texturon.Error, "trials"),
    (lambda: texturon.compare(GROUND, "robust", "robst"), texturon.Error, "did you mean robust"),
    (lambda: texturon.export(GROUND, "picture"), texturon.Error, "roughness"),
    (lambda: texturon.convert("samples/ground.lmt", "samples/ground.lmt"), texturon.Error, "ground.lmt"),
]


@pytest.mark.parametrize("call, error, fragment", REFUSED)
def test_refuses_with_a_sentence(call, error, fragment):
    with pytest.raises(error) as raised:
        call()
    assert fragment in str(raised.value)
    assert not isinstance(raised.value, texturon.Error) or str(raised.value)[-1] in ".?"


def test_comparisons_are_those_of_the_console():
    practice, settings = "gaussian-whole-cutoffs", SAMPLES / "production.ini"
    told = json.loads(console("compare", "--json", "samples/turned.lmt", "--a", practice, "--b", settings))["rows"]
    rows = texturon.compare("samples/turned.lmt", practice, settings)
    assert [(row.name, row.unit, row.a, row.b, row.interaction) for row in rows] == [
        tuple(other[key] for key in ("name", "unit", "a", "b", "interaction")) for other in told
    ]
    assert [list(row.steps) for row in rows] == [[tuple(step.values()) for step in other["steps"]] for other in told]
    assert practice in texturon.practices() and len(texturon.compare(GROUND, None, {}, parameters=["Ra"])) == 1


def test_small_letters_name_the_same_parameter():
    settings = SAMPLES / "production.ini"
    told, other = (texturon.analyze(GROUND, settings, parameters=[name]).parameters.table() for name in ("Ra", "rA"))
    assert told == other and told[0].verdict


def test_the_lock_is_free_while_the_engine_computes():
    rows = np.tile(texturon.load(GROUND).heights, (160, 1))

    def compute():
        texturon.robust_filter(rows, 0.5, 0.8)

    def seconds():
        start = time.perf_counter()
        compute()
        return time.perf_counter() - start

    # Were the lock kept, another thread would stand still for the whole call. A busy machine holds it up, too, but not
    # in each of twenty calls.
    whole = min(seconds() for _ in range(3))
    for _ in range(20):
        worker = threading.Thread(target=compute)
        turns = [time.perf_counter()]
        worker.start()
        while worker.is_alive():
            turns.append(time.perf_counter())
        if np.diff(turns).max() < whole / 2:
            return
    pytest.fail("another thread stands still during each of twenty calls")


def test_an_interrupt_ends_a_long_call():
    rows = np.random.default_rng(1).standard_normal((80, 100_000))
    start = time.process_time()
    texturon.robust_filter(rows, 0.5, 0.8)
    whole = time.process_time() - start
    # The interrupt comes after a share of the processor time, so that a busy machine cannot make it late.
    former = signal.signal(signal.SIGPROF, signal.default_int_handler)
    try:
        start = time.process_time()
        signal.setitimer(signal.ITIMER_PROF, 0.2 * whole)
        with pytest.raises(KeyboardInterrupt):
            texturon.robust_filter(rows, 0.5, 0.8)
        assert time.process_time() - start < 0.8 * whole
    finally:
        signal.setitimer(signal.ITIMER_PROF, 0)
        signal.signal(signal.SIGPROF, former)


LEAKS = """
import os, sys, texturon
def resident():
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")
def run(times):
    for _ in range(times):
        analysis = texturon.analyze("samples/ground.lmt", LcCutoffMM=0.25)
        kept = analysis.roughness, analysis.parameters, analysis.to_dict(), analysis.spectrum, analysis.bearing_ratio
        try:
            texturon.remove_form(analysis.raw, 0.5, "arc", exclude=(0, 8000))
        except texturon.Error:
            pass
run(60)
before = resident()
run(int(sys.argv[1]))
print(resident() - before)
"""


@pytest.mark.skipif(not os.path.exists("/proc/self/statm"), reason="the resident size is read from /proc")
def test_leaves_no_memory_behind():
    runs = int(os.environ.get("TEXTURON_LEAK_RUNS", "150"))
    grown = int(subprocess.run([sys.executable, "-c", LEAKS, str(runs)], stdout=subprocess.PIPE, check=True).stdout)
    assert grown < 2_000_000
