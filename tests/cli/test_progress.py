"""Progress lines: at a terminal alone, after their delay, gone at the end, and not with --quiet."""

import os
import re
import subprocess
import unittest

from console import COMMAND, DATA, open_terminal, run_well

# Some hundred milliseconds of work each, beside a delay of one.
ORDER = 120
LONG = ["lu", "-", "--digits", "400"]
SOLVE = ["solve", os.path.join(DATA, "bcsstk01.mtx"), "--digits", "2000", "--method", "cgs", "--tol", "1e-1900"]
REPL = ["repl", "--digits", "400", "--eval", "inv(random(110, 110));"]
AT_ONCE = "1"
NEVER = "86400000"
MATRIX = "\n".join(",".join(str((i * i + 7 * j * i + j) % 101) for j in range(ORDER)) for i in range(ORDER))
# The console of Windows hides and shows the cursor too.
CURSOR = re.compile(r"\x1b\[\?25[lh]")


class Progress(unittest.TestCase):
    def errors_at_a_terminal(self, delay, *arguments):
        primary, secondary = open_terminal()
        with subprocess.Popen([*COMMAND, *arguments], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=secondary,
                              env={**os.environ, "QUARN_PROGRESS_DELAY": delay}) as process:
            os.close(secondary)
            if "-" in arguments:
                process.stdin.write(MATRIX.encode())
            process.stdin.close()
            output = b""
            try:
                while chunk := os.read(primary, 4096):
                    output += chunk
            except OSError:
                pass  # the other end is closed
            self.assertEqual(process.wait(120), 0)
        os.close(primary)
        return CURSOR.sub("", output.decode())

    def test_long_work_tells_how_far_it_is(self):
        for command in (LONG, SOLVE, REPL):
            with self.subTest(command[0]):
                text = self.errors_at_a_terminal(AT_ONCE, *command)
                self.assertRegex(text, r"\A(\r?[a-z ]+: (\d+ %, about \d+ (s|min) left|\d+ s so far)\x1b\[K|\r\x1b\[K)+\Z")
                self.assertTrue(text.endswith("\r\x1b[K"))

    def test_quiet_and_work_shorter_than_the_delay_show_nothing(self):
        self.assertEqual(self.errors_at_a_terminal(AT_ONCE, *REPL, "--quiet"), "")
        self.assertEqual(self.errors_at_a_terminal(NEVER, *REPL), "")

    def test_nothing_away_from_a_terminal(self):
        run_well(*REPL, env={**os.environ, "QUARN_PROGRESS_DELAY": AT_ONCE})


if __name__ == "__main__":
    unittest.main()
