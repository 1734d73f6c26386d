#!/usr/bin/python3
"""The lab of faulty machines: breaks machines from outside, and says what the installed product finds.

run.py --build BUILD --work FOLDER [--seed N] [--at-a-time N] [--only TEXT] [--without TEXT] [--each-kind]
       [--document FILE [--part NAME]] sample|N

`sample` makes some trials that are certain to come out well, as long as its minutes last; N makes every trial N
times, or, with --each-kind, each kind of fault, whichever test it is for, and ten times as many healthy machines.
Ends with 1 where a healthy machine was accused, a fault was placed wrongly, or one was missed: in the sample twice
in the same place, else more than once in a hundred times.
"""

import argparse
import math
import os
import signal
import sys
import time

sys.path[0] = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")

from lab.image.kernel import KernelError  # noqa: E402
from lab.judge import result, table  # noqa: E402
from lab.workshop import Lab  # noqa: E402
from lab.trials import series  # noqa: E402

SAMPLE_SECONDS = 270  # no trial begins later: with the last one's end, less than six minutes
SAMPLE_AT_A_TIME = 4  # most of a trial is waiting


def options():
    parser = argparse.ArgumentParser(prog="lab", description="breaks machines, and says what is found")
    parser.add_argument("rounds", metavar="sample|N", help="for some minutes, or every trial N times")
    parser.add_argument("--build", required=True, metavar="FOLDER", help="where the product was built")
    parser.add_argument("--work", required=True, metavar="FOLDER", help="all that the lab writes is in it")
    parser.add_argument("--seed", type=int, default=1, help="of the first round; the next ones follow it")
    parser.add_argument("--at-a-time", type=int, metavar="N", help="machines at a time")
    parser.add_argument("--only", action="append", metavar="TEXT",
                        help="trials with this in \"FAULT: TEST\", or with another one that is given so")
    parser.add_argument("--without", default="", metavar="TEXT", help="no trials with this in \"FAULT: TEST\"")
    parser.add_argument("--each-kind", action="store_true",
                        help="N times each kind of fault in all its tests together, and 10 N healthy machines")
    parser.add_argument("--exercisers", action="store_true", help="also memtester and stressapptest")
    parser.add_argument("--document", metavar="FILE", help="writes the table of all results into it")
    parser.add_argument("--part", default="", metavar="NAME", help="the document's table of that name")
    given = parser.parse_args()
    if given.rounds != "sample" and not (given.rounds.isdigit() and int(given.rounds) > 0):
        parser.error(f"neither \"sample\" nor a number of rounds: \"{given.rounds}\"")
    if given.rounds == "sample" and given.each_kind:
        parser.error("--each-kind wants a number, not \"sample\"")
    if given.at_a_time is None:
        given.at_a_time = SAMPLE_AT_A_TIME if given.rounds == "sample" else 1
    if given.at_a_time < 1:
        parser.error("at least one machine at a time")
    return given


def _of_product(results):
    """Those that the product answers for; what the public exercisers find is told, and no more."""
    return [one for one in results if one.test not in series.EXERCISERS]


def accusations(results):
    """Healthy machines that were accused or fell, and faults that were found at the wrong place."""
    complaints = []
    for one in _of_product(results):
        if result.is_healthy(one.fault) and one.came_to != result.SILENT:
            complaints.append(f"{one.test}, healthy machine, seed {one.seed}: {one.came_to}")
        elif one.came_to == result.FALSE_ALARM:
            complaints.append(f"{one.test}, {one.fault} out of its reach, seed {one.seed}: false alarm")
        elif one.came_to == result.FOUND and not one.placed:
            complaints.append(f"{one.test}, {one.fault}, seed {one.seed}: found, but not rightly placed")
    return complaints


