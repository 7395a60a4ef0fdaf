"""Every shape of input that holds the same numbers gives the same spectrum; what cannot be read is named by its line."""

import gzip
import json
import os
import tempfile
import unittest

from console import EMULATOR, SUNSPOTS, not_emulated, run, run_json, run_well

NUMBERS = ["1.5", "-2", "3e2", "4"]

# The numbers above, with the unit of the periods that each shape implies.
SHAPES = {
    "one a line": ("1.5\n-2\n3e2\n4\n", "sample"),
    "no newline at the end": ("1.5\n-2\n3e2\n4", "sample"),
    "carriage returns": ("1.5\r\n-2\r\n3e2\r\n4\r\n", "sample"),
    "carriage returns alone": ("day,height\r1,1.5\r2,-2\r3,3e2\r4,4\r", "day"),
    "byte order mark": ("\ufeff1.5\n-2\n3e2\n4\n", "sample"),
    "comments and empty lines": ("# data\n\n1.5\n  # more\n-2\n\n3e2\n4\n", "sample"),
    "a name": ("height\n1.5\n-2\n3e2\n4\n", "sample"),
    "commas": ("day,height\n1,1.5\n2,-2\n3,3e2\n4,4\n", "day"),
    "semicolons": ("day;height\n1;1.5\n2;-2\n3;3e2\n4;4\n", "day"),
    "tabs": ("day\theight\n1\t1.5\n2\t-2\n3\t3e2\n4\t4\n", "day"),
    "blanks": ("  day  height\n   1  1.5\n   2  -2\n   3  3e2\n   4  4\n", "day"),
    "decimal commas": ("day;height\n1;1,5\n2;-2\n3;3e2\n4;4,0\n", "day"),
    "decimal commas and tabs": ("day\theight\n1\t1,5\n2\t-2,00\n3\t3,0e2\n4\t4\n", "day"),
    "decimal commas in quotes": ('day;height\n"1";"1,5"\n"2";"-2,0"\n"3";"300"\n"4";"4"\n', "day"),
    "Fortran exponents": ("day height\n1 0.15D+01\n2 -2d0\n3 3.0D2\n4 .4D+1\n", "day"),
    "units": ("day;height\nd;cm\n1;1.5\n2;-2\n3;3e2\n4;4\n", "day"),
    "comments behind numbers": ("day;height #\n1;1.5 # one\n2;-2\n3;3e2\t# three\n4;4 #\n", "day"),
    "typographic minus signs": ("height\n1.5\n\u22122\n3e2\n400e\u22122\n", "sample"),
    "tabs before and behind": ("\tday\theight\n\t1\t1.5\t\n\t2\t-2\n\t3\t3e2\t\n\t4\t4\n", "day"),
    "comments with per cent signs": ("% data\n1.5\n-2\n3e2\n4\n", "sample"),
    "no names": ("10 1.5\n20 -2\n30 3e2\n40 4\n", "column 1"),
    "quotes": ('"day, ""d""","height"\n"1","1.5"\n2, "-2" \n3,3e2\n4,4\n', 'day, "d"'),
    "words beside": ("height,mark\n1.5,a\n-2,b\n3e2,c\n4,\n", "sample"),
    "uneven positions": ("day,height\n1,1.5\n2,-2\n3.5,3e2\n4,4\n", "sample"),
    "positions rounded in the file": ("year,height\n0.0417,1.5\n0.125,-2\n0.2083,3e2\n0.2917,4\n", "year"),
    "a point at an end": ("1.5\n-2.\n.3e+3\n+4.\n", "sample"),
    "JSON array": ("[1.5, -2, 3e2, 4]", "sample"),
    "JSON texts": ('["1.5", "-2", "3e2", "4"]', "sample"),
    "JSON rows": ("[[1, 1.5], [2, -2], [3, 3e2], [4, 4]]", "column 1"),
    "JSON objects": ('[{"day": 1, "x": [7], "height": 1.5}, {"height": -2, "day": 2}, {"day": 3, "height": 3e2}, '
                     '{"day": 4, "height": "4"}]', "day"),
    "JSON object": ('{"of": {"a": [9]}, "day": [1, 2, 3, 4], "height": [1.5, -2, 3e2, 4], "n": 4}', "day"),
}

