import contextlib
import os
import random
import socket
import struct
import tempfile
import time
import unittest

from lab.faults import disk, shrinking_disk
from lab.faults.disk_server import SECTOR, Content, Server
from lab.trials import shrinking_disk as shrinking_trial

READ, WRITE, FLUSH, TRIM = 0, 1, 3, 4
EIO, EINVAL = 5, 22


def content(sectors=64, **faults):
    """Each byte of a sector is the sector's number."""
    return Content(bytearray(b"".join(bytes([number]) * SECTOR for number in range(sectors))), **faults)


def sectors_of(data):
    return list(data[::SECTOR])


class AShrinkingDisk(unittest.TestCase):
    def test_ends_in_the_middle_of_a_read_that_is_still_to_come(self):
        for seed in range(50):
            shrinking = shrinking_disk.ShrinkingDisk(shrinking_disk.FAULTS[0], random.Random(seed))
            self.assertLess(shrinking.when, shrinking.end * SECTOR)
            self.assertLess(shrinking.end * SECTOR, disk.SIZE)
            self.assertTrue(shrinking.end % 8, "no block of 4 KiB ends there")

    def test_is_rightly_placed_if_blocks_beyond_its_end_are_named_and_no_others(self):
        rows = [("LAB-1 Unreadable: logical blocks 100 to 200 (101 blocks)", True),
                ("LAB-1 Unreadable: somewhere in logical blocks 100 to 200 (101 blocks)", True),
                ("LAB-1 Unreadable: somewhere in logical blocks 90 to 200 (111 blocks)", True),
                ("LAB-1 Unreadable: somewhere in logical blocks 90 to 99 (10 blocks)", False),
                ("LAB-1 Unreadable: logical blocks 99 to 200 (102 blocks)", False),
                ("LAB-2 Unreadable: logical blocks 100 to 200 (101 blocks)", False), ("LAB-1", False)]
        for text, is_right in rows:
            with self.subTest(text=text):
                self.assertEqual(shrinking_trial.is_placed(text, 100, "LAB-1"), is_right)


class ABrokenContent(unittest.TestCase):
    def read(self, of, first, count=1):
        return of.read(first * SECTOR, count * SECTOR)

    def test_that_is_whole_is_read_as_it_was_written(self):
        whole = content()
        whole.write(3 * SECTOR, b"\xff" * SECTOR)
        self.assertEqual(sectors_of(self.read(whole, 2, 3)[1]), [2, 0xFF, 4])
        self.assertEqual(whole.acted, 0)

    def test_fails_reads_that_have_a_bad_sector_and_no_others(self):
        bad = content(bad=(7, 8))
        for first, count, error in ((5, 2, 0), (5, 3, EIO), (8, 1, EIO), (9, 9, 0)):
            with self.subTest(first=first):
                self.assertEqual(self.read(bad, first, count)[0], error)
        self.assertEqual(bad.acted, 2)

    def test_takes_its_time_for_slow_sectors_alone(self):
        slow = content(slow=(7, 7), delay=3)
        self.assertEqual([self.read(slow, first)[2] for first in (6, 7, 8)], [0, 3, 0])

    def test_shows_another_block_where_it_is_mapped_twice(self):
        twice = content(alias=((8, 15), (40, 47)))
        self.assertEqual(sectors_of(self.read(twice, 7, 10)[1]), [7, *range(40, 48), 16])

    def test_writes_to_the_other_block_where_it_is_mapped_twice(self):
        twice = content(alias=((8, 15), (40, 47)))
        twice.write(7 * SECTOR, b"\xff" * 3 * SECTOR)
        self.assertEqual(sectors_of(twice.bytes)[7:11], [0xFF, 8, 9, 10])
        self.assertEqual(sectors_of(twice.bytes)[40:43], [0xFF, 0xFF, 42])

    def test_that_is_mapped_twice_does_harm_once_both_places_are_used(self):
        twice = content(alias=((8, 15), (40, 47)))
        twice.write(8 * SECTOR, b"\xff" * SECTOR)
        self.read(twice, 8)
        self.assertEqual(twice.acted, 0)
        twice.write(40 * SECTOR, b"\xee" * SECTOR)
        self.read(twice, 8)
        self.assertEqual(twice.acted, 1)

    def test_loses_the_writes_of_one_block(self):
        lossy = content(lost=(8, 15))
        lossy.write(7 * SECTOR, b"\xff" * 10 * SECTOR)
        self.assertEqual(sectors_of(lossy.bytes)[7:17], [0xFF, *range(8, 16), 0xFF])


