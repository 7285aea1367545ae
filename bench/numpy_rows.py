#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Rows that NumPy and SciPy compute too, from the file to the figures, beside the console program on the same rows.

    bench/numpy_rows.py build/bench/src/app/texturon [other builds of it]

For 8 000 and 750 000 points, from the file to the figures, processor and wall time: of this script's whole process, of
its work without the start of Python and its imports; of the program's whole process, and of its work without its start,
which is what each further file of one process takes; and the largest relative difference of a figure.
"""
import json
import pathlib
import resource
import subprocess
import sys
import tempfile
import time

import numpy as np
from scipy import ndimage, special

CUTOFF_MM = 0.8
WINDOW_MM = 0.25
ROWS = ["Pt", "Pa", "Pq", "Psk", "Pku", "Pm0", "Pm2", "Pm4", "Rt", "Ra", "Rq", "Rp", "Rv", "Rsk", "Rku", "Rdq", "Rdmd",
        "Rdmn", "Rdsk", "Rm0", "Rm2", "Rm4", "RzDIN", "Rmax", "Rpm", "Rvm", "Ra1", "Rhsc", "Rvc", "Rtwi", "Rpq", "Wt", "Wa",
        "Wq", "Wseg", "Weslp", "Wlslp"]


def read(path):
    text = path.read_text(encoding="latin-1")
    head, numbers = text.split("PROFILE_UM:", 1)
    spacing = float(head.split("SPACING_UM:")[1].split()[0])
    return np.fromstring(numbers, sep=" "), spacing


def heights(figures, letter, z):
    q = np.sqrt(np.mean(z * z))
    figures.update({letter + "t": np.ptp(z), letter + "a": np.mean(np.abs(z)), letter + "q": q, letter + "p": z.max(),
                    letter + "v": -z.min(), letter + "sk": np.mean(z ** 3) / q ** 3, letter + "ku": np.mean(z ** 4) / q ** 4})


def moments(figures, letter, z, dx):
    figures[letter + "m0"] = np.mean(z * z)
    figures[letter + "m2"] = np.mean(((z[2:] - z[:-2]) / (2 * dx)) ** 2)
    figures[letter + "m4"] = np.mean(((z[2:] - 2 * z[1:-1] + z[:-2]) / dx ** 2) ** 2)


def slopes(figures, z, dx):
    s = np.convolve(z, np.array([1, -9, 45, 0, -45, 9, -1]) / (60 * dx), mode="valid")
    angles = np.degrees(np.arctan(np.abs(s)))
    d = s - s.mean()
    figures.update({"Rdq": np.degrees(np.arctan(np.sqrt(np.mean(s * s)))), "Rdmn": angles.mean(), "Rdmd": np.median(angles),
                    "Rdsk": np.mean(d ** 3) / np.mean(d * d) ** 1.5})


def analyse(path):
    z, dx = read(path)
    x = np.arange(len(z)) * dx
    slope, offset = np.polyfit(x, z, 1)
    p = z - (slope * x + offset)
    p -= p.mean()
    f = np.fft.rfftfreq(len(p), dx)
    waviness = np.fft.irfft(np.fft.rfft(p) * np.exp(-np.log(2) * (f * CUTOFF_MM * 1000) ** 2), len(p))
    r = p - waviness
    figures = {}
    heights(figures, "P", p)
    heights(figures, "R", r)
    heights(figures, "W", waviness)
    moments(figures, "P", p, dx)
    moments(figures, "R", r, dx)
    slopes(figures, r, dx)
    each = int(CUTOFF_MM * 1000 / dx)
    parts = r[:len(r) // each * each].reshape(-1, each)
    ranges = np.ptp(parts, axis=1)
    sums = np.concatenate([[0.0], np.cumsum(np.abs(r))])
    figures.update({"RzDIN": ranges.mean(), "Rmax": ranges.max(), "Rpm": parts.max(axis=1).mean(),
                    "Rvm": -parts.min(axis=1).mean(), "Ra1": (sums[each:] - sums[:-each]).max() / each})
    figures["Rhsc"] = int(r[0] > 0.5) + np.count_nonzero((r[1:] >= 0.5) & (r[:-1] < 0.5))
    figures["Rvc"] = int(r[0] < -0.5) + np.count_nonzero((r[1:] <= -0.5) & (r[:-1] > -0.5))
    figures["Rtwi"] = 100.0 * np.count_nonzero(np.abs(r) <= figures["Rq"]) / len(r)
    ratio = (np.arange(len(r)) + 0.5) / len(r)
    inside = ratio <= 0.7
    figures["Rpq"] = abs(np.polyfit(special.ndtri(ratio[inside]), np.sort(r)[::-1][inside], 1)[0])
    width = round(2500 / dx) + 1
    top = ndimage.maximum_filter1d(waviness, width)[width // 2:len(r) - (width - 1) // 2]
    bottom = ndimage.minimum_filter1d(waviness, width)[width // 2:len(r) - (width - 1) // 2]
    figures["Wseg"] = (top - bottom).max()
    steps = round(WINDOW_MM * 1000 / dx)
    figures["Weslp"] = 60 * np.degrees(np.arctan(np.abs(waviness[steps:] - waviness[:-steps]).max() / (steps * dx)))
    place = np.arange(len(r)) - len(r) / 2
    sz = np.concatenate([[0.0], np.cumsum(waviness)])
    sxz = np.concatenate([[0.0], np.cumsum(place * waviness)])
    w = steps + 1
    middle = place[:len(r) - w + 1] + 0.5 * (w - 1)
    fitted = ((sxz[w:] - sxz[:-w]) - middle * (sz[w:] - sz[:-w])) / (w * (w * w - 1) / 12 * dx)
    figures["Wlslp"] = 60 * np.degrees(np.arctan(np.abs(fitted).max()))
    return {name: figures[name] for name in ROWS}


def make_file(path, n, dx):
    random = np.random.default_rng(1)
    grain = ndimage.gaussian_filter1d(random.standard_normal(n), 4) * 2
    z = grain + 0.4 * np.sin(np.arange(n) * dx / 900) + 1e-5 * np.arange(n)
    lines = "\n".join("%.6f" % height for height in z)
    path.write_text("Lumetrace_Data 1.0\nIDENTIFICATION: bench\nDATE: none\nSPACING_UM: %g\nNUMBER_OF_POINTS: %d\n"
                    "PROFILE_UM:\n%s\n" % (dx, n, lines))


def processor_time(who):
    usage = resource.getrusage(who)
    return usage.ru_utime + usage.ru_stime


def best(run, who, repeats=9):
    """Least processor and wall time of several, in ms: other work on the machine only adds."""
    processor, wall = [], []
    for _ in range(repeats):
        start, clock = processor_time(who), time.perf_counter()
        result = run()
        processor.append(1e3 * (processor_time(who) - start))
        wall.append(1e3 * (time.perf_counter() - clock))
    return np.array([min(processor), min(wall)]), result


def show(title, times, script=None):
    shown = "processor %8.2f ms, wall %8.2f ms" % tuple(times)
    if script is not None:
        shown += "; the script takes %5.1f and %5.1f times that" % tuple(script / times)
    print("    %-34s %s" % (title, shown))


def main():
    children, own = resource.RUSAGE_CHILDREN, resource.RUSAGE_SELF
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        options = ["[PARAMETERS]", "AvailableParameters=%d" % len(ROWS)]
        for i, name in enumerate(ROWS):
            options += ["Name%02d=%s" % (i, name), "Selected%02d=1" % i]
        options += ["[ANALYSIS]", "FilterType=0", "LsCutoffMM=0", "ResidualType=1"]
        settings = folder / "rows.ini"
        settings.write_text("\n".join(options) + "\n")
        for n, more in ((8000, 200), (750000, 4)):
            file = folder / ("%d.lmt" % n)
            make_file(file, n, 0.5)
            script = [sys.executable, __file__, "--file", str(file)]
            whole, _ = best(lambda: subprocess.run(script, check=True), children)
            alone, figures = best(lambda: analyse(file), own)
            print("%d points" % n)
            show("script, whole process", whole)
            show("script, without start and imports", alone)
            for program in sys.argv[1:]:
                command = [program, "analyze", "--json", "--no-trace", "--settings", str(settings), str(file)]
                run = lambda extra: subprocess.run(command + extra * [str(file)], capture_output=True, check=True).stdout
                once, output = best(lambda: run(0), children)
                often, _ = best(lambda: run(more), children, 5)
                values = {row["name"]: row["value"] for row in json.loads(output)["parameters"]}
                worst = max(ROWS, key=lambda name: abs(values[name] - figures[name]) / max(1e-3, abs(figures[name])))
                print("  %s; largest difference: %s %g against %g" % (program, worst, values[worst], figures[worst]))
                show("whole process", once, whole)
                show("whole process, script without start", once, alone)
                show("each further file of one process", (often - once) / more, alone)


if __name__ == "__main__":
    if sys.argv[1] == "--file":
        analyse(pathlib.Path(sys.argv[2]))
    else:
        main()
