"""Small installations of the build, and what befalls their providers."""

import os
import time
from pathlib import Path

import pytest

import diagsrunner

pytest_plugins = ["pytester"]
BUILD = Path(os.environ["DIAGS_BUILD"])
SCRIPTED = BUILD / "tests/host/installations/scripted"
SICK = BUILD / "tests/engine/installations/sick"


@pytest.fixture
def scripted():
    """Tests that end at once, in ways that are written down."""
    with diagsrunner.Diagnostics(SCRIPTED, schema_cache=False) as diagnostics:
        yield diagnostics


@pytest.fixture
def sick():
    """A test that falls ill where it is told to, and one that never does."""
    with diagsrunner.Diagnostics(SICK, schema_cache=False) as diagnostics:
        yield diagnostics


@pytest.fixture
def sickness(monkeypatch):
    """Tells the sick provider what befalls it, and where."""
    return lambda text: monkeypatch.setenv("SICKNESS", text)


def workers():
    """The processes of this build's worker program that are there."""
    program = str((BUILD / "bin/diags-worker").resolve())
    found = []
    for process in Path("/proc").iterdir():
        try:
            if process.name.isdigit() and os.readlink(process / "exe") == program:
                found.append(int(process.name))
        except OSError:  # it has gone, or is somebody else's
            continue
    return found


@pytest.fixture
def no_worker_left():
    """At the end nothing is left of what this test started."""
    before = set(workers())
    yield
    for _ in range(200):
        if set(workers()) <= before:
            return
        time.sleep(0.02)
    assert set(workers()) <= before
