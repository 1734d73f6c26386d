"""The link of an NVMe drive that the test of PCI Express links reads: what befalls it once data go over it. That
they do is seen from outside, by whoever serves the drive's blocks."""

import random
import shlex
import time

from lab.faults import disk, link, loaded_link
from lab.faults.disk_server import Server
from lab.judge import devices as placing
from lab.judge import result, verdict
from lab.machine.machine import Fallen, Machine

TEST = "DIAGS: PCI Express Link"
_SECONDS = 300
_WATCHED = 3   # seconds at rest, and as many under load
_LATEST = 1    # seconds that a fault comes after data have begun to go over the link
_IS_LOAD = 4 * disk.MEBIBYTE
_COMMAND = shlex.join(["diags", "run", TEST, "--events", "-", "--no-history", "--set", f"WatchSeconds={_WATCHED}"])


class Trial:
    def __init__(self, lab, kind, seed):
        self._lab = lab
        self._chance = random.Random(f"{kind} {seed}")
        self._fault = loaded_link.draw(kind, self._chance)
        self._said = result.Result(kind, TEST, seed, result.FELL, detail=str(self._fault))

    def run(self):
        began = time.monotonic()
        with Machine(self._lab.plan, self._lab.template) as machine:
            try:
                self._try(machine)
            except Fallen as fallen:
                self._said.detail += f": {fallen}; {machine.last_words()}"
            except LookupError as error:  # the fault could not be caused
                self._said.came_to = result.NO_EFFECT
                self._said.detail += f": {error}"
        self._said.seconds = round(time.monotonic() - began, 2)
        return self._said

    def _try(self, machine):
        drive = self._fault.drive()
        content = drive.content()
        with Server(content, self._lab.work) as server:
            disk.put_in(machine, drive, f"LAB-{self._said.seed}", server)
            machine.wait_for("test -b /dev/nvme0n1")
            seen = machine.ask(link.look_at([loaded_link.CARD]))
            card = bytes.fromhex(next(line for line in seen if line.startswith(loaded_link.CARD)).split()[1])
            link.agree(machine.process, card, link.Link.lanes, link.Link.speed)
            idle = content.asked
            machine.start(_COMMAND)
            coming = machine.lines(_SECONDS, 0.1)
            lines = self._until_loaded(coming, content, idle + _IS_LOAD)
            acted = self._befall(machine, card)
            lines += [line for line in coming if isinstance(line, str)]
        self._judge(lines, acted or content.acted > 0, link.slot_of(loaded_link.CARD, seen),
                    content.asked >= idle + _IS_LOAD)

    @staticmethod
    def _until_loaded(coming, content, enough):
        """The lines of the test up to the time when data go over the link, or to its end."""
        lines = []
        while content.asked < enough and not isinstance(line := next(coming, 0), int):
            lines += [line] if line is not None else []
        return lines

    def _befall(self, machine, card):
        """Whether it came in time, and the machine's kernel has seen it."""
        if not self._fault.comes_late():
            return False
        time.sleep(self._chance.uniform(0, _LATEST))
        link.agree(machine.process, card, self._fault.lanes, self._fault.speed)
        trace = link.trace(loaded_link.CARD, self._fault.lanes, self._fault.speed)
        return machine.ask(f"{trace} && pidof diags-worker >/dev/null && echo yes") == ["yes"]

    def _judge(self, lines, acted, slot, loaded):
        said = self._said
        answer = verdict.read(lines)
        said.came_to = result.judge(answer, result.is_healthy(said.fault), acted, True)
        if said.came_to == result.SILENT and not (loaded and placing.is_loaded(answer.text, loaded_link.CARD)):
            said.came_to = result.NO_VERDICT  # nothing was said of a link under load
        said.placed = said.came_to == result.FOUND and placing.loaded_link(
            verdict.diagnoses(lines), loaded_link.CARD, slot, self._fault.what)
        if said.came_to != result.SILENT and not said.placed:
            said.detail += ": " + answer.text[-600:]


def trial(lab, kind, seed):
    return Trial(lab, kind, seed).run()
