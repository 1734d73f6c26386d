"""Whether what is said of a device is said of the broken one, and of no other. `told` are the diagnoses of a
stream, each a part and a text."""

import re

_CHECK = re.compile(r"machine check on CPU (\d+), bank (\d+), status (0x[0-9a-f]+), address (0x[0-9a-f]+)")
_ADDRESS = r"[0-9a-f]{4}:[0-9a-f]{2}:[0-9a-f]{2}\.[0-7]"
_COUNTED = re.compile(r"correctable errors (\w+) rose")
_WATCHED = re.compile(rf"Corrected errors of (?:port )?({_ADDRESS})\b.* rose [^:]*: (\w+) by \d")
_PORT = re.compile(r"(?:network port )?(eth\d+)")
_FAILED_READS = re.compile(rf"reads? of \S+ over the link of ({_ADDRESS}) \(.*, slot (\S+)\) failed")
_LINK = re.compile(rf"Link of ({_ADDRESS}) \(.*, slot (\S+)\) is below its (width|speed)")


def machine_check(told, processor, bank, status, address):
    found = {(part, *one) for part, text in told for one in _CHECK.findall(text)}
    return found == {(f"CPU {processor}", str(processor), str(bank), f"{status:#x}", f"{address:#x}")}


def pci_error(told, device, name):
    """Both by the counters that are read beside a test, and by a test that watches them itself."""
    found = {(part, one) for part, text in told for one in _COUNTED.findall(text)}
    found |= {one for _, text in told for one in _WATCHED.findall(text)}
    return found == {(device, name)}


def port(told, name):
    """The test says it, whoever else does."""
    found = [one.group() for one in (_PORT.fullmatch(part) for part, _ in told) if one]
    return f"network port {name}" in found and {_PORT.fullmatch(one).group(1) for one in found} == {name}


def link(told, card, slot, what):
    found = {one for _, text in told for one in _LINK.findall(text)}
    return found == {(card, slot, what)}


def loaded_link(told, card, slot, what):
    """`what`: "width", "speed", or "reads", which failed."""
    found = {one for _, text in told for one in _LINK.findall(text)}
    found |= {(*one, "reads") for _, text in told for one in _FAILED_READS.findall(text)}
    return found == {(card, slot, what)}


def is_loaded(text, card):
    """Whether the test says that it has read a disk over the card's link."""
    return re.search(rf"{re.escape(card)} \(.*MiB read from ", text) is not None
