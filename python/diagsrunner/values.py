"""What an installation answers: plain values, as `diags list --json` and its brothers have them."""

from __future__ import annotations

import json
from collections.abc import Sequence
from dataclasses import dataclass
from typing import Any, Dict, Generic, Iterator, List, Mapping, Tuple, TypeVar, Union, overload


@dataclass(frozen=True)
class Setting:
    """What a plan may set of a test."""

    name: str
    type: str
    value: str
    description: str


@dataclass(frozen=True)
class Test:
    """One diagnostic on one part of the machine. `str()` of it is its identifier."""

    __test__ = False  # it is no test of Python's

    identifier: str
    service: str
    device: str
    element: str
    service_class: str
    estimate: float  #: seconds; 0 where nobody knows
    exclusive: bool  #: nothing else may run on the machine
    interactive: bool  #: it asks the user for something
    destructive: bool  #: it may destroy data
    risky: bool  #: it may disturb the machine in operation
    settings: Tuple[Setting, ...]

    def __str__(self) -> str:
        return self.identifier


@dataclass(frozen=True)
class UnusableProvider:
    """A provider that cannot be used: the tests that it offers are missing."""

    name: str
    state: str
    reason: str


@dataclass(frozen=True)
class Finding:
    """What makes an answer less than it could be: `weight` is note, warning or fault."""

    weight: str
    text: str


@dataclass(frozen=True)
class Provider:
    """A provider library and what it serves."""

    name: str
    library: str
    state: str
    reason: str
    classes: Tuple[Mapping[str, Any], ...]
    interfaces: Tuple[Mapping[str, Any], ...]


_Item = TypeVar("_Item")


class _Answer(Sequence, Generic[_Item]):  # type: ignore[type-arg]
    """Items, and what makes the answer less than it could be."""

    def __init__(self, items: List[_Item], unusable: Tuple[UnusableProvider, ...],
                 findings: Tuple[Finding, ...]) -> None:
        self._items = items
        self.unusable = unusable
        self.findings = findings

    @overload
    def __getitem__(self, index: int) -> _Item: ...
    @overload
    def __getitem__(self, index: slice) -> List[_Item]: ...
    def __getitem__(self, index: Union[int, slice]) -> Union[_Item, List[_Item]]:
        return self._items[index]

    def __len__(self) -> int:
        return len(self._items)

    def __iter__(self) -> Iterator[_Item]:
        return iter(self._items)

    def __repr__(self) -> str:
        return f"{type(self).__name__}({self._items!r})"


class Listing(_Answer[Test]):
    """The tests, in their order. `unusable` providers have none in it; `findings` say more."""


class Providers(_Answer[Provider]):
    """The providers. Those that could not even be asked are `unusable`."""


@dataclass(frozen=True)
class Check:
    """Whether the installation is sound, and what is wrong with it. True where it is sound."""

    faultless: bool
    findings: Tuple[Finding, ...]
    unusable: Tuple[UnusableProvider, ...]

    def __bool__(self) -> bool:
        return self.faultless


@dataclass(frozen=True)
class PlannedTest:
    """A test of a plan. Times are in seconds; an `estimate` of 0 where nobody knows."""

    identifier: str
    group: str
    repeat: int
    estimate: float
    timeout: float


@dataclass(frozen=True)
class SkippedTest:
    """A test that a plan means and passes over."""

    identifier: str
    reason: str


@dataclass(frozen=True)
class PlanList:
    """What a plan runs on this machine, and what it passes over."""

    tests: Tuple[PlannedTest, ...]
    skipped: Tuple[SkippedTest, ...]


@dataclass(frozen=True)
class Result:
    """What came of all tests of a run. True where none failed, broke or ended early."""

    passed: int
    warned: int
    failed: int
    aborted: int  #: the caller ended it, or its time was up
    incomplete: int  #: it says itself that it could not finish
    broken: int  #: it ended without a verdict: crashed, hung, refused
    skipped: int
    was_cancelled: bool
    time_was_up: bool

    def __bool__(self) -> bool:
        return not (self.failed or self.broken or self.aborted or self.incomplete)


def _chosen(given: Mapping[str, Any], *names: str) -> Dict[str, Any]:
    """Members that this version knows: a later library has more."""
    return {name: given[name] for name in names}


def _test_of(given: Mapping[str, Any]) -> Test:
    settings = tuple(Setting(**_chosen(one, "name", "type", "value", "description"))
                     for one in given["settings"])
    return Test(service_class=given["serviceClass"], settings=settings,
                **_chosen(given, "identifier", "service", "device", "element", "estimate",
                          "exclusive", "interactive", "destructive", "risky"))


def _unusable_of(given: List[Mapping[str, Any]]) -> Tuple[UnusableProvider, ...]:
    return tuple(UnusableProvider(**_chosen(one, "name", "state", "reason")) for one in given)


def _findings_of(given: List[Mapping[str, Any]]) -> Tuple[Finding, ...]:
    return tuple(Finding(**_chosen(one, "weight", "text")) for one in given)


def _provider_of(given: Mapping[str, Any]) -> Provider:
    return Provider(classes=tuple(given["classes"]), interfaces=tuple(given["interfaces"]),
                    **_chosen(given, "name", "library", "state", "reason"))


def listing_of(text: str) -> Listing:
    given = json.loads(text)
    return Listing([_test_of(one) for one in given["tests"]],
                   _unusable_of(given["unusableProviders"]), _findings_of(given["findings"]))


def providers_of(text: str) -> Providers:
    given = json.loads(text)
    return Providers([_provider_of(one) for one in given["providers"]],
                     _unusable_of(given["leftOut"]), _findings_of(given["findings"]))


def check_of(text: str) -> Check:
    given = json.loads(text)
    return Check(given["faultless"], _findings_of(given["findings"]),
                 _unusable_of(given["leftOut"]))


def plan_list_of(text: str) -> PlanList:
    given = json.loads(text)
    tests = tuple(PlannedTest(**_chosen(one, "identifier", "group", "repeat", "estimate", "timeout"))
                  for one in given["tests"])
    return PlanList(tests, tuple(SkippedTest(**_chosen(one, "identifier", "reason"))
                                 for one in given["skipped"]))
