"""The search for the best plan.

Function by function, the hottest first: each plan is built, and if the plugin accepts it,
it gets a first look of three pairs beside the plugin's default. Those that are promising
then race, the best first, against the best so far, which is the default in the beginning. A
function has only a part of the time for its turn, and another turn for what it had no time
for. When there is nothing more to try, what lies next to the winners is tried in the same
way. Then the winners run together, and against the best of them alone; and what
comes out of that races once more against the default, with times that no choice has been
made by, so that what is accepted is not the luckiest of many.

What was found of each plan is kept in rows, for the table.
"""

from dataclasses import dataclass, field

from inlinerecursion_tune import candidates, plans
from inlinerecursion_tune.build import DEFAULT, PLAIN, name_variant
from inlinerecursion_tune.errors import OutOfBudget
from inlinerecursion_tune.verdict import Verdict

# Of what is left, the first looks of one turn of a function may take so much.
SCREENING_SHARE = 0.25
NEIGHBOUR_ROUNDS = 2
# Of the budget, kept for the race at the end; or so many runs, if that is more.
RESERVED_SHARE = 0.25
RESERVED_RUNS = 60
MOST_RESERVED = 0.5


@dataclass
class Row:
    target: plans.Target
    plan: str
    done: str
    verdict: Verdict
    phase: str = "screening"
    screened: float = None  # of times, to the default's, as its first look had it


@dataclass
class Champion:
    """The best plan of a function so far."""

    target: plans.Target
    plan: str = ""
    done: str = ""
    ratio: float = 1  # of times, to the default's

    @property
    def wanted(self):
        return {self.target.key: self.plan} if self.plan else {}


@dataclass
class Result:
    plan: dict = field(default_factory=dict)
    rows: list = field(default_factory=list)
    # {name: Verdict} of the last races
    final: dict = field(default_factory=dict)
    out_of_budget: bool = False


