"""A command that is run to its end, or ended."""
from __future__ import annotations

import os
import signal
import subprocess
import tempfile
from dataclasses import dataclass, field
from typing import IO

from ansible_collections.diagsrunner.diags.plugins.module_utils.verdicts import visible

MOST_LINES = 1000
MOST_BYTES = 1_000_000
# What diags is given to end its tests in good order when it is interrupted.
GRACE = 30.0


@dataclass
class Ended:
    status: int
    output: list[str] = field(default_factory=list)
    messages: list[str] = field(default_factory=list)
    is_late: bool = False


def lines_of(file: IO[bytes]) -> list[str]:
    """The beginning of what was written, harmless for a terminal."""
    file.seek(0)
    text = file.read(MOST_BYTES).decode("utf-8", "replace")
    return [visible(line) for line in text.split("\n") if line][:MOST_LINES]


def end(process: subprocess.Popen[bytes]) -> None:
    """As Ctrl-C would, and where that is not heeded, at once, with all that it has started."""
    process.send_signal(signal.SIGINT)
    try:
        process.wait(GRACE)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()


def run(words: list[str], limit: float) -> Ended:
    """Throws OSError where it cannot be started. Files, as a pipe would fill up."""
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as messages:
        process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=messages, start_new_session=True)
        is_late = False
        try:
            process.wait(limit)
        except subprocess.TimeoutExpired:
            is_late = True
            end(process)
        return Ended(process.returncode, lines_of(output), lines_of(messages), is_late)
