"""Disks that are put into a running machine, whole or broken."""

import mmap
import os

from lab.faults.disk_server import SECTOR, Content

MEBIBYTE = 1 << 20
SIZE = 32 * MEBIBYTE
# A disk with a file system: it has to have more room than the product leaves to others, 1 GiB.
SIZE_WITH_FILES = 1280 * MEBIBYTE
SCRATCH_BYTES = 16 * MEBIBYTE
BLOCK_SECTORS = 8  # what file systems and the product's scratch file are made of
# Where the most of a scratch file of that size lies, in MiB, as the file system deals it out.
_SCRATCH = tuple(sector for first, last in ((6.5, 11.5), (16.5, 23.5))
                 for sector in range(int(first * MEBIBYTE) // SECTOR, int(last * MEBIBYTE) // SECTOR, BLOCK_SECTORS))


class Fault:
    """A broken disk: `sectors`, the first and the last one that are broken, if there are any; `alias`, where a
    second mapping leads to."""

    def __init__(self, kind, model, way=None, sectors=None, alias=None, health=None):
        self.kind = kind
        self.model = model
        self.way = way
        self.sectors = sectors
        self.alias = alias
        self.health = health

    def content(self, size=SIZE):
        """The disk's content, with the fault in it."""
        data = mmap.mmap(-1, size)
        data[:SIZE] = os.urandom(MEBIBYTE) * (SIZE // MEBIBYTE)
        if self.way == "alias":
            return Content(data, alias=(self.sectors, self.alias))
        return Content(data, **({self.way: self.sectors} if self.way else {}))


def _in_a_row(kind, model, way, chance):
    """One to eight in a row, as a scratch leaves them; anywhere but in the first MiB, which the kernel looks
    into for partitions."""
    count = chance.choice((1, 1, 1, 2, 8))
    first = chance.randrange(MEBIBYTE // SECTOR, SIZE // SECTOR - count)
    return Fault(kind, model, way, (first, first + count - 1))


def _block(first):
    return first, first + BLOCK_SECTORS - 1


def _misdirected(kind, model, chance):
    """A second mapping: one block of the disk leads to another one's place, for reads and for writes."""
    block, other = chance.sample(_SCRATCH, 2)
    return Fault(kind, model, "alias", _block(block), _block(other))


def _lost(kind, model, chance):
    return Fault(kind, model, "lost", _block(chance.choice(_SCRATCH)))


_MODELS = {"NVMe": "nvme", "SCSI": "scsi-hd"}
# Bits of an NVMe drive's critical warning: spare space, temperature, reliability, read only.
_WARNINGS = (1, 2, 4, 8)
_DRAWS = {"bad sectors": lambda kind, model, chance: _in_a_row(kind, model, "bad", chance),
          "slow reads": lambda kind, model, chance: _in_a_row(kind, model, "slow", chance),
          "misdirected block": _misdirected,
          "lost writes": _lost}
KINDS = [f"{fault}, {model}" for fault in _DRAWS for model in _MODELS] + ["failing health, NVMe"]
HEALTHY = [f"healthy, {model}" for model in _MODELS]


def draw(kind, chance):
    fault, _, model = kind.partition(", ")
    if fault == "healthy":
        return Fault(kind, _MODELS[model])
    if fault == "failing health":
        return Fault(kind, _MODELS[model], health=chance.choice(_WARNINGS))
    return _DRAWS[fault](kind, _MODELS[model], chance)


def put_in(machine, fault, serial, server):
    """Puts the disk into the machine; the server has its content."""
    do = machine.monitor.do
    do("blockdev-add", driver="nbd", node_name="disk", server={"type": "unix", "path": server.path}, export="disk")
    bus = {"nvme": "rp1", "scsi-hd": "scsi0.0"}[fault.model]
    do("device_add", driver=fault.model, id="disk0", bus=bus, serial=serial, drive="disk")
    if fault.health:
        do("qom-set", path="/machine/peripheral/disk0", property="smart_critical_warning", value=fault.health)
