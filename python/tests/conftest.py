# SPDX-License-Identifier: Apache-2.0
import os
import subprocess
from pathlib import Path

import hypothesis
import pytest

hypothesis.settings.register_profile("here", database=None, deadline=None, max_examples=40)
hypothesis.settings.load_profile("here")

ROOT = Path(__file__).resolve().parents[2]
SAMPLES = ROOT / "samples"


def console(*words):
    """What the console program prints, in its own bytes."""
    done = subprocess.run([os.environ["TEXTURON_PROGRAM"], *map(str, words)], stdout=subprocess.PIPE, check=True)
    return done.stdout


@pytest.fixture(autouse=True)
def in_scratch_folder(tmp_path, monkeypatch):
    (tmp_path / "samples").symlink_to(SAMPLES)
    monkeypatch.chdir(tmp_path)
