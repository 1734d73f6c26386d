"""What an installation answers, and how it refuses what makes no sense."""

import gc
import os
import re
import subprocess
import sys
import threading
from pathlib import Path

import pytest

import diagsrunner
from conftest import SCRIPTED, SICK
from diagsrunner import Diagnostics

PROJECT = Path(__file__).parent / "../../python/pyproject.toml"


def test_lists_tests_with_all_that_is_known(scripted):
    listing = scripted.list()
    assert len(listing) == 10 and listing.unusable == ()
    first = listing[0]
    assert str(first) == first.identifier == "Scripted Pass,fan0,Front Fan"
    assert (first.service, first.device, first.element) == ("Scripted Pass", "fan0", "Front Fan")
    assert first.service_class == "TEST_Service" and first.settings == ()
    assert not (first.exclusive or first.destructive or first.risky or first.interactive)


# Catches a release whose package has another version than its library.
def test_the_library_and_the_package_have_one_version(scripted):
    told = re.search(r'^version = "(.*)"$', PROJECT.read_text(), re.MULTILINE)
    assert scripted.version == told.group(1)


def test_tells_its_providers_and_whether_it_is_sound(scripted):
    (provider,) = scripted.providers()
    assert provider.name == "ScriptedProvider" and provider.state == "usable"
    assert isinstance(scripted.check().findings, tuple)


def test_names_a_provider_that_cannot_be_used(sick, sickness):
    sickness("listing:fault")
    listing = sick.list()
    assert [one.name for one in listing.unusable] == ["SickProvider"]
    assert [test.service for test in listing] == ["SOUND Test"]
    assert not sick.check()


@pytest.mark.parametrize("arguments, error, text", [
    ({"root": "/no/such/folder"}, diagsrunner.UnusableError, "/no/such/folder"),
    ({"root": 7}, TypeError, "int"),
    ({"root": "a\0b"}, diagsrunner.ArgumentError, "root has a zero byte"),
    ({"worker": "/no/such/worker"}, diagsrunner.UnusableError, "/no/such/worker"),
    ({"log_level": 4}, diagsrunner.ArgumentError, "log_level"),
    ({"log_level": "3"}, TypeError, "log_level"),
    ({"log_level": 2 ** 80}, diagsrunner.ArgumentError, "log_level"),
    ({"list_seconds": -1}, diagsrunner.ArgumentError, "list_seconds"),
    ({"list_seconds": float("nan")}, diagsrunner.ArgumentError, "list_seconds"),
    ({"list_seconds": None}, TypeError, "list_seconds"),
    ({"bios_id": "\ud800"}, diagsrunner.ArgumentError, "bios_id"),
    ({"bios_id": b"bytes"}, TypeError, "bios_id"),
])
def test_refuses_what_it_cannot_be_opened_with(arguments, error, text):
    with pytest.raises(error) as raised:
        Diagnostics(**{"root": SICK, **arguments})
    assert text in str(raised.value)


@pytest.mark.parametrize("use", [
    lambda it: it.list(), lambda it: it.providers(), lambda it: it.check(),
    lambda it: it.plan("quick"), lambda it: it.run("SOUND Test"),
])
def test_refuses_use_after_close(use):
    diagnostics = Diagnostics(SICK)
    diagnostics.close()
    diagnostics.close()
    with pytest.raises(diagsrunner.ClosedError, match="session is closed"):
        use(diagnostics)


def test_every_error_has_a_code_and_a_text_and_is_the_kind_that_python_has():
    error = pytest.raises(diagsrunner.UnusableError, Diagnostics, "/no/such/folder").value
    assert error.code == 2 and error.text == str(error)
    assert issubclass(diagsrunner.ArgumentError, ValueError)
    assert issubclass(diagsrunner.WaitTimeoutError, TimeoutError)
    assert issubclass(diagsrunner.NoMemoryError, MemoryError)


def test_a_path_may_have_bytes_that_are_no_text(tmp_path):
    with pytest.raises(diagsrunner.UnusableError):
        Diagnostics(os.fsdecode(os.fsencode(tmp_path) + b"/\xff"))


# Catches a child whose end takes its parent's session, or waits for threads that it has not.
@pytest.mark.filterwarnings("ignore::DeprecationWarning")
def test_a_process_that_was_forked_off_does_not_touch_it(scripted):
    child = os.fork()
    if child == 0:
        try:
            scripted.list()
        except diagsrunner.ClosedError:
            scripted.close()
            gc.collect()
            os._exit(0)
        os._exit(1)
    assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 0
    assert len(scripted.list()) == 10


def test_eight_threads_use_one_session_at_once(scripted):
    found = []
    threads = [threading.Thread(target=lambda: found.append(len(scripted.list())))
               for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [10] * 8


# Catches a crash of the interpreter: the session goes while others are in a call of it.
def test_may_be_closed_while_other_threads_use_it():
    diagnostics = Diagnostics(SCRIPTED, schema_cache=False)
    answers = []

    def use():
        try:
            while True:
                answers.append(len(diagnostics.list()))
        except diagsrunner.ClosedError:
            answers.append(0)

    threads = [threading.Thread(target=use) for _ in range(4)]
    for thread in threads:
        thread.start()
    while not answers:
        pass
    diagnostics.close()
    for thread in threads:
        thread.join()
    assert answers.count(0) == 4


def test_an_interpreter_that_ends_with_a_run_leaves_nothing(no_worker_left):
    text = ("import diagsrunner, sys; d = diagsrunner.Diagnostics(sys.argv[1]);"
            "r = d.run('SICK Test'); next(iter(r)); print('begun')")
    done = subprocess.run([sys.executable, "-B", "-c", text, str(SICK)], stdout=subprocess.PIPE,
                          env={**os.environ, "SICKNESS": "thread:loop"}, timeout=30, check=False)
    assert done.returncode == 0 and done.stdout == b"begun\n"


# Catches Ctrl-C that is not heard while the library waits for a provider that hangs.
def test_ctrl_c_ends_a_listing_that_hangs(no_worker_left):
    program = ("import diagsrunner, os, sys, threading\n"
               "d = diagsrunner.Diagnostics(sys.argv[1], schema_cache=False)\n"
               "threading.Timer(0.3, os.kill, (os.getpid(), 2)).start()\n"
               "try:\n"
               "    d.list()\n"
               "except KeyboardInterrupt:\n"
               "    print('heard')\n")
    done = subprocess.run([sys.executable, "-B", "-c", program, str(SICK)], stdout=subprocess.PIPE,
                          env={**os.environ, "SICKNESS": "listing:loop"}, timeout=30, check=False)
    assert done.returncode == 0 and done.stdout == b"heard\n"


def test_a_listing_that_hangs_is_interrupted_from_another_thread(sick, sickness):
    sickness("listing:loop")
    raised = []

    def ask():
        try:
            sick.list()
        except diagsrunner.CallInterruptedError as error:
            raised.append(error.code)

    asking = threading.Thread(target=ask)
    asking.start()
    while asking.is_alive():
        sick.interrupt()
        asking.join(0.02)
    assert raised == [10]
