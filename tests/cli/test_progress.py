"""Progress lines: at a terminal alone, after a second, gone at the end, and not with --quiet."""

import os
import pty
import re
import subprocess
import unittest

from console import COMMAND, DATA, run_well

# A second or more of work each, on any machine of today.
ORDER = 120
LONG = ["lu", "-", "--digits", "1500"]
SOLVE = ["solve", os.path.join(DATA, "bcsstk01.mtx"), "--digits", "6000", "--method", "cgs", "--tol", "1e-5900"]
REPL = ["repl", "--digits", "1500", "--eval", "inv(random(110, 110));"]
MATRIX = "\n".join(",".join(str((i * i + 7 * j * i + j) % 101) for j in range(ORDER)) for i in range(ORDER))
# The console of Windows hides and shows the cursor too.
CURSOR = re.compile(r"\x1b\[\?25[lh]")


class Progress(unittest.TestCase):
    def errors_at_a_terminal(self, *arguments):
        primary, secondary = pty.openpty()
        with subprocess.Popen([*COMMAND, *arguments], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=secondary) as process:
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
                text = self.errors_at_a_terminal(*command)
                self.assertRegex(text, r"\A(\r?[a-z ]+: (\d+ %, about \d+ (s|min) left|\d+ s so far)\x1b\[K|\r\x1b\[K)+\Z")
                self.assertTrue(text.endswith("\r\x1b[K"))

    def test_quiet_and_short_work_tell_nothing(self):
        self.assertEqual(self.errors_at_a_terminal(*REPL, "--quiet"), "")
        self.assertEqual(self.errors_at_a_terminal("norm", "-"), "")

    def test_nothing_away_from_a_terminal(self):
        run_well(*REPL)


if __name__ == "__main__":
    unittest.main()
