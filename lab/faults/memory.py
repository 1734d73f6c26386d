"""Faults of the memory: drawn at random, and held by a program beside the machine.

Where: in a page of those that the test holds, each as likely as any other. A fault elsewhere says nothing of
the test, and a kernel whose own memory is broken nothing at all.
"""

import os
import subprocess

from lab.machine import children

PAGE = 4096
WORD = 8
_ROW_LINES = range(6, 12)    # address lines within a page: from a cache line on
_PAGE_LINES = range(14, 22)  # those that tell rows apart


class Fault:
    """`line` is what memory_faults takes; an error in any of `pages` is rightly placed."""

    def __init__(self, kind, line, pages):
        self.kind = kind
        self.line = line
        self.pages = sorted(pages)


class Frames:
    """The frames that the test holds, from lines FIRST COUNT."""

    def __init__(self, lines):
        self.frames = sorted({frame for first, count in (map(int, line.split()) for line in lines)
                              for frame in range(first, first + count)})
        self._set = frozenset(self.frames)

    def has(self, frame):
        return frame in self._set

    def draw(self, chance):
        return chance.choice(self.frames)

    def draw_pair(self, chance):
        """Two frames whose numbers differ in one bit."""
        while True:
            frame = self.draw(chance)
            other = frame ^ 1 << chance.choice(_PAGE_LINES) - 12
            if self.has(other):
                return frame, other


def _address(chance, frame):
    return frame * PAGE + chance.randrange(PAGE)


def _stuck(chance, held):
    frame = held.draw(chance)
    line = f"stuck {_address(chance, frame)} {chance.randrange(8)} {chance.randrange(2)}"
    return Fault("stuck", line, [frame])


def _coupled(chance, held):
    """The bit that it hangs on is at the same place of a neighbouring row: one address line differs."""
    frame, other = held.draw_pair(chance)
    offset = chance.randrange(PAGE)
    bit = chance.randrange(8)
    line = (f"coupled {frame * PAGE + offset} {bit} {chance.randrange(2)} "
            f"{other * PAGE + offset} {bit} {chance.randrange(2)}")
    return Fault("coupled", line, [frame])


def _decaying(chance, held):
    frame = held.draw(chance)
    microseconds = chance.randrange(20_000, 200_000)
    line = f"decaying {_address(chance, frame)} {chance.randrange(8)} {chance.randrange(2)} {microseconds}"
    return Fault("decaying", line, [frame])


def _shorted_in_page(chance, held):
    """A line shorted within a row: one word of the page is found at two addresses."""
    frame = held.draw(chance)
    address = _address(chance, frame) // WORD * WORD
    line = f"shorted {address} {address ^ 1 << chance.choice(_ROW_LINES)} 1"
    return Fault("shorted line in a row", line, [frame])


def _shorted_pages(chance, held):
    """A line shorted between rows: a page is found at two addresses."""
    frame, other = held.draw_pair(chance)
    line = f"shorted {frame * PAGE} {other * PAGE} {PAGE // WORD}"
    return Fault("shorted line between rows", line, [frame, other])


KINDS = {"stuck": _stuck, "coupled": _coupled, "decaying": _decaying,
         "shorted line in a row": _shorted_in_page, "shorted line between rows": _shorted_pages}


def draw(kind, chance, held):
    return KINDS[kind](chance, held)


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
