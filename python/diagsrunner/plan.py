"""Which tests run, and how."""

from __future__ import annotations

from ctypes import c_char_p
from types import TracebackType
from typing import Any, Callable, Iterable, Optional, Sequence, Tuple, Type, Union

from ._handle import Handle
from ._library import Library, bytes_of
from ._patience import patiently
from .errors import ArgumentError
from .values import PlanList, Test, plan_list_of

TestName = Union[str, Test]


def names_of(tests: Union[TestName, Iterable[TestName]]) -> Sequence[bytes]:
    """Identifiers, services, devices or patterns, for the library."""
    given = [tests] if isinstance(tests, (str, Test)) else list(tests)
    return [bytes_of(one.identifier if isinstance(one, Test) else one, "a test's name")
            for one in given]


def array_of(names: Sequence[bytes]) -> Tuple[Any, int]:
    return (c_char_p * len(names))(*names), len(names)


class Plan:
    """Which tests run, and how: made by `Diagnostics.plan()`, and never changed."""

    def __init__(self, library: Library, interrupt: Callable[[], None], make: str,
                 *arguments: Any) -> None:
        self._interrupt = interrupt
        self._handle = Handle(library, "plan", "plan_close", make, *arguments)

    def preview(self) -> str:
        """What it would run and how long it takes, in lines for people."""
        return patiently(lambda: self._handle.text("plan_preview"), self._interrupt)

    def list(self) -> PlanList:
        """Which tests it runs on this machine, and which it passes over."""
        return plan_list_of(patiently(lambda: self._handle.text("plan_list"), self._interrupt))

    def without(self, tests: Union[TestName, Iterable[TestName]]) -> "Plan":
        """The same plan without these tests; a name that none of its tests has is an error when
        the plan is listed or run."""
        names = names_of(tests)
        if not names:
            raise ArgumentError("no test is named")
        made: Plan = self._handle.use(
            lambda pointer: Plan(self._handle.library, self._interrupt, "plan_without", pointer,
                                 *array_of(names)))
        return made

    def use(self, call: Any) -> Any:
        return self._handle.use(call)

    def close(self) -> None:
        """A run that began with it goes on."""
        self._handle.close()

    def __enter__(self) -> "Plan":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()
