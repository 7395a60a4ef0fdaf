"""The notebook runs from an empty state, its figures are drawn and its digits are right; it is kept without outputs."""

import csv
import os
import pathlib
import re
import sys
import tempfile
import unittest
from decimal import Context, Decimal
from fractions import Fraction

import nbformat
from nbclient import NotebookClient

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
NOTEBOOK = TOP / "examples/true_digits.ipynb"


def fitted_constant(degree, count):
    """The constant term of the notebook's fit, from the normal equations in fractions."""
    with open(TOP / "examples/sunspots.csv", encoding="utf-8") as file:
        data = [(int(row[0]), int(Decimal(row[1]) * 10)) for row in csv.reader(file) if row[0].isdigit()][:count]
    a = [[Fraction(sum(year ** (i + j) for year, _ in data)) for j in range(degree + 1)] for i in range(degree + 1)]
    b = [Fraction(sum(year**i * number for year, number in data), 10) for i in range(degree + 1)]
    # From the highest power downwards, so that the constant term is left.
    for k in range(degree, 0, -1):
        for i in range(k):
            factor = a[i][k] / a[k][k]
            a[i] = [one - factor * other for one, other in zip(a[i], a[k])]
            b[i] -= factor * b[k]
    return b[0] / a[0][0]


class Notebook(unittest.TestCase):
    def test_no_outputs(self):
        text = NOTEBOOK.read_text(encoding="utf-8")
        notebook = nbformat.reads(text, nbformat.NO_CONVERT)
        nbformat.validate(notebook)
        for cell in notebook.cells:
            if cell.cell_type == "code":
                self.assertEqual((cell.outputs, cell.execution_count), ([], None), cell.id)
        self.assertEqual(text, nbformat.writes(notebook) + "\n")

    def test_runs(self):
        # Neither Jupyter nor matplotlib leaves anything in the user's folders.
        folder = self.enterContext(tempfile.TemporaryDirectory())
        names = ("IPYTHONDIR", "JUPYTER_CONFIG_DIR", "JUPYTER_DATA_DIR", "JUPYTER_RUNTIME_DIR", "MPLCONFIGDIR")
        os.environ.update({name: os.path.join(folder, name) for name in names}, PYDEVD_DISABLE_FILE_VALIDATION="1")
        notebook = nbformat.read(NOTEBOOK, nbformat.NO_CONVERT)
        client = NotebookClient(notebook, timeout=300, resources={"metadata": {"path": str(TOP / "examples")}})
        # The interpreter of this test, whatever kernels are installed.
        client.create_kernel_manager()
        client.km.kernel_cmd = [sys.executable, "-m", "ipykernel_launcher", "-f", "{connection_file}"]
        client.execute()
        outputs = [output for cell in notebook.cells if cell.cell_type == "code" for output in cell.outputs]
        self.assertEqual([output.text for output in outputs if output.get("name") == "stderr"], [])
        text = "".join(output.text for output in outputs if output.output_type == "stream")
        figures = [output for output in outputs if "image/png" in output.get("data", {})]
        self.assertEqual(len(figures), sum(cell.source.count("plt.show()") for cell in notebook.cells))

        exact = fitted_constant(12, 100)
        with_30 = Context(30).divide(Decimal(exact.numerator), Decimal(exact.denominator))
        self.assertEqual(Decimal(re.search(r"constant term, true: +(\S+)", text)[1]), with_30, text)
        # mpmath.eigsy at 70 digits: 6.428050325406649735852e-35.
        self.assertIn("smallest, true: 6.4280503254066497359E-35", text)
        self.assertIn("the second line is at -440.0000 dB", text)


if __name__ == "__main__":
    unittest.main()
