"""Errors that the hardware tells the machine's kernel of while nothing else goes wrong: machine checks and
correctable errors of PCI Express. The kernel's own injectors have it believe that it was told."""

import struct

# The lower bits of a status, as a processor has them: memory, a cache, a bus, an address translation buffer.
_MACHINE_CHECKS = (0x0091, 0x0135, 0x0E0B, 0x0011)
_VALID_CORRECTED_WITH_ADDRESS = 0x9C00004000000000
_BANKS = 10
_SMALLEST_ADDRESS, _LARGEST_ADDRESS = 1 << 20, 1 << 38
_PCI_ERRORS = {"RxErr": 0, "BadTLP": 6, "BadDLLP": 7, "Rollover": 8, "Timeout": 12}
# The ports' cards, and the slots that they are in: all that counts such errors and has something at its end.
DEVICES = ("0000:00:03.0", "0000:00:04.0", "0000:02:00.0", "0000:03:00.0")


class MachineCheck:
    """A corrected error in a bank of a processor."""

    kind = "machine check"
    is_early = False

    def __init__(self, chance):
        self.processor = chance.randrange(2)
        self.bank = chance.randrange(_BANKS)
        self.status = _VALID_CORRECTED_WITH_ADDRESS | chance.choice(_MACHINE_CHECKS)
        self.address = chance.randrange(_SMALLEST_ADDRESS, _LARGEST_ADDRESS) // 64 * 64

    def __str__(self):
        return f"CPU {self.processor}, bank {self.bank}, status {self.status:#x}, address {self.address:#x}"

    def cause(self, machine, _):
        """The bank comes last: that is what causes it."""
        values = (("flags", "sw"), ("status", f"{self.status:#x}"), ("addr", f"{self.address:#x}"),
                  ("cpu", self.processor), ("bank", self.bank))
        machine.ask(" && ".join(f"echo {value} >/sys/kernel/debug/mce-inject/{name}" for name, value in values))

    def trace(self):
        """A shell's condition: the kernel has taken note of it."""
        return f"dmesg | grep -q 'Bank {self.bank}: {self.status:x}'"


class PciError:
    """A correctable error that one device of a link has noticed."""

    kind = "PCI Express error"
    is_early = False

    def __init__(self, chance):
        self.device = chance.choice(DEVICES)
        self.name = chance.choice(tuple(_PCI_ERRORS))

    def __str__(self):
        return f"{self.name} at {self.device}"

    def cause(self, machine, _):
        domain, bus, rest = self.device.split(":")
        slot, function = rest.split(".")
        order = struct.pack("<3Bx7I", int(bus, 16), int(slot, 16), int(function), 0, 1 << _PCI_ERRORS[self.name],
                            0, 0, 0, 0, int(domain, 16))
        letters = "".join(f"\\x{byte:02x}" for byte in order)
        machine.ask(f"printf '{letters}' >/tmp/error && cat /tmp/error >/dev/aer_inject")

    def trace(self):
        return f"grep -q '^{self.name} [1-9]' /sys/bus/pci/devices/{self.device}/aer_dev_correctable"


KINDS = {one.kind: one for one in (MachineCheck, PciError)}
