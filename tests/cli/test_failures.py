"""Runs that end badly: one line that says why, its own exit status, and nothing among the results."""

import os
import resource
import subprocess
import tempfile
import unittest

from console import QUARN, SUNSPOTS, run, run_well

SEE_HELP = " (quarn --help shows what there is)\n"
SEE_FFT = " (quarn fft --help shows what there is)\n"

BAD_OPTIONS = [
    ([], "no sub-command given" + SEE_HELP),
    (["--digits", "30"], "no sub-command given" + SEE_HELP),
    (["ftf"], "there is no sub-command 'ftf'" + SEE_HELP),
    (["fft"], "FILE is required" + SEE_FFT),
    (["fft", "--frob"], "there is no option --frob" + SEE_FFT),
    (["fft", "x", "--frob", "y"], "there is no option --frob" + SEE_FFT),
    (["fft", "a", "b"], "'b' was not expected" + SEE_FFT),
    (["fft", "-", "--digits"], "--digits: 1 required D missing" + SEE_FFT),
    (["fft", "-", "--format", "xml"], "--format: 'xml' is not text, csv or json" + SEE_FFT),
    (["fft", "-", "--format", "0"], "--format: '0' is not text, csv or json" + SEE_FFT),
    (["fft", "-", "--plot", "s.eps"], "--plot: the file name must end in .svg, .png or .pdf, or be -: 's.eps'\n"),
    (["fft", "-", "--plot", "-", "--format", "csv"],
     "--plot -: a plot would stand in the result; --output FILE puts that elsewhere\n"),
]

BAD_DIGITS = ["0", "-1", "1000001", "99999999999", "20.5", "many", ""]


REFUSED = [
    (1, "On entry, N .le. 1: N = %d."),
    (23, "At least one prime factor of N is greater than 19. N = %d."),
    (46, "At least one prime factor of N is greater than 19. N = %d."),
    (2 ** 21, "N has more than 20 prime factors. N = %d."),
]


