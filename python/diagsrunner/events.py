"""What happens in a run, event by event: docs/events.md says what each kind has."""

from __future__ import annotations

import json
from datetime import datetime
from typing import Any, Dict, Mapping, NamedTuple, Optional

KINDS = frozenset(("run", "test", "step", "progress", "output", "log", "message", "measurement",
                   "diagnosis", "error", "end"))


class Event(NamedTuple):
    """One event.

    >>> event = event_of(json.loads('{"sequence":2,"time":"2026-11-21T20:15:02.000000Z",'
    ...                             '"source":"worker","testId":1,"progress":{"percent":40.0}}'))
    >>> event.kind, event.body["percent"], event.test_id
    ('progress', 40.0, 1)
    >>> event.moment.year
    2026
    """

    sequence: int  #: 0, 1, 2 and so on
    time: str  #: ISO 8601, UTC
    source: str  #: engine, worker or provider
    test_id: Optional[int]  #: which run of a test; None: the run as a whole
    kind: str  #: one of `KINDS`; empty where a later library says something new
    body: Mapping[str, Any]  #: what the kind has
    raw: Mapping[str, Any]  #: all of it, as it came

    @property
    def moment(self) -> datetime:
        return datetime.fromisoformat(self.time.replace("Z", "+00:00"))


def _kind_of(given: Dict[str, Any]) -> str:
    last = next(reversed(given))
    if last in KINDS:
        return last
    return next((name for name in given if name in KINDS), "")


def event_of(given: Dict[str, Any]) -> Event:
    kind = _kind_of(given)
    return Event(given["sequence"], given["time"], given["source"], given.get("testId"), kind,
                 given.get(kind) or {}, given)


def event_of_line(line: bytes) -> Event:
    return event_of(json.loads(line))
