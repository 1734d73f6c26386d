"""Broken disks against the disk tests."""

import random
import shlex
import time

from lab.faults import disk
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine

_DEVICES = {"nvme": "/dev/nvme0n1", "scsi-hd": "/dev/sda"}
_SECONDS = 300


def trial(lab, kind, test, seed):
    """One machine with one disk, broken or whole."""
    chance = random.Random(f"{kind} {seed}")
    began = time.monotonic()
    said = result.Result(kind, test, seed, result.FELL)
    with Machine(lab.plan, lab.template) as machine:
        try:
            _try(machine, disk.draw(kind, chance), said)
        except Fallen as fallen:
            said.detail = f"{fallen}; {machine.last_words()}"
    said.seconds = round(time.monotonic() - began, 2)
    return said


def _errors_of_the_kernel(machine):
    """How many reads of the disk have failed, as the machine's kernel saw it."""
    return int(machine.ask("dmesg | grep -c 'error, dev '")[0])


def _try(machine, fault, said):
    serial = f"LAB-{said.seed}"
    disk.put_in(machine, fault, serial)
    machine.wait_for(f"test -b {_DEVICES[fault.model]}")
    command = ["diags", "run", said.test, "--events", "-", "--no-history"]
    machine.start(shlex.join(command))
    lines = list(machine.lines(_SECONDS))
    answer = verdict.read(lines)
    acted = bool(fault.health) or _errors_of_the_kernel(machine) > 0
    # Random reads may never come to a bad sector: that is chance's doing, and told apart by the kernel.
    said.came_to = result.judge(answer, result.is_healthy(fault.kind), acted, True)
    said.placed = said.came_to == result.FOUND and verdict.placed_on_disk(answer.text, fault.bad, serial)
    said.detail = f"bad {fault.bad}, health {fault.health}, {serial}"
    if said.came_to != result.SILENT:
        said.detail += ": " + answer.text[-600:]
