"""A run: its events, its end, and whoever ends it early."""

import asyncio
import os
import signal
import subprocess
import sys
import threading

import pytest

import diagsrunner
from conftest import SICK, workers
from diagsrunner import Event, KINDS


def test_tells_all_its_events_in_order_and_what_came_of_it(scripted):
    with scripted.run() as run:
        events = list(run)
        result = run.wait()
    assert [event.sequence for event in events] == list(range(len(events)))
    assert events[0].kind == "run" and events[0].body["tests"] == 10
    assert events[-1].kind == "end" and events[-1].test_id is None
    assert {event.kind for event in events} <= KINDS
    assert (result.passed, result.failed, result.broken) == (4, 2, 2)
    assert (result.aborted, result.incomplete, result.skipped) == (1, 1, 0)
    assert not result and not result.was_cancelled


def test_gives_events_as_objects_dicts_and_lines(scripted):
    with scripted.run("Scripted Pass") as run:
        line = next(run.lines())
        raw = next(run.dicts())
        event = next(iter(run))
    assert line.startswith(b'{"sequence":0,') and line.endswith(b"}")
    assert raw["sequence"] == 1 and "test" in raw
    assert isinstance(event, Event) and event.sequence == 2 and event.moment.utcoffset() is not None


def test_a_kind_that_a_later_library_has_is_no_error():
    from diagsrunner.events import event_of

    event = event_of({"sequence": 1, "time": "2026-11-21T20:15:02Z", "source": "engine",
                      "novelty": {"a": 1}})
    assert event.kind == "" and event.raw["novelty"] == {"a": 1}
    later = event_of({"sequence": 1, "time": "", "source": "", "step": {"name": "a"}, "more": 1})
    assert (later.kind, later.body) == ("step", {"name": "a"})


def test_tells_of_a_provider_that_cannot_be_used(sick, sickness):
    sickness("listing:fault")
    with sick.run() as run:
        told = [event.body["text"] for event in run if event.kind == "message"]
    assert len(told) == 1 and "provider SickProvider cannot be used (crashed)" in told[0]


def test_a_test_that_crashes_is_no_error_of_the_run(sick, sickness):
    sickness("starting:fault")
    result = sick.run().wait()
    assert (result.passed, result.broken) == (1, 1)


def test_a_session_has_one_run_at_a_time(scripted):
    with scripted.run("Scripted Pass"):
        with pytest.raises(diagsrunner.BusyError, match="has a run"):
            scripted.run("Scripted Pass")
    scripted.run("Scripted Pass").wait()


def test_outlives_its_session(sick):
    run = sick.run("SOUND Test")
    sick.close()
    assert run.wait().passed == 1


# A test that goes on until it is told to end, and is given a second for that.
_LINGERING = 'grace = "1s"\n[[test]]\nname = "SICK Test"\n'


def test_that_is_cancelled_ends_and_tells_of_it(sick, sickness, no_worker_left):
    sickness("polling:linger")
    with sick.run(sick.plan(toml=_LINGERING)) as run:
        threading.Timer(0.1, run.cancel).start()
        ends = [event.body["outcome"] for event in run if event.kind == "end"]
        result = run.wait()
    assert result.was_cancelled and "aborted" in ends


def test_waits_no_longer_than_it_is_told_to(sick, sickness):
    sickness("thread:loop")
    with sick.run() as run:
        with pytest.raises(diagsrunner.WaitTimeoutError):
            run.wait(0.05)
        with pytest.raises(diagsrunner.WaitTimeoutError):
            run.wait(0)


def test_that_is_left_ends_with_all_that_it_started(sick, sickness, no_worker_left):
    sickness("thread:loop")
    with sick.run() as run:
        next(event for event in run if event.source == "worker")
        assert workers()
    assert run.closed


def test_that_nobody_keeps_ends_with_all_that_it_started(sick, sickness, no_worker_left):
    sickness("thread:loop")
    next(iter(sick.run()))


