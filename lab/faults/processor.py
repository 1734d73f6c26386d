"""A processor that computes wrong: a tracer outside the product turns one bit of a register of one of its
threads round while it computes. Neither the product nor the kernel it runs on takes part."""

import bisect
import contextlib
import os
import subprocess
import time

KINDS = {"general register": "general", "vector register": "vector"}
STEPS = 10_000  # instructions until the copies are compared
_NOT_COMPUTING = 3


class Flip:
    """`effect`: none, unread, changed, fatal or unsure, as flip_bit says; `words`: where the thread was, then its
    stack; `cpu`: the logical processor that computed wrong."""

    def __init__(self, line, stack, cpu):
        self.register, bit, address, self.effect = line.split()
        self.bit = int(bit)
        self.words = [int(address, 16)] + [int(word, 16) for word in stack.split()]
        self.cpu = cpu


def _stat(path):
    """The fields behind the name, the state first."""
    try:
        with open(path) as file:
            return file.read().rpartition(")")[2].split()
    except OSError:
        return None


def _children(process):
    """Each thread may have some of its own."""
    found = []
    for thread in threads_of(process):
        with contextlib.suppress(OSError), open(f"/proc/{process}/task/{thread}/children") as file:
            found += map(int, file.read().split())
    return found


def descendants(process):
    """Its children, and theirs, and so on."""
    for child in _children(process):
        yield child
        yield from descendants(child)


def threads_of(process):
    """None where the process has gone."""
    try:
        return sorted(map(int, os.listdir(f"/proc/{process}/task")))
    except OSError:
        return []


def busy_threads(process):
    """Its threads that run, or would like to, each with the processor that it was on last."""
    found = []
    for thread in threads_of(process):
        stat = _stat(f"/proc/{process}/task/{thread}/stat")
        if stat and stat[0] == "R":
            found.append((thread, int(stat[36])))
    return found


def program_in(folder):
    return os.path.join(folder, "flip_bit")


def _flip_once(program, process, kind, chance, steps):
    threads = busy_threads(process)
    if not threads:
        return None
    thread, cpu = chance.choice(threads)
    done = subprocess.run([program, str(thread), KINDS[kind], str(chance.getrandbits(64)), str(steps)],
                          stdout=subprocess.PIPE, text=True)
    if done.returncode == _NOT_COMPUTING:
        return None
    if done.returncode:
        raise OSError(f"flip_bit ended with {done.returncode}")
    line, _, stack = done.stdout.partition("\n")
    return Flip(line, stack, cpu)


def flip(program, process, kind, chance, seconds, steps=STEPS):
    """Flips once, in a thread that computes; None where none of them does for that long."""
    until = time.monotonic() + seconds
    while time.monotonic() < until:
        done = _flip_once(program, process, kind, chance, steps)
        if done:
            return done
        time.sleep(0.001)
    return None


def base_of(process, library):
    """Where the process has the library; None where it has not."""
    real = os.path.realpath(library)
    with open(f"/proc/{process}/maps") as maps:
        for line in maps:
            if line.rstrip().endswith(real):
                return int(line.split("-")[0], 16)
    return None


class Symbols:
    """The functions of a library, by their addresses in it."""

    def __init__(self, library):
        text = subprocess.run(["nm", "-C", "--defined-only", "-n", library], stdout=subprocess.PIPE,
                              text=True).stdout
        functions = [(int(line[:16], 16), line[19:]) for line in text.splitlines() if line[17:18] in "tTwW"]
        self._starts = [start for start, _ in functions]
        self._names = [name for _, name in functions]
        self._end = os.path.getsize(library)

    def innermost(self, addresses, base):
        """The first of the addresses that lies in a function of the library, as that function's name."""
        for address in addresses if base is not None else ():
            number = bisect.bisect_right(self._starts, address - base) - 1
            if number >= 0 and address - base < self._end:
                return short(self._names[number])
        return ""


def short(name):
    """A function's name without namespaces, arguments and compilers' remarks."""
    plain = name.replace("(anonymous namespace)::", "").split(" [clone")[0].split("(")[0].split("<")[0]
    return plain.rpartition("::")[2].split(" ")[-1]