class Failures(unittest.TestCase):
    def test_bad_options(self):
        for arguments, complaint in BAD_OPTIONS:
            with self.subTest(arguments):
                done = run(*arguments, stdin="1\n2\n")
                self.assertEqual((done.returncode, done.stdout, done.stderr), (2, "", "quarn: " + complaint))

    def test_bad_digits(self):
        for digits in BAD_DIGITS:
            with self.subTest(digits):
                done = run("fft", "-", "--digits", digits, stdin="1\n2\n")
                self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))
                self.assertRegex(done.stderr, "^quarn: .*(--digits|" + digits + ")")

    def test_the_library_says_why_it_refuses(self):
        entries = [(["--classic"], "C06FAF"), (["--inverse", "--classic"], "C06FBF")]
        for n, record in REFUSED:
            for options, routine in entries if n < 100 else entries[:1]:
                with self.subTest(n=n, options=options):
                    done = run("fft", "-", *options, stdin="1\n" * n)
                    # Not even the newlines that a failing routine writes may reach standard output.
                    self.assertEqual((done.returncode, done.stdout, done.stderr), (1, "", f"quarn: {routine}: {record % n}\n"))

    def test_a_refused_run_leaves_no_output_file(self):
        with tempfile.TemporaryDirectory() as folder:
            run("fft", "-", "--classic", "--output", os.path.join(folder, "s.csv"), stdin="1\n" * 23)
            self.assertEqual(os.listdir(folder), [])

    def test_a_file_is_replaced_only_by_a_whole_one(self):
        with tempfile.TemporaryDirectory() as folder:
            file, link = os.path.join(folder, "s.csv"), os.path.join(folder, "link")
            with open(file, "w", encoding="utf-8") as old:
                old.write("old")
            os.chmod(file, 0o640)
            os.symlink("s.csv", link)
            done = run("fft", SUNSPOTS, "--output", link, restore_signals=False,
                       preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000)))
            self.assertEqual((done.returncode, done.stderr), (3, f"quarn: cannot write {link}: File too large\n"))
            with open(file, encoding="utf-8") as kept:
                self.assertEqual(kept.read(), "old")
            run_well("fft", SUNSPOTS, "--output", link)
            self.assertEqual(sorted(os.listdir(folder)), ["link", "s.csv"])
            self.assertTrue(os.path.islink(link))
            self.assertEqual(os.stat(file).st_mode & 0o777, 0o640)
            with open(file, encoding="utf-8") as new:
                self.assertEqual(new.read(), run_well("fft", SUNSPOTS))

    def test_what_cannot_be_written_is_reported(self):
        with tempfile.TemporaryDirectory() as folder:
            for file, reason in ((folder, "Is a directory"), (os.path.join(folder, "no", "s.csv"), "No such file or directory"),
                                 ("/dev/full", "No space left on device")):
                done = run("fft", SUNSPOTS, "--output", file)
                self.assertEqual((done.returncode, done.stdout), (3, ""))
                self.assertEqual(done.stderr, f"quarn: cannot write {file}: {reason}\n")

    def test_a_standard_output_that_takes_nothing_is_reported(self):
        cases = [(">/dev/full", "No space left on device"), (">&-", "Bad file descriptor"),
                 (">&- <&-", "Bad file descriptor")]
        for command in ("fft " + SUNSPOTS, "details", "constants", "--help", "fft --help", "--version"):
            for redirection, reason in cases:
                with self.subTest(command=command, redirection=redirection):
                    done = subprocess.run(["sh", "-c", f"{QUARN} {command} {redirection}"], capture_output=True, text=True,
                                          timeout=60)
                    self.assertEqual((done.returncode, done.stderr),
                                     (3, f"quarn: cannot write standard output: {reason}\n"))

    def test_a_reader_that_leaves_is_reported(self):
        with subprocess.Popen([QUARN, "fft", SUNSPOTS, "--digits", "2000"], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as process:
            process.stdout.close()
            complaint = process.stderr.read()
            self.assertEqual((process.wait(60), complaint), (3, "quarn: cannot write standard output: Broken pipe\n"))

    def test_pictures_that_cannot_be_drawn_are_reported(self):
        with tempfile.TemporaryDirectory() as folder:
            done = run("fft", SUNSPOTS, "--plot", os.path.join(folder, "s.svg"), env={"PATH": folder})
            self.assertEqual((done.returncode, done.stderr),
                             (3, "quarn: --plot needs the program gnuplot: No such file or directory\n"))
            with open(os.path.join(folder, "gnuplot"), "w", encoding="utf-8") as fake:
                fake.write("#!/bin/sh\nexit 0\n")
            os.chmod(fake.name, 0o755)
            done = run("fft", SUNSPOTS, "--plot", os.path.join(folder, "s.svg"), env={"PATH": folder})
            self.assertEqual((done.returncode, done.stdout), (3, ""))
            self.assertIn("gnuplot wrote nothing", done.stderr)
            self.assertEqual(os.listdir(folder), ["gnuplot"])
            done = run("fft", SUNSPOTS, "--plot", os.path.join(folder, "no", "s.svg"))
            self.assertEqual((done.returncode, done.stderr.count("\n")), (3, 1))
            self.assertIn("gnuplot says: ", done.stderr)

    def test_help_and_version(self):
        self.assertRegex(run_well("--version"), r"^quarn \d+\.\d+\.\d+\n$")
        text = run_well("--help")
        for command in ("fft", "constants", "details"):
            self.assertIn("\n  " + command + " ", text)
            self.assertTrue(run_well(command, "--help").split("\n")[1].startswith("Usage: quarn " + command))
        for option in ("--column", "--inverse", "--classic", "--digits", "--format", "--output", "--plot"):
            self.assertIn(option + " ", run_well("fft", "--help"))


if __name__ == "__main__":
    unittest.main()
