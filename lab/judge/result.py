"""One line of the lab's results: a trial, and what it came to. They are kept as lines of JSON."""

import dataclasses
import json

# What a trial comes to. The first six are a trial's own; a machine that fell says nothing of the test.
FOUND = "found"
ENDED = "ended"            # the fault ended the test's process, which is told, and with which test
MISSED = "missed"
FALSE_ALARM = "false alarm"
SILENT = "silent"          # a healthy machine, and nothing was said
NO_EFFECT = "no effect"    # the fault never changed a thing that the test could see
OUT_OF_REACH = "out of reach"  # the fault lay where the test was not
FELL = "machine fell"
NO_VERDICT = "no verdict"

HEALTHY = "none"


def is_healthy(fault):
    return fault == HEALTHY or fault.startswith("healthy")


@dataclasses.dataclass
class Result:
    fault: str
    test: str
    seed: int
    came_to: str
    placed: bool = False
    seconds: float = 0.0
    detail: str = ""

    def line(self):
        return json.dumps(dataclasses.asdict(self), sort_keys=True)


def read(lines):
    return [Result(**json.loads(line)) for line in lines if line.strip()]


def judge(verdict, healthy, acted, reached):
    """The rule for all trials: `acted`, the fault changed something; `reached`, where the test was."""
    if healthy:
        if verdict.alarm():
            return FALSE_ALARM
        return SILENT if verdict.silent() else NO_VERDICT
    if not reached:
        return FALSE_ALARM if verdict.alarm() else OUT_OF_REACH
    if verdict.alarm():
        return FOUND
    if verdict.ended():
        return ENDED
    if not verdict.silent():
        return NO_VERDICT
    return MISSED if acted else NO_EFFECT
