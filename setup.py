"""Builds the Python package with CMake; the installed Debian packages are all it needs:

pip install --no-build-isolation --no-index .

CMAKE_ARGS may hold further options for CMake.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


class BuildWithCMake(build_ext):
    """Puts the whole package, with the libraries that it needs, where setuptools takes it from."""

    def run(self):
        folder = Path(self.build_temp).resolve()
        options = {
            "CMAKE_BUILD_TYPE": "Release",
            "QV8_BUILD_TESTS": "OFF",
            "QV8_BUILD_PYTHON": "ON",
            "QV8_PYTHON_ALONE": "ON",
            "Python_EXECUTABLE": sys.executable,
        }
        jobs = str(len(os.sched_getaffinity(0)))
        configure = ["cmake", "-S", ROOT, "-B", folder, "-G", "Ninja"]
        more = os.environ.get("CMAKE_ARGS", "").split()
        subprocess.run(configure + [f"-D{name}={value}" for name, value in options.items()] + more, check=True)
        subprocess.run(["cmake", "--build", folder, "--target", "qv8_python_package", "-j", jobs], check=True)
        subprocess.run(["cmake", "--install", folder, "--component", "python", "--strip", "--prefix",
                        Path(self.build_lib).resolve()], check=True)


setup(
    version=".".join(re.findall(r"#define QV8_VERSION_[MP]\w+ (\d+)", ROOT.joinpath("include/qv8version.h").read_text())),
    packages=[],
    ext_modules=[Extension("qv8._native", [])],
    cmdclass={"build_ext": BuildWithCMake},
)
