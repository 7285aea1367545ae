# SPDX-License-Identifier: Apache-2.0
import inspect
import os
import pydoc
import re
import subprocess
import sys
from pathlib import Path

import pytest
import texturon
from conftest import ROOT

EXAMPLES = re.findall(r"### (\d+)\..*?```python\n(.*?)```", (ROOT / "docs/python.md").read_text(), re.S)


@pytest.mark.parametrize("number, code", EXAMPLES)
def test_examples_run_as_they_stand(number, code):
    exec(compile(code, f"docs/python.md, example {number}", "exec"), {"__name__": "__main__"})


def test_examples_and_package_keep_their_types(tmp_path):
    assert len(EXAMPLES) == 10
    for number, code in EXAMPLES:
        (tmp_path / f"example_{number}.py").write_text(code)
    package = Path(texturon.__file__).parent
    words = ["--strict", "--config-file", str(ROOT / "pyproject.toml"), "--cache-dir", str(package.parent / "mypy")]
    done = subprocess.run(
        [sys.executable, "-m", "mypy", *words, *(f"example_{number}.py" for number, _ in EXAMPLES)],
        env={**os.environ, "MYPYPATH": str(package.parent)},
        stdout=subprocess.PIPE,
        text=True,
    )
    assert done.returncode == 0, done.stdout


def test_every_name_explains_itself():
    for name in texturon.__all__:
        thing = getattr(texturon, name)
        if isinstance(thing, str):
            continue
        assert thing.__doc__ and pydoc.render_doc(thing), name
        for member, value in vars(thing).items() if inspect.isclass(thing) else ():
            if not member.startswith("_") and callable(value) or isinstance(value, property):
                assert inspect.getdoc(value), f"{name}.{member}"
    assert pydoc.render_doc(texturon)
