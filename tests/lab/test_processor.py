import contextlib
import os
import random
import subprocess
import time
import unittest

from lab.faults import processor
from lab.judge import result
from lab.judge.verdict import Verdict
from lab.trials import processor as trial

PROGRAMS = os.environ["LAB_PROGRAMS"]
PATIENCE = 60
CLOCK_NANOSLEEP = 230  # the system call's number, which x86-64 never changes


@contextlib.contextmanager
def running(*command, **streams):
    """Ended in any case: a test that fails must not wait for a program that never ends by itself."""
    with subprocess.Popen(command, **streams) as program:
        try:
            yield program
        finally:
            program.kill()


def wait_until_asleep(program):
    """Before a program sleeps it loads its libraries, for which it computes."""
    until = time.monotonic() + PATIENCE
    while time.monotonic() < until:
        with open(f"/proc/{program.pid}/syscall") as file:
            if file.read().split()[0] == str(CLOCK_NANOSLEEP):
                return
        time.sleep(0.001)
    raise TimeoutError("sleep does not sleep")


def flipped(kind, seed):
    """A flip in a program that computes, and how the program ended: 0, 1 where a result was wrong, or None
    where it had to be ended."""
    with running(os.path.join(PROGRAMS, "computing"), stdin=subprocess.PIPE, stdout=subprocess.PIPE) as program:
        program.stdout.readline()
        flip = processor.flip(processor.program_in(PROGRAMS), program.pid, kind, random.Random(seed), PATIENCE,
                              2000)
        try:
            program.stdin.write(b"\n")
            program.stdin.close()
        except BrokenPipeError:
            program.stdin = None
        try:
            return flip, program.wait(10)
        except subprocess.TimeoutExpired:
            return flip, None


class AFlip(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.general = [flipped("general register", seed) for seed in range(12)]
        cls.vector = [flipped("vector register", seed) for seed in range(4)]

    def test_was_made_each_time(self):
        self.assertTrue(all(flip for flip, _ in self.general + self.vector))

    def test_of_which_nothing_is_left_changes_no_result(self):
        self.assertTrue(any(flip.effect in ("none", "unread") for flip, _ in self.general + self.vector))
        self.assertLessEqual({end for flip, end in self.general + self.vector if flip.effect == "none"}, {0})

    def test_may_change_results(self):
        self.assertTrue(any(end != 0 for _, end in self.general))

    def test_tells_where_the_thread_was(self):
        self.assertTrue(all(len(flip.words) > 16 for flip, _ in self.general))

    def test_leaves_a_process_alone_that_does_not_compute(self):
        with running("sleep", "600") as program:
            wait_until_asleep(program)
            done = subprocess.run([processor.program_in(PROGRAMS), str(program.pid), "general", "1", "10"],
                                  stdout=subprocess.PIPE)
            self.assertEqual((done.returncode, done.stdout), (3, b""))
            self.assertIsNone(program.poll())


def flip_with(effect):
    return processor.Flip(f"rax 3 7f00 {effect}", "", 0)


class WhatAFlipComesTo(unittest.TestCase):
    ROWS = [
        ("failed", "none", result.FOUND),
        ("broken", "changed", result.ENDED),
        ("aborted", "changed", result.ENDED),
        ("incomplete", "changed", result.NO_VERDICT),
        ("passed", "changed", result.MISSED),
        ("passed", "fatal", result.MISSED),
        ("passed", "none", result.NO_EFFECT),
        ("passed", "unread", result.NO_EFFECT),
        ("passed", "unsure", result.NO_VERDICT),
    ]

    def test_goes_by_outcome_and_effect(self):
        for outcome, effect, wanted in self.ROWS:
            with self.subTest(outcome=outcome, effect=effect):
                causes = ["timedOut"] if wanted == result.ENDED else []
                self.assertEqual(trial.came_to(Verdict(outcome, "", causes), flip_with(effect)), wanted)


class ThePlace(unittest.TestCase):
    ROWS = [
        ("Seed 4\nCPU 1, Cache walk: expected 0x1, got 0x2", True),
        ("CPU 1 (core 0 of processor 0): Hash, 1 wrong result\n  right on CPU 0", True),
        ("CPU 0, Cache walk: expected 0x1, got 0x2", False),
        ("CPU 1, Cache walk: expected\nCPU 0, Cache walk: expected", False),
        ("CPUs 0-1: 26 runs", False),
    ]

    def test_is_right_if_only_the_faulty_processor_is_accused(self):
        for text, wanted in self.ROWS:
            with self.subTest(text=text):
                self.assertEqual(trial.placed(text, 1), wanted)


class AFunctionsName(unittest.TestCase):
    def test_is_shown_without_what_surrounds_it(self):
        for name, wanted in (("providers::(anonymous namespace)::walk(unsigned long)", "walk"),
                             ("providers::walkCaches(unsigned long, providers::Tap&) [clone .cold]", "walkCaches"),
                             ("main", "main")):
            with self.subTest(name=name):
                self.assertEqual(processor.short(name), wanted)


if __name__ == "__main__":
    unittest.main()
