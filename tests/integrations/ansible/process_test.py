"""Commands that end, or do not."""
import sys
import unittest
from unittest import mock

from ansible_collections.diagsrunner.diags.plugins.module_utils import process


def python(text):
    return [sys.executable, "-c", text]


class Processes(unittest.TestCase):
    def test_that_end_tell_how_and_what_they_said(self):
        ended = process.run(python("import sys; print('a\\x1b'); print('b', file=sys.stderr); sys.exit(3)"), 60)
        self.assertEqual((ended.status, ended.output, ended.messages, ended.is_late),
                         (3, ["a\\x1b"], ["b"], False))

    def test_that_are_late_are_interrupted(self):
        ended = process.run(python("import time; time.sleep(600)"), 0.05)
        self.assertTrue(ended.is_late)

    def test_that_heed_no_interrupt_are_ended(self):
        stubborn = "import signal, time; signal.signal(signal.SIGINT, signal.SIG_IGN); time.sleep(600)"
        with mock.patch.object(process, "GRACE", 0.05):
            ended = process.run(python(stubborn), 0.5)
        self.assertTrue(ended.is_late)

    def test_that_write_without_end_are_cut(self):
        ended = process.run(python("for i in range(100000): print(i)"), 60)
        self.assertEqual(len(ended.output), process.MOST_LINES)

    def test_that_are_not_there_throw(self):
        with self.assertRaises(FileNotFoundError):
            process.run(["/nowhere/diags"], 60)


if __name__ == "__main__":
    unittest.main()
