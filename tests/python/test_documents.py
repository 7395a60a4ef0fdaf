"""The examples of docstrings and documents run as they stand; every public name has one; the stub names what there is."""

import ast
import doctest
import importlib
import inspect
import pathlib
import re
import unittest

import tesk2mp

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
PLAIN = {"Error", "InvalidArgument", "InvalidType", "NumericalFailure", "get_digits", "set_digits"}

# What the C++ interface calls otherwise, or what Python has another way.
COUNTERPARTS = {
    "abs": "Complex",
    "add_messages": "solve_iteratively",
    "amd": "SparseLU",
    "automatic_method": "solve_iteratively",
    "colamd": "SparseLU",
    "complex_schur": "schur",
    "copy": "scale",
    "dotc": "dot",
    "find_zero_near": "find_zero",
    "gemm": "multiply",
    "gemv": "multiply",
    "ger": "outer",
    "gerc": "outer",
    "herk": "hermitian_product",
    "iterate": "solve_iteratively",
    "least_fill_order": "SparseLU",
    "lower_triangle": "SparseMatrix",
    "model_base": "machine_precision",
    "norm2": "norm",
    "one_based": "multiply",
    "order_schur": "schur",
    "quotient": "Complex",
    "safe_range": "smallest_number",
    "solve_sparse": "solve_iteratively",
    "syrk": "hermitian_product",
    "transform_columns": "transform",
    "transform_dimension": "transform",
    "transform_rows": "transform",
    "trmv": "triangular_multiply",
    "trsm": "triangular_solve",
    "trsv": "triangular_solve",
    "whole": "SparseMatrix",
}


class Documents(unittest.TestCase):
    def test_cpp_interface(self):
        names = set()
        # Those with proven bounds are in the module proven.
        for header in sorted(set((TOP / "include/tesk2mp").glob("*.hpp")) - set((TOP / "include/tesk2mp").glob("proven*.hpp"))):
            text = re.sub(r"namespace (\w+) \{(?:(?!\nnamespace).)*?\}  // namespace \1", "", header.read_text(), flags=re.S)
            names.update(re.findall(r"^(?:inline )?(?!using|struct|class|requires)[\w:<>]+ (\w+)\(", text, flags=re.M))
        self.assertIn("gemv", names)
        self.assertEqual({COUNTERPARTS.get(name, name) for name in names} - set(tesk2mp.__all__), set())

    def test_examples(self):
        parser = doctest.DocTestParser()
        runner = doctest.DocTestRunner()
        documents = {"tesk2mp": tesk2mp.__doc__}
        documents.update({name: getattr(tesk2mp, name).__doc__ for name in tesk2mp.__all__})
        for name, text in documents.items():
            with self.subTest(name):
                example = parser.get_doctest(text, dict(vars(tesk2mp)), name, None, 0)
                self.assertTrue(example.examples or name in PLAIN, "no example")
                report = []
                runner.run(example, out=report.append)
                self.assertEqual(report, [])

    def test_documents(self):
        blocks = 0
        for document in [TOP / "README.md", *sorted((TOP / "docs").rglob("*.md"))]:
            for block in re.findall(r"^```pycon\n(.*?)^```", document.read_text(encoding="utf-8"), flags=re.S | re.M):
                blocks += 1
                report = []
                example = doctest.DocTestParser().get_doctest(block, {}, document.name, None, 0)
                doctest.DocTestRunner().run(example, out=report.append)
                self.assertEqual(report, [])
        self.assertGreater(blocks, 0)

    def test_stub(self):
        stub = pathlib.Path(tesk2mp.__file__).with_suffix(".pyi")
        nodes = ast.parse(stub.read_text()).body
        core = ast.parse(stub.with_name("_core.pyi").read_text()).body
        declared = {node.name: node for node in nodes if isinstance(node, ast.FunctionDef)}
        declared.update({node.name: node for node in core if isinstance(node, ast.ClassDef)})
        elsewhere = {
            each.asname: importlib.import_module(f"tesk2mp.{node.module}")
            for node in nodes
            if isinstance(node, ast.ImportFrom) and node.module and node.level
            for each in node.names
            if each.asname
        }
        self.assertEqual(sorted({*declared, *elsewhere}), sorted(tesk2mp.__all__))
        for name, module in elsewhere.items():
            self.assertIs(getattr(module, name), getattr(tesk2mp, name))
        for name, node in declared.items():
            with self.subTest(name):
                if isinstance(node, ast.FunctionDef):
                    heading = " ".join(getattr(tesk2mp, name).__doc__.partition("\n\n")[0].split())
                    self.assertEqual(heading, f"{name}({self.arguments(node)})")
                    self.assertEqual(self.real_arguments(getattr(tesk2mp, name)), self.arguments(node))
                    continue
                kind = getattr(tesk2mp, name)
                members = {part.name: part for part in node.body if isinstance(part, ast.FunctionDef)}
                public = {member for each in kind.__mro__[:-1] for member in vars(each) if not member.startswith("_")}
                if not issubclass(kind, Exception):
                    self.assertEqual(public, {member for member in members if not member.startswith("_")})
                for member, part in members.items():
                    method = kind if member == "__init__" else getattr(kind, member)
                    if callable(method) and member != "__exit__":
                        self.assertEqual(self.real_arguments(method), self.arguments(part), member)

    @classmethod
    def real_arguments(cls, function):
        """What the module itself says of a function's parameters when it is called with one that does not exist."""
        if inspect.isfunction(function) or inspect.isfunction(getattr(function, "__init__", None)):
            text = str(inspect.signature(function))
        else:
            try:
                function(**{"no such parameter": None})
            except TypeError as error:
                text = re.search(r"^ +1\. [\w.]*(\(.*\))(?: -> .*)?$", str(error), flags=re.M)[1]
        return cls.arguments(ast.parse(f"def function{text}: ...").body[0])

    @staticmethod
    def arguments(node):
        """The parameters but self, with their defaults; operands of operators have no names."""
        defaults = [None] * (len(node.args.args) - len(node.args.defaults)) + node.args.defaults
        return ", ".join(
            re.sub(r"^(arg0|other)$", "_", each.arg) + ("" if default is None else f"={ast.literal_eval(default)!r}")
            for each, default in zip(node.args.args, defaults)
            if each.arg != "self"
        )


if __name__ == "__main__":
    unittest.main()
