"""Faults of the memory: drawn at random, and held by a program beside the machine.

Where: in a page that the machine's kernel says is free just before the test begins. All memory is as likely
to be broken in truth, but a kernel whose own memory is broken tells nothing of a test. Whether the page comes
into the test's hands is not chosen: a watcher in the machine looks whose it becomes.
"""

import os
import subprocess

from lab.machine import children

PAGE = 4096
WORD = 8
_ROW_LINES = range(6, 12)    # address lines within a page: from a cache line on
_PAGE_LINES = range(12, 18)  # those that tell pages apart


class Fault:
    """`line` is what memory_faults takes; an error in any of `pages` is rightly placed."""

    def __init__(self, kind, line, pages):
        self.kind = kind
        self.line = line
        self.pages = sorted(pages)


class FreePages:
    """The free frames of a machine, from lines FIRST COUNT."""

    def __init__(self, lines):
        self.ranges = [tuple(map(int, line.split())) for line in lines]
        self.count = sum(count for _, count in self.ranges)

    def has(self, frame):
        return any(first <= frame < first + count for first, count in self.ranges)

    def draw(self, chance):
        place = chance.randrange(self.count)
        for first, count in self.ranges:
            if place < count:
                return first + place
            place -= count
        raise AssertionError("a place beyond all ranges")


def _address(chance, frame):
    return frame * PAGE + chance.randrange(PAGE)


def _stuck(chance, free):
    frame = free.draw(chance)
    line = f"stuck {_address(chance, frame)} {chance.randrange(8)} {chance.randrange(2)}"
    return Fault("stuck", line, [frame])


def _coupled(chance, free):
    """The bit that it hangs on is a neighbour: its address differs in one line."""
    frame = free.draw(chance)
    address = _address(chance, frame)
    other = address ^ 1 << chance.randrange(3, 12)
    line = (f"coupled {address} {chance.randrange(8)} {chance.randrange(2)} "
            f"{other} {chance.randrange(8)} {chance.randrange(2)}")
    return Fault("coupled", line, [frame])


def _decaying(chance, free):
    frame = free.draw(chance)
    microseconds = chance.randrange(20_000, 200_000)
    line = f"decaying {_address(chance, frame)} {chance.randrange(8)} {chance.randrange(2)} {microseconds}"
    return Fault("decaying", line, [frame])


def _shorted_in_page(chance, free):
    """A line shorted within a row: one word of the page is found at two addresses."""
    frame = free.draw(chance)
    address = _address(chance, frame) // WORD * WORD
    line = f"shorted {address} {address ^ 1 << chance.choice(_ROW_LINES)} 1"
    return Fault("shorted line in a row", line, [frame])


def _shorted_pages(chance, free):
    """A line shorted between rows: a page is found at two addresses, both of which are free."""
    while True:
        frame = free.draw(chance)
        other = frame ^ 1 << chance.choice(_PAGE_LINES) - 12
        if free.has(other):
            line = f"shorted {frame * PAGE} {other * PAGE} {PAGE // WORD}"
            return Fault("shorted line between rows", line, [frame, other])


KINDS = {"stuck": _stuck, "coupled": _coupled, "decaying": _decaying,
         "shorted line in a row": _shorted_in_page, "shorted line between rows": _shorted_pages}


def draw(kind, chance, free):
    return KINDS[kind](chance, free)


class Held:
    """Holds faults in a machine's memory from `with` to its end; then `acted` has how often each one did
    something."""

    def __init__(self, program, machine, faults):
        self._command = [program, str(machine.memory), str(machine.plan.bytes)]
        self._memory = machine.memory
        self._lines = [fault.line for fault in faults]
        self.acted = []

    def __enter__(self):
        self._child = children.start(self._command, pass_fds=[self._memory], stdin=subprocess.PIPE,
                                     stdout=subprocess.PIPE, text=True)
        try:
            self._child.stdin.write("".join(line + "\n" for line in self._lines) + "\n")
            self._child.stdin.flush()
            if self._child.stdout.readline() != "ready\n":
                raise OSError("the faults cannot be held")
        except BaseException:
            children.end(self._child)
            raise
        return self

    def __exit__(self, *_):
        try:
            self._child.stdin.close()
            self.acted = [int(line) for line in self._child.stdout]
        finally:
            children.end(self._child)
            self._child.stdout.close()


def program_in(folder):
    return os.path.join(folder, "memory_faults")
