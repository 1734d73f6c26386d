"""What goes wrong with devices before or while a test looks, and what is said of it by the test, and by the
error counters that are read beside it."""

import random
import time

from lab.faults import link, port, reported
from lab.judge import devices as placing
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine
from lab.trials.underway import Underway

_SECONDS = 300
_LATEST = 0.5  # seconds that a fault comes after the test has begun to watch

FAULTS = {**reported.KINDS, **port.KINDS, **link.KINDS, **link.HEALTHY}


_PLACED = {
    reported.MachineCheck: lambda told, one: placing.machine_check(told, one.processor, one.bank, one.status,
                                                                   one.address),
    reported.PciError: lambda told, one: placing.pci_error(told, one.device, one.name),
    port.Cable: lambda told, one: placing.port(told, one.name),
    link.Link: lambda told, one: placing.link(told, one.card, one.slot, one.what),
}


def is_placed(told, fault):
    """Whether the diagnoses say it of what the fault is in."""
    return next(placed for kind, placed in _PLACED.items() if isinstance(fault, kind))(told, fault)


class Trial:
    """One machine that goes on in a test that is under way, and one thing that happens to it, or nothing."""

    def __init__(self, lab, kind, underway, seed):
        self._lab = lab
        self._underway = underway
        self._template = underway.template(lab)
        self._notes = self._template.notes()
        self._lines = list(self._notes["lines"])
        self._chance = random.Random(f"{kind} {underway.test} {seed}")
        self._fault = FAULTS[kind](self._chance) if kind in FAULTS else None
        self._said = result.Result(kind, underway.test, seed, result.FELL)

    def run(self):
        began = time.monotonic()
        with Machine(self._lab.plan, self._template) as machine:
            try:
                self._try(machine)
            except Fallen as fallen:
                self._said.detail = f"{self._fault}: {fallen}; {machine.last_words()}"
            except LookupError as error:  # the fault could not be caused
                self._said.came_to, self._said.detail = result.NO_EFFECT, f"{self._fault}: {error}"
        self._said.seconds = round(time.monotonic() - began, 2)
        return self._said

    def _try(self, machine):
        coming = machine.lines(_SECONDS)
        if self._fault and not self._fault.is_early:
            self._lines += self._underway.until_watched(self._lines, coming)
            time.sleep(self._chance.uniform(0, _LATEST))
        if self._fault:
            self._fault.cause(machine, self._notes["seen"])
        was_in_time = machine.ask("pidof diags-worker") != []
        self._lines += [line for line in coming if isinstance(line, str)]
        acted = bool(self._fault) and was_in_time and self._left_a_trace(machine)
        self._judge(acted)

    def _left_a_trace(self, machine):
        """Whether the machine's kernel has noticed it."""
        return machine.ask(f"{self._fault.trace()} && echo yes") == ["yes"]

    def _judge(self, acted):
        said = self._said
        answer = verdict.read(self._lines)
        said.came_to = result.judge(answer, result.is_healthy(said.fault), acted, True)
        said.placed = said.came_to == result.FOUND and is_placed(verdict.diagnoses(self._lines), self._fault)
        said.detail = str(self._fault or "")
        if said.came_to != result.SILENT and not said.placed:
            said.detail += ": " + answer.text[-600:]


def trial(lab, kind, underway, seed):
    return Trial(lab, kind, underway, seed).run()


# Each test is stopped while it watches, or before it has looked at anything.
_PORTS_WATCHED = Underway("DIAGS: Port Status", ("WatchSeconds=3",), "progress", port.PORTS)
_PORTS_AT_FIRST = Underway("DIAGS: Port Status", ("WatchSeconds=1",), "test", port.PORTS)
_MEMORY_RESTS = Underway("DIAGS: Memory Bit Fade", ("NumberOfBytes=1048576", "WaitSeconds=2"), "progress")
_LINKS_AT_FIRST = Underway("DIAGS: PCI Express Link", ("WatchSeconds=1",), "test", look=link.CONFIGURATIONS)

HEALTHY = "healthy, in operation"

# Which fault is caused in which test.
ALL = ([(kind, _PORTS_WATCHED) for kind in (HEALTHY, *reported.KINDS, *port.LATE)]
       + [(kind, _PORTS_AT_FIRST) for kind in port.EARLY]
       + [(kind, _MEMORY_RESTS) for kind in (HEALTHY, *reported.KINDS)]
       + [(kind, _LINKS_AT_FIRST) for kind in (*link.HEALTHY, *link.KINDS, *reported.KINDS)])
