"""What a diagnostic's events come to, for whoever reads pytest's report."""

from __future__ import annotations

from typing import Any, Dict, Iterable, Iterator, List, Mapping, Tuple

import pytest

from .events import Event


class DiagnosticWarning(pytest.PytestWarning):
    """A diagnostic passed with a warning, or some may be missing."""


class DiagnosticFailure(Exception):
    """A diagnostic failed, or came to no verdict; its text is for the reader."""


# What a test without a verdict came to.
_NO_VERDICT = {
    "aborted": "no verdict: it was ended before it was through",
    "incomplete": "no verdict: it could not finish",
    "broken": "no verdict: the test itself broke",
    "": "no verdict: nothing was told of its end",
}


def visible(text: str) -> str:
    """Whatever acts on a terminal, escaped."""
    return "".join(one if one.isprintable() or one == "\n" else ascii(one)[1:-1] for one in text)


def _measured(body: Mapping[str, Any]) -> Tuple[str, str]:
    name = body["name"] + (f" of {body['part']}" if body.get("part") else "")
    value = body["value"]
    text = str(value).lower() if isinstance(value, bool) else str(value)
    return visible(name), visible(" ".join(filter(None, (text, body.get("unit")))))


def _lines_of(event: Event) -> Iterator[str]:
    body = event.body
    if event.kind in ("message", "diagnosis", "error"):
        word = body.get("severity") or body.get("verdict") or body.get("cause") or event.kind
        part = f"{body['part']}: " if body.get("part") else ""
        yield f"{word}: {part}{body['text']}"
        yield from (f"  recommended: {action}" for action in body.get("actions", ()))
    elif event.kind in ("output", "log"):
        yield body["text"]
    elif event.kind == "end" and event.test_id:
        yield from filter(None, (body.get("text"), body.get("remark"), body.get("record")))


class Story:
    """The events of one item's run, as they come."""

    def __init__(self) -> None:
        self.lines: List[str] = []
        self._ends: List[Mapping[str, Any]] = []
        self._told: List[str] = []
        self._measurements: List[Tuple[str, str]] = []

    def take(self, event: Event) -> None:
        lines = [visible(line) for line in _lines_of(event)]
        self.lines.extend(lines)
        if event.kind in ("message", "diagnosis", "error"):
            self._told.extend(lines)
        elif event.kind == "measurement":
            self._measurements.append(_measured(event.body))
        elif event.kind == "end" and event.test_id:
            self._ends.append(event.body)

    def properties(self) -> List[Tuple[str, object]]:
        """The measurements; pytest writes them into its reports."""
        return list(self._measurements)

    def warnings(self) -> Iterable[str]:
        if any(end["outcome"] == "warned" for end in self._ends):
            yield "\n".join(self._told or self._answers("warned"))

    def conclude(self) -> None:
        """Raises what is not passed, the worst of several repetitions."""
        outcomes = {end["outcome"] for end in self._ends} or {""}
        if "failed" in outcomes:
            raise DiagnosticFailure(self._text("failed", "the part failed"))
        for outcome, text in _NO_VERDICT.items():
            if outcome in outcomes:
                raise DiagnosticFailure(self._text(outcome, text))
        if outcomes == {"skipped"}:
            pytest.skip("\n".join(self._answers("skipped")))

    def _text(self, outcome: str, headline: str) -> str:
        return "\n".join([headline, *self._told, *self._answers(outcome)])

    def _answers(self, outcome: str) -> List[str]:
        found: Dict[str, None] = {}
        for end in self._ends:
            if end["outcome"] == outcome:
                found.update(dict.fromkeys(
                    visible(end[name]) for name in ("text", "remark", "record") if end.get(name)))
        return list(found)
