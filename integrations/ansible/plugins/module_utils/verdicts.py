"""What a stream of events says of a run, as values that a playbook can ask for."""
from __future__ import annotations

import json
import unicodedata
from typing import Any, Iterable

OUTCOMES = ("passed", "warned", "failed", "aborted", "incomplete", "broken", "skipped")
UNFINISHED = ("aborted", "incomplete", "broken")
MOST_TESTS = 1000
MOST_FINDINGS = 50
LONGEST = 2000
# How diags ends: with verdicts, whatever they are, or without any.
PASSED, FAILED, USAGE, NO_VERDICT, NOTHING, UNUSABLE, ENDED_BY_USER = 0, 1, 2, 3, 4, 5, 130


def visible(text: str) -> str:
    """The text in one line in which nothing acts on a terminal, and not too long."""
    if len(text) > LONGEST:
        text = text[:LONGEST] + "..."
    return "".join(spelt(letter) for letter in text)


def spelt(letter: str) -> str:
    code = ord(letter)
    # Controls, marks of direction and other formats, lone surrogates, separators of lines.
    if unicodedata.category(letter) not in ("Cc", "Cf", "Cs", "Zl", "Zp"):
        return letter
    return f"\\x{code:02x}" if code < 0x80 else f"\\u{code:04x}" if code < 0x10000 else f"\\U{code:08x}"


def text_of(value: Any) -> str:
    return visible(value) if isinstance(value, str) else ""


class Verdicts:
    """Takes the lines of a stream one by one; what is no event is counted and passed over."""

    def __init__(self) -> None:
        self.tests: list[dict[str, Any]] = []
        self.counts = dict.fromkeys(OUTCOMES, 0)
        self.outcome = ""
        self.planned = 0
        self.bad_lines = 0
        self.left_out = 0
        self._open: dict[int, dict[str, Any]] = {}

    def take_line(self, line: str) -> None:
        try:
            event = json.loads(line)
            if not isinstance(event, dict):
                raise ValueError("no object")
            self.take(event)
        except (ValueError, TypeError, AttributeError, RecursionError):
            self.bad_lines += 1

    def take(self, event: dict[str, Any]) -> None:
        number = event.get("testId", 0)
        if "run" in event:
            self.planned = int(event["run"].get("tests", 0))
        elif "test" in event:
            self._open[number] = started(event["test"])
        elif "end" in event and number == 0:
            self.outcome = known_outcome(event["end"])
        elif "end" in event:
            self._end(self._open.pop(number, started({})), event["end"])
        elif number in self._open:
            add_to(self._open[number], event)

    def _end(self, test: dict[str, Any], end: dict[str, Any]) -> None:
        test["outcome"] = known_outcome(end)
        test["text"] = text_of(end.get("text"))
        test["remark"] = text_of(end.get("remark"))
        test["seconds"] = float(end.get("seconds", 0))
        self.counts[test["outcome"]] += 1
        if len(self.tests) < MOST_TESTS:
            self.tests.append(test)
        else:
            self.left_out += 1

    def close(self) -> None:
        """The stream is over: tests that are open broke off."""
        for number in sorted(self._open):
            self._end(self._open[number], {"outcome": "broken", "text": "the run broke off"})
        self._open.clear()

    def named(self, outcomes: Iterable[str]) -> list[str]:
        wanted = set(outcomes)
        return [test["name"] for test in self.tests if test["outcome"] in wanted]


def known_outcome(end: dict[str, Any]) -> str:
    outcome = end.get("outcome")
    if outcome not in OUTCOMES:
        raise ValueError("no outcome")
    return str(outcome)


def started(test: dict[str, Any]) -> dict[str, Any]:
    return {
        "name": text_of(test.get("name")), "service": text_of(test.get("service")),
        "device": text_of(test.get("device")), "element": text_of(test.get("element")),
        "repetition": int(test.get("repetition", 1)), "findings": [], "errors": [],
    }


def add_to(test: dict[str, Any], event: dict[str, Any]) -> None:
    if "diagnosis" in event and len(test["findings"]) < MOST_FINDINGS:
        finding = event["diagnosis"]
        test["findings"].append({
            "verdict": text_of(finding.get("verdict")), "part": text_of(finding.get("part")),
            "text": text_of(finding.get("text")),
            "actions": [text_of(each) for each in finding.get("actions", [])[:MOST_FINDINGS]]})
    elif "error" in event and len(test["errors"]) < MOST_FINDINGS:
        test["errors"].append(text_of(event["error"].get("text")))


def read_verdicts(path: str) -> Verdicts:
    """Of a stream, however it ends; none where there is no file."""
    verdicts = Verdicts()
    try:
        with open(path, encoding="utf-8", errors="replace") as lines:
            for line in lines:
                verdicts.take_line(line)
    except FileNotFoundError:
        pass
    verdicts.close()
    return verdicts


def reason(verdict: dict[str, Any]) -> str:
    """Why a test failed or has no verdict, in a line: what it found, or what it ran into."""
    for finding in verdict["findings"]:
        if finding["verdict"] == "fail":
            part = f"{finding['part']}: " if finding["part"] else ""
            return f"{part}{finding['text']}"
    return (verdict["errors"] or [verdict["remark"] or verdict["text"]])[-1]


def summary(verdicts: Verdicts, outcomes: Iterable[str]) -> str:
    """The tests of these outcomes, each with its reason; the first ones of many."""
    wanted = set(outcomes)
    found = [test for test in verdicts.tests if test["outcome"] in wanted]
    lines = [f"{test['name']}: {test['outcome']} ({reason(test)})" for test in found[:5]]
    more = [f"and {len(found) - 5} more"] if len(found) > 5 else []
    return "; ".join(lines + more)


def failure(verdicts: Verdicts, status: int, fail_on: str) -> str:
    """Why the task fails by its policy, or nothing."""
    failed = verdicts.counts["failed"] > 0 or status == FAILED
    if fail_on != "never" and failed:
        return "hardware is faulty: " + summary(verdicts, ["failed"])
    if fail_on != "unfinished":
        return ""
    if any(verdicts.counts[outcome] for outcome in UNFINISHED):
        return "tests without a verdict: " + summary(verdicts, UNFINISHED)
    if status != PASSED:
        return f"the run did not come to verdicts on everything (status {status})"
    return ""
