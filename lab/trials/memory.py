"""Memory faults against whoever tests memory: the product's tests, and the public exercisers."""

import random
import re
import shlex
import time

from lab.faults import memory
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine

MODULE = "DIMM_A"


class Tester:
    """Who tests: a command of the machine, the name of the process that has the memory, and how its output is
    read."""

    def __init__(self, name, process, seconds):
        self.name = name
        self.process = process
        self.seconds = seconds


class Product(Tester):
    def __init__(self, test, seconds=600, settings=("QuickMode=true",)):
        super().__init__(test, "diags-worker", seconds)
        self._settings = settings

    def command(self, seed, _):
        words = ["diags", "run", self.name, "--events", "-", "--no-history"]
        for setting in self._settings + (f"Seed={seed}",):
            words += ["--set", setting]
        return shlex.join(words)

    @staticmethod
    def read(lines, _):
        return verdict.read(lines)


class Exerciser(Tester):
    """A public program: its status tells, 0 for a machine without faults."""

    def __init__(self, name, words, failure, seconds=900):
        super().__init__(name, name, seconds)
        self._words = words
        self._failure = re.compile(failure)

    def command(self, _, mebibytes):
        return self._words.format(mebibytes=mebibytes)

    def read(self, lines, status):
        text = "\n".join(lines)
        if self._failure.search(text):
            return verdict.Verdict("failed", text)
        return verdict.Verdict("passed" if status == 0 else "broken", text)


# Each gets a share of the free memory of the size that the product's own test takes by itself.
MEMTESTER = Exerciser("memtester", "memtester {mebibytes}M 1", r"FAILURE:")
STRESSAPPTEST = Exerciser("stressapptest", "stressapptest -s 10 -M {mebibytes} -v 8",
                          r"Status: FAIL|Hardware Error|miscompare")


class _Course:
    """One test from its start to its end, beside the watcher of the faulty pages."""

    def __init__(self, machine, tester, seed, mebibytes, pages):
        self._machine = machine
        self._tester = tester
        self._pages = pages
        self.lines = []
        self.status = None
        frames = " ".join(map(str, pages))
        if pages:
            machine.ask(f"/lab/pages watch {tester.process} {frames} >/tmp/reach 2>&1 &")
        machine.start(tester.command(seed, mebibytes))

    def reached(self):
        return not self._pages or any(line.isdigit() for line in self._machine.ask("cat /tmp/reach"))

    def _is_elsewhere(self):
        """Whether the test has its memory, and none of the pages is in it."""
        said = self._machine.ask("cat /tmp/reach")
        if any(line.isdigit() for line in said):
            self._asking = False
        return set(said) == {"settled"}

    def run(self, patient):
        """False where there is nothing to wait for, as the fault is elsewhere."""
        self._asking = bool(self._pages) and not patient
        for line in self._machine.lines(self._tester.seconds):
            if isinstance(line, int):
                self.status = line
                return True
            if line is not None:
                self.lines.append(line)
            if self._asking and self._is_elsewhere():
                return False
        return True


def trial(lab, kind, tester, seed, mebibytes=40, patient=False):
    """One machine with one fault of that kind, or none; the same seed has the same fault in the same place."""
    chance = random.Random(f"{kind} {seed}")
    began = time.monotonic()
    said = result.Result(kind, tester.name, seed, result.FELL)
    with Machine(lab.plan, lab.template) as machine:
        try:
            _try(lab, machine, kind, tester, chance, mebibytes, patient, said)
        except Fallen as fallen:
            said.detail = f"{fallen}; {machine.last_words()}"
    said.seconds = round(time.monotonic() - began, 2)
    return said


def _try(lab, machine, kind, tester, chance, mebibytes, patient, said):
    faults = []
    if kind != result.HEALTHY:
        free = memory.FreePages(machine.ask("/lab/pages free"))
        faults = [memory.draw(kind, chance, free)]
    pages = [page for fault in faults for page in fault.pages]
    held = memory.Held(memory.program_in(lab.programs), machine, faults)
    with held:
        course = _Course(machine, tester, said.seed, mebibytes, pages)
        whole = course.run(patient or not faults)
        reached = whole and course.reached()
    answer = tester.read(course.lines, course.status)
    said.came_to = result.judge(answer, not faults, any(held.acted), reached)
    said.placed = said.came_to == result.FOUND and verdict.placed(answer.text, pages, MODULE)
    said.detail = " ".join(fault.line for fault in faults) + f", acted {held.acted}"
    if said.came_to not in (result.SILENT, result.OUT_OF_REACH):
        said.detail += ": " + answer.text[-600:]
