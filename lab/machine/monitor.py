"""The emulator's monitor (QMP): its commands are what a hand at the machine does."""

import array
import json
import socket
import time

from lab.machine.wire import Wire


class MonitorError(Exception):
    pass


class Monitor:
    def __init__(self):
        self.wire = Wire()

    def connect(self, seconds=20):
        self.wire.connect()
        self._answer(time.monotonic() + seconds, "QMP")
        self.do("qmp_capabilities")

    def _answer(self, until, *kinds):
        while True:
            answer = json.loads(self.wire.line(until))
            if any(kind in answer for kind in kinds):
                return answer

    def do(self, command, seconds=30, **arguments):
        """Carries out a command, its arguments with "_" for "-", and gives what it returns."""
        named = {name.replace("_", "-"): value for name, value in arguments.items()}
        self.wire.send(json.dumps({"execute": command, "arguments": named}) + "\n")
        return self._returned(command, seconds)

    def hand_over(self, descriptor):
        """Gives the emulator a file of ours; returns the name that it can be opened by there."""
        order = json.dumps({"execute": "add-fd", "arguments": {"fdset-id": descriptor}}) + "\n"
        self.wire.near.sendmsg([order.encode()],
                               [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [descriptor]))])
        self._returned("add-fd", 30)
        return f"/dev/fdset/{descriptor}"

    def _returned(self, command, seconds):
        answer = self._answer(time.monotonic() + seconds, "return", "error")
        if "error" in answer:
            raise MonitorError(f"{command}: {answer['error'].get('desc')}")
        return answer["return"]

    def say(self, line):
        """A command of the monitor for people, such as `set_link n0 off`."""
        answer = self.do("human-monitor-command", command_line=line).strip()
        if answer:
            raise MonitorError(f"{line}: {answer}")

    def migrated(self, seconds=60):
        """Waits until the state of the machine has gone out, or come in."""
        until = time.monotonic() + seconds
        while time.monotonic() < until:
            status = self.do("query-migrate").get("status")
            if status == "completed":
                return
            if status in ("failed", "cancelled"):
                break
            time.sleep(0.02)
        raise MonitorError("the state of the machine cannot be moved")

    def close(self):
        self.wire.close()
