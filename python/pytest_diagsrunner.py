"""`pytest --diags`: each diagnostic of this machine is a test item.

Without the option nothing of this is more than a few options: not even the package is imported.
"""

from __future__ import annotations

import pytest


def pytest_addoption(parser: pytest.Parser) -> None:
    group = parser.getgroup("diags", "hardware diagnostics")
    group.addoption("--diags", action="store_true",
                    help="run each diagnostic of this machine as a test item")
    group.addoption("--diags-only", action="store_true",
                    help="the same, and collect nothing else")
    group.addoption("--diags-root", metavar="DIR",
                    help="the installation; without it the one that the library belongs to")
    group.addoption("--diags-plan", metavar="PLAN",
                    help="the tests of this plan, by its name or file, as it sets them")
    group.addoption("--diags-select", metavar="GLOB", action="append", default=[],
                    help="of the tests only those whose identifier or service fits; again for more")


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "diags: a diagnostic of this machine")
    if config.getoption("--diags") or config.getoption("--diags-only"):
        from diagsrunner.pytest_items import DiagnosticsPlugin

        config.pluginmanager.register(DiagnosticsPlugin(config), "diagsrunner-items")
    elif any(config.getoption(name) for name in ("--diags-root", "--diags-plan", "--diags-select")):
        raise pytest.UsageError("--diags-root, --diags-plan and --diags-select need --diags")
