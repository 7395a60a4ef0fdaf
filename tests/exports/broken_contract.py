#!/usr/bin/env python3
"""broken_contract.py --compiler COMMAND: a declaration that does not fit its definition stops the build.

Each case changes one public declaration in a copy of the headers and compiles the source that defines the export; the
unchanged headers compile. A name in the list of exports that nothing defines stops the link.
"""
import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]

# what, header, its text, what it becomes, source
CASES = [
    ("nothing changed", "dense.h", "QuarnMP_f07adg_(Integer m", "QuarnMP_f07adg_(Integer m", "dense/lu.cpp"),
    ("type of an argument", "dense.h", "QuarnMP_f07adg_(Integer m", "QuarnMP_f07adg_(double m", "dense/lu.cpp"),
    ("type of the result", "kernels.h", "QuarnFloat QuarnMP_f06ejf_(", "Complex QuarnMP_f06ejf_(", "kernels/entries1.cpp"),
    ("misspelled name", "kernels.h", "QuarnMP_f06jjf_(", "QuarnMP_f06ijf_(", "kernels/entries1.cpp"),
    ("argument of a core form", "fft.h", "QuarnMP_c06fafn_(QuarnFloat* x", "QuarnMP_c06fafn_(Complex* x", "generated/fft_forms.cpp"),
]


def compiles(compiler, include, source):
    # The same question has another name in each compiler.
    undeclared = "-Wmissing-prototypes" if "clang" in compiler[-1] else "-Wmissing-declarations"
    command = [*compiler, "-std=c++20", "-fsyntax-only", "-DTESK2MP_BUILD", undeclared, "-Werror",
               f"-I{include}", f"-I{ROOT}", ROOT / "src" / source]
    return subprocess.run(command, capture_output=True).returncode == 0


def links(compiler, folder, names):
    (folder / "some.cpp").write_text('extern "C" __attribute__((visibility("default"))) void defined() {}\n')
    (folder / "some.map").write_text(f"{{ global: {names} local: *; }};\n")
    command = [*compiler, "-shared", "-fPIC", folder / "some.cpp", "-o", folder / "some.so",
               f"-Wl,--version-script={folder / 'some.map'}", "-Wl,--no-undefined-version"]
    return subprocess.run(command, capture_output=True).returncode == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--compiler", required=True)
    compiler = parser.parse_args().compiler.split()

    problems = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for what, header, old, new, source in CASES:
            shutil.copytree(ROOT / "include", folder / "include", dirs_exist_ok=True)
            text = (folder / "include/tesk2mp" / header).read_text()
            if old not in text:
                problems.append(f"{what}: '{old}' is not in {header}")
            (folder / "include/tesk2mp" / header).write_text(text.replace(old, new))
            if compiles(compiler, folder / "include", source) != (old == new):
                problems.append(f"{what}: {source} {'does not compile' if old == new else 'compiles'}")
        for names, fits in (("defined;", True), ("defined; missing;", False)):
            if links(compiler, folder, names) != fits:
                problems.append(f"a list with '{names}' {'does not link' if fits else 'links'}")
    print(*problems, f"{len(CASES) + 2} cases", sep="\n")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
