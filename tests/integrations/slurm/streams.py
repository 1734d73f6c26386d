"""streams.py DIR NODE...: holds that no event of a node's run is missing.

Each node's stream of events has every number once, from the first to the end of the run, and all
nodes ran the same tests.
"""

import json
import pathlib
import sys
from typing import Any


def events_of(folder: pathlib.Path, node: str) -> list[dict[str, Any]]:
    text = (folder / f"{node}.events").read_text(encoding="utf-8")
    return [json.loads(line) for line in text.splitlines()]


def complaint_about(events: list[dict[str, Any]]) -> str:
    if [event["sequence"] for event in events] != list(range(len(events))):
        return "a number is missing, or comes twice"
    if not events or "run" not in events[0] or "end" not in events[-1]:
        return "the run's start or its end is missing"
    begun = [event["testId"] for event in events if "test" in event]
    ended = [event["testId"] for event in events if "end" in event and "testId" in event]
    if sorted(begun) != sorted(ended):
        return "a test has no end"
    return ""


def tests_of(events: list[dict[str, Any]]) -> list[str]:
    return sorted(event["test"]["name"] for event in events if "test" in event)


def main(folder: pathlib.Path, nodes: list[str]) -> int:
    broken = 0
    tests: dict[str, list[str]] = {}
    for node in nodes:
        events = events_of(folder, node)
        tests[node] = tests_of(events)
        complaint = complaint_about(events)
        if complaint:
            print(f"{node}: {complaint}", file=sys.stderr)
            broken = 1
    if len({tuple(names) for names in tests.values()}) != 1 or not tests[nodes[0]]:
        print(f"the nodes ran different tests: {tests}", file=sys.stderr)
        broken = 1
    return broken


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2:]))
