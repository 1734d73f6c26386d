#!/usr/bin/python3
"""The lab of faulty machines: breaks machines from outside, and says what the installed product finds.

run.py --build BUILD --work FOLDER [--seed N] [--at-a-time N] [--only TEXT] [--document FILE] sample|N

`sample` makes trials until its minutes are over; N makes every trial N times. Ends with 1 where a healthy
machine was accused, or a fault was missed more than once in a hundred times.
"""

import argparse
import math
import os
import signal
import sys
import time

sys.path[0] = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")

from lab.judge import result, table  # noqa: E402
from lab.workshop import Lab  # noqa: E402
from lab.trials import series  # noqa: E402

SAMPLE_SECONDS = 240  # with the last trial's end and the start of the machine: less than six minutes


def options():
    parser = argparse.ArgumentParser(prog="lab", description="breaks machines, and says what is found")
    parser.add_argument("rounds", metavar="sample|N", help="for some minutes, or every trial N times")
    parser.add_argument("--build", required=True, metavar="FOLDER", help="where the product was built")
    parser.add_argument("--work", required=True, metavar="FOLDER", help="all that the lab writes is in it")
    parser.add_argument("--seed", type=int, default=1, help="of the first round; the next ones follow it")
    parser.add_argument("--at-a-time", type=int, default=1, metavar="N", help="machines at a time")
    parser.add_argument("--only", default="", metavar="TEXT", help="trials with this in \"FAULT: TEST\"")
    parser.add_argument("--exercisers", action="store_true", help="also memtester and stressapptest")
    parser.add_argument("--document", metavar="FILE", help="writes the table of all results into it")
    given = parser.parse_args()
    if given.rounds != "sample" and not (given.rounds.isdigit() and int(given.rounds) > 0):
        parser.error(f"neither \"sample\" nor a number of rounds: \"{given.rounds}\"")
    if given.at_a_time < 1:
        parser.error("at least one machine at a time")
    return given


def faults_of(results):
    """What the lab complains of: healthy machines that were accused or fell, kinds that are missed too often."""
    complaints = []
    for one in results:
        if result.is_healthy(one.fault) and one.came_to != result.SILENT:
            complaints.append(f"{one.test}, healthy machine, seed {one.seed}: {one.came_to}")
        elif one.came_to == result.FALSE_ALARM:
            complaints.append(f"{one.test}, {one.fault} out of its reach, seed {one.seed}: false alarm")
    groups = {}
    for one in results:
        groups.setdefault((one.fault, one.test), []).append(one.came_to)
    for (fault, test), all_of_it in sorted(groups.items()):
        missed, found = all_of_it.count(result.MISSED), all_of_it.count(result.FOUND)
        if missed > math.ceil((missed + found) / 100):
            complaints.append(f"{test}, {fault}: missed {missed} of {missed + found}")
    return complaints


def show(one):
    placed = ", rightly placed" if one.placed else ""
    print(f"{one.fault}: {one.test}, seed {one.seed}: {one.came_to}{placed} ({one.seconds:.0f} s)", flush=True)


def write_document(path, results):
    with open(path, encoding="utf-8") as file:
        document = file.read()
    with open(path, "w", encoding="utf-8") as file:
        file.write(table.put_into(document, results))


def keep(path, one):
    with open(path, "a", encoding="utf-8") as file:
        file.write(one.line() + "\n")


def run(given):
    began = time.monotonic()
    lab = Lab(given.build, given.work)
    print(f"The lab is ready: {time.monotonic() - began:.0f} s", flush=True)
    wanted = [one for one in series.every(lab, given.exercisers)
              if given.only in f"{one.fault}: {one.test}"]
    if not wanted:
        sys.exit(f"lab: no trial has \"{given.only}\" in its name")
    sample = given.rounds == "sample"
    trials = series.in_turn(wanted, given.seed, None if sample else int(given.rounds))
    until = time.monotonic() + SAMPLE_SECONDS
    kept = os.path.join(given.work, f"results-{lab.fingerprint}.jsonl")
    results = []
    for one in series.run(trials, given.at_a_time, lambda: not sample or time.monotonic() < until):
        show(one)
        keep(kept, one)
        results.append(one)
    return results, kept


def main():
    given = options()
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda *_: os._exit(130))  # what was started dies with this process
    results, kept = run(given)
    print("\n" + table.text(results))
    if given.document:
        with open(kept, encoding="utf-8") as file:
            write_document(given.document, result.read(file))
    complaints = faults_of(results)
    for complaint in complaints:
        print(f"lab: {complaint}", file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
