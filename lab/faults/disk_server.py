"""Serves a disk's blocks to the emulator (NBD, over a socket of this machine), and breaks them on the way: the
machine sees a drive, and has no means to know what lies behind it."""

import contextlib
import os
import socket
import struct
import threading

SECTOR = 512
_FIXED_NEWSTYLE, _NO_ZEROES = 1, 2
_HAS_FLAGS, _SEND_FLUSH = 1, 4
_OPTION_GO, _OPTION_MAGIC, _REPLY_MAGIC = 7, 0x49484156454F5054, 0x3E889045565A9
_ACKNOWLEDGED, _INFO, _UNSUPPORTED = 1, 3, 0x80000001
_REQUEST_MAGIC, _ANSWER_MAGIC = 0x25609513, 0x67446698
_READ, _WRITE, _DISCONNECT, _FLUSH = 0, 1, 2, 3
_EIO, _EINVAL = 5, 22


class Content:
    """The disk's bytes, and what is wrong with them. Sectors are named by (first, last)."""

    def __init__(self, content, bad=None, slow=None, alias=None, lost=None, delay=0.8):
        self.bytes = content
        self._bad = bad
        self._slow = slow
        self._alias = alias  # the first sectors' content is where the second ones are
        self._lost = lost    # takes no writes
        self._shared = False  # a block found at two places does harm once both are in use
        self._delay = delay
        self.acted = 0
        self.asked = 0  # bytes that were to be read so far

    def _touches(self, sectors, offset, length):
        return sectors and offset < (sectors[1] + 1) * SECTOR and offset + length > sectors[0] * SECTOR

    def _place(self, offset):
        """Where a sector's bytes are in truth."""
        sector = offset // SECTOR
        if self._alias and self._alias[0][0] <= sector <= self._alias[0][1]:
            return (sector - self._alias[0][0] + self._alias[1][0]) * SECTOR
        return sector * SECTOR

    def read(self, offset, length):
        """Error, bytes, and how many seconds they take."""
        self.asked += length
        if self._touches(self._bad, offset, length):
            self.acted += 1
            return _EIO, b"", 0
        delay = self._delay if self._touches(self._slow, offset, length) else 0
        self.acted += delay > 0
        if not self._alias or not self._touches(self._alias[0], offset, length):
            return 0, bytes(self.bytes[offset:offset + length]), delay
        self.acted += self._shared
        return 0, b"".join(bytes(self.bytes[self._place(at):self._place(at) + SECTOR])
                           for at in range(offset, offset + length, SECTOR)), delay

    def write(self, offset, data):
        special = self._alias[0] if self._alias else self._lost
        if self._alias and self._touches(self._alias[1], offset, len(data)):
            self._shared = True
        if not self._touches(special, offset, len(data)):
            self.bytes[offset:offset + len(data)] = data
            return
        self.acted += bool(self._lost)
        for at in range(0, len(data), SECTOR):
            if self._lost and self._touches(self._lost, offset + at, SECTOR):
                continue
            place = self._place(offset + at)
            self.bytes[place:place + SECTOR] = data[at:at + SECTOR]


class Server:
    """Serves one content to one emulator, at a socket in `folder`, from `with` to its end."""

    def __init__(self, content, folder):
        self._content = content
        self.path = os.path.join(folder, f"disk-{os.getpid()}-{id(self):x}")
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(self.path)
        self._listener.listen(1)
        self._connection = None
        self._sending = threading.Lock()
        self._thread = threading.Thread(target=self._serve, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        for end in (self._connection, self._listener):
            if end:
                try:
                    end.shutdown(socket.SHUT_RDWR)
                except OSError:
                    pass
                end.close()
        self._forget_name()

    def _forget_name(self):
        with contextlib.suppress(FileNotFoundError):
            os.unlink(self.path)

    def _serve(self):
        try:
            self._connection, _ = self._listener.accept()
            self._forget_name()  # whoever ends the lab leaves nothing
            if self._agreed():
                while self._answered():
                    pass
        except (OSError, EOFError):
            pass  # the emulator has gone, or the trial is over

    def _take(self, count):
        data = bytearray(count)
        view = memoryview(data)
        while view:
            got = self._connection.recv_into(view)
            if got == 0:
                raise EOFError
            view = view[got:]
        return bytes(data)

    def _agreed(self):
        """The greeting: the emulator asks for this or that, and gets nothing but the disk."""
        send = self._connection.sendall
        send(b"NBDMAGIC" + struct.pack(">QH", _OPTION_MAGIC, _FIXED_NEWSTYLE | _NO_ZEROES))
        self._take(4)
        while True:
            magic, option, length = struct.unpack(">QII", self._take(16))
            self._take(length)
            if magic != _OPTION_MAGIC:
                return False
            if option != _OPTION_GO:
                send(struct.pack(">QIII", _REPLY_MAGIC, option, _UNSUPPORTED, 0))
                continue
            size = struct.pack(">HQH", 0, len(self._content.bytes), _HAS_FLAGS | _SEND_FLUSH)
            send(struct.pack(">QIII", _REPLY_MAGIC, option, _INFO, len(size)) + size)
            send(struct.pack(">QIII", _REPLY_MAGIC, option, _ACKNOWLEDGED, 0))
            return True

    def _answered(self):
        magic, _, kind, handle, offset, length = struct.unpack(">IHHQQI", self._take(28))
        if magic != _REQUEST_MAGIC or kind == _DISCONNECT:
            return False
        error, data, delay = 0, b"", 0
        if kind == _READ:
            error, data, delay = self._content.read(offset, length)
        elif kind == _WRITE:
            self._content.write(offset, self._take(length))
        elif kind != _FLUSH:
            error = _EINVAL
        answer = struct.pack(">IIQ", _ANSWER_MAGIC, error, handle) + data
        if delay:
            threading.Timer(delay, self._send, (answer,)).start()
        else:
            self._send(answer)
        return True

    def _send(self, answer):
        try:
            with self._sending:
                self._connection.sendall(answer)
        except OSError:
            pass  # nobody waits for it any more
