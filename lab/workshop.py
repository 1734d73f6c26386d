"""The lab itself: what all its machines have in common, made once."""

import glob
import hashlib
import os
import threading

from lab.faults import disk
from lab.faults.disk_server import Server
from lab.image import image, kernel
from lab.machine.machine import Machine, Plan
from lab.machine.template import Template


def _fingerprint(plan):
    """Tells templates apart that were made of other files or another plan."""
    made = hashlib.sha256(repr(plan.arguments() + [plan.bytes]).encode())
    for path in (plan.kernel, plan.initramfs):
        with open(path, "rb") as file:
            made.update(file.read())
    return made.hexdigest()[:16]


# Slots that a disk can be put into while the machine runs.
_SLOTS = ("-device", "pcie-root-port,id=rp1,chassis=1,slot=1", "-device", "virtio-scsi-pci,id=scsi0")
# Two network ports, each a card in a slot of sixteen lanes.
_PORTS = tuple(word for number in (0, 1) for word in (
    "-device", f"pcie-root-port,id=rp{number + 2},chassis={number + 2},slot={number + 2},x-width=16,x-speed=8",
    "-device", f"e1000e,id=port{number},bus=rp{number + 2},netdev=cable{number},mac=52:54:00:00:00:0{number + 1}"))
_CABLES = ("cable0", "cable1")
# With message interrupts the emulated ports at times tell nothing of a cable that was pulled.
_DRIVERS = ("nvme", "virtio_pci", "virtio_scsi", "virtio_blk", "sd_mod", "e1000e IntMode=0,0", "mce-inject",
            "aer_inject", "crc32c_generic", "ext4")


def _switch_ports_on(machine):
    ports = [f"eth{number}" for number, _ in enumerate(_CABLES)]
    machine.ask("; ".join(f"ip link set {port} up" for port in ports))
    for port in ports:
        machine.wait_for(f'test "$(cat /sys/class/net/{port}/carrier)" = 1')


def _start(machine):
    machine.ready()
    machine.ask("; ".join(f"modprobe {driver}" for driver in _DRIVERS))
    _switch_ports_on(machine)
    machine.ask("diags list")  # what a second look finds in the page cache


class Lab:
    """`build`: where the product was built; `work`: the only folder that is written to."""

    def __init__(self, build, work, mebibytes=256):
        self.build = build
        self.programs = os.path.join(build, "lab-bin")
        self.work = work
        os.makedirs(work, exist_ok=True)
        folder = kernel.fetch(work)
        initramfs = image.make(build, folder, self.programs, work)
        self.plan = Plan(os.path.join(folder, "vmlinuz"), initramfs, mebibytes=mebibytes, devices=_SLOTS + _PORTS,
                         cables=_CABLES)
        self.fingerprint = _fingerprint(self.plan)  # results of another product are another table's
        self._making = threading.Lock()
        self.template = self._template("started", self.plan, _start)
        self.tests = self._listed()

    def prepared(self, name, prepare):
        """The machine after `prepare(machine)`, which gives the template's notes; made once."""
        with self._making:
            return self._template(name.replace(" ", "-").replace(":", ""), self.plan, prepare, self.template)

    def _template(self, name, plan, prepare, incoming=None):
        """The machine of that plan, prepared and stopped; kept for the next time."""
        folder = os.path.join(self.work, "templates", f"{name}-{_fingerprint(plan)}")
        template = Template(folder)
        if not template.complete():
            self._forget(name)
            with Machine(plan, incoming) as machine:
                template.keep(machine, prepare(machine))
        return template

    def _listed(self):
        """The names of the tests that a machine with a disk offers."""
        drive = disk.draw("healthy, NVMe", None)
        with Machine(self.plan, self.template) as machine, Server(drive.content(), self.work) as server:
            disk.put_in(machine, drive, "LAB-0", server)
            machine.wait_for("test -b /dev/nvme0n1")
            return sorted({line.split(",")[0] for line in machine.ask("diags list") if "," in line})

    def _forget(self, name):
        for old in glob.glob(os.path.join(self.work, "templates", f"{name}-" + "[0-9a-f]" * 16)):
            Template(old).remove()
