"""Broken disks against the disk tests."""

import random
import shlex
import time

from lab.faults import disk
from lab.faults.disk_server import Server
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine

_DEVICES = {"nvme": "/dev/nvme0n1", "scsi-hd": "/dev/sda"}
_SECONDS = 300
_COMPARE = "Read-Write-Read Compare"


def trial(lab, kind, test, seed):
    """One machine with one disk, broken or whole."""
    chance = random.Random(f"{kind} {seed}")
    began = time.monotonic()
    said = result.Result(kind, test, seed, result.FELL)
    with Machine(lab.plan, lab.template) as machine:
        try:
            _try(lab, machine, disk.draw(kind, chance), said)
        except Fallen as fallen:
            said.detail = f"{fallen}; {machine.last_words()}"
    said.seconds = round(time.monotonic() - began, 2)
    return said


def _mount(machine, device):
    """A file system for the scratch file."""
    if machine.ask(f"mke2fs -b 4096 -i 1048576 {device} >/dev/null && mkdir -p /scratch && mount -t ext4 {device} /scratch "
                   "&& echo mounted") != ["mounted"]:
        raise Fallen("the disk's file system cannot be mounted")


def command(test, seed):
    """What runs the test in the machine, on all that the disk has."""
    words = ["diags", "run", test, "--events", "-", "--no-history"]
    if test.endswith(_COMPARE):
        words += ["--allow-disruptive", "--set", f"NumberOfBytes={disk.SCRATCH_BYTES}", "--set", "ScratchFolder=/scratch"]
    if test.endswith("Read"):
        words += ["--set", f"NumberOfBytes={disk.SIZE}"]
    if not test.endswith("Status"):
        words += ["--set", f"Seed={seed}"]
    return shlex.join(words)


def _placed(text, fault, serial):
    """Whether the text names the drive and what is broken of it, and nothing else."""
    if fault.way in ("alias", "lost"):
        return serial in text and "Wrong: " in text and not verdict.blocks_named(text)
    if fault.way == "slow":
        return serial in text and verdict.is_slow(text, fault.sectors)
    return verdict.placed_on_disk(text, fault.sectors, serial)


def _try(lab, machine, fault, said):
    serial = f"LAB-{said.seed}"
    device = _DEVICES[fault.model]
    compares = said.test.endswith(_COMPARE)
    content = fault.content(disk.SIZE_WITH_FILES if compares else disk.SIZE)
    with Server(content, lab.work) as server:
        disk.put_in(machine, fault, serial, server)
        machine.wait_for(f"test -b {device}")
        if compares:
            _mount(machine, device)
        machine.start(command(said.test, said.seed))
        answer = verdict.read(list(machine.lines(_SECONDS)))
    # Whether a test ever comes to the broken blocks is chance's doing, and told apart.
    acted = bool(fault.health) or content.acted > 0
    said.came_to = result.judge(answer, result.is_healthy(fault.kind), acted, True)
    said.placed = said.came_to == result.FOUND and _placed(answer.text, fault, serial)
    said.detail = f"{fault.way} {fault.sectors} {fault.alias}, health {fault.health}, {serial}, acted {content.acted}"
    if said.came_to != result.SILENT:
        said.detail += ": " + answer.text[-600:]