@pytest.mark.parametrize("use", [
    list, lambda run: list(run.dicts()), lambda run: run.wait(), lambda run: run.cancel(),
    lambda run: asyncio.run(run.wait_async()),
])
def test_refuses_use_after_close(scripted, use):
    run = scripted.run("Scripted Pass")
    run.close()
    run.close()
    with pytest.raises(diagsrunner.ClosedError, match="run is closed"):
        use(run)


# Catches a crash of the interpreter: the run goes while another thread waits in it.
def test_may_be_closed_while_another_thread_iterates(sick, sickness, no_worker_left):
    sickness("thread:loop")
    run = sick.run()
    begun, ended = threading.Event(), []

    def follow():
        try:
            for _ in run:
                begun.set()
        except diagsrunner.ClosedError as error:
            ended.append(error)

    thread = threading.Thread(target=follow)
    thread.start()
    begun.wait(10)
    run.close()
    thread.join(10)
    assert not thread.is_alive()


def test_several_threads_share_the_events_and_lose_none(scripted):
    found = []
    with scripted.run() as run:
        threads = [threading.Thread(target=lambda: found.extend(run)) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    assert sorted(event.sequence for event in found) == list(range(len(found)))
    assert len(found) > 20


_INTERRUPTED = """
import diagsrunner, sys
with diagsrunner.Diagnostics(sys.argv[1]) as diagnostics:
    try:
        with diagnostics.run(diagnostics.plan(toml=sys.argv[2])) as run:
            for event in run:
                if event.kind == "test": print("begun", flush=True)
    except KeyboardInterrupt:
        print("closed" if run.closed else "open")
    print(diagnostics.run("SOUND Test").wait().passed)
"""


# Catches a host whose Ctrl-C hangs, leaves a worker behind or the session busy.
def test_ctrl_c_ends_it_in_good_order(no_worker_left):
    child = subprocess.Popen([sys.executable, "-B", "-c", _INTERRUPTED, str(SICK), _LINGERING],
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                             env={**os.environ, "SICKNESS": "polling:linger"})
    assert child.stdout.readline() == "begun\n"
    child.send_signal(signal.SIGINT)
    out, err = child.communicate(timeout=30)
    assert (child.returncode, out, err) == (0, "closed\n1\n", "")


def test_a_signal_handler_may_cancel_and_close(sick, sickness, no_worker_left):
    sickness("thread:loop")
    run = sick.run()
    before = signal.signal(signal.SIGUSR1, lambda *_: run.close())
    try:
        with pytest.raises(diagsrunner.ClosedError):
            for event in run:
                if event.kind == "test":
                    os.kill(os.getpid(), signal.SIGUSR1)
    finally:
        signal.signal(signal.SIGUSR1, before)


def test_async_for_gives_all_events_while_the_loop_goes_on(scripted):
    async def follow():
        ticks = 0

        async def tick():
            nonlocal ticks
            while True:
                ticks += 1
                await asyncio.sleep(0)

        ticking = asyncio.create_task(tick())
        async with scripted.run() as run:
            events = [event async for event in run]
            result = await run.wait_async()
        ticking.cancel()
        return events, result, ticks

    events, result, ticks = asyncio.run(follow())
    assert [event.sequence for event in events] == list(range(len(events)))
    assert result.passed == 4 and ticks > 10


def test_a_task_that_is_cancelled_ends_its_run(sick, sickness, no_worker_left):
    sickness("polling:linger")

    async def follow():
        async with sick.run(sick.plan(toml=_LINGERING)) as run:
            async for event in run:
                if event.kind == "test":
                    asyncio.current_task().cancel()

    with pytest.raises(asyncio.CancelledError):
        asyncio.run(follow())
    assert sick.run("SOUND Test").wait().passed == 1


def test_waiting_in_a_loop_ends_when_it_is_told_to(sick, sickness):
    sickness("thread:loop")

    async def follow():
        async with sick.run() as run:
            with pytest.raises(diagsrunner.WaitTimeoutError):
                await run.wait_async(0.05)

    asyncio.run(follow())
