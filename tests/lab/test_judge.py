import argparse
import json
import unittest

from lab import run
from lab.judge import result, table, verdict
from lab.trials import memory, series


def stream(outcome, record="", *more):
    if outcome in ("crashed", "timedOut", "refused"):
        more += ({"sequence": 5, "testId": 1, "error": {"cause": outcome, "text": "it"}},)
        outcome = "broken"
    events = [{"sequence": 0, "source": "engine", "run": {"tests": 1}},
              {"sequence": 1, "source": "engine", "testId": 1, "test": {"name": "T"}}, *more,
              {"sequence": 9, "source": "engine", "testId": 1, "end": {"outcome": outcome, "record": record}},
              {"sequence": 10, "source": "engine", "end": {"outcome": outcome}}]
    return [json.dumps(event) for event in events]


def judged(outcome, healthy=False, acted=True, reached=True):
    return result.judge(verdict.read(stream(outcome)), healthy, acted, reached)


class AStreamOfEvents(unittest.TestCase):
    def test_gives_the_tests_outcome_and_not_the_runs(self):
        lines = stream("passed")
        lines[-1] = lines[-1].replace("passed", "failed")
        self.assertEqual(verdict.read(lines).outcome, "passed")

    def test_that_was_cut_off_has_no_outcome(self):
        self.assertEqual(verdict.read(stream("failed")[:2] + ['{"sequence":2,"en']).outcome, "none")

    def test_may_have_other_lines_in_it(self):
        self.assertEqual(verdict.read(["[    1.2] a line of the kernel", "7", *stream("failed")]).outcome, "failed")

    def test_says_what_record_diagnosis_and_error_say(self):
        diagnosis = {"sequence": 2, "testId": 1, "diagnosis": {"type": "fail", "message": "replace it"}}
        error = {"sequence": 3, "testId": 1, "error": {"cause": "killed", "text": "it was killed"}}
        self.assertEqual(verdict.read(stream("failed", "2 errors", diagnosis, error)).text.split("\n"),
                         ["fail", "replace it", "killed", "it was killed", "failed", "2 errors"])

    def test_the_worst_of_several_tests_counts(self):
        lines = stream("failed")[:3] + stream("passed")[1:]
        self.assertEqual(verdict.read(lines).outcome, "failed")


class TheJudge(unittest.TestCase):
    ROWS = [
        # outcome, healthy, acted, reached, what it comes to
        ("failed", False, True, True, result.FOUND),
        ("warned", False, True, True, result.FOUND),
        ("passed", False, True, True, result.MISSED),
        ("passed", False, False, True, result.NO_EFFECT),
        ("crashed", False, True, True, result.ENDED),
        ("timedOut", False, True, True, result.ENDED),
        ("refused", False, True, True, result.NO_VERDICT),
        ("broken", False, True, True, result.NO_VERDICT),
        ("incomplete", False, True, True, result.NO_VERDICT),
        ("incomplete", False, False, True, result.NO_VERDICT),
        ("passed", False, True, False, result.OUT_OF_REACH),
        ("none", False, True, False, result.OUT_OF_REACH),
        ("failed", False, True, False, result.FALSE_ALARM),
        ("passed", True, False, True, result.SILENT),
        ("failed", True, False, True, result.FALSE_ALARM),
        ("warned", True, False, True, result.FALSE_ALARM),
        ("crashed", True, False, True, result.NO_VERDICT),
        ("none", True, False, True, result.NO_VERDICT),
    ]

    def test_goes_by_outcome_health_effect_and_reach(self):
        for outcome, healthy, acted, reached, wanted in self.ROWS:
            with self.subTest(outcome=outcome, healthy=healthy, acted=acted, reached=reached):
                self.assertEqual(judged(outcome, healthy, acted, reached), wanted)


class APlace(unittest.TestCase):
    ROWS = [
        ("physical page 0x3f2a, module DIMM_A", [0x3F2A], True),
        ("physical address 0x3f2a010, module DIMM_A", [0x3F2A], True),
        ("physical page 0x3f2a, module DIMM_B", [0x3F2A], False),
        ("physical page 0x3f2b, module DIMM_A", [0x3F2A], False),
        ("physical page 0x3f2a and physical page 0x1, module DIMM_A", [0x3F2A], False),
        ("physical page 0x3f2a, module DIMM_A", [0x3F2A, 0x3F2B], True),
        ("memory error, module DIMM_A", [0x3F2A], False),
    ]

    def test_is_right_if_page_and_module_are_named_and_no_other_page(self):
        for text, pages, wanted in self.ROWS:
            with self.subTest(text=text):
                self.assertEqual(verdict.placed(text, pages, "DIMM_A"), wanted)


