"""Disks that are put into a running machine, whole or broken."""

import os

SECTOR = 512
MEBIBYTE = 1 << 20
SIZE = 64 * MEBIBYTE


class Fault:
    """A broken disk: `bad`, its first and last bad sector, if it has any."""

    def __init__(self, kind, model, bad=None, health=None):
        self.kind = kind
        self.model = model
        self.bad = bad
        self.health = health


def _bad_sectors(kind, model, chance):
    """One to eight in a row, as a scratch leaves them; anywhere but in the first MiB, which the kernel looks
    into for partitions."""
    count = chance.choice((1, 1, 1, 2, 8))
    first = chance.randrange(MEBIBYTE // SECTOR, SIZE // SECTOR - count)
    return Fault(kind, model, bad=(first, first + count - 1))


# Bits of an NVMe drive's critical warning: spare space, temperature, reliability, read only.
_WARNINGS = (1, 2, 4, 8)

KINDS = {
    "bad sectors, NVMe": lambda chance: _bad_sectors("bad sectors, NVMe", "nvme", chance),
    "bad sectors, SCSI": lambda chance: _bad_sectors("bad sectors, SCSI", "scsi-hd", chance),
    "failing health, NVMe": lambda chance: Fault("failing health, NVMe", "nvme", health=chance.choice(_WARNINGS)),
}
HEALTHY = {"healthy, NVMe": lambda _: Fault("healthy, NVMe", "nvme"),
           "healthy, SCSI": lambda _: Fault("healthy, SCSI", "scsi-hd")}


def draw(kind, chance):
    return (KINDS.get(kind) or HEALTHY[kind])(chance)


def _injected(fault):
    """Each bad sector fails whatever reads it, every time, and nothing beside it."""
    if not fault.bad:
        return {}
    return {"inject_error": [{"event": "none", "errno": 5, "sector": sector, "once": False, "iotype": "read"}
                             for sector in range(fault.bad[0], fault.bad[1] + 1)]}


def put_in(machine, fault, serial):
    """Puts the disk into the machine, with content that is no zeros: an emulator need not read those."""
    content = os.memfd_create("lab-disk", 0)
    try:
        block = os.urandom(MEBIBYTE)
        for number in range(SIZE // MEBIBYTE):
            os.pwrite(content, block, number * MEBIBYTE)
        path = machine.monitor.hand_over(content)
    finally:
        os.close(content)
    do = machine.monitor.do
    do("blockdev-add", driver="blkdebug", node_name="disk", **_injected(fault),
       image={"driver": "file", "filename": path})
    bus = {"nvme": "rp1", "scsi-hd": "scsi0.0"}[fault.model]
    do("device_add", driver=fault.model, id="disk0", bus=bus, serial=serial, drive="disk")
    if fault.health:
        do("qom-set", path="/machine/peripheral/disk0", property="smart_critical_warning", value=fault.health)
