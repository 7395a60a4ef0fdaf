"""Ctrl-C: a command ends with status 130 and one sentence; at the terminal the session and its variables stay."""

import os
import re
import select
import signal
import subprocess
import time
import unittest

from console import COMMAND, not_emulated, open_terminal

# Some minutes of work.
LONG = "inv(random(300, 300));"


def start(*arguments, **options):
    """With the usual handling of the signal, which a shell in the background may have turned off."""
    return subprocess.Popen([*COMMAND, *arguments], preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL),
                            **options)


@not_emulated
class Commands(unittest.TestCase):
    def check_ends(self, process):
        time.sleep(0.5)
        process.send_signal(signal.SIGINT)
        output, errors = process.communicate(timeout=60)
        self.assertEqual((process.returncode, output, errors), (130, b"", b"quarn: interrupted\n"))

    def test_a_computation_ends(self):
        self.check_ends(start("repl", "--digits", "2000", "--eval", LONG, stdout=subprocess.PIPE, stderr=subprocess.PIPE))

    def test_waiting_for_input_ends(self):
        for command in (["fft", "-"], ["repl", "-"]):
            with self.subTest(command[0]):
                self.check_ends(start(*command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE))

    def test_an_ignored_signal_stays_ignored(self):
        process = subprocess.Popen([*COMMAND, "repl", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))
        time.sleep(0.5)
        process.send_signal(signal.SIGINT)
        output, _ = process.communicate(b"1 + 1\n", timeout=60)
        self.assertEqual((process.returncode, output), (0, b"ans = 2\n"))


@not_emulated
class Terminal(unittest.TestCase):
    """A session on a pseudo-terminal that is the process's own, so that the key itself makes the signal."""

    def setUp(self):
        self.primary, secondary = open_terminal()

        def own_terminal():
            import fcntl
            import termios

            os.setsid()
            fcntl.ioctl(0, termios.TIOCSCTTY, 0)
            signal.signal(signal.SIGINT, signal.SIG_DFL)

        self.process = subprocess.Popen([*COMMAND, "repl", "--digits", "2000"], stdin=secondary, stdout=secondary,
                                        stderr=secondary, preexec_fn=own_terminal,
                                        env={**os.environ, "QUARN_HISTORY": os.devnull, "TERM": "xterm"})
        os.close(secondary)
        self.shown = ""
        self.wait_for("> ")

    def tearDown(self):
        self.process.kill()
        self.process.wait()
        os.close(self.primary)

    def wait_for(self, pattern):
        """What was shown up to the pattern."""
        end = time.monotonic() + 60
        while time.monotonic() < end:
            found = re.search(pattern, self.shown)
            if found:
                before, self.shown = self.shown[:found.end()], self.shown[found.end():]
                return before
            if select.select([self.primary], [], [], 1)[0]:
                self.shown += os.read(self.primary, 4096).decode()
        raise AssertionError(f"{pattern!r} is not in {self.shown!r}")

    def type(self, text):
        os.write(self.primary, text.encode())

    def test_lines_and_computations_are_cancelled_and_nothing_else(self):
        self.type("x = 123456;\r")
        self.wait_for("> ")
        self.type("x = 99")
        self.wait_for("99")
        self.type("\x03")
        self.wait_for("> ")
        self.type("y = [1,\r")
        self.wait_for(r"\.\.\. ")
        self.type("\x03")
        self.wait_for("> ")
        for _ in range(3):
            self.type(LONG + "\r")
            self.wait_for(r"300, 300\)\);")
            time.sleep(1)
            self.type("\x03")
            self.wait_for("interrupted")
            self.wait_for("> ")
        self.type("x + 1\r")
        self.wait_for("123457")
        self.type("quit\r")
        self.assertEqual(self.process.wait(60), 0)


if __name__ == "__main__":
    unittest.main()
