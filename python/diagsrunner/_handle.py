"""Who owns an object of the library, and when it is given back."""

from __future__ import annotations

import os
import weakref
from ctypes import byref, c_void_p
from typing import Any, Callable, Optional

from ._library import Library
from .errors import ClosedError


def _give_back(close: Callable[..., Any], pointer: c_void_p, process: int) -> None:
    # In a process that was forked off the object is a copy whose threads are not there.
    if pointer.value and os.getpid() == process:
        value, pointer.value = pointer.value, None
        close(value)


class _Owned:
    """The object itself. It goes with its last user: a call in another thread, or the handle."""

    def __init__(self, close: Callable[..., Any]) -> None:
        self.pointer = c_void_p()
        self.process = os.getpid()
        # Before there is anything to give back: no interrupt comes between.
        self._goes = weakref.finalize(self, _give_back, close, self.pointer, self.process)


class Handle:
    """An object of the library that may be closed at any time, from any thread.

    No lock is held while the library works, and none is needed to close: whoever is in a call has
    its own reference, and the last one gives the object back. So a signal handler may close, too.
    """

    def __init__(self, library: Library, what: str, close: str, make: str, *arguments: Any) -> None:
        self.library = library
        self._what = what
        self._owned: Optional[_Owned] = _Owned(library.function(close))
        library.call(make, *arguments, byref(self._owned.pointer))

    def _borrow(self) -> _Owned:
        owned = self._owned
        if owned is None:
            raise ClosedError(f"the {self._what} is closed")
        if owned.process != os.getpid():
            raise ClosedError(f"the {self._what} belongs to another process, which forked this one")
        return owned

    def use(self, call: Callable[..., Any], *arguments: Any) -> Any:
        """`call` with the object in front of the arguments. Raises `ClosedError`."""
        owned = self._borrow()
        try:
            return call(owned.pointer, *arguments)
        finally:
            del owned  # a traceback must not keep it

    def call(self, name: str, *arguments: Any) -> int:
        return int(self.use(lambda pointer: self.library.call(name, pointer, *arguments)))

    def text(self, name: str) -> str:
        return str(self.use(lambda pointer: self.library.text(name, pointer)))

    @property
    def closed(self) -> bool:
        return self._owned is None

    def close(self) -> None:
        self._owned = None