def faults_of(results):
    """What the lab complains of: accusations, and kinds that are missed too often."""
    complaints = accusations(results)
    groups = {}
    for one in _of_product(results):
        groups.setdefault((one.fault, one.test), []).append(one.came_to)
    for (fault, test), all_of_it in sorted(groups.items()):
        missed, found = all_of_it.count(result.MISSED), all_of_it.count(result.FOUND)
        if missed > math.ceil((missed + found) / 100):
            complaints.append(f"{test}, {fault}: missed {missed} of {missed + found}")
    return complaints


def faults_of_sample(results):
    """The same of the sample, of which each fault can be found. One that was not was caused once more: the lab
    itself may have been late, on a machine with much else to do, but hardly twice."""
    complaints = accusations(results)
    missed = {}
    for one in results:
        if not result.is_healthy(one.fault) and one.came_to != result.FOUND:
            missed.setdefault((one.fault, one.test, one.seed), []).append(one.came_to)
    return complaints + [f"{test}, {fault}, seed {seed}: {', then '.join(times)}"
                         for (fault, test, seed), times in missed.items() if len(times) > 1]


def show(one):
    placed = ", rightly placed" if one.placed else ""
    print(f"{one.fault}: {one.test}, seed {one.seed}: {one.came_to}{placed} ({one.seconds:.0f} s)", flush=True)


def write_document(given, results):
    with open(given.document, encoding="utf-8") as file:
        document = file.read()
    wanted = [one for one in results if is_wanted(given, f"{one.fault}: {one.test}")]
    with open(given.document, "w", encoding="utf-8") as file:
        file.write(table.put_into(document, wanted, given.part))


def keep(path, one):
    with open(path, "a", encoding="utf-8") as file:
        file.write(one.line() + "\n")


class Series:
    """The results of some trials, shown and kept as they come."""

    def __init__(self, path, at_a_time):
        self._path = path
        self._at_a_time = at_a_time
        self.results = []

    def make(self, trials, go_on=lambda: True):
        for one in series.run(trials, self._at_a_time, go_on):
            show(one)
            keep(self._path, one)
            self.results.append(one)


def make_sample(done, wanted, seed, until):
    trials = series.sample(wanted, seed)
    done.make(trials, lambda: time.monotonic() < until)
    if not done.results:
        sys.exit("lab: there was no time for a single trial")
    again = {(one.fault, one.test, one.seed) for one in done.results
             if not result.is_healthy(one.fault) and one.came_to != result.FOUND}
    done.make([one for one in trials if (one[0].fault, one[0].test, one[1]) in again])


def is_wanted(given, name):
    return any(text in name for text in given.only or [""]) and not (given.without and given.without in name)


def run(given):
    began = time.monotonic()
    lab = Lab(given.build, given.work)
    print(f"The lab is ready: {time.monotonic() - began:.0f} s", flush=True)
    wanted = [one for one in series.every(lab, given.exercisers) if is_wanted(given, f"{one.fault}: {one.test}")]
    if not wanted:
        sys.exit("lab: no trial is left of those that are wanted")
    kept = os.path.join(given.work, f"results-{lab.fingerprint}.jsonl")
    done = Series(kept, given.at_a_time)
    if given.rounds == "sample":
        make_sample(done, wanted, given.seed, began + SAMPLE_SECONDS)
    else:
        make = series.of_each_kind if given.each_kind else series.in_turn
        done.make(make(wanted, given.seed, int(given.rounds)))
    return done.results, kept


def main():
    given = options()
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda *_: os._exit(130))  # what was started dies with this process
    sample = given.rounds == "sample"
    try:
        results, kept = run(given)
    except KernelError as error:
        print(f"lab: {'SKIPPED, NOTHING WAS TRIED: ' if sample else ''}there is no kernel for the machines: {error}",
              file=sys.stderr)
        return 0 if sample else 1
    print("\n" + table.text(results))
    if given.document:
        with open(kept, encoding="utf-8") as file:
            write_document(given, result.read(file))
    complaints = faults_of_sample(results) if sample else faults_of(results)
    for complaint in complaints:
        print(f"lab: {complaint}", file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
