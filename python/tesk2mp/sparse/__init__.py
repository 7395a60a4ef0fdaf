"""Sparse matrices and, in tesk2mp.sparse.linalg, iterative solution."""

from .. import SparseMatrix
from . import linalg

__all__ = ["SparseMatrix", "linalg"]
