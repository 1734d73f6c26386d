"""A machine that was started once and then kept as it was: to go on from it takes a fraction of a second, and
a thousand machines begin alike."""

import json
import os
import shlex
import shutil

_CHUNK = 1 << 20


def _copy_holes(source, target, size):
    """Copies what is no hole, from one descriptor to another."""
    at = 0
    while at < size:
        try:
            begin = os.lseek(source, at, os.SEEK_DATA)
        except OSError:
            return
        end = min(os.lseek(source, begin, os.SEEK_HOLE), size)
        at = begin
        while at < end:
            part = os.pread(source, min(_CHUNK, end - at), at)
            os.pwrite(target, part, at)
            at += len(part)


class Template:
    """The state in two files of the folder: the memory, and all else. `notes` is what its maker wants to know
    of it afterwards."""

    def __init__(self, folder):
        self._folder = folder
        self._memory = os.path.join(folder, "memory")
        self._state = os.path.join(folder, "state")
        self._notes = os.path.join(folder, "notes")
        self._complete = os.path.join(folder, "complete")

    def complete(self):
        return os.path.exists(self._complete)

    def remove(self):
        shutil.rmtree(self._folder)

    def notes(self):
        with open(self._notes, encoding="utf-8") as file:
            return json.load(file)

    def keep(self, machine, notes=None):
        """Stops the machine and keeps it."""
        os.makedirs(self._folder, exist_ok=True)
        with open(self._notes, "w", encoding="utf-8") as file:
            json.dump(notes, file)
        do = machine.monitor.do
        do("stop")
        do("migrate-set-capabilities", capabilities=[{"capability": "x-ignore-shared", "state": True}])
        do("migrate", uri="exec:cat >" + shlex.quote(self._state))
        machine.monitor.migrated()
        with open(self._memory, "wb") as file:
            os.ftruncate(file.fileno(), machine.plan.bytes)
            _copy_holes(machine.memory, file.fileno(), machine.plan.bytes)
        with open(self._complete, "wb"):
            pass

    def restore(self, machine):
        """Has a machine that was started empty go on from here."""
        with open(self._memory, "rb") as file:
            _copy_holes(file.fileno(), machine.memory, machine.plan.bytes)
        do = machine.monitor.do
        do("migrate-set-capabilities", capabilities=[{"capability": "x-ignore-shared", "state": True}])
        do("migrate-incoming", uri="exec:cat " + shlex.quote(self._state))
        machine.monitor.migrated()
        do("cont")
