"""Network ports whose cable is pulled, or brings frames that are none."""

import struct

PORTS = 2
_SHORTEST, _LONGEST = 60, 1522  # what a frame has without its check sequence
_LONGEST_OF_ALL = 9000


class Cable:
    """One port's."""

    def __init__(self, chance):
        self.port = chance.randrange(PORTS)

    @property
    def name(self):
        return f"eth{self.port}"

    def __str__(self):
        return self.name


class NoLink(Cable):
    """A cable that is out before the test begins."""

    kind = "no link"
    is_early = True

    def cause(self, machine, _):
        machine.monitor.say(f"set_link port{self.port} off")

    def trace(self):
        return f'test "$(cat /sys/class/net/{self.name}/carrier)" = 0'


class LostLink(NoLink):
    """One that is pulled while the test watches."""

    kind = "lost link"
    is_early = False


class BadFrames(Cable):
    """Frames that are too short or too long, as a bad cable or the other end's broken port makes them."""

    kind = "bad frames"
    is_early = False

    def __init__(self, chance):
        super().__init__(chance)
        bad = tuple(range(14, _SHORTEST)) + tuple(range(_LONGEST + 1, _LONGEST_OF_ALL))
        self._lengths = [chance.choice(bad) for _ in range(chance.randrange(1, 20))]

    def __str__(self):
        return f"{self.name}, lengths {self._lengths}"

    def cause(self, machine, _):
        to, sender, kind = bytes((0x52, 0x54, 0, 0, 0, self.port + 1)), bytes((2, 0, 0, 0, 0, 9)), b"\x88\xb5"
        for length in self._lengths:
            frame = (to + sender + kind).ljust(length, b"\x5a")
            machine.cables[f"cable{self.port}"].sendall(struct.pack(">I", length) + frame)

    def trace(self):
        return f'test "$(cat /sys/class/net/{self.name}/statistics/rx_errors)" != 0'


KINDS = {one.kind: one for one in (NoLink, LostLink, BadFrames)}
EARLY = tuple(kind for kind, one in KINDS.items() if one.is_early)
LATE = tuple(kind for kind, one in KINDS.items() if not one.is_early)
