"""Races between builds: pairs of runs until there is a verdict, within a budget.

Every time that is asked for is first looked up in the state; only what is not known is
measured. What is spent counts what is looked up as well, so that a search that was
interrupted ends as it would have ended.
"""

import math

from inlinerecursion_tune.build import DEFAULT, PLAIN
from inlinerecursion_tune.errors import Differs, OutOfBudget, TuneError
from inlinerecursion_tune.measure import Run, find_difference
from inlinerecursion_tune.verdict import Verdict, judge

SCREENED_PAIRS = 3
# A verdict takes ten pairs; one in the search and one at the end are the least.
LEAST_RUNS = 40
# A run below that is mostly what the system does to start it.
SHORT_RUN = 0.02


class OutputDiffers(Exception):
    """A build has been taken out: the search is to begin again without it."""


class Bench:
    def __init__(self, builder, runner, state, budget, progress):
        self.builder = builder
        self.runner = runner
        self.state = state
        self.budget = budget
        self.progress = progress
        self.spent = 0
        self.limit = budget
        self.expected = None
        self.seconds = []  # of the plain runs in the beginning

    def begin_plain(self):
        """Builds without the plugin, and learns what a run does and how long it takes."""
        self.builder.make(PLAIN, what="the build without the plugin")
        known = self.state.facts.get("plain")
        if not known:
            known = self.state.facts["plain"] = self.run_plain()
            self.state.save()
        runs = [Run(**each) for each in known]
        self.expected = runs[0]
        self.runner.set_limit(max(run.elapsed for run in runs))
        self.seconds = [run.seconds for run in runs]
        self.restart()
        return min(self.seconds)

    def restart(self):
        """The search begins again, and counts what it asks for again."""
        self.spent = sum(self.seconds)
        self.limit = self.budget

    def run_plain(self):
        self.builder.activate(PLAIN)
        runs = []
        for _ in range(2):
            run = self.runner.run()
            self.runner.check_status(run, "the build without the plugin")
            runs.append(run)
            if difference := find_difference(run, runs[0]):
                raise TuneError(
                    "the program is not deterministic: two runs of the same build differ"
                    f" ({difference}), so nobody can tell whether a plan keeps what it"
                    " does; make it so, or leave that out with --ignore")
        return [vars(run) for run in runs]

    def check_budget(self, seconds):
        if seconds <= 0 or LEAST_RUNS * seconds <= self.budget:
            return
        raise TuneError(
            f"a run takes {seconds:.1f} s, and a verdict needs {LEAST_RUNS} runs: give it"
            f" --budget {math.ceil(LEAST_RUNS * seconds)}s at least, or less to do")

    def time(self, variant):
        """The seconds of one run, which has to do what the plain build did."""
        self.builder.activate(variant)
        try:
            run = self.runner.run()
            if difference := find_difference(run, self.expected):
                raise Differs(difference)
        except Differs as error:
            self.take_out(variant, str(error))
        return max(run.seconds, 1e-6)

    def take_out(self, variant, problem):
        if variant == PLAIN:
            raise TuneError("the program is not deterministic: a later run of the plain"
                            f" build differs ({problem})")
        self.state.variants[variant]["problem"] = problem
        self.state.save()
        raise OutputDiffers(variant)

    def check_runs(self, variant):
        """One run, once, to see whether it does what it should. A problem, or nothing."""
        known = self.state.variants[variant]
        if not known["problem"] and not known.get("checked"):
            try:
                self.time(variant)
                known["checked"] = True
                self.state.save()
            except OutputDiffers:
                pass
        return known["problem"]

    def measure_pair(self, candidate, reference, index):
        """[seconds of the candidate, of the reference]; each is first in every other."""
        seconds = {}
        both = (candidate, reference)
        for variant in both if index % 2 == 0 else reversed(both):
            seconds[variant] = self.time(variant)
        return [seconds[candidate], seconds[reference]]

    def race(self, candidate, reference, phase, may_give_up=True, most=None):
        """The verdict on a candidate; with at most so many pairs, if that is said."""
        known = self.state.pairs.setdefault(f"{candidate} {reference} {phase}", [])
        ratios = []
        while not (verdict := judge(ratios, may_give_up)):
            if most and len(ratios) == most:
                middle = sorted(ratios)[len(ratios) // 2]
                return Verdict("promising", len(ratios), math.exp(middle))
            self.check_room(self.limit, sum(known[0]) if known else 0)
            if len(ratios) == len(known):
                known.append(self.measure_pair(candidate, reference, len(ratios)))
                self.state.save()
            pair = known[len(ratios)]
            ratios.append(math.log(pair[0] / pair[1]))
            self.spent += sum(pair)
            self.progress.show(self.spent)
        return verdict

    def check_room(self, limit, pair=0):
        """Is there time for another pair, which takes so long as far as is known?"""
        if self.spent + (pair or 2 * min(self.seconds)) > limit:
            raise OutOfBudget

    def screen(self, candidate):
        """A first look at a candidate, beside the plugin's default."""
        return self.race(candidate, self.builder.find_same(DEFAULT), "screening",
                         most=SCREENED_PAIRS)
