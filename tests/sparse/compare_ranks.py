#!/usr/bin/env python3
"""compare_ranks.py MPIEXEC PROGRAM [SCRIPT]: the output is the same, byte for byte, on 1, 2, 3 and 4 ranks, and that of the
script of Python, on 1, 2 and 4, is that of the program."""
import os
import subprocess
import sys

mpiexec, program, *scripts = sys.argv[1:]
# As root, and on fewer processors than ranks: what Open MPI documents for containers.
environment = dict(os.environ, OMPI_ALLOW_RUN_AS_ROOT="1", OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1",
                   OMPI_MCA_rmaps_base_oversubscribe="1", OMPI_MCA_btl_vader_single_copy_mechanism="none")
commands = {(program,): (1, 2, 3, 4), **{(sys.executable, script): (1, 2, 4) for script in scripts}}
for arguments in (["17", "40"], ["17", "40", "jacobi"], ["9", "333", "jacobi"]):
    first = None
    for command, counts in commands.items():
        for ranks in counts:
            run = subprocess.run([mpiexec, "-n", str(ranks), *command, *arguments], env=environment, timeout=300,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
            if run.returncode != 0 or run.stderr.count(b"an iteration sends") != ranks or b"iterations" not in run.stdout:
                sys.exit(f"{command} {arguments} on {ranks} ranks: status {run.returncode}\n{run.stderr.decode()}")
            first = first or run.stdout
            if run.stdout != first:
                sys.exit(f"{command} {arguments} on {ranks} ranks prints\n{run.stdout.decode()}one rank\n{first.decode()}")
