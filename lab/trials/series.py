"""Which trials are made, in which order: a series gives them one by one, and the same seed the same ones."""

import concurrent.futures
import random

from lab.faults import disk as disk_faults
from lab.faults import loaded_link as link_faults
from lab.faults import memory as memory_faults
from lab.faults import processor as processor_faults
from lab.faults import shrinking_disk as shrinking_faults
from lab.judge.result import HEALTHY, is_healthy
from lab.trials import devices, disk, loaded_link, memory, processor, shrinking_disk


class Wanted:
    """One trial that is to be made: `make(seed)` makes it."""

    def __init__(self, fault, test, make):
        self.fault = fault
        self.test = test
        self.make = make


# Which tests of the memory are there for which kind of fault. Others may find it or not.
_INVERSIONS = ("Power-of-Two Addressing", "Self Addressing", "Increment and Decrement", "Moving Inversions 0s",
               "Moving Inversions 1s", "Moving Inversions Random")
_ADDRESSES = ("Address Bus Walking 1s", "Power-of-Two Addressing", "Self Addressing", "Increment and Decrement",
              "Moving Inversions Random")
_PATTERNS = ("Data Bus Walking 1s", "Address Bus Walking 1s", *_INVERSIONS, "Bit Fade")
_MEMORY_TESTS = {HEALTHY: _PATTERNS, "stuck": _PATTERNS, "coupled": _INVERSIONS, "decaying": ("Bit Fade",),
                 "shorted line in a row": _ADDRESSES, "shorted line between rows": _ADDRESSES}


EXERCISERS = (memory.MEMTESTER.name, memory.STRESSAPPTEST.name)


def memory_series(lab, exercisers):
    """Each kind of fault and a healthy machine, for the tests of the memory that are there for it, and, if
    wanted, for the exercisers."""
    others = [memory.MEMTESTER, memory.STRESSAPPTEST] if exercisers else []
    wanted = []
    for kind in (HEALTHY, *memory_faults.KINDS):
        tests = [f"DIAGS: Memory {name}" for name in _MEMORY_TESTS[kind]]
        for tester in [memory.Product(test) for test in tests if test in lab.tests] + others:
            wanted.append(Wanted(kind, tester.name,
                                 lambda seed, kind=kind, tester=tester: memory.trial(lab, kind, tester, seed)))
    return wanted


def processor_series(lab):
    """Flips of either kind of register, and runs without one, for each test that computes."""
    tests = [name for name in lab.tests if name.startswith("DIAGS: Processor") and "Status" not in name]
    return [Wanted(kind, test, lambda seed, kind=kind, test=test: processor.trial(lab, kind, test, seed))
            for kind in (HEALTHY, *processor_faults.KINDS) for test in tests]


# Which tests are there for which kind of fault: others read no blocks, write none, or ask for no health. The
# emulated SCSI disk tells nothing of its health.
_READS = ("Sequential Read", "Random Read")
_COMPARE = ("Sequential Read-Write-Read Compare",)
_DISK_TESTS = {"bad sectors": _READS, "slow reads": _READS, "misdirected block": _COMPARE, "lost writes": _COMPARE,
               "failing health": ("Status",), "healthy, NVMe": (*_READS, *_COMPARE, "Status"),
               "healthy, SCSI": (*_READS, *_COMPARE)}


def disk_series(lab):
    """Each kind of broken disk, and whole ones, for the tests that are there for it."""
    wanted = []
    for kind in (*disk_faults.HEALTHY, *disk_faults.KINDS):
        for name in _DISK_TESTS.get(kind) or _DISK_TESTS[kind.split(",")[0]]:
            test = f"DIAGS: Disk {name}"
            if test in lab.tests:
                wanted.append(Wanted(kind, test, lambda seed, kind=kind, test=test: disk.trial(lab, kind, test, seed)))
    return wanted + [Wanted(kind, test, lambda seed, kind=kind, test=test: shrinking_disk.trial(lab, kind, test, seed))
                     for kind in (shrinking_faults.HEALTHY, *shrinking_faults.FAULTS) for test in shrinking_disk.TESTS
                     if test in lab.tests]


def devices_series(lab):
    """What goes wrong with devices, in each test that it is caused in."""
    return [Wanted(kind, underway.test,
                   lambda seed, kind=kind, underway=underway: devices.trial(lab, kind, underway, seed))
            for kind, underway in devices.ALL if underway.test in lab.tests]


