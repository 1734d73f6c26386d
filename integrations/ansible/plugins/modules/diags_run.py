#!/usr/bin/python
"""Runs hardware diagnostics by the command diags."""
from __future__ import annotations

DOCUMENTATION = r"""
---
module: diags_run
short_description: Run hardware diagnostics and return their verdicts
version_added: "1.0.0"
description:
  - Runs C(diags run) on the machine, and returns what each test found, as values and as facts.
  - Fails or does not by a policy, I(fail_on).
  - In check mode only a dry run is made, which tells what would run.
author:
  - The diagsrunner developers
requirements:
  - C(diags), of the package diagsrunner
  - Python 3.8 or later on the machine
options:
  plan:
    description: What to run, under one name (C(quick), C(standard), C(burn-in)), or a plan file on the machine.
    type: str
  tests:
    description: Tests to run, by their identifiers, services, devices or patterns.
    type: list
    elements: str
    default: []
  all:
    description: Run every test.
    type: bool
    default: false
  exclude:
    description: Tests not to run.
    type: list
    elements: str
    default: []
  quick:
    description: Only what fits into two minutes by the estimates.
    type: bool
    default: false
  settings:
    description: Settings of the tests.
    type: dict
    default: {}
  repeat:
    description: How often each test runs.
    type: int
  allow_destructive:
    description: Also tests that may destroy data.
    type: bool
    default: false
  allow_disruptive:
    description: Also tests that may disturb the machine.
    type: bool
    default: false
  ignore_providers:
    description: With I(all), a provider that could not be used makes no difference.
    type: bool
    default: false
  timeout:
    description: What a test may take, as C(10m).
    type: str
  deadline:
    description: What the run may take. Two minutes after it and I(grace) the command is ended.
    type: str
    default: 2h
  grace:
    description: What a test that was told to end may take to do so.
    type: str
  fail_on:
    description:
      - C(failed) fails the task where a test found faulty hardware.
      - C(unfinished) does so, too, where a test has no verdict or nothing could be run.
      - C(never) does not. A command line that is wrong, a plan that is, and want of C(diags) itself always fail it.
    type: str
    choices: [failed, unfinished, never]
    default: unfinished
  jsonl:
    description: Write the run as OCP JSON lines to this file on the machine, for C(diags fleet).
    type: path
  junit:
    description: Write a JUnit document to this file on the machine.
    type: path
  html:
    description: Write a page to this file on the machine.
    type: path
  metrics:
    description: Write metrics for Prometheus to this file on the machine.
    type: path
  redact:
    description: Without serial numbers, hardware addresses and the host's name, in these files and in what is returned.
    type: bool
    default: false
  history:
    description: Keep the run in the machine's history.
    type: bool
    default: true
  state:
    description: Where runs are kept.
    type: path
  root:
    description: The installation directory.
    type: path
  diags:
    description: The command.
    type: path
    default: diags
notes:
  - The task is C(changed) where a run is left behind, in the history or in a file; the tests themselves change nothing,
    unless they are allowed to.
"""

EXAMPLES = r"""
- name: The standard tests, with a stream for diags fleet
  diagsrunner.diags.diags_run:
    plan: standard
    jsonl: /var/tmp/run.jsonl
    deadline: 1h

- name: One test with a setting; go on whatever it finds
  diagsrunner.diags.diags_run:
    tests: ["DIAGS: Memory Self Addressing"]
    settings: {Loops: 3}
    fail_on: never
  register: memory

- name: Say which parts to replace
  ansible.builtin.debug:
    msg: "{{ diags.faulty_parts | join(', ') }}"
  when: diags.faulty_parts
"""

RETURN = r"""
status:
  description: How C(diags) ended.
  returned: when it was run
  type: int
  sample: 1
outcome:
  description: The outcome of the run as a whole; empty where it broke off.
  returned: when tests were run
  type: str
  sample: failed
counts:
  description: How many runs of tests ended so, by outcome.
  returned: when tests were run
  type: dict
  sample: {passed: 23, failed: 1}
tests:
  description: Each run of a test, the first 1,000.
  returned: when tests were run
  type: list
  elements: dict
  contains:
    name: {description: The test's identifier., type: str, returned: always}
    service: {description: The service., type: str, returned: always}
    device: {description: The device., type: str, returned: always}
    element: {description: What the device is called., type: str, returned: always}
    repetition: {description: "Which one it is, from 1.", type: int, returned: always}
    outcome:
      description: passed, warned, failed, aborted, incomplete, broken or skipped
      type: str
      returned: always
    text: {description: What the runner answered., type: str, returned: always}
    remark: {description: What the test says of its outcome., type: str, returned: always}
    seconds: {description: How long it took., type: float, returned: always}
    findings:
      description: What it found about parts, each with verdict, part, text and actions.
      type: list
      elements: dict
      returned: always
    errors: {description: Why something could not be done., type: list, elements: str, returned: always}
left_out:
  description: How many runs of tests were too many for C(tests); C(counts) has them.
  returned: when tests were run
  type: int
  sample: 0
failed_tests:
  description: The tests that found faulty hardware.
  returned: when tests were run
  type: list
  elements: str
unfinished_tests:
  description: The tests without a verdict.
  returned: when tests were run
  type: list
  elements: str
would_run:
  description: What the dry run says, a line for each test.
  returned: in check mode
  type: list
  elements: str
cmd:
  description: The command line.
  returned: always
  type: list
  elements: str
messages:
  description: What C(diags) wrote to standard error.
  returned: when it was run
  type: list
  elements: str
ansible_facts:
  description: The verdicts, for later tasks.
  returned: when tests were run
  type: dict
  contains:
    diags:
      description: outcome, status, counts, failed_tests, unfinished_tests and faulty_parts of the last run.
      type: dict
      returned: when tests were run
"""

