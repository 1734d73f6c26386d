"""The hardware diagnostics of this machine.

    import diagsrunner

    with diagsrunner.Diagnostics() as diagnostics, diagnostics.run("DIAGS: Memory*") as run:
        for event in run:
            print(event.kind, event.body)
        print(run.wait())

Each test runs in a process of its own: whatever it does, this one goes on. No provider is loaded
into this process.
"""

from .diagnostics import Diagnostics
from .errors import (ArgumentError, BusyError, CallInterruptedError, ClosedError, DiagsError,
                     FailedError, LibraryError, NoMemoryError, NothingToRunError, PlanError,
                     UnusableError, WaitTimeoutError)
from .events import KINDS, Event
from .plan import Plan
from .run import Run
from .values import (Check, Finding, Listing, PlanList, PlannedTest, Provider, Providers, Result,
                     Setting, SkippedTest, Test, UnusableProvider)

__all__ = [
    "ArgumentError", "BusyError", "CallInterruptedError", "Check", "ClosedError", "Diagnostics",
    "DiagsError", "Event", "FailedError", "Finding", "KINDS", "LibraryError", "Listing",
    "NoMemoryError", "NothingToRunError", "Plan", "PlanError", "PlanList", "PlannedTest", "Provider",
    "Providers", "Result", "Run", "Setting", "SkippedTest", "Test", "UnusableError",
    "UnusableProvider", "WaitTimeoutError",
]