HALF_COMPLEX = "1\n2\n3\n4\n5\n"

WITHOUT = " (--missing drop or interpolate goes on without it)"

# What is wrong, the text, further arguments, and the line on standard error after "quarn: standard input".
BAD = [
    ("nothing", "", [], ": no numbers in it"),
    ("comments alone", "# a\n\n", [], ": no numbers in it"),
    ("names alone", "a,b\n", [], ": no numbers in it"),
    ("a damaged first number", "5x\n1\n", [], ":1: '5x' is not a number"),
    ("a damaged number", "a\n# c\n1\n2z\n", [], ":4: '2z' is not a number"),
    ("commas and points", "a;b\n1.5;2,5\n", [],
     ":2: '1.5' has a point, and other numbers have commas: --decimal comma or --decimal point says which are right"),
    ("a point beside the option", "1,5\n1.250\n", ["--decimal", "comma"],
     ":2: '1.250' has a point, and other numbers have commas: it does not go with --decimal comma"),
    ("a comma beside the option", "a;b\n1;2,5\n", ["--column", "b", "--decimal", "point"], ":2: '2,5' is not a number"),
    ("decimal commas between commas", "a,b\n1,5,2,5\n", [],
     ":2: 4 cells where the lines before have 2; if these are decimal commas, semicolons or tabs have to part the cells"),
    ("groups of digits", 'a,b\n1,"1,234.5"\n2,"2,000.5"\n', [],
     ":2: '1,234.5' is not a number (numbers have no thousands separators; --column takes another column)"),
    ("groups of digits with points", "a;b\n1;1.234,5\n2;2,5\n", [],
     ":2: '1.234,5' is not a number (numbers have no thousands separators; --column takes another column)"),
    ("groups of digits with blanks", "a;b\n1;1\u202f234,5\n", [],
     ":2: '1\u202f234,5' is not a number (numbers have no thousands separators; --column takes another column)"),
    ("decimal commas between blanks", "1,5 2,5\n3,5 4,5\n", [],
     ":1: '5 2' is not a number (--decimal comma, if commas are decimal; --column takes another column)"),
    ("a missing number at first", "NA\n1\n", [], ":1: 'NA' is not a number" + WITHOUT),
    ("an open quote", 'a\n"1\n2\n', [], ":2: a quotation mark is not closed"),
    ("JSON objects and numbers", '[{"v": 1}, 2]', [], ": numbers and objects are mixed"),
    ("JSON numbers and objects", '[2, {"v": 1}]', [], ": numbers and objects are mixed"),
    ("JSON objects without a member", '[{"v": 1}, {"w": 2}, {"v": 3}]', [], ": w[1]: 'null' is not a number" + WITHOUT),
    ("a hole", "a,b\n1,2\n3,\n", [], ":3: nothing is not a number" + WITHOUT),
    ("a hole at the end", "a;b\n1;2\n3;\n", ["--missing", "interpolate"], ":3: nothing is not a number" + WITHOUT),
    ("not a number", "1\nnan\n", [], ":2: 'nan' is not a finite number" + WITHOUT),
    ("not a number at first", "NaN\n1\n", [], ":1: 'NaN' is not a finite number" + WITHOUT),
    ("infinity", "1\n-Infinity\n", [], ":2: '-Infinity' is not a finite number"),
    ("a huge exponent", "1\n1e99999999999999\n", [], ":2: '1e99999999999999' is beyond the range of numbers"),
    ("a tiny exponent", "1\n-1e-99999999999999\n", [], ":2: '-1e-99999999999999' is beyond the range of numbers"),
    ("more digits than numbers have", "1\n1." + "0" * 10**6 + "1\n", [],
     ":2: '1." + "0" * 38 + "...' has more than 1000000 digits"),
    ("an exponent without digits", "1\n1e\n", [], ":2: '1e' is not a number"),
    ("a missing cell", "a,b\n1,2\n3\n", [], ":3: 1 cell where the lines before have 2"),
    ("one cell too many", "1 2\n3 4 5\n", [], ":2: 3 cells where the lines before have 2"),
    ("no such column", "a,b\n1,2\n", ["--column", "c"], ": no column 'c', there is: a, b"),
    ("no such position", "1 2\n3 4\n", ["--column", "3"], ": no column '3', there is: 1, 2"),
    ("a long cell", "1\n" + "x" * 99 + "\n", [], ":2: '" + "x" * 40 + "...' is not a number"),
    ("zero bytes", "1\n\0", [], ": not a text file"),
    ("JSON null", "[1, null]", [], ": element [2]: 'null' is not a number" + WITHOUT),
    ("JSON word", '{"v": [1, "two"]}', [], ": v[2]: 'two' is not a number"),
    ("JSON without arrays", '{"v": 1}', [], ": no numbers in it"),
    ("JSON rows of unequal length", "[[1, 2], [3]]", [], ": row 2 has 1 numbers, the first has 2"),
    ("JSON numbers and rows", "[1, [2]]", [], ": numbers and rows of numbers are mixed"),
    ("JSON rows and numbers", "[[1], 2]", [], ": numbers and rows of numbers are mixed"),
    ("an asymmetric spectrum", "real,imaginary\n1,0\n2,3\n2,4\n", ["--inverse"],
     ":3: z_1 is not the conjugate of z_2, as the spectrum of 3 real numbers needs (a row for each k from 0; --complex takes other spectra)"),
    ("a spectrum with unequal real parts", "real,imaginary\n1,0\n2,3\n9,-3\n", ["--inverse"],
     ":3: z_1 is not the conjugate of z_2, as the spectrum of 3 real numbers needs (a row for each k from 0; --complex takes other spectra)"),
    ("a complex mean", "real,imaginary\n1,1\n2,3\n2,-3\n", ["--inverse"],
     ":2: z_0 is not the conjugate of z_0, as the spectrum of 3 real numbers needs (a row for each k from 0; --complex takes other spectra)"),
    ("parts of unequal length", '{"real": [1, 2], "imaginary": [0]}', ["--inverse"], ": 2 real and 1 imaginary parts"),
]