class Search:
    def __init__(self, bench, builder, targets, seconds, progress):
        self.bench = bench
        self.builder = builder
        self.targets = targets
        self.progress = progress
        self.result = Result()
        self.tried = {}  # name of a build: how the row calls its plan
        self.default = builder.find_same(DEFAULT)
        reserved = max(RESERVED_SHARE * bench.budget, RESERVED_RUNS * seconds)
        self.limit = bench.budget - min(reserved, MOST_RESERVED * bench.budget)

    def note(self, target, plan, done, verdict, phase="screening", screened=None):
        screened = screened or verdict.ratio
        self.result.rows.append(Row(target, plan, done, verdict, phase, screened))
        self.progress.tell_row(self.result.rows[-1])

    def build(self, target, text):
        """(name of the build, what was done), or a verdict if there is nothing to run."""
        variant = name_variant({target.key: text})
        known = self.builder.make_or_note(variant, {target.key: text})
        if known.get("fails"):
            return None, "", Verdict("no build", why=known["problem"].split("\n")[-1])
        done, _ = known["done"].get(target.key, ("", ""))
        if not plans.is_done(text, done):
            self.builder.workspace.drop(variant)
            why = known.get("refused") or f"what is built is: {done or 'gone'}"
            return None, done, Verdict("refused", why=why)
        same = self.builder.find_same(variant)
        if same != variant:
            self.builder.workspace.drop(variant)
        title = f"'{text}' for {target.title}"
        # It may have been tried in an earlier turn, which had no time for it.
        like = DEFAULT if same == self.default else self.tried.get(same, title)
        if like != title:
            return None, done, Verdict("same", why=f"the program is that of {like}")
        if problem := self.builder.state.variants[same]["problem"]:
            return None, done, Verdict("differs", why=problem)
        self.tried[same] = title
        return same, done, None

    def screen(self, target, texts):
        """[(ratio, text, variant, done)] of the promising ones, the best first, and the
        texts that there was no time for."""
        promising = []
        limit = (self.bench.spent
                 + SCREENING_SHARE * (self.bench.limit - self.bench.spent))
        for index, text in enumerate(texts):
            self.progress.begin(f"{target.title}: {text}")
            try:
                self.bench.check_room(limit)
                variant, done, verdict = self.build(target, text)
                verdict = verdict or self.bench.screen(variant)
            except OutOfBudget:
                return sorted(promising), texts[index:]
            if verdict.word in ("promising", "faster"):
                promising.append((verdict.ratio, text, variant, done))
                continue
            if variant:
                self.builder.workspace.drop(variant)
            self.note(target, text, done, verdict)
        return sorted(promising), []

    def race(self, champion, promising):
        """The better of the champion and these."""
        for screened, text, variant, done in promising:
            self.progress.begin(f"{champion.target.title}: {text}")
            beaten = self.builder.find_same(name_variant(champion.wanted))
            try:
                verdict = self.bench.race(variant, beaten, "race")
            except OutOfBudget:
                self.note(champion.target, text, done,
                          Verdict("undecided", why="no budget left to decide"), "race",
                          screened)
                self.result.out_of_budget = True
                continue
            self.note(champion.target, text, done, verdict, "race", screened)
            self.builder.workspace.drop_unless(
                self.default, beaten if verdict.is_faster else variant)
            if verdict.is_faster:
                champion = Champion(champion.target, text, done,
                                    champion.ratio * verdict.ratio)
                self.progress.note_best(champion)
        return champion

    def take_turns(self, champions, pending):
        """Tries {key: texts} in turns, as each gets only a part of the time at once."""
        while any(pending.values()):
            before = self.bench.spent
            for key, champion in champions.items():
                promising, pending[key] = self.screen(champion.target, pending[key])
                champions[key] = self.race(champion, promising)
            if self.bench.spent == before:
                break
        for key, texts in pending.items():
            for text in texts:
                self.note(champions[key].target, text, "",
                          Verdict("not tried", why="no budget left"))
                self.result.out_of_budget = True

    def find_neighbours(self, champion):
        tried = {row.plan for row in self.result.rows if row.target is champion.target}
        return [text for text in candidates.get_neighbours(
            champion.done or champion.target.plan) if text not in tried]

    def find_champions(self):
        self.bench.limit = self.limit
        champions = {target.key: Champion(target) for target in self.targets}
        self.take_turns(champions, {target.key: candidates.get_first(target.plan)
                                    for target in self.targets})
        for _ in range(NEIGHBOUR_ROUNDS):
            before = {key: each.plan for key, each in champions.items()}
            self.take_turns(champions, {key: self.find_neighbours(each)
                                        for key, each in champions.items()})
            if before == {key: each.plan for key, each in champions.items()}:
                break
        return sorted((self.settle(each) for each in champions.values() if each.plan),
                      key=lambda each: each.ratio)

    def settle(self, champion):
        """The same with all that the plugin has decided said in the plan, so that another
        version of it decides nothing else; if that is the same program."""
        wanted = {champion.target.key: champion.done}
        if champion.done != champion.plan:
            known = self.builder.make_or_note(name_variant(wanted), wanted)
            asked = self.builder.state.variants[name_variant(champion.wanted)]
            if known["programs"] == asked["programs"]:
                champion.plan = champion.done
        return champion

    def build_all(self, champions):
        """(plan, the build) of several champions; no build if the plugin refuses one."""
        plan = {}
        for champion in champions:
            plan.update(champion.wanted)
        known = self.builder.make_or_note(name_variant(plan), plan)
        accepted = all(plans.is_done(text, known["done"].get(key, ("",))[0])
                       for key, text in plan.items())
        variant = self.builder.find_same(name_variant(plan))
        is_right = not self.builder.state.variants[variant]["problem"]
        return plan, variant if accepted and is_right else None

    def is_better(self, candidate, reference):
        if not candidate or candidate == reference:
            return False
        try:
            return self.bench.race(candidate, reference, "together").is_faster
        except OutOfBudget:
            self.result.out_of_budget = True
            return False

    def combine(self, champions):
        """Plans to be raced at the end, the one that should win first."""
        single, alone = self.build_all(champions[:1])
        if len(champions) == 1:
            return [(single, alone)]
        self.progress.begin("all together")
        plan, together = self.build_all(champions)
        if self.is_better(together, alone):
            return [(plan, together), (single, alone)]
        kept, best, best_build = champions[:1], single, alone
        for champion in champions[1:] if len(champions) > 2 else []:
            plan, build = self.build_all([*kept, champion])
            if self.is_better(build, best_build):
                kept, best, best_build = [*kept, champion], plan, build
        return [(best, best_build)] + ([(single, alone)] if len(kept) > 1 else [])

    def race_at_end(self, candidate, reference, name):
        self.progress.begin(f"at the end: {name}")
        try:
            verdict = self.bench.race(candidate, reference, "end", may_give_up=False)
        except OutOfBudget:
            self.result.out_of_budget = True
            verdict = Verdict("undecided", why="no budget left to decide")
        self.result.final[name] = verdict
        return verdict

    def run(self):
        """The best plan, which may be an empty one: the plugin's default."""
        champions = self.find_champions()
        finals = self.combine(champions) if champions else []
        self.bench.limit = self.bench.budget
        chosen = self.default
        for plan, variant in finals:
            if not variant:
                continue
            verdict = self.race_at_end(variant, self.default, "plan/default")
            if verdict.is_faster:
                self.result.plan, chosen = plan, variant
                break
        plain = self.builder.find_same(PLAIN)
        races = [(self.default, "default/plain")]
        if chosen != self.default:
            races.append((chosen, "plan/plain"))
        for variant, name in races:
            if variant == plain:
                self.result.final[name] = Verdict("same", why="the program is the same")
            else:
                self.race_at_end(variant, plain, name)
        return self.result
