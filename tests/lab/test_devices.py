import ctypes
import mmap
import os
import random
import struct
import unittest
import unittest.mock

from lab.faults import link, loaded_link, port
from lab.judge import devices as placing
from lab.judge import verdict
from lab.trials import devices as trials

CHECK = "corrected error of a cache: machine check on CPU 0, bank 4, status 0x9c00, address 0x3ae1e6200"
COUNTED = "PCI Express device 0x8086:0x10d3, driver e1000e: correctable errors BadTLP rose from 0 to 1"
WATCHED = "Corrected errors of 0000:02:00.0 (8086:10d3, slot 0-2) rose at rest: BadTLP by 1; location slot 0-2"
PORTS_ERRORS = "Corrected errors of port 0000:00:03.0, linked to 0000:02:00.0 (8086:10d3) rose under load: RxErr by 1"
NARROW = "Link of 0000:02:00.0 (8086:10d3, slot 0-2) is below its width: expected 8 lanes (the device can 8), found 1"
CARD = "PCI Express device 0000:02:00.0"
LOST = "Link of 0000:01:00.0 (1b36:0010, slot 1) is below its width since it was read: expected 8 lanes, found 1"
FAILED = "12 reads of nvme0n1 over the link of 0000:01:00.0 (1b36:0010, slot 1) failed: Input/output error"


class APlaceAmongDevices(unittest.TestCase):
    ROWS = [
        (placing.machine_check, (0, 4, 0x9C00, 0x3AE1E6200), [("CPU 0", CHECK)], True),
        (placing.machine_check, (0, 4, 0x9C00, 0x3AE1E6200), [("CPU 0", CHECK), ("CPU 0", CHECK)], True),
        (placing.machine_check, (1, 4, 0x9C00, 0x3AE1E6200), [("CPU 0", CHECK)], False),
        (placing.machine_check, (0, 5, 0x9C00, 0x3AE1E6200), [("CPU 0", CHECK)], False),
        (placing.machine_check, (0, 4, 0x9C00, 0x3AE1E6240), [("CPU 0", CHECK)], False),
        (placing.machine_check, (0, 4, 0x9C00, 0x3AE1E6200), [("CPU 1", CHECK)], False),
        (placing.machine_check, (0, 4, 0x9C00, 0x3AE1E6200), [("processors", "MCE rose from 0 to 1")], False),
        (placing.pci_error, ("0000:02:00.0", "BadTLP"), [("0000:02:00.0", COUNTED)], True),
        (placing.pci_error, ("0000:02:00.0", "BadTLP"), [(CARD, WATCHED), ("0000:02:00.0", COUNTED)], True),
        (placing.pci_error, ("0000:02:00.0", "BadTLP"), [("0000:03:00.0", COUNTED)], False),
        (placing.pci_error, ("0000:02:00.0", "RxErr"), [("0000:02:00.0", COUNTED)], False),
        (placing.pci_error, ("0000:02:00.0", "BadTLP"), [("0000:02:00.0", COUNTED), (CARD, PORTS_ERRORS)], False),
        (placing.pci_error, ("0000:00:03.0", "RxErr"), [(CARD, PORTS_ERRORS)], True),
        (placing.port, ("eth1",), [("network port eth1", "no link"), ("eth1", "rx_errors rose")], True),
        (placing.port, ("eth1",), [("eth1", "rx_errors rose from 0 to 1")], False),
        (placing.port, ("eth1",), [("network port eth1", "no link"), ("eth0", "rx_errors rose")], False),
        (placing.port, ("eth1",), [], False),
        (placing.link, ("0000:02:00.0", "0-2", "width"), [(CARD, NARROW), ("PCI Express", "NarrowLinks 1")], True),
        (placing.link, ("0000:02:00.0", "0-2", "speed"), [(CARD, NARROW)], False),
        (placing.link, ("0000:02:00.0", "0-3", "width"), [(CARD, NARROW)], False),
        (placing.link, ("0000:03:00.0", "0-2", "width"), [(CARD, NARROW)], False),
        (placing.loaded_link, ("0000:01:00.0", "1", "width"), [(CARD, LOST)], True),
        (placing.loaded_link, ("0000:01:00.0", "1", "speed"), [(CARD, LOST)], False),
        (placing.loaded_link, ("0000:01:00.0", "1", "reads"), [(CARD, FAILED)], True),
        (placing.loaded_link, ("0000:01:00.0", "2", "reads"), [(CARD, FAILED)], False),
        (placing.loaded_link, ("0000:01:00.0", "1", "width"), [(CARD, LOST), (CARD, FAILED)], False),
    ]

    def test_is_right_if_exactly_the_broken_one_is_named(self):
        for judge, wanted, told, is_right in self.ROWS:
            with self.subTest(judge=judge.__name__, wanted=wanted, told=told):
                self.assertEqual(judge(told, *wanted), is_right)

    def test_has_a_link_under_load_only_if_a_disk_was_read_over_it(self):
        line = "  0000:01:00.0 (1b36:0010, slot 1): 5.0 GT/s, 8 lanes; 96 MiB read from nvme0n1, 32 MiB/s"
        self.assertTrue(placing.is_loaded(line, "0000:01:00.0"))
        self.assertFalse(placing.is_loaded(line, "0000:02:00.0"))
        self.assertFalse(placing.is_loaded(line.replace("96 MiB read from", "not loaded:"), "0000:01:00.0"))

    def test_is_read_from_the_diagnoses_of_a_stream(self):
        lines = ['{"sequence":1,"diagnosis":{"verdict":"warning","text":"t","part":"p"}}', '{"sequence":2,"test":{}}']
        self.assertEqual(verdict.diagnoses(lines), [("p", "t")])