class TheServer(unittest.TestCase):
    """Talked to as the emulator does."""

    def setUp(self):
        stack = contextlib.ExitStack()
        self.addCleanup(stack.close)
        self.folder = stack.enter_context(tempfile.TemporaryDirectory())
        self.server = stack.enter_context(Server(content(bad=(7, 7), slow=(9, 9), delay=1), self.folder))
        self.wire = stack.enter_context(socket.socket(socket.AF_UNIX))
        self.wire.settimeout(20)
        self.wire.connect(self.server.path)

    def take(self, count):
        data = b""
        while len(data) < count:
            got = self.wire.recv(count - len(data))
            self.assertTrue(got)
            data += got
        return data

    def greet(self):
        self.assertEqual(self.take(18)[:8], b"NBDMAGIC")
        self.wire.sendall(struct.pack(">I", 3))
        for option, data in ((8, b""), (7, b"\0\0\0\4disk\0\0")):
            self.wire.sendall(b"IHAVEOPT" + struct.pack(">II", option, len(data)) + data)
            kind, length = struct.unpack(">12xII", self.take(20))
            answer = self.take(length)
        self.take(20)
        self.assertEqual(struct.unpack(">HQH", answer)[1], 64 * SECTOR)
        return kind

    def ask(self, kind, sector, count=1, handle=1, data=b""):
        self.wire.sendall(struct.pack(">IHHQQI", 0x25609513, 0, kind, handle, sector * SECTOR, count * SECTOR) + data)

    def answer(self):
        magic, error, handle = struct.unpack(">IIQ", self.take(16))
        self.assertEqual(magic, 0x67446698)
        return error, handle

    def test_refuses_what_it_has_not_and_gives_the_disk(self):
        self.assertEqual(self.greet(), 3)

    def test_leaves_no_file_once_it_is_talked_to(self):
        self.greet()
        self.assertEqual(os.listdir(self.folder), [])

    def test_reads_and_writes(self):
        self.greet()
        self.ask(WRITE, 3, data=b"\xff" * SECTOR)
        self.assertEqual(self.answer(), (0, 1))
        self.ask(READ, 3, handle=2)
        self.assertEqual(self.answer(), (0, 2))
        self.assertEqual(self.take(SECTOR), b"\xff" * SECTOR)
        self.ask(FLUSH, 0, 0, handle=3)
        self.assertEqual(self.answer(), (0, 3))

    def test_tells_of_bad_sectors_and_of_orders_that_it_does_not_know(self):
        self.greet()
        self.ask(READ, 7)
        self.assertEqual(self.answer(), (EIO, 1))
        self.ask(TRIM, 7, handle=2)
        self.assertEqual(self.answer(), (EINVAL, 2))

    def test_answers_others_while_a_slow_read_takes_its_time(self):
        self.greet()
        began = time.monotonic()
        self.ask(READ, 9, handle=1)
        self.ask(READ, 10, handle=2)
        self.assertEqual(self.answer(), (0, 2))
        self.take(SECTOR)
        self.assertEqual(self.answer(), (0, 1))
        self.assertGreaterEqual(time.monotonic() - began, 1)


class ADrawnDisk(unittest.TestCase):
    def test_is_the_same_for_the_same_seed(self):
        for kind in disk.KINDS:
            with self.subTest(kind=kind):
                drawn = {str(vars(disk.draw(kind, random.Random(7)))) for _ in range(3)}
                self.assertEqual(len(drawn), 1)

    def test_is_broken_outside_of_what_the_kernel_reads_by_itself_and_within_the_disk(self):
        for kind in disk.KINDS:
            for seed in range(200):
                fault = disk.draw(kind, random.Random(seed))
                for first, last in filter(None, (fault.sectors, fault.alias)):
                    self.assertGreaterEqual(first * SECTOR, disk.MEBIBYTE, (kind, seed))
                    self.assertLess(last * SECTOR, disk.SIZE, (kind, seed))

    def test_that_is_healthy_has_a_content_that_is_whole(self):
        for kind in disk.HEALTHY:
            data = disk.draw(kind, random.Random(1)).content()
            self.assertEqual(data.read(0, disk.SIZE)[0::2], (0, 0))
            self.assertEqual(data.acted, 0)


if __name__ == "__main__":
    unittest.main()
