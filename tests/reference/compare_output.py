#!/usr/bin/env python3
"""compare_output.py [--emulator COMMAND] PROGRAM FILE: runs the program; its output must be what the file holds."""
import argparse
import difflib
import pathlib
import subprocess
import sys

parser = argparse.ArgumentParser()
parser.add_argument("--emulator", default="")
parser.add_argument("program")
parser.add_argument("file", type=pathlib.Path)
options = parser.parse_args()

run = subprocess.run([*filter(None, options.emulator.split(";")), options.program], capture_output=True, text=True)
expected = options.file.read_text()
sys.stdout.writelines(difflib.unified_diff(expected.splitlines(True), run.stdout.splitlines(True), "expected", "printed"))
sys.exit(0 if run.returncode == 0 and run.stdout == expected else f"{options.program}: status {run.returncode}")
