"""Tests of the tuner's statistics, of its plans and of what ends a run."""

import math
import random
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent.parent / "scripts"))
sys.dont_write_bytecode = True

from inlinerecursion_tune import candidates, hotness, plans, verdict  # noqa: E402
from inlinerecursion_tune.errors import Differs  # noqa: E402
from inlinerecursion_tune.measure import Runner, RunOptions  # noqa: E402
from inlinerecursion_tune.state import State, load_state  # noqa: E402
from inlinerecursion_tune.workspace import Workspace  # noqa: E402


def race(draw, may_give_up=True):
    """The verdict when the logarithms of ratios come from `draw`."""
    ratios = []
    while not (found := verdict.judge(ratios, may_give_up)):
        ratios.append(draw())
    return found



class Verdicts(unittest.TestCase):
    def test_interval_leaves_the_median_out_no_more_often_than_its_error(self):
        for pairs in verdict.LOOKS:
            low, high = verdict.find_interval(list(range(pairs)))
            # The chance that more than pairs - low ratios are on one side of it.
            wrong = 2 * sum(math.comb(pairs, k) for k in range(low + 1)) / 2 ** pairs
            next_wrong = 2 * sum(math.comb(pairs, k) for k in range(low + 2)) / 2 ** pairs
            self.assertEqual(high, pairs - 1 - low)
            self.assertLessEqual(wrong, verdict.ERROR / len(verdict.LOOKS))
            self.assertGreater(next_wrong, verdict.ERROR / len(verdict.LOOKS))

    def test_equal_programs_are_rarely_told_apart(self):
        generator = random.Random(3)
        words = [race(lambda: generator.gauss(0, 0.02), may_give_up=False).word
                 for _ in range(1000)]
        wrong = sum(word in ("faster", "slower") for word in words)
        # 1 % are allowed.
        self.assertLessEqual(wrong, 10)

    def test_clear_difference_takes_the_first_look(self):
        generator = random.Random(3)
        found = race(lambda: generator.gauss(-0.05, 0.005))
        self.assertEqual((found.word, found.pairs), ("faster", verdict.LOOKS[0]))
        self.assertLess(found.low, found.ratio)
        self.assertLess(found.high, 1)
        found = race(lambda: generator.gauss(0.05, 0.005), may_give_up=False)
        self.assertEqual((found.word, found.pairs), ("slower", verdict.LOOKS[0]))

    def test_small_difference_takes_more_pairs(self):
        generator = random.Random(4)
        found = race(lambda: generator.gauss(-0.01, 0.012))
        self.assertEqual(found.word, "faster")
        self.assertGreater(found.pairs, verdict.LOOKS[0])

    def test_given_up_early(self):
        self.assertEqual(race(lambda: 0.1).pairs, 2)
        self.assertEqual(race(lambda: 0.0).pairs, 3)
        self.assertIsNone(verdict.judge([0.1, -0.1]))
        # What has looked good so far, and does so no more at a look.
        self.assertEqual(race(iter([-0.1] * 3 + [0.02, 0.02, -0.02] * 15).__next__).pairs, 10)
        self.assertIsNone(verdict.judge([0.1] * 3, may_give_up=False))

    def test_one_lucky_pair_does_not_keep_a_plan_in_the_race(self):
        self.assertEqual(verdict.judge([-0.9, 0.01, 0.01]).word, "no faster")

    def test_wide_spread_is_undecided(self):
        found = race(iter([-0.5, 0.4, -0.6] + [0.5, -0.5, -0.5] * 20).__next__)
        self.assertEqual((found.word, found.pairs), ("undecided", verdict.LOOKS[-1]))
        self.assertIn("spread", found.why)

    def test_certain_but_tiny_gain_is_none(self):
        generator = random.Random(5)
        found = race(lambda: generator.gauss(0, 0.001), may_give_up=False)
        self.assertEqual(found.word, "no faster")


