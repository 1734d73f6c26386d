"""A test that is under way already: a machine goes on from the middle of it, so that a trial takes as long as
the rest of the test."""

import shlex

from lab.judge import verdict

_SECONDS = 120


class Underway:
    """A test with its settings; `until` is the event that the machine is stopped at, once for each of
    `devices`; `look`, a command of the machine's shell whose answer the trial wants."""

    def __init__(self, test, settings, until, devices=1, look="true"):
        self.test = test
        self._settings = settings
        self._until = until
        self._devices = devices
        self._look = look

    def template(self, lab):
        """Its notes: `seen`, what the look has shown, and `lines`, what the test has written so far."""
        return lab.prepared(f"{self.test} {self._until}", self._prepare)

    def until_watched(self, so_far, coming):
        """The next lines, up to where the test watches each device."""
        return self._lines_until("progress", coming, self._devices - _count(so_far, "progress"))

    def _command(self):
        words = ["diags", "run", f"{self.test}*", "--jobs", str(self._devices), "--events", "-", "--no-history"]
        for setting in self._settings:
            words += ["--set", setting]
        return shlex.join(words)

    def _prepare(self, machine):
        seen = machine.ask(self._look)
        machine.start(self._command())
        lines = self._lines_until(self._until, machine.lines(_SECONDS), self._devices)
        machine.monitor.do("stop")
        return {"seen": seen, "lines": lines + machine.so_far(0.1)}

    @staticmethod
    def _lines_until(kind, coming, count):
        lines = []
        while count > 0:
            line = next(coming, 0)
            if isinstance(line, int):
                break  # it is over, and its end says how
            if line is not None:
                lines.append(line)
                count -= _count([line], kind)
        return lines


def _count(lines, kind):
    """Of how many tests there is such an event."""
    return len({event.get("testId") for event in verdict.events_in(lines) if kind in event})
