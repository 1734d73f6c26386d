"""PCI Express links that have lost lanes or speed.

The emulator's cards have one lane and nothing to lose. So the registers that tell of a link are changed where
the emulator keeps them, in its own memory: as the slot and the card would have agreed on them. The slot goes by
what its card says."""

import os

CARDS = ("0000:02:00.0", "0000:03:00.0")


def look_at(cards):
    """A command of the machine's shell: which slot has which card, and their configurations."""
    return "grep . /sys/bus/pci/slots/*/address; " + "; ".join(
        f"echo {card} $(hexdump -v -e '1/1 \"%02x\"' -n 256 /sys/bus/pci/devices/{card}/config)" for card in cards)


def slot_of(card, seen):
    """The slot's name, from what the machine has said to that."""
    return next((line.split("/")[-2] for line in seen if line.endswith(card.split(".")[0])), None)


CONFIGURATIONS = look_at(CARDS)

_SPEEDS = {"2.5": 1, "5.0": 2}
# The bytes of a configuration in which no two cards are equal, as their addresses are there. Those in front of
# them tell of interrupts, too, which come and go.
_OWN = slice(8, 64)
_LINK_CAPABILITIES, _LINK_STATUS = 0x0C, 0x12
_WIDTH_AND_SPEED = 0x3FF


class Registers:
    """The configuration of one card, in the memory of the emulator's process."""

    def __init__(self, process, configuration):
        self._memory = os.open(f"/proc/{process}/mem", os.O_RDWR)
        self._base = self._find(heap_of(process), configuration)
        self._express = _express_capability(configuration)

    def close(self):
        os.close(self._memory)

    def _find(self, heap, configuration):
        begin, end = heap
        all_of_it = os.pread(self._memory, end - begin, begin)
        places = all_of_it.count(configuration[_OWN])
        if places != 1:
            raise LookupError(f"{places} places of the emulator look like the card's configuration")
        return begin + all_of_it.index(configuration[_OWN]) - _OWN.start

    def set_link(self, lanes, speed, register):
        width, place = (2, _LINK_STATUS) if register == "status" else (4, _LINK_CAPABILITIES)
        at = self._base + self._express + place
        number = int.from_bytes(os.pread(self._memory, width, at), "little")
        number = number & ~_WIDTH_AND_SPEED | lanes << 4 | _SPEEDS[speed]
        os.pwrite(self._memory, number.to_bytes(width, "little"), at)


def heap_of(process):
    with open(f"/proc/{process}/maps", encoding="ascii") as maps:
        for line in maps:
            if line.rstrip().endswith("[heap]"):
                begin, end = line.split()[0].split("-")
                return int(begin, 16), int(end, 16)
    raise LookupError("the emulator has no heap")


def _express_capability(configuration):
    place = configuration[0x34]
    while place:
        if configuration[place] == 0x10:
            return place
        place = configuration[place + 1]
    raise LookupError("the card has no link")


def agree(process, configuration, lanes, speed):
    """A card that can eight lanes at 5.0 GT/s has these."""
    registers = Registers(process, configuration)
    try:
        registers.set_link(Link.lanes, Link.speed, "capabilities")
        registers.set_link(lanes, speed, "status")
    finally:
        registers.close()


def trace(card, lanes, speed):
    """A command that succeeds where the machine's kernel sees the link so."""
    folder = f"/sys/bus/pci/devices/{card}"
    return f"grep -q '^{lanes}$' {folder}/current_link_width && grep -q '^{speed} ' {folder}/current_link_speed"


class Link:
    """The cards, which all can eight lanes at 5.0 GT/s; in a healthy machine they have them. One of a broken
    machine's has less."""

    kind = "healthy, link"
    is_early = True
    what = None
    lanes, speed = 8, "5.0"

    def __init__(self, chance):
        self.card = chance.choice(CARDS)
        self.slot = None

    def __str__(self):
        return f"{self.card}: {self.lanes} lanes, {self.speed} GT/s"

    def cause(self, machine, seen):
        """`seen`: what the machine's shell says to CONFIGURATIONS."""
        self.slot = slot_of(self.card, seen)
        for line in seen:
            if line.startswith(CARDS):
                self._agree(machine, *line.split())

    def _agree(self, machine, card, configuration):
        agreed = self if card == self.card else Link
        agree(machine.process, bytes.fromhex(configuration), agreed.lanes, agreed.speed)

    def trace(self):
        return trace(self.card, self.lanes, self.speed)


class NarrowLink(Link):
    kind = "narrow link"
    what = "width"

    def __init__(self, chance):
        super().__init__(chance)
        self.lanes = chance.choice((1, 2, 4))


class SlowLink(Link):
    kind = "slow link"
    what = "speed"
    speed = "2.5"


KINDS = {one.kind: one for one in (NarrowLink, SlowLink)}
HEALTHY = {Link.kind: Link}
