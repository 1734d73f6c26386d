"""What a stream of events becomes, and when a task fails."""
import json
import os
import tempfile
import unittest

from ansible_collections.diagsrunner.diags.plugins.module_utils import verdicts


def begin(number, name="S,d,e"):
    return {"testId": number, "test": {"name": name, "service": "S", "device": "d", "element": "e",
                                       "repetition": 1}}


def end(number, outcome, **more):
    return {"testId": number, "end": {"outcome": outcome, "text": "T", "seconds": 1.5, **more}}


def read(*events):
    found = verdicts.Verdicts()
    for event in events:
        found.take_line(event if isinstance(event, str) else json.dumps(event))
    found.close()
    return found


class Streams(unittest.TestCase):
    def test_become_a_verdict_for_each_run_of_a_test(self):
        found = read({"run": {"tests": 2}}, begin(1, "a"), begin(2, "b"), end(2, "failed"),
                     end(1, "passed"), {"end": {"outcome": "failed"}})
        self.assertEqual([(test["name"], test["outcome"]) for test in found.tests],
                         [("b", "failed"), ("a", "passed")])
        self.assertEqual((found.outcome, found.planned, found.bad_lines), ("failed", 2, 0))

    def test_that_break_off_have_broken_tests(self):
        found = read({"run": {"tests": 2}}, begin(1), '{"sequence":2,"te')
        self.assertEqual(found.tests[0]["outcome"], "broken")
        self.assertEqual((found.outcome, found.bad_lines), ("", 1))

    def test_with_nonsense_are_read_around_it(self):
        nonsense = ["", "null", "[]", "5", "{", '{"testId":1,"end":5}', '{"testId":[],"end":{}}',
                    '{"end":{"outcome":"splendid"}}', '{"run":[]}', '{"testId":9,"test":""}', "[" * 100000]
        found = read(*nonsense, begin(1), end(1, "passed"))
        self.assertEqual(found.counts["passed"], 1)
        self.assertEqual(found.bad_lines, len(nonsense))

    def test_of_many_tests_are_cut_and_all_are_counted(self):
        events = []
        for number in range(1, verdicts.MOST_TESTS + 11):
            events += [begin(number), end(number, "passed")]
        found = read(*events)
        self.assertEqual((len(found.tests), found.left_out), (verdicts.MOST_TESTS, 10))
        self.assertEqual(found.counts["passed"], verdicts.MOST_TESTS + 10)

    def test_that_are_not_there_have_no_tests(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(verdicts.read_verdicts(os.path.join(folder, "none")).tests, [])


class Texts(unittest.TestCase):
    def test_act_on_no_terminal(self):
        rows = [("a b", "a b"), ("\x1b[31m", "\\x1b[31m"), ("\u009b1m", "\\u009b1m"),
                ("\u202egpj", "\\u202egpj"), ("a\nb", "a\\x0ab"), ("\udcff", "\\udcff"),
                ("測", "測"), ("\u2028", "\\u2028")]
        for text, shown in rows:
            with self.subTest(shown):
                self.assertEqual(verdicts.visible(text), shown)

    def test_are_not_endless(self):
        self.assertEqual(len(verdicts.visible("x" * 10_000_000)), verdicts.LONGEST + 3)

    def test_of_events_are_made_safe(self):
        found = read(begin(1, "\x1b[2J"),
                     {"testId": 1, "diagnosis": {"verdict": "fail", "part": "\x07", "text": "\r",
                                                 "actions": ["\x9b"]}}, end(1, "failed", remark="\x1b"))
        self.assertNotRegex(json.dumps(found.tests, ensure_ascii=False), "[\x00-\x1f\x7f-\x9f]")


class Policies(unittest.TestCase):
    def test_say_why_a_task_fails(self):
        part = {"testId": 1, "diagnosis": {"verdict": "fail", "part": "DIMM_A2", "text": "bit 5"}}
        error = {"testId": 1, "error": {"text": "it crashed"}}
        failed = read(begin(1), part, end(1, "failed"))
        broken = read(begin(1), error, end(1, "broken"))
        passed = read(begin(1), end(1, "warned"))
        rows = [
            (failed, 1, "failed", "hardware is faulty: S,d,e: failed (DIMM_A2: bit 5)"),
            (failed, 1, "unfinished", "hardware is faulty: S,d,e: failed (DIMM_A2: bit 5)"),
            (failed, 1, "never", ""),
            (broken, 3, "failed", ""),
            (broken, 3, "unfinished", "tests without a verdict: S,d,e: broken (it crashed)"),
            (broken, 3, "never", ""),
            (passed, 0, "unfinished", ""),
            (passed, 3, "unfinished", "the run did not come to verdicts on everything (status 3)"),
            (read(), 4, "unfinished", "the run did not come to verdicts on everything (status 4)"),
            (read(), 4, "failed", ""),
        ]
        for found, status, policy, why in rows:
            with self.subTest(status=status, policy=policy):
                self.assertEqual(verdicts.failure(found, status, policy), why)

    def test_name_the_first_of_many(self):
        events = []
        for number in range(1, 9):
            events += [begin(number, f"t{number}"), end(number, "failed")]
        why = verdicts.failure(read(*events), 1, "failed")
        self.assertIn("t5: failed", why)
        self.assertTrue(why.endswith("; and 3 more"), why)


if __name__ == "__main__":
    unittest.main()
