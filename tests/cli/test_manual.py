"""help, the manual page and the completion know every sub-command and option; options mean the same everywhere."""

import re
import subprocess
import tempfile
import unittest

from console import QUARN, run, run_well

COMMON = {"--help", "--digits", "--quiet"}


def options_of(*command):
    """Long options and their descriptions, as the help lists them."""
    return dict(re.findall(r"^  (?:-h,)?(--[a-z-]+)\S*(?: [A-Z][^ ]*)*(?: x \d)?  +(.*)$", run_well(*command, "--help"), re.MULTILINE))


def commands():
    listed = run_well("--help").split("Subcommands:\n")[1].split("\n\n")[0]
    return re.findall(r"^  (\w+)", listed, re.MULTILINE)


class Manual(unittest.TestCase):
    def test_options_of_one_name_are_described_alike(self):
        known = {}
        for command in commands():
            for option, description in options_of(command).items():
                if option not in ("--digits", "--condition", "--classic", "--column", "--error", "--format", "--mode", "--count", "--which"):  # these say what they do here
                    self.assertEqual(known.setdefault(option, description), description, (command, option))
            self.assertIn("\nExample", run_well(command, "--help"))

    def test_help_and_its_topics(self):
        self.assertEqual(run_well("help"), run_well("--help"))
        for command in commands():
            self.assertEqual(run_well("help", command), run_well(command, "--help"))
        topics = re.search(r"topics (.*)\.$", run_well("--help").rstrip()).group(1).split(", ")
        self.assertIn("exit-status", topics)
        for topic in topics:
            self.assertGreater(run_well("help", topic).count("\n"), 3)
        done = run("help", "nothing")
        self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))

    def test_the_manual_page_has_everything(self):
        page = run_well("help", "--man")
        sections = re.split(r"^\.SS quarn ", page, flags=re.MULTILINE)
        self.assertEqual([section.split()[0] for section in sections[1:]], commands())
        for command, section in zip(commands(), sections[1:], strict=True):
            for option in options_of(command):
                where = sections[0] if option in COMMON else section
                self.assertIn("\n.B " + option.replace("-", "\\-"), where.replace("\\-h,", ""), (command, option))
        for title in ("INPUT", "OUTPUT", "EXIT STATUS"):
            self.assertIn("\n.SH " + title, page)
        self.assertNotRegex(page, r"(?m)^'")  # a line that roff would take for a request
        done = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z"], input=page, capture_output=True, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def completions(self, *words):
        with tempfile.NamedTemporaryFile("w", suffix=".bash") as script:
            script.write(run_well("help", "--bash-completion"))
            script.flush()
            line = " ".join(f"'{word}'" for word in ("quarn", *words))
            done = subprocess.run(["bash", "-c", f"source {script.name}; COMP_WORDS=({line}); COMP_CWORD={len(words)}; _quarn; "
                                   'printf "%s\\n" "${COMPREPLY[@]}"'], capture_output=True, text=True, timeout=60)
            self.assertEqual(done.stderr, "")
            return done.stdout.split()

    def test_completion(self):
        self.assertEqual(self.completions(""), commands())
        self.assertEqual(self.completions("sp"), ["spmv", "sparse"])
        for command in commands():
            self.assertEqual(set(self.completions(command, "--")), set(options_of(command)) - {"--version"})
        self.assertEqual(self.completions("sparse", "a", "--format", ""), ["text", "csv", "json", "mtx"])
        self.assertEqual(self.completions("sparse", "--dup", "f"), ["fail"])
        self.assertEqual(self.completions("help", "exit"), ["exit-status"])
        self.assertEqual(self.completions("fft", QUARN[:-2]), [QUARN])


if __name__ == "__main__":
    unittest.main()