class Plans(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "plan"

    def test_what_is_written_is_read(self):
        entries = [
            plans.Entry("walk", "none", "src/a.c", body="0012345678901234"),
            plans.Entry("walk", "split", "src/b.c", file="src/b.h", where="late"),
            plans.Entry("_Z1fi", "none", "src/a.c"),
            plans.Entry("_Z1fi", "none", "src/b.c"),
            plans.Entry("it's", "none"),
        ]
        targets = plans.make_targets(entries)
        # The inline function of C++ is one; those of C are two.
        self.assertEqual(len(targets), 4)
        chosen = {target.key: "ring copies=2" for target in targets}
        self.path.write_text(plans.format_plan(chosen, targets))
        found = plans.read_plan(self.path)
        self.assertEqual(len(found), len(entries))
        for entry in entries:
            self.assertIn(plans.Entry(entry.name, "ring copies=2", entry.module,
                                      entry.file, entry.where, entry.body), found)

    def test_no_file_is_an_empty_plan(self):
        self.assertEqual(plans.read_plan(self.path), [])

    def test_done_may_say_more_than_asked(self):
        self.assertTrue(plans.is_done("ring", "ring copies=3 guard"))
        self.assertFalse(plans.is_done("ring copies=2", "ring copies=3 guard"))
        self.assertFalse(plans.is_done("ring guard", "ring copies=3 no-guard"))

    def test_neighbours_differ_in_one_thing(self):
        found = candidates.get_neighbours("ring copies=2 guard no-staggered")
        self.assertIn("ring copies=3 guard no-staggered", found)
        self.assertIn("ring copies=2 no-guard no-staggered", found)
        self.assertIn("ring copies=2 guard staggered", found)
        self.assertIn("ring copies=2 guard no-staggered pass-sum", found)
        self.assertNotIn("ring copies=1 guard no-staggered", found)
        self.assertIn("leaves levels=3,2", candidates.get_neighbours("leaves levels=2,2"))
        for plan in ("none", "states arguments=1,3", "ring copies=4 rules", "chain"):
            self.assertEqual(candidates.get_neighbours(plan), [])

    def test_default_is_not_tried_again(self):
        first = candidates.get_first("ring copies=2 guard no-staggered")
        self.assertNotIn("ring copies=2 guard", first)
        self.assertIn("ring copies=2 no-guard", first)
        self.assertNotIn("states", candidates.get_first("states arguments=1"))


class Hotness(unittest.TestCase):
    def test_counters_of_a_profile_are_added_up(self):
        text = (":fe\nsrc/a.c:walk\n# Func Hash:\n12\n# Num Counters:\n2\n"
                "# Counter Values:\n30\n12\n\nmain\n# Func Hash:\n0\n# Num Counters:\n1\n"
                "# Counter Values:\n1\n\n")
        counts = hotness.parse_profile(text)
        self.assertEqual(counts, {"src/a.c:walk": 42, "main": 1})
        here = plans.Target("1", [plans.Entry("walk", "none", "../src/a.c")])
        other = plans.Target("2", [plans.Entry("walk", "none", "src/b.c")])
        self.assertEqual(hotness.count_target(here, counts), 42)
        self.assertEqual(hotness.count_target(other, counts), 0)

    def test_samples_of_copies_count_for_the_function(self):
        counts = hotness.parse_samples("   745  [.] walk\n     5  [.] walk.recurse.rest\n"
                                       "  not a line\n")
        self.assertEqual(counts, {"walk": 750})


class States(unittest.TestCase):
    def test_what_cannot_be_read_is_told(self):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            state = State(folder / "state.json", {"a": "1"})
            state.pairs["x y"] = [[1.0, 2.0]]
            state.save()
            self.assertEqual(load_state(folder, {"a": "1"})[0].pairs, state.pairs)
            self.assertEqual(load_state(folder, {"a": "2"})[1], "a changed since")
            (folder / "state.json").write_text('{"inputs": {"a": "1"')
            self.assertIn("cannot be read", load_state(folder, {"a": "1"})[1])


class Runs(unittest.TestCase):
    def make_runner(self, command):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        workspace = Workspace(Path(folder.name), Path(folder.name), [])
        workspace.tree.mkdir(parents=True)
        return Runner(workspace, RunOptions(command))

    def test_run_without_end_is_ended(self):
        runner = self.make_runner("tail -f /dev/null")
        runner.limit = 0.01
        with self.assertRaisesRegex(Differs, "no end"):
            runner.run()

    def test_status(self):
        self.assertEqual(self.make_runner("sh -c 'exit 3'; true").run().status, 0)
        self.assertEqual(self.make_runner("sh -c 'exit 3'").run().status, 3)
        self.assertEqual(self.make_runner("kill -TERM $$").run().status, -15)

    def test_user_time_of_what_it_starts_counts(self):
        # The inner shell says how much it has used, which is some of the whole.
        loop = "i=0; while [ $i -lt 100000 ]; do i=$((i+1)); done; times"
        runner = self.make_runner(f"sh -c '{loop}'; true")
        run = runner.run()
        minutes, seconds = (runner.workspace.place / "stdout").read_text().split(
            "s ")[0].split("m")
        # It rounds.
        self.assertGreaterEqual(run.seconds + 0.01, 60 * int(minutes) + float(seconds))


unittest.main()
