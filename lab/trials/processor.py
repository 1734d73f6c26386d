"""Register flips against the processor tests: on this machine itself, no other is needed."""

import functools
import os
import random
import re
import subprocess
import time

from lab.faults import processor
from lab.judge import result, verdict
from lab.machine import children

_LIBRARY = "libdiagsProcessor.so"
_SECONDS_TO_BEGIN = 60
_SECONDS_TO_FLIP = 5
_FEWEST_THREADS = 3  # of a worker at rest
_LONGEST_PAUSE = 0.2  # the quick form of a test is over in less than a second
_ACCUSED = re.compile(r"^CPU (\d+)(?: \(core|,)", re.MULTILINE)


@functools.lru_cache
def _symbols(library):
    return processor.Symbols(library)


def placed(text, cpu):
    """Whether the errors of the text are all of that logical processor."""
    return {int(number) for number in _ACCUSED.findall(text)} == {cpu}


def came_to(answer, flip):
    """What a flip came to. A test that a flip ends, or keeps from ending, is over and told as such."""
    if answer.alarm():
        return result.FOUND
    if not answer.silent():
        return result.ENDED if answer.ended() else result.NO_VERDICT
    if flip.effect in ("none", "unread"):
        return result.NO_EFFECT
    return result.NO_VERDICT if flip.effect == "unsure" else result.MISSED


def _settings(test, seed):
    """The exchange of messages draws nothing, and is short."""
    if test.endswith(" IPC"):
        return []
    return ["--set", f"Seed={seed}", "--set", "QuickMode=true"]


def _command(installed, test, seed):
    return [os.path.join(installed, "bin/diags"), "--root", os.path.join(installed, "installation"), "run", test,
            "--events", "-", "--no-history", "--timeout", "90s", *_settings(test, seed)]


def _worker_with_work(command):
    """The worker, once a thread of it computes the test: the one of all processes below that has many."""
    for line in command.stdout:
        event = verdict.events_in([line])
        if event and "test" in event[0]:
            break
    until = time.monotonic() + _SECONDS_TO_BEGIN
    while time.monotonic() < until and command.poll() is None:
        for worker in processor.descendants(command.pid):
            if len(processor.threads_of(worker)) > _FEWEST_THREADS and processor.busy_threads(worker):
                return worker
        time.sleep(0.002)
    return None


def trial(lab, kind, test, seed):
    """One run of the test with one flip, or none."""
    chance = random.Random(f"{kind} {test} {seed}")
    began = time.monotonic()
    said = result.Result(kind, test, seed, result.NO_VERDICT, detail="no thread was ever computing")
    command = children.start(_command(lab.build, test, seed), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                             text=True)
    try:
        _try(lab, command, kind, chance, said)
    finally:
        children.end(command)
        command.stdout.close()
    said.seconds = round(time.monotonic() - began, 2)
    return said


def _try(lab, command, kind, chance, said):
    flip = None
    function = ""
    if kind != result.HEALTHY:
        worker = _worker_with_work(command)
        if worker:
            library = os.path.join(lab.build, "installation/providers", _LIBRARY)
            base = processor.base_of(worker, library)
            time.sleep(chance.uniform(0, _LONGEST_PAUSE))
            flip = processor.flip(processor.program_in(lab.programs), worker, kind, chance, _SECONDS_TO_FLIP)
    if flip:
        function = _symbols(library).innermost(flip.words, base)
    answer = verdict.read(command.stdout)
    if kind == result.HEALTHY:
        said.came_to, said.detail = result.judge(answer, True, False, True), ""
    elif flip:
        said.came_to = came_to(answer, flip)
        said.placed = said.came_to == result.FOUND and placed(answer.text, flip.cpu)
        said.detail = f"{flip.register} bit {flip.bit} in {function}, CPU {flip.cpu}, effect {flip.effect}: "
    if said.came_to not in (result.SILENT, result.NO_EFFECT):
        said.detail += answer.text[-400:]
