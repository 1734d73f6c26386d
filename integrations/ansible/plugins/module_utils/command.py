"""The command line of diags that a task means, and how long the task may take."""
from __future__ import annotations

import re
from typing import Any

# Parameters of the module that are options with a value, and those that are flags.
VALUES = {
    "plan": "--plan", "root": "--root", "state": "--state", "timeout": "--timeout",
    "deadline": "--deadline", "grace": "--grace", "repeat": "--repeat",
}
FILES = {"jsonl": "--jsonl", "junit": "--junit", "html": "--html", "metrics": "--metrics"}
FLAGS = {
    "all": "--all", "quick": "--quick", "allow_destructive": "--allow-destructive",
    "allow_disruptive": "--allow-disruptive", "ignore_providers": "--ignore-providers",
    "redact": "--redact",
}
UNITS = {"d": 86400.0, "h": 3600.0, "m": 60.0, "s": 1.0, "ms": 0.001}
DURATION = re.compile(r"(?:(\d+)d)?(?:(\d+)h)?(?:(\d+)m)?(?:(\d+)s)?(?:(\d+)ms)?")
# What listing, starting and ending take beside the tests, at the most.
REST = 120.0


def seconds(text: str) -> float:
    """Of a time as diags takes it: "90s", "1h30m"."""
    match = DURATION.fullmatch(text)
    if not match or not any(match.groups()):
        raise ValueError(f'"{text}" is no time such as "90s" or "1h30m"')
    return sum(int(number) * unit for number, unit in zip(match.groups(), UNITS.values()) if number)


def time_limit(params: dict[str, Any]) -> float:
    """When a command that has not ended by itself is ended: it was told to end by then itself."""
    return seconds(params["deadline"]) + seconds(params["grace"] or "10s") + REST


def setting(name: str, value: Any) -> str:
    """As YAML has it, a truth is no word."""
    return f"{name}={str(value).lower() if isinstance(value, bool) else value}"


def choice(params: dict[str, Any]) -> list[str]:
    """The options about what runs, and how."""
    words = []
    for name, option in VALUES.items():
        if params[name] is not None:
            words += [option, str(params[name])]
    words += [option for name, option in FLAGS.items() if params[name]]
    for test in params["exclude"]:
        words += ["--exclude", test]
    for name, value in params["settings"].items():
        words += ["--set", setting(name, value)]
    return words


def command(params: dict[str, Any], events: str | None) -> list[str]:
    """The words of the command: one that writes its events there, or without that a dry run."""
    words = [params["diags"], "run"] + choice(params)
    if events is None:
        words.append("--dry-run")
    else:
        words += ["--quiet", "--events", events] + ([] if params["history"] else ["--no-history"])
        for name, option in FILES.items():
            if params[name] is not None:
                words += [option, params[name]]
    # Behind it nothing is taken for an option, whatever a test calls itself.
    return words + (["--"] + params["tests"] if params["tests"] else [])


def leaves_something(params: dict[str, Any]) -> bool:
    """Whether a run is there afterwards: in the history, or in a file."""
    return params["history"] or any(params[name] is not None for name in FILES)
