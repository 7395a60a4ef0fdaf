#!/usr/bin/env python3
"""compare_ranks.py MPIEXEC PROGRAM: the output is the same, byte for byte, on 1, 2, 3 and 4 ranks."""
import os
import subprocess
import sys

mpiexec, program = sys.argv[1:]
# As root, and on fewer processors than ranks: what Open MPI documents for containers.
environment = dict(os.environ, OMPI_ALLOW_RUN_AS_ROOT="1", OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1",
                   OMPI_MCA_rmaps_base_oversubscribe="1", OMPI_MCA_btl_vader_single_copy_mechanism="none")
for arguments in (["17", "40"], ["17", "40", "jacobi"], ["9", "333", "jacobi"]):
    outputs = {}
    for ranks in (1, 2, 3, 4):
        run = subprocess.run([mpiexec, "-n", str(ranks), program, *arguments], env=environment, timeout=300,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        if run.returncode != 0 or run.stderr.count(b"an iteration sends") != ranks:
            sys.exit(f"{arguments} on {ranks} ranks: status {run.returncode}\n{run.stderr.decode()}")
        outputs[ranks] = run.stdout
    if b"iterations" not in outputs[1]:
        sys.exit(f"{arguments}: no solution:\n{outputs[1].decode()}")
    for ranks, output in outputs.items():
        if output != outputs[1]:
            sys.exit(f"{arguments}: {ranks} ranks print\n{output.decode()}one rank\n{outputs[1].decode()}")
