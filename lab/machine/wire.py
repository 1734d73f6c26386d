"""A wire to a machine: a pair of sockets, one end for the emulator, and lines that come out of the other."""

import queue
import socket
import threading
import time


class WireError(Exception):
    pass


class Silence(WireError):
    """Nothing was said in time."""


class Wire:
    """`far` goes to the emulator; `near` stays. A thread reads, so that the machine never waits for us."""

    def __init__(self):
        self.near, self.far = socket.socketpair()
        self._lines = queue.Queue()
        self._reader = threading.Thread(target=self._read, daemon=True)

    def connect(self):
        """Once the emulator has its end."""
        self.far.close()
        self._reader.start()

    def _read(self):
        rest = b""
        while True:
            try:
                got = self.near.recv(65536)
            except OSError:
                got = b""
            if not got:
                break
            *lines, rest = (rest + got).split(b"\n")
            for line in lines:
                self._lines.put(line.decode("utf-8", "replace").rstrip("\r"))
        self._lines.put(None)

    def send(self, text):
        try:
            self.near.sendall(text.encode())
        except OSError as error:
            raise WireError(f"the machine has gone: {error}") from error

    def line(self, until):
        """The next line, by time.monotonic() `until`."""
        try:
            line = self._lines.get(timeout=max(0, until - time.monotonic()))
        except queue.Empty:
            raise Silence("the machine says nothing") from None
        if line is None:
            self._lines.put(None)
            raise WireError("the machine has gone")
        return line

    def close(self):
        for end in (self.near, self.far):
            try:
                end.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            end.close()
