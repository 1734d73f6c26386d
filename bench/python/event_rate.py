#!/usr/bin/env -S python3 -B
"""Half a million lines of a provider, through worker, engine and package to a loop in Python: how many
events a second of the time that the loop's thread was at work, and by the clock."""

import os
import sys
import time
from pathlib import Path

BUILD = Path(__file__).resolve().parent.parent
GOAL = 50_000


def main() -> int:
    os.environ["SICKNESS"] = "polling:chatter"
    from diagsrunner import Diagnostics

    events = 0
    with Diagnostics(BUILD / "bench-chatty-installation",
                     library=BUILD / "lib/libdiags.so.1") as diagnostics:
        with diagnostics.run("SICK Test") as run:
            begin, clock = time.thread_time(), time.perf_counter()
            for event in run:
                events += 1 if event.kind else 0
            taken, clock = time.thread_time() - begin, time.perf_counter() - clock
    rate = events / taken
    print(f"{events} events: {rate:.0f} events/s (goal: at least {GOAL})"
          f"{'' if rate >= GOAL else '  MISSED'}, by the clock {events / clock:.0f}")
    return 0 if rate >= GOAL else 1


sys.path.insert(0, str(Path(os.environ.get("DIAGS_PYTHON", BUILD.parent / "python"))))
sys.exit(main())
