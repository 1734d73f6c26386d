#!/usr/bin/python3
"""kill_at_random.py DIAGS INSTALLATION TIMES [AT-A-TIME [SEED]]

Runs the tests of an installation again and again, and kills the command, one of the two keepers of a
worker, the worker or the command with one of them (SIGKILL) at a moment that nobody chose. Each time: no process of the run is left a second later,
the file of events has whole lines but for its last, whose order is right, and each verdict that was
printed is in it; a command that was not killed itself goes on to its end. A round that is not so is told,
with its seed.
"""

import concurrent.futures
import json
import os
import random
import signal
import subprocess
import sys
import tempfile
import time

# Two of them die in the same moment: neither sees the end of the other one.
TARGETS = (("command",), ("keeper",), ("second",), ("worker",), ("command", "keeper"), ("command", "second"),
           ("command", "worker"), ("keeper", "worker"))
SICKNESSES = ("", "starting:daemon", "starting:child", "starting:keptdaemon")
MARK = "KILL_AT_RANDOM_ROUND"
PATIENCE = 2.0  # for what was killed to be gone, on a machine that has much to do


def processes(mark):
    """The ids of all that has the mark in its environment, and their parents."""
    found = {}
    entry = f"{MARK}={mark}".encode()
    for name in os.listdir("/proc"):
        if not name.isdigit():
            continue
        try:
            with open(f"/proc/{name}/environ", "rb") as file:
                if entry not in file.read().split(b"\0"):
                    continue
            with open(f"/proc/{name}/stat", "rb") as file:
                found[int(name)] = int(file.read().rpartition(b")")[2].split()[1])
        except OSError:
            continue
    return found


def chosen(target, command, mark):
    """Who is to be killed; those of whom there is none by now are left out."""
    found = processes(mark)
    generation = [command]
    victims = []
    for kind in ("command", "keeper", "second", "worker"):
        if kind in target:
            victims += generation[:1]
        generation = [one for one, parent in found.items() if parent in generation[:1]]
    return victims


def kill(target, command, mark):
    victims = chosen(target, command, mark)
    for number in (signal.SIGSTOP, signal.SIGKILL):
        for victim in victims:
            try:
                os.kill(victim, number)
            except ProcessLookupError:
                pass
    return victims


def events_in(path):
    """The events of the file's whole lines."""
    try:
        with open(path, "rb") as file:
            lines = file.read().split(b"\n")
    except FileNotFoundError:
        return []
    return [json.loads(line) for line in lines[:-1]]


def faults_of(events, printed, was_killed, status):
    faults = []
    if [event["sequence"] for event in events] != list(range(len(events))):
        faults.append("the events are out of order")
    ends = [event for event in events if "end" in event and "testId" in event]
    if len({event["testId"] for event in ends}) != len(ends):
        faults.append("a test ended twice")
    # The events come first, so that what was shown is kept.
    verdicts = sum(line.startswith("Verdict: ") for line in printed)
    if verdicts > len(ends):
        faults.append(f"{verdicts} verdicts were shown and {len(ends)} kept")
    if was_killed:
        return faults
    if not events and status in (3, 5):
        return faults  # there is nothing to run where the listing's worker was killed
    if not events or "end" not in events[-1] or "testId" in events[-1]:
        faults.append("the run has no end")
    if status not in (0, 3):
        faults.append(f"its status is {status}")
    begun = {event["testId"] for event in events if "test" in event}
    if begun != {event["testId"] for event in ends}:
        faults.append("a test has no end")
    return faults


def left_of(mark):
    until = time.monotonic() + PATIENCE
    while processes(mark) and time.monotonic() < until:
        time.sleep(0.02)
    return processes(mark)


def round_of(diags, installation, seed):
    """What was wrong in one round, and whether anything was there to be killed."""
    chance = random.Random(seed)
    target = chance.choice(TARGETS)
    mark = f"{os.getpid()}.{seed}"
    # What the worker leaves behind has to go as well.
    environment = dict(os.environ, **{MARK: mark, "SICKNESS": chance.choice(SICKNESSES)})
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "events")
        command = subprocess.Popen(
            [diags, "--root", installation, "--no-cache", "run", "--all", "--repeat", "4", "--no-history",
             "--timeout", "1s", "--grace", "0s", "--events", path],
            env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
        time.sleep(chance.uniform(0, 0.35))
        victims = kill(target, command.pid, mark)
        try:
            printed = command.communicate(timeout=30)[0].splitlines()
        except subprocess.TimeoutExpired:
            command.kill()
            return [f"seed {seed}, {target}: it does not end"], True
        faults = faults_of(events_in(path), printed, command.pid in victims, command.returncode)
    left = left_of(mark)
    for one in left:
        os.kill(one, signal.SIGKILL)
    if left:
        faults.append(f"{len(left)} processes are left")
    return [f"seed {seed}, {'+'.join(target)}: {fault}" for fault in faults], bool(victims)


def has_daemon(command, mark):
    """Whether a provider has started something that left the session of its worker."""
    sessions = set()
    for one in processes(mark):
        try:
            sessions.add(os.getsid(one))
        except ProcessLookupError:
            continue
    return len(sessions - {os.getsid(command)}) > 1


def together(diags, installation, depth):
    """What is left where the command and one of its worker's keepers die in the same moment, and a daemon is
    there: the direct one, or the one below that."""
    mark = f"{os.getpid()}.together.{depth}"
    environment = dict(os.environ, **{MARK: mark, "SICKNESS": "starting:keptdaemon"})
    command = subprocess.Popen([diags, "--root", installation, "--no-cache", "run", "--all", "--no-history",
                                "--timeout", "60s"], env=environment, stdout=subprocess.DEVNULL)
    until = time.monotonic() + 30
    while not has_daemon(command.pid, mark) and time.monotonic() < until:
        time.sleep(0.02)
    faults = [] if has_daemon(command.pid, mark) else ["no daemon was started"]
    kill(("command", depth), command.pid, mark)
    command.wait()
    left = left_of(mark)
    for one in left:
        os.kill(one, signal.SIGKILL)
    if left:
        faults.append(f"{len(left)} processes are left")
    return [f"command and {depth} together: {fault}" for fault in faults]


def main():
    diags, installation, times = sys.argv[1], sys.argv[2], int(sys.argv[3])
    at_a_time = int(sys.argv[4]) if len(sys.argv) > 4 else 4
    first = int(sys.argv[5]) if len(sys.argv) > 5 else random.randrange(1_000_000_000)
    count = hits = 0
    for fault in together(diags, installation, "keeper") + together(diags, installation, "second"):
        count += 1
        print(fault, flush=True)
    with concurrent.futures.ThreadPoolExecutor(at_a_time) as pool:
        rounds = [pool.submit(round_of, diags, installation, first + i) for i in range(times)]
        for one in concurrent.futures.as_completed(rounds):
            faults, was_hit = one.result()
            hits += was_hit
            count += len(faults)
            for fault in faults:
                print(fault, flush=True)
    print(f"{times} rounds from seed {first}, {hits} of them with a kill: {count} faults")
    return 1 if count or not hits else 0


if __name__ == "__main__":
    sys.exit(main())
