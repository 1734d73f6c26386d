"""One machine under the emulator, and what can be said to it."""

import os
import socket
import tempfile
import time

from lab.machine import children
from lab.machine.monitor import Monitor
from lab.machine.wire import Silence, Wire, WireError

EMULATOR = "qemu-system-x86_64"
_TRIES = 3
_PATIENCE = 120  # seconds: on a machine with much else to do an emulated one may stand still for as long as half of it
COMMAND_LINE = "console=ttyS0 panic=-1 quiet nokaslr"


class Plan:
    """What a machine is made of. Two machines of equal plans differ in nothing but their fate."""

    def __init__(self, kernel, initramfs, mebibytes=256, processors=2, devices=(), modules=("DIMM_A",), cables=()):
        """`cables`: names for "netdev=" of ports among the devices; the machine's `cables` are their other ends."""
        self.kernel = kernel
        self.initramfs = initramfs
        self.bytes = mebibytes << 20
        self.processors = processors
        self.devices = tuple(devices)
        self.modules = tuple(modules)
        self.cables = tuple(cables)

    def arguments(self):
        names = ["-smbios", "type=1,manufacturer=Lab,product=Machine,serial=LAB-1"]
        for slot in self.modules:
            names += ["-smbios", f"type=17,loc_pfx={slot},bank=BANK,serial=SERIAL_{slot},part=PART_{slot}"]
        return (["-accel", "tcg", "-cpu", "max", "-smp", str(self.processors), "-nodefaults", "-no-user-config",
                 "-display", "none", "-no-reboot"] + names + list(self.devices)
                + ["-kernel", self.kernel, "-initrd", self.initramfs, "-append", COMMAND_LINE])


class Fallen(Exception):
    """The machine has crashed, or does not answer any more."""


class Machine:
    """Runs from `with` to its end; whatever happens, no process stays."""

    def __init__(self, plan, incoming=None):
        """`incoming`: a template to go on from, instead of a start of the kernel."""
        self.plan = plan
        self.memory = os.memfd_create("lab-memory", 0)
        os.ftruncate(self.memory, plan.bytes)
        self.console = []
        self._incoming = incoming
        self._wires = [Wire(), Wire(), Wire()]
        self.monitor = Monitor()
        self.cables = {}
        self._child = None
        self._complaints = tempfile.TemporaryFile("w+", errors="replace")  # has no name, leaves nothing

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.end()
            raise
        return self

    def __exit__(self, *_):
        self.end()

    def _start(self):
        wires = self._wires + [self.monitor.wire]
        fds = [wire.far.fileno() for wire in wires]
        command = [EMULATOR, "-M", "q35,memory-backend=m", "-m", f"{self.plan.bytes >> 20}M", "-object",
                   f"memory-backend-file,id=m,size={self.plan.bytes},mem-path=/proc/self/fd/{self.memory},share=on"]
        for number, fd in enumerate(fds):
            command += ["-chardev", f"socket,id=c{number},fd={fd}"]
            command += ["-mon", f"chardev=c{number},mode=control"] if number == 3 else \
                       ["-serial", f"chardev:c{number}"]
        plugs = {name: socket.socketpair() for name in self.plan.cables}
        self.cables = {name: near for name, (near, _) in plugs.items()}
        for name, (_, far) in plugs.items():
            command += ["-netdev", f"socket,id={name},fd={far.fileno()}"]
            fds.append(far.fileno())
        command += self.plan.arguments() + (["-incoming", "defer"] if self._incoming else [])
        self._child = children.start(command, pass_fds=fds + [self.memory], stderr=self._complaints)
        for _, far in plugs.values():
            far.close()
        for wire in self._wires:
            wire.connect()
        try:
            self.monitor.connect()
        except WireError as error:
            self._complaints.seek(0)
            raise Fallen(f"the emulator does not start: {self._complaints.read().strip()}") from error
        if self._incoming:
            self._incoming.restore(self)

    @property
    def process(self):
        """The emulator's."""
        return self._child.pid

    def end(self):
        if self._child:
            children.end(self._child)
        for cable in self.cables.values():
            cable.close()
        for wire in self._wires + [self.monitor]:
            wire.close()
        self._complaints.close()
        if self.memory is not None:
            os.close(self.memory)
            self.memory = None

    def ready(self, seconds=240):
        """Until the machine listens after its start."""
        self._until(1, lambda line: line == "@ready", seconds)

    def ask(self, command, seconds=_PATIENCE):
        """What a command of the machine's shell says."""
        for _ in range(_TRIES):
            self._send(1, f"{len(command)} {command}\n")
            *lines, last = self._until(1, lambda line: line.startswith("@done ") or line == "@again", seconds)
            if last != "@again":
                return lines
        raise Fallen(f"the machine never understands: {command}")

    def wait_for(self, condition, seconds=30):
        """Until a command of the machine's shell succeeds."""
        done = self.ask(f"for i in $(seq {seconds * 10}); do {condition} && echo yes && break; sleep 0.1; done",
                        seconds * 2)
        if done != ["yes"]:
            raise Fallen(f"nothing came of: {condition}")

    def start(self, command):
        """Begins what takes longer; its lines come by `lines`."""
        self.ask(f"start {command}")

    def lines(self, seconds, pause=0.5):
        """Each line of what was started, up to its end; the last one given is its status as a number. None
        where there was no line for a pause."""
        until = time.monotonic() + seconds
        while True:
            line = self._line_or_none(2, until, pause)
            if line is None:
                yield None
                continue
            if line.startswith("@end "):
                yield int(line.split()[1])
                return
            yield line

    def so_far(self, pause=0.5):
        """The lines of what was started that have come, until there is none for a pause."""
        lines = []
        while (line := self._line_or_none(2, time.monotonic() + 2 * pause, pause)) is not None:
            lines.append(line)
        return lines

    def said(self):
        """What the kernel has written so far."""
        while True:
            try:
                self.console.append(self._wires[0].line(time.monotonic()))
            except WireError:
                return self.console

    def last_words(self):
        """What tells best why the machine fell."""
        lines = self.said()
        telling = [line for line in lines if any(word in line for word in ("BUG", "panic", "Oops", "lockup", "RIP:"))]
        return " / ".join((telling or lines)[:4])

    def _send(self, port, text):
        try:
            self._wires[port].send(text)
        except WireError as error:
            raise Fallen(str(error)) from error

    def _line(self, port, until):
        try:
            return self._wires[port].line(until)
        except WireError as error:
            raise Fallen(str(error)) from error

    def _line_or_none(self, port, until, pause):
        soon = time.monotonic() + pause
        if soon >= until:
            return self._line(port, until)
        try:
            return self._wires[port].line(soon)
        except Silence:
            return None
        except WireError as error:
            raise Fallen(str(error)) from error

    def _until(self, port, is_last, seconds):
        until = time.monotonic() + seconds
        lines = []
        while True:
            lines.append(self._line(port, until))
            if is_last(lines[-1]):
                return lines
