#!/usr/bin/env python3
"""compare_table.py PROGRAM PAGE: every row that PROGRAM prints stands in PAGE, and PAGE has no other row of its table."""
import subprocess
import sys

program, page = sys.argv[1:]
printed = [line for line in subprocess.run([program], check=True, capture_output=True, text=True).stdout.splitlines()
           if line.startswith("|")]
if len(printed) < 3:
    sys.exit(f"{program} prints no table")
with open(page, encoding="utf-8") as file:
    lines = [line.rstrip("\n") for line in file]
if printed[0] not in lines:
    sys.exit(f"{page} has no table headed {printed[0]}")
start = lines.index(printed[0])
end = next((i for i in range(start, len(lines)) if not lines[i].startswith("|")), len(lines))
table = lines[start:end]
wrong = [f"- {line}" for line in table if line not in printed] + [f"+ {line}" for line in printed if line not in table]
print("\n".join(wrong) or f"{len(printed)} lines agree")
sys.exit(bool(wrong))
