"""Calls that may take long, on the thread that signals are handled on."""

from __future__ import annotations

import threading
from contextlib import suppress
from typing import Callable, List, TypeVar

from .errors import ClosedError

Answer = TypeVar("Answer")

# An interrupt is heard after no more than this, also where it does not end a wait.
_POLL_SECONDS = 0.1


def patiently(call: Callable[[], Answer], interrupt: Callable[[], None]) -> Answer:
    """What `call` gives or raises.

    Python handles signals, and so Ctrl-C, between steps of its own on the main thread. There the
    call goes to another thread; what a handler raises meanwhile interrupts it, and goes on from
    here when it has come back.
    """
    if threading.current_thread() is not threading.main_thread():
        return call()
    answers: List[Answer] = []
    errors: List[BaseException] = []
    is_done = threading.Event()

    def work() -> None:
        try:
            answers.append(call())
        except BaseException as error:  # pylint: disable=broad-except
            errors.append(error)
        finally:
            is_done.set()

    threading.Thread(target=work, name="diagsrunner", daemon=True).start()
    try:
        while not is_done.wait(_POLL_SECONDS):
            pass
    except BaseException:
        with suppress(ClosedError):
            interrupt()
        is_done.wait()
        raise
    if errors:
        try:
            raise errors[0]
        finally:
            errors.clear()  # the error's own frames hold this one
    return answers.pop()
