import os
import random
import subprocess
import time
import unittest

from lab.faults import memory

PROGRAM = memory.program_in(os.environ["LAB_PROGRAMS"])
PAGE = memory.PAGE
PATIENCE = 20


class FakePlan:
    bytes = 64 * PAGE


class FakeMachine:
    """Memory as a machine's is, of a few pages."""

    def __init__(self):
        self.plan = FakePlan
        self.memory = os.memfd_create("memory", 0)
        os.ftruncate(self.memory, FakePlan.bytes)

    def put(self, address, value):
        os.pwrite(self.memory, bytes([value]), address)

    def get(self, address, size=1):
        return os.pread(self.memory, size, address)

    def becomes(self, address, value):
        until = time.monotonic() + PATIENCE
        while self.get(address)[0] != value and time.monotonic() < until:
            os.sched_yield()
        return self.get(address)[0] == value


class AHeldFault(unittest.TestCase):
    def setUp(self):
        self.machine = FakeMachine()
        self.addCleanup(os.close, self.machine.memory)

    def held(self, *lines):
        return memory.Held(PROGRAM, self.machine, [memory.Fault("", line, []) for line in lines])

    def test_sticks_to_its_value_whatever_is_written_and_leaves_other_bits(self):
        with self.held("stuck 5000 3 1") as held:
            self.assertTrue(self.machine.becomes(5000, 0x08))
            self.machine.put(5000, 0xF0)
            self.assertTrue(self.machine.becomes(5000, 0xF8))
        self.assertEqual(len(held.acted), 1)
        self.assertGreaterEqual(held.acted[0], 2)

    def test_is_over_with_its_program(self):
        with self.held("stuck 5000 3 1"):
            self.assertTrue(self.machine.becomes(5000, 0x08))
        self.machine.put(5000, 0)
        self.assertEqual(self.machine.get(5000), b"\0")

    def test_follows_the_bit_that_it_is_coupled_to(self):
        with self.held("coupled 100 0 1 200 7 1"):
            self.assertEqual(self.machine.get(100), b"\0")
            self.machine.put(200, 0x80)
            self.assertTrue(self.machine.becomes(100, 1))

    def test_decays_after_its_time(self):
        self.machine.put(100, 0x10)
        with self.held("decaying 100 4 0 1000") as held:
            self.assertTrue(self.machine.becomes(100, 0))
        self.assertEqual(held.acted, [1])

    def test_makes_two_places_one(self):
        with self.held("shorted 4096 8192 512"):
            self.machine.put(4096 + 17, 0xAB)
            self.assertTrue(self.machine.becomes(8192 + 17, 0xAB))
            self.machine.put(8192 + 4095, 0xCD)
            self.assertTrue(self.machine.becomes(4096 + 4095, 0xCD))

    def test_that_flips_once_does_it_once(self):
        with self.held("flipped 100 0") as held:
            self.assertTrue(self.machine.becomes(100, 1))
        self.assertEqual(held.acted, [1])

    def test_that_makes_no_sense_is_refused_with_its_line(self):
        for line in ("stuck 5000 8 1", "stuck 262144 0 1", "stuck 5000", "broken 1 2 3", "shorted 4096 262143 8",
                     "shorted 4096 8192 513", "shorted 262136 0 2"):
            with self.subTest(line=line):
                done = subprocess.run([PROGRAM, str(self.machine.memory), str(FakePlan.bytes)],
                                      input=line + "\n\n", pass_fds=[self.machine.memory], text=True,
                                      stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=PATIENCE)
                self.assertEqual(done.returncode, 2)
                self.assertIn(line, done.stderr)


class ADrawnFault(unittest.TestCase):
    HELD = memory.Frames(["16 100", "4096 64"])

    def test_is_the_same_for_the_same_seed(self):
        for kind in memory.KINDS:
            with self.subTest(kind=kind):
                lines = {memory.draw(kind, random.Random(7), self.HELD).line for _ in range(3)}
                self.assertEqual(len(lines), 1)

    def test_lies_in_a_page_that_the_test_holds(self):
        for kind in memory.KINDS:
            for seed in range(200):
                fault = memory.draw(kind, random.Random(seed), self.HELD)
                self.assertTrue(all(self.HELD.has(page) for page in fault.pages), (kind, seed))
                self.assertIn(int(fault.line.split()[1]) // PAGE, fault.pages)

    def test_of_two_rows_has_both_of_them_in_the_tests_memory(self):
        for seed in range(200):
            one, other = self.HELD.draw_pair(random.Random(seed))
            self.assertTrue(self.HELD.has(one) and self.HELD.has(other))
            self.assertEqual((one ^ other).bit_count(), 1)

    def test_may_lie_in_every_page_of_it(self):
        drawn = {self.HELD.draw(random.Random(seed)) for seed in range(5000)}
        self.assertEqual(len(drawn), 164)


if __name__ == "__main__":
    unittest.main()