import os
import tempfile
from typing import Any

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.diagsrunner.diags.plugins.module_utils import process, verdicts
from ansible_collections.diagsrunner.diags.plugins.module_utils.command import (
    command, leaves_something, seconds, time_limit)


def arguments() -> dict[str, dict[str, Any]]:
    specification: dict[str, dict[str, Any]] = {
        "settings": {"type": "dict", "default": {}},
        "repeat": {"type": "int"},
        "deadline": {"type": "str", "default": "2h"},
        "history": {"type": "bool", "default": True},
        "diags": {"type": "path", "default": "diags"},
        "fail_on": {"type": "str", "default": "unfinished",
                    "choices": ["failed", "unfinished", "never"]},
    }
    specification.update({name: {"type": "str"} for name in ("plan", "timeout", "grace")})
    specification.update({name: {"type": "list", "elements": "str", "default": []}
                          for name in ("tests", "exclude")})
    specification.update({name: {"type": "bool", "default": False} for name in (
        "all", "quick", "allow_destructive", "allow_disruptive", "ignore_providers", "redact")})
    specification.update({name: {"type": "path"} for name in (
        "jsonl", "junit", "html", "metrics", "state", "root")})
    return specification


def run(module: AnsibleModule, words: list[str]) -> process.Ended:
    """Fails where the command is not there, is wrong, or does not end."""
    try:
        ended = process.run(words, time_limit(module.params))
    except OSError as error:
        module.fail_json(msg=f"{words[0]} cannot be run: {error.strerror}; is diagsrunner installed "
                             f"there? diags_package of the role installs it", cmd=words)
    if ended.is_late:
        module.fail_json(msg=f"{words[0]} did not end and was ended after "
                             f"{time_limit(module.params):.0f} s", cmd=words)
    if ended.status in (verdicts.USAGE, verdicts.UNUSABLE) or ended.status < 0:
        said = "; ".join(ended.messages[-3:]) or f"it ended with status {ended.status}"
        module.fail_json(msg=said, status=ended.status, cmd=words, messages=ended.messages)
    return ended


def try_only(module: AnsibleModule) -> None:
    """Check mode: what would be run, and whether that would leave anything."""
    words = command(module.params, None)
    ended = run(module, words)
    would = ended.status == verdicts.PASSED and leaves_something(module.params)
    module.exit_json(changed=would, status=ended.status, cmd=words, messages=ended.messages,
                     would_run=[verdicts.visible(line.strip()) for line in ended.output])


def result_of(found: verdicts.Verdicts, ended: process.Ended) -> dict[str, Any]:
    facts = {
        "status": ended.status, "outcome": found.outcome, "counts": found.counts,
        "failed_tests": found.named(["failed"]),
        "unfinished_tests": found.named(verdicts.UNFINISHED),
    }
    parts = {finding["part"] for test in found.tests for finding in test["findings"]
             if finding["verdict"] == "fail" and finding["part"]}
    return dict(facts, tests=found.tests, left_out=found.left_out, messages=ended.messages,
                ansible_facts={"diags": dict(facts, faulty_parts=sorted(parts))})


def carry_out(module: AnsibleModule) -> None:
    with tempfile.TemporaryDirectory(dir=module.tmpdir) as folder:
        # A file of its own: a command that is refused leaves one that was there as it was.
        events = os.path.join(folder, "events")
        words = command(module.params, events)
        ended = run(module, words)
        found = verdicts.read_verdicts(events)
    result = result_of(found, ended)
    result.update(cmd=words, changed=leaves_something(module.params) and found.planned > 0)
    why = verdicts.failure(found, ended.status, module.params["fail_on"])
    if why:
        module.fail_json(msg=why, **result)
    module.exit_json(**result)


def main() -> None:
    module = AnsibleModule(
        arguments(), supports_check_mode=True,
        mutually_exclusive=[("plan", "tests"), ("plan", "all"), ("tests", "all")])
    if not any(module.params[name] for name in ("plan", "tests", "all")):
        module.fail_json(msg="there is nothing to run: name a plan or tests, or say all")
    for name in ("timeout", "deadline", "grace"):
        try:
            seconds(module.params[name] or "1s")
        except ValueError as error:
            module.fail_json(msg=f"{name}: {error}")
    if module.check_mode:
        try_only(module)
    carry_out(module)


if __name__ == "__main__":
    main()