class Inputs(unittest.TestCase):
    def test_a_file_may_have_the_name_of_a_sub_command(self):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "fft"), "w", encoding="utf-8") as file:
                file.write("2\n1\n")
            self.assertIn("2 values in fft, ascending", run("rank", "fft", cwd=folder).stdout)

    @not_emulated
    def test_names_cannot_break_a_line(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "a\nb\x1b[2J.json")
            with open(file, "w", encoding="utf-8") as text:
                text.write('{"two\\nlines": [1, 2, 3, 4]}')
            for form in ("text", "mtx"):
                shown = run_well("cfft" if form == "mtx" else "sort", file, "--format", form)
                self.assertIn("a\\nb\\x1b[2J.json", shown)
                for line in shown.splitlines():
                    self.assertRegex(line, r"^([#%] .*|%%.*|[-0-9 ]+|rank +value +position)$")
            self.assertIn("'two\\nlines'", run_well("sort", file))
            done = run("fft", file, "--column", "x\ny")
            self.assertEqual((done.returncode, done.stderr.count("\n")), (2, 1))

    def test_shapes(self):
        expected = run_json("fft", "-", stdin="\n".join(NUMBERS))
        for shape, (text, unit) in SHAPES.items():
            with self.subTest(shape):
                result = run_json("fft", "-", stdin=text)
                self.assertEqual(result["unit"], unit)
                for column in ("k", "real", "imaginary", "magnitude"):
                    self.assertEqual(result[column], expected[column])

    def test_tables_with_options(self):
        expected = run_json("sort", "-", stdin="\n".join(NUMBERS))["value"]
        for what, text, *options in (
            ("lines above", "Station 7;x\n5;6;7\nday;height\n1;1.5\n2;-2\n3;3e2\n4;4\n", "--skip", "2"),
            ("missing cells", "day;height\n1;1.5\n2;\n3;-2\n4;NA\n5;3e2\n6;4\n7;null\n", "--missing", "drop"),
            ("decimal commas between blanks", "1 1,5\n2 -2,0\n3 300\n4 4\n", "--decimal", "comma"),
            ("JSON with holes", "[1.5, null, -2, 3e2, 4]", "--missing", "drop"),
        ):
            with self.subTest(what):
                self.assertEqual(run_json("sort", "-", *options, stdin=text)["value"], expected)
        filled = run_json("sort", "-", "--missing", "interpolate", stdin="1\n\"\"\nNA\n7\n-\n8\n")["value"]
        self.assertEqual([round(float(value), 9) for value in filled], [1, 3, 5, 7, 7.5, 8])

    def test_utf16(self):
        expected = run_json("fft", "-", stdin="\n".join(NUMBERS))
        for encoding in ("utf-16-le", "utf-16-be"):
            with tempfile.TemporaryDirectory(dir=tempfile.tempdir) as folder:
                file = os.path.join(folder, "table.csv")
                with open(file, "wb") as table:
                    table.write("\ufeffday;h\u00f6he \U0001d54f\r\n1;1,5\r\n2;-2\r\n3;3e2\r\n4;4\r\n".encode(encoding))
                result = run_json("fft", file)
            self.assertEqual((result["real"], result["unit"]), (expected["real"], "day"))

    def test_compressed_files(self):
        table = "day;h\u00f6he\n1;1,5\n2;-2\n3;3e2\n4;4\n"
        expected = run_json("fft", "-", stdin="\n".join(NUMBERS))["real"]
        whole = gzip.compress(table.encode())
        with tempfile.TemporaryDirectory(dir=tempfile.tempdir) as folder:
            file = os.path.join(folder, "table.csv.gz")
            for what, data in (
                ("one member", whole), ("stored", gzip.compress(table.encode(), 0)),
                ("UTF-16", gzip.compress(("\ufeff" + table).encode("utf-16-le"))),
                ("two members", gzip.compress(table[:20].encode()) + gzip.compress(table[20:].encode())),
            ):
                with self.subTest(what), open(file, "wb") as archive:
                    archive.write(data)
                    archive.flush()
                    self.assertEqual(run_json("fft", file)["real"], expected)
            wrong_sum = bytearray(whole)
            wrong_sum[-8] ^= 1
            for what, data in (("a head alone", whole[:4]), ("cut", whole[:-1]), ("a wrong sum", bytes(wrong_sum)),
                               ("more behind", whole + b"x"), ("no blocks", whole[:10] + b"\xff" * 20)):
                with self.subTest(what), open(file, "wb") as archive:
                    archive.write(data)
                    archive.flush()
                    done = run("sort", file)
                    self.assertEqual((done.returncode, done.stdout), (2, ""))
                    self.assertIn(f"quarn: {file}: not a whole gzip file: ", done.stderr)

    def test_json_numbers_of_any_size(self):
        for text, values in (("[1e400, -2.5E-400, 3]", ["-2.5e-400", "3", "1e+400"]),
                             ('{"e1":[1e2],"x":["1e5\\"", 2]}', ["100"]), ("[1e400, 01e400]", None), ("[1" + "0" * 400 + "]", ["1e+400"])):
            with self.subTest(text=text[:30]):
                done = run("sort", "-", "--format", "json", stdin=text)
                self.assertEqual(done.returncode, 2 if values is None else 0)
                if values is not None:
                    self.assertEqual(json.loads(done.stdout)["value"], values)

    def test_dates(self):
        def table(dates):
            return "date;level\n;cm\n" + "".join(f"{date};{k * k % 7}\n" for k, date in enumerate(dates))

        for dates, unit, frequency in (
            (["2023-12-30", "2023-12-31", "2024-01-01", "2024-01-02"], "day", "0.25"),
            (["28.02.2023", "02.03.2023", "04.03.2023", "06.03.2023"], "day", "0.125"),
            (["2024-01-31", "2024-02-29", "2024-03-31", "2024-04-30"], "month", "0.25"),
            (["2020-07", "2021-07", "2022-07", "2023-07"], "year", "0.25"),
            (["2024-03-31T22:30:00Z", "2024-04-01T00:00:00+01:00", "2024-03-31T23:30Z", "2024-04-01 00:00"], "minute", None),
            (["2024-05-05 23:00", "2024-05-06 02:00", "2024-05-06 05:00", "2024-05-06 08:00"], "hour", "0.083333"),
            (["2024-05-05 00:00:00.5", "2024-05-05 00:00:01", "2024-05-05 00:00:01.5", "2024-05-05 00:00:02"], "second", "0.5"),
        ):
            with self.subTest(dates=dates):
                result = run_json("fft", "-", "--digits", "5", stdin=table(dates))
                self.assertEqual(result["unit"], unit)
                if frequency is not None:
                    self.assertEqual(result["frequency"][1], frequency)
        for dates in (["2024-01-01", "2024-01-02", "2024-01-04", "2024-01-05"], ["2024-01-01"] * 4):
            self.assertIn("'date' is not evenly spaced", run_well("fft", "-", stdin=table(dates)))
        missing = "day,x\n2024-01-01,1\n2024-01-02,NA\n2024-01-03,4\n2024-01-04,2\n"
        self.assertIn("'day' is not evenly spaced", run_well("fft", "-", "--missing", "drop", stdin=missing))
        self.assertIn("units of day", run_well("fft", "-", "--missing", "interpolate", stdin=missing))
        for no_date in ("2023-02-29", "2024-13-01", "2024-01-01T25:61"):
            shown = run_json("fft", "-", stdin=table([no_date, "2024-01-02", "2024-01-03", "2024-01-04"]))
            self.assertEqual(shown["unit"], "sample")

    def test_several_columns_at_once(self):
        text = "t,a,b\n0,1,4\n1,2,4\n2,3,1\n3,5,0\n"
        both = run_json("fft", "-", "--column", "a", "--column", "3", stdin=text)
        for name in ("a", "b"):
            alone = run_json("fft", "-", "--column", name, stdin=text)
            for part in ("real", "imaginary", "magnitude"):
                self.assertEqual(both[f"{part} {name}"], alone[part])
            self.assertEqual(both["frequency"], alone["frequency"])
        self.assertIn("of 'a' (column 2 of 3) and of 'b' (column 3 of 3)",
                      run_well("fft", "-", "--column", "a", "--column", "3", stdin=text))
        done = run("fft", "-", "--column", "a", "--column", "b", "--missing", "drop", stdin=text.replace(",1\n", ",\n"))
        self.assertEqual(done.returncode, 2)
        self.assertIn("columns of 4 and 3 numbers", done.stderr)

    def test_complex_numbers_are_recognised(self):
        numbers = "1-2i\n3\ni\n"
        expected = run_json("cfft", "-", stdin=numbers)
        for text in (numbers, "real,imaginary\n1,-2\n3,0\n0,1\n", "x\n1-2i\n3\ni\n",
                     "%%MatrixMarket matrix array complex general\n3 1\n1 -2\n3 0\n0 1\n"):
            with self.subTest(text=text):
                self.assertEqual(run_json("fft", "-", stdin=text), expected)
        self.assertEqual(run("fft", "-", "--window", "hann", stdin=numbers).returncode, 2)
        product = run_json("convolve", "-", "-", stdin="real,imaginary\n1,2\n0,-1\n")
        self.assertEqual((product["real"], product["imaginary"]), (["-3", "4", "-1"], ["4", "-2", "0"]))
        vector = "%%MatrixMarket matrix array real general\n4 1\n1.5\n-2\n3e2\n4\n"
        for command in ("sort", "dct", "fft"):
            self.assertEqual({**run_json(command, "-", stdin=vector), "input": ""},
                             {**run_json(command, "-", stdin="\n".join(NUMBERS)), "input": ""})

    def test_options_of_tables_are_everywhere(self):
        table = "Station\na;b\n1,5;2\nNA;7\n0,5;-1\n"
        options = ("--skip", "1", "--missing", "drop")
        for command in (("lu",), ("det",), ("inv",), ("eig",), ("norm",), ("sparse",), ("cfft",)):
            with self.subTest(command=command):
                self.assertEqual(run_well(*command, "-", *options, "--format", "csv", stdin=table),
                                 run_well(*command, "-", "--format", "csv", stdin="1.5 2\n0.5 -1\n"))
        for command in ("dct", "dst"):
            self.assertEqual(run_json(command, "-", "--column", "1", *options, stdin=table)["value"],
                             run_json(command, "-", stdin="1.5\n0.5\n")["value"])
        self.assertEqual(run_json("convolve", "-", "-", "--column", "a", "--column-b", "a", *options, stdin=table)["value"],
                         ["2.25", "1.5", "0.25"])

    def test_an_upper_triangle_on_request(self):
        for field, kind, upper, lower in (
            ("real", "symmetric", "1 1 4\n1 2 1\n2 2 5\n", "1 1 4\n2 1 1\n2 2 5\n"),
            ("real", "skew-symmetric", "1 2 3\n", "2 1 -3\n"),
            ("complex", "hermitian", "1 1 4 0\n1 2 1 2\n2 2 5 0\n", "1 1 4 0\n2 1 1 -2\n2 2 5 0\n"),
        ):
            with self.subTest(kind):
                head = f"%%MatrixMarket matrix coordinate {field} {kind}\n2 2 {upper.count(chr(10))}\n"
                expected = run_well("det", "-", "--format", "csv", stdin=head + lower)
                self.assertEqual(run_well("det", "-", "--mirror", "--format", "csv", stdin=head + upper), expected)
                self.assertIn("--mirror takes the upper one", run("det", "-", stdin=head + upper).stderr)
        both = "%%MatrixMarket matrix coordinate real symmetric\n2 2 2\n1 2 1\n2 1 1\n"
        self.assertIn("in the other triangle", run("det", "-", "--mirror", stdin=both).stderr)

    def test_an_unknown_ending_of_the_output_is_refused(self):
        done = run("sort", "-", "--output", "result.xlsx", stdin="1\n2\n")
        self.assertEqual((done.returncode, done.stderr),
                         (2, "quarn: --output: '.xlsx' says no format: end the name in .txt, .csv or .json, or give --format\n"))

    def test_columns(self):
        text = "a,b,c\n1,5,9\n2,7,7\n4,8,2\n"
        for column, numbers in {"a": "1 2 4", "b": "5 7 8", "1": "1 2 4", "2": "5 7 8", "c": "9 7 2", "3": "9 7 2"}.items():
            with self.subTest(column):
                expected = run_json("fft", "-", stdin=numbers.replace(" ", "\n"))
                result = run_json("fft", "-", "--column", column, stdin=text)
                self.assertEqual((result["real"], result["imaginary"]), (expected["real"], expected["imaginary"]))

    def test_bad_texts(self):
        for what, text, arguments, complaint in BAD:
            with self.subTest(what):
                done = run("fft", "-", *arguments, stdin=text)
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertEqual(done.stderr, "quarn: standard input" + complaint + "\n")

    def test_broken_json_is_named_by_line(self):
        done = run("fft", "-", stdin="[1,\n2,,\n3]")
        self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))
        self.assertIn("quarn: standard input: parse error at line 2, column 3", done.stderr)

    def test_files_that_cannot_be_read(self):
        with tempfile.TemporaryDirectory() as folder:
            missing = os.path.join(folder, "missing.csv")
            of_a_folder = "Permission denied" if EMULATOR else "Is a directory"  # the words are the system's
            for name, reason in ((missing, "No such file or directory"), (folder, of_a_folder)):
                done = run("fft", name)
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertEqual(done.stderr, f"quarn: {name}: {reason}\n")

    @not_emulated
    def test_an_endless_file_is_refused_at_its_first_bytes(self):
        done = run("fft", "/dev/zero")
        self.assertEqual((done.returncode, done.stderr), (2, "quarn: /dev/zero: not a text file\n"))

    def test_more_than_memory_holds_is_refused_before_the_work(self):
        done = run("fft", "-", "--digits", "1000000", stdin="1\n" * 1000000)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertRegex(done.stderr, r"^quarn: a transform of 1000000 values at 1000000 digits needs \d+\.\d GB of memory, "
                                      r"this machine has \d+\.\d GB\n$")
        # Numbers that are read with all their digits take storage for those that they have.
        ones = run("norm", "-", stdin="%%MatrixMarket matrix coordinate real general\n600 600 1\n1 1 1\n")
        self.assertEqual((ones.returncode, ones.stderr), (0, ""))

    def test_the_column_of_years_gives_the_unit(self):
        result = run_json("fft", SUNSPOTS)
        self.assertEqual((result["n"], result["unit"], result["input"]), (289, "year", SUNSPOTS))


if __name__ == "__main__":
    unittest.main()