def loaded_links_series(lab):
    """What befalls a link over which data go, and a link to which nothing happens."""
    return [Wanted(kind, loaded_link.TEST, lambda seed, kind=kind: loaded_link.trial(lab, kind, seed))
            for kind in (link_faults.HEALTHY, *link_faults.KINDS) if loaded_link.TEST in lab.tests]


def every(lab, exercisers):
    return (memory_series(lab, exercisers) + processor_series(lab) + disk_series(lab) + devices_series(lab)
            + loaded_links_series(lab))


# What the sample makes: (fault, test, seed). Each of these is in the test's reach and certain to do something;
# those left out may go by a test because the lab was late, or because a flipped bit was never read.
_SAMPLE_MEMORY = ("Address Bus Walking 1s", "Self Addressing", "Moving Inversions Random", "Bit Fade")
_SAMPLE_ADDRESSES = _SAMPLE_MEMORY[:3]
_SAMPLE = (
    *((HEALTHY, f"DIAGS: Memory {name}") for name in _SAMPLE_MEMORY),
    ("decaying", "DIAGS: Memory Bit Fade"),
    ("bad sectors, NVMe", "DIAGS: Disk Sequential Read"), ("bad sectors, SCSI", "DIAGS: Disk Random Read"),
    *(("stuck", f"DIAGS: Memory {name}") for name in _SAMPLE_MEMORY),
    ("slow reads, NVMe", "DIAGS: Disk Sequential Read"), ("short reads, SCSI", "DIAGS: Disk Sequential Read"),
    ("misdirected block, SCSI", "DIAGS: Disk Sequential Read-Write-Read Compare"),
    ("lost writes, NVMe", "DIAGS: Disk Sequential Read-Write-Read Compare"),
    ("failing health, NVMe", "DIAGS: Disk Status"),
    *(("shorted line in a row", f"DIAGS: Memory {name}") for name in _SAMPLE_ADDRESSES),
    ("healthy, NVMe", "DIAGS: Disk Sequential Read"), ("healthy, NVMe", "DIAGS: Disk Status"),
    ("healthy, SCSI", "DIAGS: Disk Sequential Read-Write-Read Compare"),
    (HEALTHY, "DIAGS: Processor FPU Instruction"), (HEALTHY, "DIAGS: Processor Stress"),
    *((fault, "DIAGS: Port Status") for fault in ("healthy, in operation", "machine check", "PCI Express error",
                                                  "lost link")),
    ("narrow link", "DIAGS: PCI Express Link"),
    (link_faults.HEALTHY, loaded_link.TEST), ("lanes lost under load", loaded_link.TEST),
    *(("shorted line between rows", f"DIAGS: Memory {name}") for name in _SAMPLE_ADDRESSES),
)


def sample(wanted, seed):
    """The sample's trials, each with a seed of its own, the same ones every time."""
    by_name = {(one.fault, one.test): one for one in wanted}
    return [(by_name[name], seed + number) for number, name in enumerate(_SAMPLE) if name in by_name]


def in_turn(wanted, seed, rounds):
    """Every wanted trial once a round; a round's seed follows that of the one before. The order is drawn, so
    that a series that is ended in the middle of a round has something of each kind."""
    for number in range(seed, seed + rounds):
        for one in random.Random(number).sample(wanted, len(wanted)):
            yield one, number


_HEALTHY_TIMES = 10  # a false alarm has to be rarer than a fault that goes by


def of_each_kind(wanted, seed, times):
    """So many trials of each kind of fault, spread over the tests that are there for it, and ten times as many
    of all the healthy machines together. The order is drawn, as above."""
    groups = {}
    for one in wanted:
        groups.setdefault(HEALTHY if is_healthy(one.fault) else one.fault, []).append(one)
    trials = [(tests[number % len(tests)], seed + number) for kind, tests in groups.items()
              for number in range(times * _HEALTHY_TIMES if kind == HEALTHY else times)]
    random.Random(seed).shuffle(trials)
    yield from trials


def run(trials, at_a_time, go_on):
    """Makes the trials and gives each result as it comes, while `go_on()`."""
    trials = iter(trials)
    with concurrent.futures.ThreadPoolExecutor(at_a_time) as pool:
        running = set()
        try:
            while True:
                while len(running) < at_a_time and go_on():
                    next_one = next(trials, None)
                    if next_one is None:
                        break
                    running.add(pool.submit(next_one[0].make, next_one[1]))
                if not running:
                    return
                done, running = concurrent.futures.wait(running, return_when=concurrent.futures.FIRST_COMPLETED)
                for one in done:
                    yield one.result()
        finally:
            for one in running:
                one.cancel()
