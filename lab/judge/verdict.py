"""What came of a test in a lab machine, read from the stream of events that the product wrote."""

import json
import re

# What an end says of the machine. Whatever is no word of the first two is no verdict at all.
_ALARM = ("failed", "warned")
_SILENT = ("passed",)


_ENDINGS = frozenset(("exited", "crashed", "killed", "timedOut", "protocol"))


class Verdict:
    """`outcome` is the end's word, or "none" where the test did not come to an end. `text` is all that the
    product says of the test: record, diagnoses, errors; `causes`, why it came to no verdict."""

    def __init__(self, outcome, text, causes=()):
        self.outcome = outcome
        self.text = text
        self.causes = frozenset(causes)

    def alarm(self):
        return self.outcome in _ALARM

    def ended(self):
        """Whether the process of the test came to an end that nobody wanted."""
        return not self.alarm() and not self.silent() and bool(self.causes & _ENDINGS)

    def silent(self):
        return self.outcome in _SILENT


def events_in(lines):
    """The events among the lines; a line that was cut off, or is none, is passed over."""
    found = []
    for line in lines:
        try:
            event = json.loads(line)
        except (TypeError, ValueError):
            continue
        if isinstance(event, dict) and "sequence" in event:
            found.append(event)
    return found


def _texts(value):
    """Every text in an event, however deep it lies."""
    if isinstance(value, str):
        yield value
    elif isinstance(value, dict):
        for one in value.values():
            yield from _texts(one)
    elif isinstance(value, list):
        for one in value:
            yield from _texts(one)


_SAYING = ("end", "diagnosis", "error", "message")


# Of several tests, the one that says the worst counts.
_RANK = ("none", "skipped", "passed", "incomplete", "aborted", "broken", "warned", "failed")


def _worse(one, other):
    return max(one, other, key=lambda word: _RANK.index(word) if word in _RANK else 0)


def read(lines):
    """The verdict of a stream."""
    outcome, said, causes = "none", [], set()
    for event in events_in(lines):
        if "testId" not in event:
            continue
        if "end" in event:
            outcome = _worse(outcome, event["end"].get("outcome", "none"))
        causes.add(event.get("error", {}).get("cause"))
        for kind in _SAYING:
            said += _texts(event.get(kind, {}))
    return Verdict(outcome, "\n".join(said), causes)


def diagnoses(lines):
    """Each diagnosis of a stream, as the pair of its part and its text."""
    return [(event["diagnosis"].get("part", ""), event["diagnosis"].get("text", ""))
            for event in events_in(lines) if "diagnosis" in event]


_PAGE = re.compile(r"physical (page|address) (0x[0-9a-fA-F]+)")
_PAGE_BYTES = 4096


def pages_named(text):
    """The page frames that a text names: "physical page 0x3f2a" as the frame's number, "physical address
    0x3f2a010" as a byte in it."""
    found = set()
    for kind, number in _PAGE.findall(text):
        value = int(number, 16)
        found.add(value if kind == "page" else value // _PAGE_BYTES)
    return found


def placed(text, pages, module):
    """Whether the text names one of the pages and no other page, and the memory module."""
    named = pages_named(text)
    return bool(named) and named <= set(pages) and module in text


_BLOCKS = re.compile(r"Unreadable: (?:somewhere in )?logical blocks? (\d+)(?: to (\d+))?")


def blocks_named(text):
    """The logical blocks that a text calls unreadable."""
    found = set()
    for first, last in _BLOCKS.findall(text):
        found.update(range(int(first), int(last or first) + 1))
    return found


def placed_on_disk(text, bad, serial):
    """Whether the text names the drive and, where there are bad blocks (first, last), these and no others."""
    wanted = set(range(bad[0], bad[1] + 1)) if bad else set()
    return serial in text and blocks_named(text) == wanted


_UNREADABLE = re.compile(r"Unreadable: (somewhere in )?logical blocks? (\d+)(?: to (\d+))?")


def beyond(text, end):
    """Whether the text calls blocks unreadable that lie at or behind that one, and none in front of it; where it
    says "somewhere in", a part of them may."""
    named = [(int(last or first) if part else int(first)) for part, first, last in _UNREADABLE.findall(text)]
    return bool(named) and min(named) >= end


_SLOW = re.compile(r"Slow: logical blocks? (\d+)(?: to (\d+))?")


def is_slow(text, slow):
    """Whether the text calls all of the blocks (first, last) slow, and no read that has none of them."""
    named = [(int(first), int(last or first)) for first, last in _SLOW.findall(text)]
    covered = {block for first, last in named for block in range(first, last + 1)}
    return set(range(slow[0], slow[1] + 1)) <= covered and all(
        first <= slow[1] and last >= slow[0] for first, last in named)
