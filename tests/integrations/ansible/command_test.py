"""The command line of a task, and how long it may take."""
import unittest

from ansible_collections.diagsrunner.diags.plugins.module_utils import command

PLAIN = {
    "diags": "diags", "plan": None, "tests": [], "all": False, "exclude": [], "quick": False,
    "settings": {}, "repeat": None, "allow_destructive": False, "allow_disruptive": False,
    "ignore_providers": False, "timeout": None, "deadline": "2h", "grace": None, "jsonl": None,
    "junit": None, "html": None, "metrics": None, "redact": False,
    "history": True, "state": None, "root": None,
}


def words(events="/e", **params):
    """Those behind what every command has."""
    return command.command({**PLAIN, "deadline": None, **params}, events)[2:]


class Durations(unittest.TestCase):
    def test_are_what_the_command_takes(self):
        rows = [("90s", 90), ("1h30m", 5400), ("2d", 172800), ("500ms", 0.5), ("1m1ms", 60.001)]
        for text, seconds in rows:
            with self.subTest(text):
                self.assertAlmostEqual(command.seconds(text), seconds)

    def test_others_are_quoted(self):
        for text in ("", "soon", "90", "1m1h", "-1s", "1.5h", "1s ", "s"):
            with self.subTest(text), self.assertRaisesRegex(ValueError, f'^"{text}" is no time'):
                command.seconds(text)

    def test_the_task_outlasts_the_run(self):
        self.assertEqual(command.time_limit({"deadline": "1m", "grace": "5s"}), 60 + 5 + 120)
        self.assertEqual(command.time_limit({"deadline": "1m", "grace": None}), 60 + 10 + 120)


class Commands(unittest.TestCase):
    def test_have_an_option_for_each_parameter(self):
        rows = [
            ({"plan": "quick"}, ["--plan", "quick"]),
            ({"all": True}, ["--all"]),
            ({"exclude": ["a", "b"]}, ["--exclude", "a", "--exclude", "b"]),
            ({"repeat": 3}, ["--repeat", "3"]),
            ({"settings": {"Loops": 3, "Fast": True}}, ["--set", "Loops=3", "--set", "Fast=true"]),
            ({"allow_disruptive": True}, ["--allow-disruptive"]),
            ({"allow_destructive": True}, ["--allow-destructive"]),
            ({"root": "/r", "state": "/s"}, ["--root", "/r", "--state", "/s"]),
            ({"redact": True}, ["--redact"]),
        ]
        for params, options in rows:
            with self.subTest(params):
                self.assertEqual(words(**params), options + ["--quiet", "--events", "/e"])

    def test_write_the_files_that_are_named(self):
        self.assertEqual(words(jsonl="/j", metrics="/m", history=False),
                         ["--quiet", "--events", "/e", "--no-history", "--jsonl", "/j", "--metrics", "/m"])

    def test_take_no_test_for_an_option(self):
        self.assertEqual(words(tests=["--all", "b"])[-3:], ["--", "--all", "b"])

    def test_that_are_only_tried_write_nothing(self):
        self.assertEqual(words(None, plan="quick", jsonl="/j"), ["--plan", "quick", "--dry-run"])


class Changes(unittest.TestCase):
    def test_are_what_is_left_behind(self):
        rows = [({"history": True}, True), ({"history": False}, False),
                ({"history": False, "jsonl": "/j"}, True), ({"history": False, "metrics": "/m"}, True)]
        for params, changed in rows:
            with self.subTest(params):
                self.assertEqual(command.leaves_something({**PLAIN, **params}), changed)


if __name__ == "__main__":
    unittest.main()
