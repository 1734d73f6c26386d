"""Memory faults against whoever tests memory: the product's tests, and the public exercisers.

A machine is kept once for each test, in the moment in which the test has its memory: its process is stopped
by a program in the machine. A trial goes on from there: a page of that memory is drawn, the fault begins, and
the test goes on.
"""

import contextlib
import random
import re
import shlex
import time

from lab.faults import memory
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine

MODULE = "DIMM_A"
_MEBIBYTES = 4
_SECONDS_TO_BEGIN = 120


class Tester:
    """Who tests: a command of the machine, the name of the process that has the memory, how much it takes, and
    how its output is read."""

    def __init__(self, name, process, mebibytes, seconds):
        self.name = name
        self.process = process
        self.bytes = mebibytes << 20
        self.seconds = seconds


class Product(Tester):
    def __init__(self, test, seconds=300):
        super().__init__(test, "diags-worker", _MEBIBYTES, seconds)

    def command(self):
        settings = [f"NumberOfBytes={self.bytes}"]
        if self.name.endswith("Random"):  # the others draw nothing, and refuse a seed
            settings.append("Seed=1")
        if self.name.endswith("Bit Fade"):
            settings.append("WaitSeconds=1")
        words = ["diags", "run", self.name, "--events", "-", "--no-history"]
        for setting in settings:
            words += ["--set", setting]
        return shlex.join(words)

    @staticmethod
    def read(lines, _):
        return verdict.read(lines)


class Exerciser(Tester):
    """A public program: its status tells, 0 for a machine without faults."""

    def __init__(self, name, mebibytes, words, failure, seconds=900):
        super().__init__(name, name, mebibytes, seconds)
        self._words = shlex.join(["sh", "-c", words.format(mebibytes=mebibytes) + " 2>&1"])
        self._failure = re.compile(failure)

    def command(self):
        return self._words

    def read(self, lines, status):
        text = "\n".join(lines)
        if self._failure.search(text):
            return verdict.Verdict("failed", text)
        return verdict.Verdict("passed" if status == 0 else "broken", text)


MEMTESTER = Exerciser("memtester", 4, "memtester {mebibytes}M 1", r"FAILURE:")
# It takes no less.
STRESSAPPTEST = Exerciser("stressapptest", 16, "stressapptest -s 10 -M {mebibytes} -v 8",
                          r"Status: FAIL|Hardware Error|miscompare")


def _prepare(tester):
    """Starts the test, and has it stopped as soon as it has its memory."""
    def prepare(machine):
        machine.ask(f"/lab/pages stop {tester.process} {tester.bytes} >/tmp/held 2>&1 &")
        machine.start(tester.command())
        machine.wait_for("! pidof pages >/dev/null", _SECONDS_TO_BEGIN)
        said = machine.ask("cat /tmp/held")
        if not said or not said[0].isdigit():
            raise Fallen(f"{tester.name} never had its memory: {said}")
        return {"process": int(said[0]), "frames": said[1:], "lines": machine.so_far()}
    return prepare


def _rest_of(machine, tester, notes):
    """Has the stopped test go on to its end: its lines, and its status."""
    lines = list(notes["lines"])
    machine.ask(f"kill -CONT {notes['process']}")
    for line in machine.lines(tester.seconds):
        if isinstance(line, int):
            return lines, line
        if line is not None:
            lines.append(line)
    return lines, None


def trial(lab, kind, tester, seed):
    """One machine with one fault of that kind, or none; the same seed has the same fault in the same place."""
    chance = random.Random(f"{kind} {tester.name} {seed}")
    began = time.monotonic()
    said = result.Result(kind, tester.name, seed, result.FELL)
    template = lab.prepared(tester.name, _prepare(tester))
    with Machine(lab.plan, template) as machine:
        try:
            _try(lab, machine, kind, tester, chance, template.notes(), said)
        except Fallen as fallen:
            said.detail = f"{fallen}; {machine.last_words()}"
    said.seconds = round(time.monotonic() - began, 2)
    return said


def _try(lab, machine, kind, tester, chance, notes, said):
    faults = []
    if kind != result.HEALTHY:
        faults = [memory.draw(kind, chance, memory.Frames(notes["frames"]))]
    pages = [page for fault in faults for page in fault.pages]
    held = memory.Held(memory.program_in(lab.programs), machine, faults)
    with held if faults else contextlib.nullcontext():
        lines, status = _rest_of(machine, tester, notes)
    answer = tester.read(lines, status)
    said.came_to = result.judge(answer, not faults, any(held.acted), True)
    said.placed = said.came_to == result.FOUND and verdict.placed(answer.text, pages, MODULE)
    said.detail = (" ".join(fault.line for fault in faults)
                   + f", pages {[hex(page) for page in pages]}, acted {held.acted}")
    if said.came_to != result.SILENT:
        said.detail += ": " + answer.text[-600:]
