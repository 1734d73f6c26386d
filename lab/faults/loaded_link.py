"""What befalls the link of an NVMe drive while data go over it: it loses lanes or speed, or reads fail. A healthy
one keeps its eight lanes at 5.0 GT/s."""

from lab.faults import disk, link

CARD = "0000:01:00.0"


class LoadedLink:
    """`bad`: sectors of the drive that cannot be read; else the link comes down to `lanes` and `speed`."""

    def __init__(self, kind, what=None, lanes=link.Link.lanes, speed=link.Link.speed, bad=None):
        self.kind = kind
        self.what = what
        self.lanes = lanes
        self.speed = speed
        self.bad = bad

    def __str__(self):
        return f"{CARD}: {self.lanes} lanes, {self.speed} GT/s" + (f", bad sectors {self.bad}" if self.bad else "")

    def drive(self):
        """The drive behind the link."""
        return disk.Fault(self.kind, "nvme", "bad" if self.bad else None, self.bad)

    def comes_late(self):
        """Whether it happens while data go over the link."""
        return (self.lanes, self.speed) != (link.Link.lanes, link.Link.speed)


def _unreadable(kind, chance):
    first = chance.randrange(disk.MEBIBYTE // disk.SECTOR, disk.SIZE // disk.SECTOR)
    return LoadedLink(kind, "reads", bad=(first, first))


_DRAWS = {"lanes lost under load": lambda kind, chance: LoadedLink(kind, "width", lanes=chance.choice((1, 2, 4))),
          "speed lost under load": lambda kind, chance: LoadedLink(kind, "speed", speed="2.5"),
          "failed reads under load": _unreadable}
KINDS = tuple(_DRAWS)
HEALTHY = "healthy, link under load"


def draw(kind, chance):
    return LoadedLink(kind) if kind == HEALTHY else _DRAWS[kind](kind, chance)