class AFaultOfADevice(unittest.TestCase):
    def test_is_the_same_for_the_same_seed_and_else_another(self):
        for kind, make in trials.FAULTS.items():
            if kind in link.HEALTHY:
                continue
            with self.subTest(kind=kind):
                drawn = [str(make(random.Random(seed))) for seed in range(20)]
                self.assertEqual(drawn, [str(make(random.Random(seed))) for seed in range(20)])
                self.assertGreater(len(set(drawn)), 1)

    def test_has_somebody_who_judges_its_place(self):
        for kind, make in trials.FAULTS.items():
            with self.subTest(kind=kind):
                self.assertFalse(trials.is_placed([], make(random.Random(1))))

    def test_of_a_cable_is_a_frame_of_a_length_that_none_may_have(self):
        for seed in range(50):
            machine = FakeMachine()
            port.BadFrames(random.Random(seed)).cause(machine, [])
            frames = machine.sent["cable0"] + machine.sent["cable1"]
            self.assertTrue(frames)
            for frame in frames:
                (length,) = struct.unpack(">I", frame[:4])
                self.assertEqual(length, len(frame) - 4)
                self.assertTrue(length < 60 or length > 1522)


class AFaultOfALinkUnderLoad(unittest.TestCase):
    def test_is_one_thing_alone_and_the_same_for_the_same_seed(self):
        for kind in loaded_link.KINDS:
            with self.subTest(kind=kind):
                fault = loaded_link.draw(kind, random.Random(7))
                self.assertEqual(str(fault), str(loaded_link.draw(kind, random.Random(7))))
                self.assertEqual([fault.lanes < 8, fault.speed != "5.0", fault.bad is not None].count(True), 1)

    def test_is_none_on_a_healthy_link(self):
        healthy = loaded_link.draw(loaded_link.HEALTHY, random.Random(7))
        self.assertFalse(healthy.comes_late() or healthy.bad)


class FakeCable:
    def __init__(self, sent):
        self.sendall = sent.append


class FakeMachine:
    def __init__(self, process=0):
        self.process = process
        self.sent = {"cable0": [], "cable1": []}
        self.cables = {name: FakeCable(sent) for name, sent in self.sent.items()}


def configuration(number):
    """Of a card: its capability for links is the second in the list."""
    head = bytes((0x86, 0x80, 0xD3, 0x10)).ljust(0x10, b"\x11").ljust(0x34, bytes((number + 1,))) + b"\x40"
    capabilities = bytes((0x05, 0x60)).ljust(0x20, b"\0") + bytes((0x10, 0x00)).ljust(0x20, b"\0")
    return (head.ljust(0x40, b"\0") + capabilities).ljust(256, b"\0")


class TheRegistersOfALink(unittest.TestCase):
    """This process stands for the emulator, and pages of it for the emulator's heap."""

    def setUp(self):
        self.cards = [configuration(number) for number in (0, 1)]
        self.heap = mmap.mmap(-1, 4096)
        self.heap[100:356], self.heap[1000:1256] = self.cards
        self.heap[106] |= 0x08  # an interrupt has come since the configuration was read
        begin = ctypes.addressof(ctypes.c_char.from_buffer(self.heap))
        patch = unittest.mock.patch.object(link, "heap_of", lambda _: (begin, begin + 4096))
        patch.start()
        self.addCleanup(patch.stop)

    def shown(self):
        return [self.heap[100:356], self.heap[1000:1256]]

    def cause(self, fault):
        fault.card, other = link.CARDS
        seen = ["/sys/bus/pci/slots/0-2/address:0000:02:00", "/sys/bus/pci/slots/0-3/address:0000:03:00"]
        seen += [f"{card} {text.hex()}" for card, text in zip((fault.card, other), self.cards)]
        fault.cause(FakeMachine(os.getpid()), seen)

    def test_say_what_the_broken_and_the_whole_link_have_and_nothing_else_is_changed(self):
        fault = link.NarrowLink(random.Random(1))
        self.cause(fault)
        wanted = [bytearray(card) for card in self.cards]
        wanted[0][6] |= 0x08
        for card, lanes in zip(wanted, (fault.lanes, 8)):
            card[0x60 + 0x0C:0x60 + 0x10] = struct.pack("<I", 8 << 4 | 2)
            card[0x60 + 0x12:0x60 + 0x14] = struct.pack("<H", lanes << 4 | 2)
        self.assertEqual(self.shown(), [bytes(card) for card in wanted])
        self.assertEqual(fault.slot, "0-2")

    def test_are_looked_for_in_vain_where_the_card_is_not(self):
        with self.assertRaisesRegex(LookupError, "0 places"):
            link.Registers(os.getpid(), configuration(7))


if __name__ == "__main__":
    unittest.main()
