import os
import signal
import subprocess
import sys
import time
import unittest
import unittest.mock

from lab.machine import children
from lab.machine.machine import Fallen, Machine, Plan
from lab.machine.wire import Silence, Wire, WireError

PATIENCE = 20


class AWire(unittest.TestCase):
    def setUp(self):
        self.wire = Wire()
        self.addCleanup(self.wire.close)
        self.far = self.wire.far.dup()
        self.addCleanup(self.far.close)
        self.wire.connect()

    def line(self):
        return self.wire.line(time.monotonic() + PATIENCE)

    def test_gives_whole_lines_however_they_come(self):
        for part in (b"one\r\nt", b"wo\nthr", b"ee\n"):
            self.far.sendall(part)
        self.assertEqual([self.line(), self.line(), self.line()], ["one", "two", "three"])

    def test_whose_machine_is_gone_says_so_each_time(self):
        self.far.sendall(b"last\n")
        self.far.close()
        self.assertEqual(self.line(), "last")
        for _ in range(2):
            with self.assertRaisesRegex(WireError, "gone"):
                self.line()

    def test_that_is_silent_is_told_apart_from_one_that_is_gone(self):
        with self.assertRaises(Silence):
            self.wire.line(time.monotonic())


def is_running(process):
    try:
        with open(f"/proc/{process}/stat") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


class AChild(unittest.TestCase):
    def test_is_gone_when_the_lab_is_killed(self):
        lab = subprocess.Popen([sys.executable, "-B", "-c", "from lab.machine import children\n"
                                "print(children.start(['sleep', '600']).pid, flush=True)\nimport time\n"
                                "time.sleep(600)"], stdout=subprocess.PIPE, text=True)
        with lab.stdout:
            child = int(lab.stdout.readline())
        self.assertTrue(is_running(child))
        lab.send_signal(signal.SIGKILL)
        lab.wait()
        until = time.monotonic() + PATIENCE
        while is_running(child) and time.monotonic() < until:
            os.sched_yield()
        self.assertFalse(is_running(child))

    def test_can_be_ended_twice(self):
        child = children.start(["sleep", "600"])
        children.end(child)
        children.end(child)
        self.assertFalse(is_running(child.pid))


class AMachine(unittest.TestCase):
    def test_that_cannot_start_says_what_the_emulator_says(self):
        plan = Plan("no-such-kernel", "no-such-file")
        with unittest.mock.patch("lab.machine.machine.EMULATOR", "cat"):
            with self.assertRaisesRegex(Fallen, "cat: "):
                with Machine(plan):
                    pass


class APlan(unittest.TestCase):
    def test_names_each_memory_module(self):
        text = " ".join(Plan("k", "i", modules=("DIMM_A", "DIMM_B")).arguments())
        for slot in ("DIMM_A", "DIMM_B"):
            self.assertIn(f"loc_pfx={slot},", text)

    def test_has_the_emulator_compute_every_instruction_itself(self):
        arguments = Plan("k", "i").arguments()
        self.assertEqual(arguments[arguments.index("-accel") + 1], "tcg")


if __name__ == "__main__":
    unittest.main()
