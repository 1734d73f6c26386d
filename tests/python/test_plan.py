"""Which tests run: by name, file, text and tests."""

import pytest

import diagsrunner


def identifiers(plan):
    return [test.identifier for test in plan.list().tests]


def test_is_made_of_tests_by_name_pattern_and_object(scripted):
    first = scripted.list()[0]
    assert identifiers(scripted.plan(tests=first)) == [first.identifier]
    assert identifiers(scripted.plan(tests="*Twin*")) == [
        "Scripted Twin,fan0,Front Fan", "Scripted Twin,fan1,Rear Fan"]
    assert len(identifiers(scripted.plan(tests=["*Pass*", "*Fail*"]))) == 2


def test_is_read_from_a_text_and_a_file(scripted, tmp_path):
    toml = 'timeout = "90s"\n[[test]]\nname = "Scripted Pass"\nrepeat = 3\n'
    (tmp_path / "plan").write_text(toml)
    for plan in (scripted.plan(toml=toml), scripted.plan(file=tmp_path / "plan")):
        (test,) = plan.list().tests
        assert (test.repeat, test.timeout) == (3, 90.0)
        assert "3 runs" in plan.preview()


def test_without_some_is_another_one(scripted):
    twins = scripted.plan(tests="*Twin*")
    other = twins.without("fan1")
    assert identifiers(other) == ["Scripted Twin,fan0,Front Fan"]
    assert len(identifiers(twins)) == 2


@pytest.mark.parametrize("arguments, error, text", [
    ({}, diagsrunner.ArgumentError, "one of them"),
    ({"name": "quick", "tests": "*"}, diagsrunner.ArgumentError, "one of them"),
    ({"name": "no-such-plan"}, diagsrunner.PlanError, "no-such-plan"),
    ({"name": 3}, TypeError, "name"),
    ({"tests": []}, diagsrunner.ArgumentError, "no test is named"),
    ({"tests": [None]}, TypeError, "a test's name"),
    ({"tests": 3}, TypeError, ""),
    ({"toml": "[[test]]\nname = 1\n"}, diagsrunner.PlanError, "the plan:2:"),
    ({"toml": "a\0b"}, diagsrunner.ArgumentError, "toml"),
    ({"file": "/no/such/plan"}, diagsrunner.PlanError, "/no/such/plan"),
])
def test_that_is_wrong_is_refused(scripted, arguments, error, text):
    with pytest.raises(error) as raised:
        scripted.plan(**arguments)
    assert text in str(raised.value)


def test_with_a_name_that_nothing_has_runs_nothing(scripted):
    with pytest.raises(diagsrunner.PlanError, match="no such test"):
        scripted.run("no such test")
    assert scripted.run("Scripted Pass").wait().passed == 1, "the session is free"


def test_of_another_session_is_refused(scripted, sick):
    with pytest.raises(diagsrunner.ArgumentError, match="another session"):
        scripted.run(sick.plan(tests="*"))


def test_that_is_closed_is_refused_and_its_run_goes_on(scripted):
    plan = scripted.plan(tests="Scripted Pass")
    run = scripted.run(plan)
    plan.close()
    assert run.wait().passed == 1
    with pytest.raises(diagsrunner.ClosedError, match="plan is closed"):
        plan.list()
