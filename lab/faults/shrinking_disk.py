"""A disk that becomes smaller while it is read: it hands out less than it had said that it has. Reads beyond its new
end bring nothing, and one that goes over the end brings what is in front of it.

It tells its driver at once, which an emulated NVMe drive cannot do. What it holds is memory of the lab's process.
It is slow, so that there is time for it to happen."""

import os

from lab.faults.disk import MEBIBYTE, SIZE
from lab.faults.disk_server import SECTOR

_BYTES_PER_SECOND = 8 * MEBIBYTE
_EARLIEST, _LATEST = 2 * MEBIBYTE, 8 * MEBIBYTE  # that were read by then


# The emulator's device, where it is put in, and what the machine calls it.
_MODELS = {"SCSI": ("scsi-hd", "scsi0.0", "sda"), "virtio": ("virtio-blk-pci", "rp1", "vda")}
FAULTS = tuple(f"short reads, {model}" for model in _MODELS)
HEALTHY = "healthy, virtio"


class ShrinkingDisk:
    """`end`: the first sector that it has no more, which is in the middle of what is read at a time; None for a disk
    that stays as it is."""

    def __init__(self, kind, chance=None):
        self._driver, self._bus, self.name = _MODELS[kind.partition(", ")[2]]
        self.end = chance.randrange(14 * MEBIBYTE // SECTOR + 1, 30 * MEBIBYTE // SECTOR) | 1 if chance else None
        self.when = chance.randrange(_EARLIEST, _LATEST) if chance else None
        self._memory = None

    def __str__(self):
        return f"ends before sector {self.end} once {self.when} bytes were read"

    def __enter__(self):
        self._memory = os.memfd_create("lab-disk", 0)
        os.write(self._memory, os.urandom(MEBIBYTE) * (SIZE // MEBIBYTE))
        return self

    def __exit__(self, *_):
        os.close(self._memory)

    def put_in(self, machine, serial):
        do = machine.monitor.do
        name = machine.monitor.hand_over(self._memory)
        do("object-add", qom_type="throttle-group", id="pace", limits={"bps-total": _BYTES_PER_SECOND})
        do("blockdev-add", driver="throttle", node_name="disk", throttle_group="pace",
           file={"driver": "file", "filename": name, "locking": "off"})
        do("device_add", driver=self._driver, id="disk0", bus=self._bus, serial=serial, drive="disk")

    @staticmethod
    def bytes_read(machine):
        return sum(one["stats"]["rd_bytes"] for one in machine.monitor.do("query-blockstats")
                   if "disk0" in one.get("qdev", ""))

    def shrink(self, machine):
        machine.monitor.do("block_resize", node_name="disk", size=self.end * SECTOR)
