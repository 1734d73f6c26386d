"""What can go wrong: one exception for each code of the C interface, with the library's text."""

from __future__ import annotations

from typing import Dict, Type


class DiagsError(Exception):
    """Anything that the library or this package refuses. `code` is the C interface's number.

    A test that fails, crashes or hangs is none: events and results tell of it.
    """

    code = 0

    def __init__(self, text: str) -> None:
        super().__init__(text)
        self.text = text


class ArgumentError(DiagsError, ValueError):
    """An argument makes no sense; the text says which one."""

    code = 1


class UnusableError(DiagsError):
    """The installation or its worker is missing, or cannot be asked."""

    code = 2


class PlanError(DiagsError):
    """The plan, or a name in it, is wrong: nothing has run."""

    code = 3


class NothingToRunError(DiagsError):
    """No test is left to run."""

    code = 4


class BusyError(DiagsError):
    """The session has a run already."""

    code = 5


class WaitTimeoutError(DiagsError, TimeoutError):
    """It was not over by then; ask again."""

    code = 6


class NoMemoryError(DiagsError, MemoryError):
    """There is no memory left."""

    code = 8


class FailedError(DiagsError):
    """Anything else; the text says what."""

    code = 9


class CallInterruptedError(DiagsError):
    """`Diagnostics.interrupt()` ended the call."""

    code = 10


class ClosedError(DiagsError, ValueError):
    """It was closed, or belongs to the process that this one was forked from."""


class LibraryError(DiagsError, ImportError):
    """There is no library, or one that is too old, or one that somebody else could have put there."""


_BY_CODE: Dict[int, Type[DiagsError]] = {
    each.code: each
    for each in (ArgumentError, UnusableError, PlanError, NothingToRunError, BusyError,
                 WaitTimeoutError, NoMemoryError, FailedError, CallInterruptedError)
}


def error_of(code: int, text: str) -> DiagsError:
    """The exception for a code; one that a later library has is a `DiagsError` with its number."""
    error = _BY_CODE.get(code, DiagsError)(text)
    error.code = code
    return error
