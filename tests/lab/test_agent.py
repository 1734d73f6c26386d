import os
import subprocess
import unittest

AGENT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../lab/image/agent")


def said(*lines):
    """What the agent says to these lines; `poweroff` is nobody's here."""
    done = subprocess.run(["sh", AGENT], input="".join(line + "\n" for line in lines), text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env={"PATH": "/usr/bin:/bin"}, timeout=20)
    return [line for line in done.stdout.splitlines() if "poweroff" not in line]


class TheAgent(unittest.TestCase):
    def test_says_that_it_listens(self):
        self.assertEqual(said(), ["@ready"])

    def test_answers_with_output_and_status(self):
        self.assertEqual(said("14 echo a; exit 3"), ["@ready", "a", "@done 3"])

    def test_carries_out_no_line_that_lost_letters(self):
        self.assertEqual(said("14 echo a; ext 3"), ["@ready", "@again"])

    def test_outlives_a_line_that_makes_no_sense(self):
        answers = said("6 echo 'a", "7 echo 'a", "6 echo b")
        self.assertEqual([answers[1], *answers[-3:]], ["@again", "@done 2", "b", "@done 0"])


if __name__ == "__main__":
    unittest.main()