class APlaceOnADisk(unittest.TestCase):
    ROWS = [
        ("Unreadable: logical block 7: Input/output error\nreplace LAB-3", (7, 7), True),
        ("Unreadable: logical blocks 7 to 9 (3 blocks): bad\nreplace LAB-3", (7, 9), True),
        ("Unreadable: logical block 7: bad\nUnreadable: logical blocks 8 to 9 (2 blocks)\nLAB-3", (7, 9), True),
        ("Unreadable: somewhere in logical blocks 0 to 15 (16 blocks): bad\nreplace LAB-3", (7, 7), False),
        ("Unreadable: logical block 8: bad\nreplace LAB-3", (7, 7), False),
        ("Unreadable: logical block 7: bad\nreplace LAB-4", (7, 7), False),
        ("Critical warning: reliability\nreplace LAB-3", None, True),
        ("Critical warning\nUnreadable: logical block 8: bad\nreplace LAB-3", None, False),
    ]

    def test_is_right_if_the_drive_and_exactly_its_bad_blocks_are_named(self):
        for text, bad, wanted in self.ROWS:
            with self.subTest(text=text):
                self.assertEqual(verdict.placed_on_disk(text, bad, "LAB-3"), wanted)


class ASlowRead(unittest.TestCase):
    ROWS = [
        ("Slow: logical blocks 0 to 15 (16 blocks): 900 ms", (7, 8), True),
        ("Slow: logical block 7: 900 ms\nSlow: logical block 8: 900 ms", (7, 8), True),
        ("Slow: logical block 7: 900 ms", (7, 8), False),
        ("Slow: logical blocks 0 to 15 (16 blocks)\nSlow: logical blocks 16 to 31 (16 blocks)", (7, 8), False),
        ("Unreadable: logical blocks 7 to 8 (2 blocks)", (7, 8), False),
    ]

    def test_is_rightly_placed_if_all_reads_named_have_slow_blocks_and_all_of_these_are_in_them(self):
        for text, slow, wanted in self.ROWS:
            with self.subTest(text=text):
                self.assertEqual(verdict.is_slow(text, slow), wanted)


def some(fault, came_to, times=1, placed=False, test="DIAGS: T"):
    return [result.Result(fault, test, number, came_to, placed) for number in range(times)]


class TheTable(unittest.TestCase):
    RESULTS = (some("stuck", result.FOUND, 3, placed=True) + some("stuck", result.FOUND)
               + some("stuck", result.MISSED) + some("stuck", result.OUT_OF_REACH, 2)
               + some("stuck", result.FELL) + some(result.HEALTHY, result.SILENT, 5)
               + some(result.HEALTHY, result.FALSE_ALARM))

    def test_has_a_row_of_counts_for_each_fault_and_test(self):
        self.assertIn("| stuck | DIAGS: T | 8 | 4 | 3 | 0 | 1 | 0 | 0 | 2 | 1 |", table.text(self.RESULTS))

    def test_counts_healthy_machines_apart(self):
        self.assertIn("| DIAGS: T | 6 | 5 | 1 | 0 | 0 |", table.text(self.RESULTS))

    def test_sets_public_exercisers_beside_the_product(self):
        results = self.RESULTS + some("stuck", result.FOUND, 2, test="memtester")
        written = table.text(results + some("stuck", result.MISSED, test="memtester"))
        self.assertIn("| stuck | 4 of 8 | 2 of 3 |", written)
        self.assertNotIn("| memtester |", written)
        self.assertNotIn("memtester", table.text(self.RESULTS))

    def test_takes_the_place_between_its_marks(self):
        begin, end = table.marks()
        document = f"# Lab\n{begin}\nold\n{end}\nmore\n"
        written = table.put_into(document, self.RESULTS)
        self.assertNotIn("old", written)
        self.assertTrue(written.startswith("# Lab\n") and written.endswith("\nmore\n"))
        self.assertEqual(table.put_into(written, self.RESULTS), written)

    def test_leaves_the_other_parts_of_a_document_alone(self):
        begin, end = table.marks("later")
        other = "".join(f"{mark}\n" for mark in table.marks())
        written = table.put_into(f"{other}{begin}\n{end}\n", self.RESULTS, "later")
        self.assertTrue(written.startswith(other + begin + "\n\n| Fault"))

    def test_refuses_a_document_without_marks(self):
        with self.assertRaises(ValueError):
            table.put_into("# Lab\n", self.RESULTS)

    def test_results_are_the_same_when_read_again(self):
        self.assertEqual(result.read(one.line() + "\n" for one in self.RESULTS), self.RESULTS)


