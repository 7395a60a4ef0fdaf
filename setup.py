"""The extension and the libraries below it, by CMake.

TESK_BUILD names a folder where CMake has built everything already, for this interpreter; otherwise it is built in
build/wheel/cmake, with as many compilers at a time as CMAKE_BUILD_PARALLEL_LEVEL says, or as there are processors.
"""

import os
import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

TOP = pathlib.Path(__file__).resolve().parent
(TOP / "build").mkdir(exist_ok=True)


class CMakeBuild(build_ext):
    """Builds the extension and installs it, with its libraries, beside the package's text."""

    def build_extension(self, ext):
        built = os.environ.get("TESK_BUILD")
        if built is None:
            built = TOP / "build/wheel/cmake"
            options = ["TESK_BUILD_PYTHON=ON", "TESK_BUILD_CLI=OFF", f"Python_EXECUTABLE={sys.executable}"]
            subprocess.run(["cmake", "-S", TOP, "-B", built, *(f"-D{option}" for option in options)], check=True)
            compilers = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL") or str(os.cpu_count() or 1)
            subprocess.run(["cmake", "--build", built, "--parallel", compilers, "--target", "tesk2mp_python"], check=True)
        package = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve().parent
        subprocess.run(
            ["cmake", "--install", built, "--component", "wheel", "--strip", "--prefix", package.parent], check=True
        )


setup(
    version=re.search(r"^project\(tesk2mp VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(), flags=re.M)[1],
    ext_modules=[Extension("tesk2mp._core", [])],
    cmdclass={"build_ext": CMakeBuild},
)
