"""Diagnostics as items of pytest; `pytest_diagsrunner` registers them where they are asked for."""

from __future__ import annotations

from fnmatch import fnmatchcase
from pathlib import Path
from typing import Any, Iterable, Iterator, List, Optional, Tuple, Union

import pytest

from .diagnostics import Diagnostics
from .errors import DiagsError, NothingToRunError
from .plan import Plan
from .pytest_report import DiagnosticFailure, DiagnosticWarning, Story, visible
from .values import Listing, PlanList


class DiagnosticItem(pytest.Item):
    """One diagnostic: a run of its own with a worker of its own."""

    def __init__(self, identifier: str, plan: Plan, others: List[str], diagnostics: Diagnostics,
                 **more: Any) -> None:
        super().__init__(**more)
        self._identifier = identifier
        self._plan, self._others, self._diagnostics = plan, others, diagnostics
        self.add_marker("diags")

    def runtest(self) -> None:
        story = Story()
        try:
            self._follow(story)
        finally:
            self.user_properties.extend(story.properties())
            if story.lines:
                self.add_report_section("call", "diagnostic", "\n".join(story.lines))
        for warning in story.warnings():
            self.warn(DiagnosticWarning(warning))
        story.conclude()

    def _follow(self, story: Story) -> None:
        # Left by Ctrl-C, the run's block ends it in good order.
        plan = self._plan.without(self._others) if self._others else self._plan
        with self._diagnostics.run(plan) as run:
            for event in run:
                story.take(event)

    def repr_failure(self, excinfo: pytest.ExceptionInfo[BaseException],
                     style: Optional[Any] = None) -> Any:
        if isinstance(excinfo.value, DiagnosticFailure):
            return str(excinfo.value)
        if isinstance(excinfo.value, DiagsError):
            return "the diagnostic could not be run: " + visible(excinfo.value.text)
        return super().repr_failure(excinfo)

    def reportinfo(self) -> Tuple[Path, None, str]:
        return self.path, None, self.name


class SkippedItem(pytest.Item):
    """One that the plan passes over."""

    def __init__(self, reason: str, **more: Any) -> None:
        super().__init__(**more)
        self._reason = reason
        self.add_marker("diags")

    def runtest(self) -> None:
        pytest.skip(visible(self._reason))

    def reportinfo(self) -> Tuple[Path, None, str]:
        return self.path, None, self.name


class DiagnosticsCollector(pytest.Collector):
    """All diagnostics of the machine that were asked for, in the order of their plan."""

    def __init__(self, diagnostics: Diagnostics, **more: Any) -> None:
        super().__init__(**more)
        self._diagnostics = diagnostics
        self._found: List[Union[DiagnosticItem, SkippedItem]] = []

    def find(self) -> None:
        """What is to be collected. Raises `DiagsError` where the options make no sense."""
        plan = _plan_of(self._diagnostics, self.config.getoption("--diags-plan"))
        listing = self._diagnostics.list()
        self._tell_missing(listing)
        try:
            self._found = list(self._items(plan, plan.list(), listing))
        except NothingToRunError as error:
            self.warn(DiagnosticWarning(visible(error.text)))

    def collect(self) -> Iterable[Union[DiagnosticItem, SkippedItem]]:
        return self._found

    def _tell_missing(self, listing: Listing) -> None:
        for one in listing.unusable:
            self.warn(DiagnosticWarning(visible(
                f"tests may be missing: provider {one.name} cannot be used ({one.state}): "
                f"{one.reason}")))

    def _items(self, plan: Plan, planned: PlanList,
               listing: Listing) -> Iterator[Union[DiagnosticItem, SkippedItem]]:
        services = {test.identifier: test.service for test in listing}
        running = list(dict.fromkeys(one.identifier for one in planned.tests))
        everything = running + [one.identifier for one in planned.skipped]
        for identifier in running:
            if self._is_selected(identifier, services):
                others = [one for one in everything if one != identifier]
                yield DiagnosticItem.from_parent(
                    self, name=visible(identifier), identifier=identifier, plan=plan,
                    others=others, diagnostics=self._diagnostics)
        for one in planned.skipped:
            if self._is_selected(one.identifier, services):
                yield SkippedItem.from_parent(self, name=visible(one.identifier),
                                              reason=one.reason)

    def _is_selected(self, identifier: str, services: Any) -> bool:
        patterns = self.config.getoption("--diags-select")
        names = (identifier, services.get(identifier, identifier))
        return not patterns or any(fnmatchcase(name, each) for each in patterns for name in names)


def _plan_of(diagnostics: Diagnostics, named: Optional[str]) -> Plan:
    # A pattern passes over what may destroy data or disturb the machine.
    return diagnostics.plan(tests="*") if named is None else diagnostics.plan(named)


class DiagnosticsPlugin:
    """What `--diags` adds to a session of pytest."""

    def __init__(self, config: pytest.Config) -> None:
        if hasattr(config, "workerinput"):
            raise pytest.UsageError("the diagnostics of a machine run one at a time: --diags goes "
                                    "without several processes of pytest")
        self._config = config
        self._diagnostics: Optional[Diagnostics] = None

    def pytest_ignore_collect(self) -> Optional[bool]:
        return True if self._config.getoption("--diags-only") else None

    def _add_items(self, session: pytest.Session, items: List[pytest.Item]) -> None:
        try:
            self._diagnostics = Diagnostics(self._config.getoption("--diags-root"))
            collector = DiagnosticsCollector.from_parent(session, name="diags", nodeid="diags",
                                                         diagnostics=self._diagnostics)
            collector.find()
            items.extend(session.genitems(collector))
        except DiagsError as error:
            raise pytest.UsageError(visible(error.text)) from error

    # Before those that choose among the items, by -k for instance.
    pytest_collection_modifyitems = pytest.hookimpl(tryfirst=True)(_add_items)

    def pytest_unconfigure(self) -> None:
        if self._diagnostics is not None:
            self._diagnostics.close()