class TheLab(unittest.TestCase):
    ROWS = [
        (some(result.HEALTHY, result.SILENT, 9) + some("stuck", result.FOUND, 9, placed=True), 0),
        (some(result.HEALTHY, result.FALSE_ALARM), 1),
        (some(result.HEALTHY, result.FELL), 1),
        (some("stuck", result.FALSE_ALARM), 1),
        (some("stuck", result.FOUND), 1),
        (some("stuck", result.MISSED, 2), 1),
        (some("stuck", result.FOUND, 100, placed=True) + some("stuck", result.MISSED), 0),
        (some("stuck", result.FELL, 9) + some("stuck", result.OUT_OF_REACH, 9), 0),
    ]

    def test_complains_of_accused_healthy_machines_wrong_places_and_faults_missed_too_often(self):
        for results, wanted in self.ROWS:
            with self.subTest(results=[(one.fault, one.came_to) for one in results[:2]]):
                self.assertEqual(len(run.faults_of(results)), wanted)

    def test_answers_for_the_product_alone(self):
        results = [result.Result("stuck", "memtester", number, result.MISSED) for number in range(5)]
        self.assertEqual(run.faults_of(results), [])


class AMemoryTest(unittest.TestCase):
    def test_is_given_a_seed_only_if_it_draws_numbers(self):
        for name, wanted in (("Moving Inversions Random", True), ("Self Addressing", False), ("Bit Fade", False)):
            with self.subTest(name=name):
                self.assertEqual("Seed=1" in memory.Product(f"DIAGS: Memory {name}").command(), wanted)


class TheChoiceOfTrials(unittest.TestCase):
    ROWS = [(None, "", True), (["stuck"], "", True), (["slow"], "", False), (["slow", "Bit Fade"], "", True),
            (None, "stuck", False), (["stuck"], "Bit Fade", False)]

    def test_is_of_any_text_that_is_given_without_those_that_are_not_wanted(self):
        for only, without, wanted in self.ROWS:
            with self.subTest(only=only, without=without):
                given = argparse.Namespace(only=only, without=without)
                self.assertEqual(run.is_wanted(given, "stuck: DIAGS: Memory Bit Fade"), wanted)


class TheSample(unittest.TestCase):
    ROWS = [
        (some(result.HEALTHY, result.SILENT) + some("stuck", result.FOUND, placed=True), 0),
        (some(result.HEALTHY, result.NO_VERDICT), 1),
        (some("stuck", result.FOUND), 1),
        (some("stuck", result.MISSED) + some("stuck", result.FOUND, placed=True), 0),
        (some("stuck", result.MISSED) * 2, 1),
        (some("stuck", result.NO_EFFECT) + some("stuck", result.FELL), 1),
    ]

    def test_complains_of_what_goes_wrong_twice_in_the_same_place(self):
        for results, wanted in self.ROWS:
            with self.subTest(results=[(one.fault, one.came_to) for one in results]):
                self.assertEqual(len(run.faults_of_sample(results)), wanted)

    def test_each_kind_is_made_so_often_whatever_tests_it_has_and_ten_times_as_many_healthy_machines(self):
        wanted = [series.Wanted(fault, test, None) for fault, test in
                  (("none", "A"), ("none", "B"), ("healthy, NVMe", "C"), ("stuck", "A"), ("stuck", "B"), ("slow link", "C"))]
        made = list(series.of_each_kind(wanted, 5, 8))
        kinds = [one.fault for one, _ in made]
        self.assertEqual(kinds.count("stuck"), 8)
        self.assertEqual(kinds.count("slow link"), 8)
        self.assertEqual(kinds.count("none") + kinds.count("healthy, NVMe"), 80)
        self.assertEqual([(one.test, seed) for one, seed in made],
                         [(one.test, seed) for one, seed in series.of_each_kind(wanted, 5, 8)])
        self.assertEqual(len({(one.fault, one.test, seed) for one, seed in made}), len(made), "none is made twice")

    def test_makes_the_same_trials_every_time(self):
        wanted = [series.Wanted(fault, test, None) for fault, test in series._SAMPLE]
        made = series.sample(wanted, 1)
        self.assertEqual(made, series.sample(wanted, 1))
        self.assertEqual(len(made), len(series._SAMPLE))


if __name__ == "__main__":
    unittest.main()
