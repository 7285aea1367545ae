# SPDX-License-Identifier: Apache-2.0
"""Builds the Python package: the engine by CMake, the rest by setuptools."""

import os
import re
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.sdist import sdist

SOURCE = Path(__file__).resolve().parent
VERSION = re.search(r"project\(texturon VERSION ([0-9.]+)", (SOURCE / "CMakeLists.txt").read_text())[1]
ENGINE = ["CMakeLists.txt", "LICENSE", "cmake", "src", "python/CMakeLists.txt", "python/engine", "samples", "share"]


class BuildEngine(build_ext):
    """Builds the module with what scripts and programs are built with, and puts it beside the Python files."""

    def build_extension(self, ext):
        target = Path(self.get_ext_fullpath(ext.name)).resolve()
        folder = Path(self.build_temp).resolve()
        folder.mkdir(parents=True, exist_ok=True)
        options = {
            "CMAKE_BUILD_TYPE": "Release",
            "CMAKE_MODULE_LINKER_FLAGS": "-s",
            "TEXTURON_COMMIT": os.environ.get("TEXTURON_COMMIT", ""),
            "TEXTURON_PYTHON": "ON",
            "TEXTURON_TESTS": "OFF",
            "TEXTURON_DESKTOP": "OFF",
            "TEXTURON_PROGRAMS": "OFF",
            "Python_EXECUTABLE": sys.executable,
        }
        definitions = [f"-D{name}={value}" for name, value in options.items()]
        subprocess.check_call(["cmake", "-S", SOURCE, "-B", folder, "-G", "Ninja", *definitions])
        subprocess.check_call(["cmake", "--build", folder, "--target", "_engine"])
        built = next((folder / "python/package/texturon").glob("_engine*.so"))
        self.mkpath(str(target.parent))
        self.copy_file(str(built), str(target))


class SourceArchive(sdist):
    """Takes the engine's sources along."""

    def make_release_tree(self, base_dir, files):
        below = (Path(name) for name in ENGINE)
        engine = [file for path in below for file in ([path] if path.is_file() else path.rglob("*")) if file.is_file()]
        super().make_release_tree(base_dir, [*files, *map(str, engine)])


FOLDER = "build/python"  # of everything that comes into being
os.makedirs(FOLDER, exist_ok=True)
setup(
    options={"build": {"build_base": FOLDER}, "egg_info": {"egg_base": FOLDER}},
    version=VERSION,
    ext_modules=[Extension("texturon._engine", sources=[])],
    cmdclass={"build_ext": BuildEngine, "sdist": SourceArchive},
)
