"""A plan being carried out."""

from __future__ import annotations

import asyncio
import json
import time
from collections import deque
from contextlib import suppress
from ctypes import byref, sizeof
from types import TracebackType
from typing import Any, AsyncIterator, Deque, Dict, Iterator, Optional, Type

from ._handle import Handle
from ._library import OK, Library, ResultFields
from .errors import ClosedError, FailedError, WaitTimeoutError
from .events import Event, event_of_line
from .values import Result

# The longest time in the library: an interrupt is heard, and a close begins, after no more than it.
_POLL_MILLISECONDS = 100
# What a test gets to end in good order, as plans have it unless they say otherwise, and some more.
_GRACE_SECONDS = 15.0


def _result_of(fields: ResultFields) -> Result:
    names = [name for name, _ in ResultFields._fields_[1:-2]]
    return Result(was_cancelled=bool(fields.was_cancelled), time_was_up=bool(fields.time_was_up),
                  **{str(name): getattr(fields, name) for name in names})


class Run:
    """A run, which goes on by itself; its events wait to be taken.

    Made by `Diagnostics.run()`. Every method may be called from any thread, and `cancel()` and
    `close()` from a signal handler, too. Of several who iterate each event comes to one.

    Left by an exception, Ctrl-C included, a `with` block ends the tests in good order; a second
    Ctrl-C ends them at once. Nothing that the run started outlives it.
    """

    def __init__(self, handle: Handle) -> None:
        self._handle = handle
        self._lines: Deque[bytes] = deque()

    # Events

    def __iter__(self) -> Iterator[Event]:
        """The events, to the end of the run."""
        return map(event_of_line, self.lines())

    def dicts(self) -> Iterator[Dict[str, Any]]:
        """The events as they came, by docs/events.schema.json."""
        return map(json.loads, self.lines())

    def lines(self) -> Iterator[bytes]:
        """The events as lines of JSON, without their line feeds."""
        while True:
            try:
                yield self._lines.popleft()
            except IndexError:
                if not self._fetch():
                    return

    async def __aiter__(self) -> AsyncIterator[Event]:
        """The events; the loop goes on meanwhile. An event is lost to no task that is cancelled."""
        loop = asyncio.get_running_loop()
        while True:
            try:
                line = self._lines.popleft()
            except IndexError:
                if not await loop.run_in_executor(None, self._fetch):
                    return
            else:
                yield event_of_line(line)

    def _fetch(self) -> bool:
        """Waits a short time for events. False when there are none any more."""
        # Whether another thread has fetched the last ones is known behind the end alone.
        has_ended = self._handle.use(self._fetch_from) is None
        return not has_ended or bool(self._lines)

    def _fetch_from(self, pointer: Any) -> Optional[bytes]:
        events = self._handle.library.bytes_of_events(pointer, _POLL_MILLISECONDS)
        if events:
            self._lines.extend(events[:-1].split(b"\n"))
        return events

    # The end

    def wait(self, timeout: Optional[float] = None) -> Result:
        """What came of it, once it is over. Raises `WaitTimeoutError` where it is not over by then.

        Of events that nobody takes 64 MiB may wait; then the run stands still, so take them first
        where there may be so many.
        """
        end = None if timeout is None else time.monotonic() + timeout
        while True:
            left = _POLL_MILLISECONDS / 1000 if end is None else max(0.0, end - time.monotonic())
            result = self._poll_end(min(left, _POLL_MILLISECONDS / 1000))
            if result is not None:
                return result
            if end is not None and time.monotonic() >= end:
                raise WaitTimeoutError("the run is not over")

    async def wait_async(self, timeout: Optional[float] = None) -> Result:
        """`wait()`; the loop goes on meanwhile."""
        end = None if timeout is None else time.monotonic() + timeout
        loop = asyncio.get_running_loop()
        while True:
            with suppress(WaitTimeoutError):
                left = _POLL_MILLISECONDS / 1000
                if end is not None:
                    left = min(left, max(0.0, end - time.monotonic()))
                return await loop.run_in_executor(None, self.wait, left)
            if end is not None and time.monotonic() >= end:
                raise WaitTimeoutError("the run is not over")

    def _poll_end(self, seconds: float) -> Optional[Result]:
        fields = ResultFields(size=sizeof(ResultFields))
        code = self._handle.use(lambda pointer: self._handle.library.call(
            "run_wait", pointer, int(seconds * 1000), byref(fields)))
        return _result_of(fields) if code == OK else None

    def cancel(self) -> None:
        """Ends the running test in good order and begins no other; called again, ends it at once.
        The events still tell of all of it."""
        self._handle.call("run_cancel")

    def close(self) -> None:
        """Ends the run at once if it is not over, and gives it back. It may be called again.

        An iteration in another thread ends with `ClosedError`.
        """
        with suppress(ClosedError):  # at once, also where another thread is in a call
            self.cancel()
            self.cancel()
        self._handle.close()
        self._lines.clear()

    @property
    def closed(self) -> bool:
        return self._handle.closed

    def _end(self, in_good_order: bool) -> None:
        try:
            if in_good_order:
                with suppress(ClosedError, FailedError, WaitTimeoutError):
                    self.cancel()
                    self.wait(_GRACE_SECONDS)
        finally:
            self.close()

    def __enter__(self) -> "Run":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self._end(in_good_order=kind is not None)

    async def __aenter__(self) -> "Run":
        return self

    async def __aexit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                        trace: Optional[TracebackType]) -> None:
        # Its own thread: the loop goes on, and nothing of the run is left when this returns.
        loop = asyncio.get_running_loop()
        await asyncio.shield(loop.run_in_executor(None, self._end, kind is not None))


def started(library: Library, session: Any, plan: Any) -> Run:
    return Run(Handle(library, "run", "run_close", "run_start", session, plan, None, None))
