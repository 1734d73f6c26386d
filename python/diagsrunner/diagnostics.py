"""An installation of diagnostics."""

from __future__ import annotations

import os
from ctypes import byref, sizeof
from types import TracebackType
from typing import Any, Iterable, Optional, Type, Union

from ._handle import Handle
from ._library import Options, StrPath, bytes_of, bytes_of_path, library_at
from ._patience import patiently
from .errors import ArgumentError
from .plan import Plan, TestName, array_of, names_of
from .run import Run, started
from .values import (Check, Listing, Providers, check_of, listing_of, providers_of)


def _number(value: float, name: str) -> float:
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise TypeError(f"{name} has to be a number, not {type(value).__name__}")
    return float(value)


class Diagnostics:
    """An installation, opened. Nothing of it is loaded into this process, then or later: worker
    processes ask it and run its tests.

    >>> with Diagnostics() as diagnostics:
    ...     memory = [test for test in diagnostics.list() if test.device == "mem0"]
    >>> memory[0].service
    'DIAGS: Memory Data Bus Walking 1s'

    Its tests run in the order of a plan, and tell what they do by events:

    >>> with Diagnostics() as diagnostics, diagnostics.run("DIAGS: Processor Status") as run:
    ...     for event in run:
    ...         if event.kind == "end" and event.test_id:
    ...             print(event.body["outcome"])
    ...     result = run.wait()
    passed
    >>> result.passed, bool(result)
    (1, True)

    In `asyncio` the loop goes on meanwhile:

    >>> async def outcomes(name):
    ...     with Diagnostics() as diagnostics:
    ...         async with diagnostics.run(name) as run:
    ...             return [one.body["outcome"] async for one in run if one.kind == "end"]
    >>> import asyncio
    >>> asyncio.run(outcomes("DIAGS: Processor Status"))
    ['passed', 'passed']

    A session has one run at a time; open a second one for a second run. Every method may be called
    from any thread. What is not given stands for the installation that the library belongs to.
    """

    def __init__(self, root: Optional[StrPath] = None, *, worker: Optional[StrPath] = None,
                 log_file: Optional[StrPath] = None, log_level: int = 0,
                 bios_id: Optional[str] = None, schema_cache: bool = True,
                 list_seconds: float = 60.0, library: Optional[StrPath] = None) -> None:
        options = Options(size=sizeof(Options))
        for name, path in (("root", root), ("worker", worker), ("log_file", log_file)):
            if path is not None:
                setattr(options, name, bytes_of_path(path, name))
        if bios_id is not None:
            options.bios_id = bytes_of(bios_id, "bios_id")
        if not 0 <= _number(log_level, "log_level") <= 3:
            raise ArgumentError("log_level is not between 0 and 3")
        options.log_level = int(log_level)
        options.no_schema_cache = 0 if schema_cache else 1
        options.list_seconds = _number(list_seconds, "list_seconds")
        self._library = library_at(library)
        self._handle = Handle(self._library, "session", "close", "open", byref(options))

    @property
    def version(self) -> str:
        """Of the library."""
        return self._library.version

    @property
    def library(self) -> str:
        """The file that the library was loaded from."""
        return str(self._library.path)

    def list(self) -> Listing:
        """The tests that there are. Takes milliseconds, with a provider that hangs `list_seconds`;
        Ctrl-C on the main thread, and `interrupt()` on any, end it before.

        >>> with Diagnostics() as diagnostics:
        ...     listing = diagnostics.list()
        >>> len(listing) > 10, listing.unusable
        (True, ())
        """
        return listing_of(self._asked("list"))

    def providers(self) -> Providers:
        """The provider libraries and their states.

        >>> with Diagnostics() as diagnostics:
        ...     {provider.state for provider in diagnostics.providers()}
        {'usable'}
        """
        return providers_of(self._asked("providers"))

    def check(self) -> Check:
        """What is wrong with the installation.

        >>> with Diagnostics() as diagnostics:
        ...     bool(diagnostics.check())
        True
        """
        return check_of(self._asked("check"))

    def interrupt(self) -> None:
        """Ends the calls that ask the installation just now, in other threads: `list()`,
        `providers()`, `check()`, those of its plans, and `run()` until it gives a run. They raise
        `CallInterruptedError`. A signal handler may call it, too."""
        self._handle.call("interrupt")

    def _asked(self, question: str) -> str:
        return patiently(lambda: self._handle.text(question), self.interrupt)

    def plan(self, name: Optional[str] = None, *, file: Optional[StrPath] = None,
             toml: Optional[str] = None,
             tests: Union[TestName, Iterable[TestName], None] = None) -> Plan:
        """A plan of the installation by its name, one in a file, one in a text of TOML, or one of
        tests by their names: identifiers, services, devices, patterns; an empty list means none.

        >>> with Diagnostics() as diagnostics, diagnostics.plan("quick") as quick:
        ...     print(quick.preview().splitlines()[0])
        Plan: Quick: in less than two minutes
        >>> with Diagnostics() as diagnostics, diagnostics.plan(tests="*Status*") as some:
        ...     [test.repeat for test in some.list().tests][:1]
        [1]
        """
        if sum(one is not None for one in (name, file, toml, tests)) != 1:
            raise ArgumentError("a plan has a name, a file, a text or tests: one of them")
        if toml is not None:
            text = bytes_of(toml, "toml")
            return self._plan("plan_text", text, len(text))
        if tests is not None:
            return self._plan_of_tests(tests)
        if file is not None:
            # Whole, so that it is a file's and no plan's name.
            return self._plan("plan_named", bytes_of_path(os.path.abspath(os.fspath(file)), "file"))
        return self._plan("plan_named", bytes_of(name or "", "name"))

    def _plan_of_tests(self, tests: Union[TestName, Iterable[TestName]]) -> Plan:
        names = names_of(tests)
        if not names:
            raise ArgumentError("no test is named; all of them are \"*\"")
        return self._plan("plan_tests", *array_of(names))

    def _plan(self, make: str, *arguments: Any) -> Plan:
        made: Plan = self._handle.use(
            lambda pointer: Plan(self._library, self.interrupt, make, pointer, *arguments))
        return made

    def run(self, what: Union[Plan, TestName, Iterable[TestName], None] = None) -> Run:
        """Begins to run a plan, tests by their names, or with nothing named all tests. It lists the
        installation before; what is wrong with the plan is raised before anything has run."""
        if isinstance(what, Plan):
            return self._start(what)
        with self.plan(tests="*" if what is None else what) as plan:
            return self._start(plan)

    def _start(self, plan: Plan) -> Run:
        def start() -> Run:
            run: Run = self._handle.use(
                lambda session: plan.use(lambda pointer: started(self._library, session, pointer)))
            return run

        return patiently(start, self.interrupt)

    def close(self) -> None:
        """Plans and runs live on until they are closed."""
        self._handle.close()

    def __enter__(self) -> "Diagnostics":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()
