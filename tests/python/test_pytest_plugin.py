"""`pytest --diags`, by pytest's own tester."""

import os
import signal
import subprocess
import sys
from xml.etree import ElementTree

import pytest

from conftest import BUILD, SCRIPTED, SICK

STAGED = BUILD / "installation"


@pytest.fixture
def run(pytester):
    """Runs pytest in a process of its own on an installation."""
    def on(root, *arguments):
        return pytester.runpytest_subprocess("-p", "pytest_diagsrunner", f"--diags-root={root}",
                                             "--diags", *arguments)
    return on


def test_each_verdict_is_what_pytest_has_for_it(run):
    result = run(SCRIPTED, "-v")
    result.assert_outcomes(passed=4, failed=6)
    result.stdout.fnmatch_lines([
        "diags::Scripted Pass,fan0,Front Fan PASSED*",
        "diags::Scripted Fail,fan0,Front Fan FAILED*"])
    result.stdout.fnmatch_lines([
        "no verdict: it could not finish", "Incomplete", "Half of it was tested"])
    result.stdout.fnmatch_lines(["the part failed", "Fail", "Scripted Fail ran on fan0"])
    result.stdout.fnmatch_lines(["no verdict: it was ended before it was through"])
    result.stdout.fnmatch_lines(["no verdict: the test itself broke",
                                 "refused: *the service started no job*"])
    result.stdout.no_fnmatch_line("*Traceback*")


def test_a_crash_costs_its_own_item_alone(run, sickness):
    sickness("starting:fault")
    result = run(SICK)
    result.assert_outcomes(passed=1, failed=1)
    result.stdout.fnmatch_lines(["no verdict: the test itself broke", "crashed: *"])


def test_a_provider_that_cannot_be_used_is_warned_of(run, sickness):
    sickness("listing:fault")
    result = run(SICK)
    result.assert_outcomes(passed=1, warnings=1)
    result.stdout.fnmatch_lines(["*tests may be missing: provider SickProvider cannot be used*"])


def test_patterns_keywords_and_plans_choose(run, pytester):
    run(SCRIPTED, "--diags-select=*Twin*", "--diags-select=*Pass*").assert_outcomes(passed=3)
    run(SCRIPTED, "-k", "Twin").assert_outcomes(passed=2, deselected=8)
    pytester.makefile(".toml", mine='[[test]]\nname = "fan1"\nrepeat = 2\n')
    result = run(SCRIPTED, "--diags-plan=mine.toml", "-v")
    result.assert_outcomes(passed=1)
    result.stdout.fnmatch_lines(["diags::Scripted Twin,fan1,Rear Fan PASSED*"])


def test_what_a_plan_passes_over_is_skipped_with_its_reason(run):
    result = run(STAGED, "--diags-select=*Read-Write-Read*", "-rs")
    if "no tests ran" in result.stdout.str():
        pytest.skip("this machine has no disk")
    result.assert_outcomes(skipped=1)
    result.stdout.fnmatch_lines(["SKIPPED*allow-disruptive is not set"])


def test_measurements_are_properties_and_one_beyond_a_plans_limit_fails(run, pytester):
    pytester.makefile(".toml", strict='[limits]\n"*" = { maximum = -1e30 }\n'
                                      '[[test]]\nname = "DIAGS: Processor Status"\n')
    result = run(STAGED, "--diags-plan=strict.toml", "--junitxml=r.xml")
    result.assert_outcomes(failed=1)
    result.stdout.fnmatch_lines(["the part failed", "fail: *"])
    (case,) = ElementTree.parse(pytester.path / "r.xml").iter("testcase")
    assert case.get("name").startswith("DIAGS: Processor Status,")
    found = {one.get("name"): one.get("value") for one in case.iter("property")}
    assert found and all(found.values())


def test_other_tests_run_beside_it_unless_nothing_else_is_wanted(run, pytester):
    pytester.makepyfile("def test_other(): pass")
    run(SCRIPTED, "--diags-select=*Pass*").assert_outcomes(passed=2)
    run(SCRIPTED, "--diags-select=*Pass*", "--diags-only").assert_outcomes(passed=1)


def test_collecting_alone_runs_nothing(run):
    result = run(SCRIPTED, "--collect-only", "-q")
    result.stdout.fnmatch_lines(["diags::Scripted Pass,fan0,Front Fan", "10 tests collected *"])


# Catches a plugin that slows down or breaks every run of pytest where it is installed.
def test_without_the_option_nothing_is_loaded(pytester):
    pytester.makepyfile("""
        import sys
        def test_nothing():
            assert not [name for name in sys.modules if name.split(".")[0] == "diagsrunner"]
    """)
    pytester.runpytest_subprocess("-p", "pytest_diagsrunner").assert_outcomes(passed=1)


@pytest.mark.parametrize("arguments, text", [
    (["--diags", "--diags-root=/no/such/folder"], "ERROR: *no/such/folder*"),
    (["--diags", f"--diags-root={SCRIPTED}", "--diags-plan=nothing.toml"], "ERROR: *nothing.toml*"),
    ([f"--diags-root={SCRIPTED}"], "ERROR: *need --diags"),
])
def test_wrong_options_are_errors_of_use(pytester, arguments, text):
    result = pytester.runpytest_subprocess("-p", "pytest_diagsrunner", *arguments)
    assert result.ret == pytest.ExitCode.USAGE_ERROR
    result.stderr.fnmatch_lines([text])


def test_ctrl_c_ends_the_run_in_good_order(pytester, sickness, no_worker_left):
    sickness("polling:linger")
    command = [sys.executable, "-B", "-m", "pytest", "-p", "pytest_diagsrunner", "--diags", "-v",
               f"--diags-root={SICK}"]
    child = subprocess.Popen(command, cwd=pytester.path, stdout=subprocess.PIPE,
                             env={**os.environ, "PYTHONUNBUFFERED": "1"})
    told = b""
    while b"diags::SICK" not in told:  # its line ends with its verdict
        told += os.read(child.stdout.fileno(), 4096)
    child.send_signal(signal.SIGINT)
    out = child.communicate(timeout=30)[0]
    assert child.returncode == pytest.ExitCode.INTERRUPTED
    assert b"KeyboardInterrupt" in out


def test_nothing_from_a_provider_acts_on_a_terminal():
    from diagsrunner.pytest_report import visible

    assert visible("a\x1b]0;b\x07\u202ec\u200bd\u009be\nf ü") == (
        "a\\x1b]0;b\\x07\\u202ec\\u200bd\\x9be\nf ü")


def test_a_warning_passes_and_is_told():
    from diagsrunner.events import event_of
    from diagsrunner.pytest_report import Story

    story = Story()
    for kind, body in (("diagnosis", {"verdict": "warning", "text": "hot", "part": "cpu0",
                                      "actions": ["Clean the fan"]}),
                       ("measurement", {"name": "Heat", "value": 91.5, "unit": "°C",
                                        "part": "cpu0"}),
                       ("end", {"outcome": "warned", "seconds": 1})):
        story.take(event_of({"sequence": 0, "time": "", "source": "worker", "testId": 1,
                             kind: body}))
    story.conclude()
    assert list(story.warnings()) == ["warning: cpu0: hot\n  recommended: Clean the fan"]
    assert story.properties() == [("Heat of cpu0", "91.5 °C")]
