"""Reads that end short: a disk becomes smaller in the middle of a test."""

import random
import time

from lab.faults import shrinking_disk
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine
from lab.trials.disk import command

TESTS = ("DIAGS: Disk Sequential Read", "DIAGS: Disk Random Read")
_SECONDS = 300


def trial(lab, kind, test, seed):
    began = time.monotonic()
    chance = None if result.is_healthy(kind) else random.Random(f"{kind} {test} {seed}")
    said = result.Result(kind, test, seed, result.FELL)
    with Machine(lab.plan, lab.template) as machine, shrinking_disk.ShrinkingDisk(kind, chance) as disk:
        said.detail = str(disk)
        try:
            _try(machine, disk, said)
        except Fallen as fallen:
            said.detail += f": {fallen}; {machine.last_words()}"
    said.seconds = round(time.monotonic() - began, 2)
    return said


def _try(machine, disk, said):
    serial = f"LAB-{said.seed}"
    disk.put_in(machine, serial)
    machine.wait_for(f"test -b /dev/{disk.name}")
    idle = disk.bytes_read(machine)
    machine.start(command(said.test, said.seed))
    coming = machine.lines(_SECONDS, 0.05)
    lines, acted = [], False
    if disk.end:
        while disk.bytes_read(machine) < idle + disk.when and not isinstance(line := next(coming, 0), int):
            lines.append(line)
        disk.shrink(machine)
        acted = _is_noticed(machine, disk)
    lines += list(coming)
    answer = verdict.read([line for line in lines if isinstance(line, str)])
    said.came_to = result.judge(answer, result.is_healthy(said.fault), acted, True)
    said.placed = said.came_to == result.FOUND and is_placed(answer.text, disk.end, serial)
    if said.came_to != result.SILENT and not said.placed:
        said.detail += ": " + answer.text[-600:]


def _is_noticed(machine, disk):
    """Whether the machine's kernel knows of it while the test is at work."""
    return machine.ask(f"grep -q '^{disk.end}$' /sys/block/{disk.name}/size && pidof diags-worker >/dev/null "
                       "&& echo yes") == ["yes"]


def is_placed(text, end, serial):
    """Whether the text names the drive, and of its blocks some that it has no more, and none that it has."""
    return serial in text and verdict.beyond(text, end)
