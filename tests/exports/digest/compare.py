#!/usr/bin/env python3
"""compare.py --program EXPORT_DIGEST --library FILE [--against FILE [--against-program EXPORT_DIGEST]] [--quick]

Every declared export is there and has been called, and two runs agree, or two libraries: the lines that differ are shown.
"""
import argparse
import os
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "tools"))
import contract  # noqa: E402


def digest(options, program, library):
    """name -> line"""
    folder = str(pathlib.Path(library).resolve().parent)
    environment = dict(os.environ, LD_LIBRARY_PATH=folder) if options.against else None
    command = [program, library] + (["--quick"] if options.quick else [])
    run = subprocess.run(command, stdout=subprocess.PIPE, text=True, env=environment)
    if run.returncode not in (0, 1):
        sys.exit(f"{' '.join(command)}: exit status {run.returncode}")
    return {line.split()[0]: line for line in run.stdout.splitlines()}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--library", required=True)
    parser.add_argument("--against", help="another library, whose number library lies beside it")
    parser.add_argument("--against-program", help="the program built for that one, where the number's layout has changed")
    parser.add_argument("--quick", action="store_true")
    options = parser.parse_args()

    first = digest(options, options.program, options.library)
    second = digest(options, options.against_program or options.program, options.against or options.library)
    problems = []
    for name in sorted(first.keys() | second.keys()):
        if first.get(name) != second.get(name):
            problems += [f"- {second.get(name)}", f"+ {first.get(name)}"]
    for name in contract.names():
        if " calls," not in first.get(name, "") or first[name].split()[1] == "0":
            problems.append(f"{name} is declared, and not called")
    print(*problems, f"{len(first)} exports, {len(problems)} complaints", sep="\n")
    sys.exit(1 if problems or not first else 0)


if __name__ == "__main__":
    main()
