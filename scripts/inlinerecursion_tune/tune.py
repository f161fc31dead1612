"""One call of the tuner, from the sources to the plan."""

from dataclasses import dataclass, field
from pathlib import Path

from inlinerecursion_tune import build, chart, compilers, hotness, plans, table
from inlinerecursion_tune.bench import SHORT_RUN, Bench, OutputDiffers
from inlinerecursion_tune.build import DEFAULT
from inlinerecursion_tune.errors import TuneError
from inlinerecursion_tune.measure import Runner, RunOptions
from inlinerecursion_tune.progress import Progress, format_speed
from inlinerecursion_tune.search import Search
from inlinerecursion_tune.state import load_state
from inlinerecursion_tune.workspace import Workspace, hash_file, hash_files


@dataclass
class Options:
    build: str
    run: RunOptions
    output: Path
    source: Path
    work: Path
    tools: compilers.Tools
    budget: float
    copy_limit: int
    table: Path
    json: Path
    chart: Path
    function: object = None  # a regular expression
    hotness: str = "auto"
    fresh: bool = False
    outputs: list = field(init=False)

    def __post_init__(self):
        self.outputs = [each for each in (self.output, self.table, self.json, self.chart)
                        if each] + find_redirected()


def find_redirected():
    """The files that standard output and error go to, maybe among the sources."""
    found = [Path(f"/proc/self/fd/{number}") for number in (1, 2)]
    return [each.resolve() for each in found if each.is_file()]


def describe_inputs(options, workspace):
    """What the result depends on, but for the budget: more of it goes on."""
    return {
        "the sources": hash_files(options.source, workspace.leave_out),
        "the build command": options.build,
        "the run": repr(options.run),
        "the plugin": f"{hash_file(options.tools.plugin)} {options.tools.describe()}",
        "the functions": options.function.pattern if options.function else "",
        "what is hot": options.hotness,
    }


def open_state(options, workspace, progress):
    inputs = describe_inputs(options, workspace)
    state, stale = load_state(workspace.folder, inputs)
    if options.fresh or stale:
        if stale and not options.fresh:
            progress.tell(f"{stale}: starting anew")
        workspace.clear()
        state, _ = load_state(workspace.folder, inputs)
    elif state.pairs:
        progress.tell(f"going on with {sum(map(len, state.pairs.values()))} pairs of runs"
                      " that are known")
    workspace.check_size(options.copy_limit)
    workspace.take_sources()
    return state


class Session:
    def __init__(self, options):
        self.options = options
        self.progress = Progress(options.budget)
        self.workspace = Workspace(options.work, options.source, options.outputs)
        self.state = None
        self.builder = None
        self.runner = None
        self.bench = None

    def open(self):
        self.workspace.open()
        self.state = open_state(self.options, self.workspace, self.progress)
        self.builder = build.Builder(self.workspace, self.options.tools,
                                     self.options.build, self.state)
        self.builder.prepare()
        self.runner = Runner(self.workspace, self.options.run)
        self.bench = Bench(self.builder, self.runner, self.state, self.options.budget,
                           self.progress)

    def begin(self):
        """The plain build and the plugin's default; the targets."""
        self.progress.begin("without the plugin")
        seconds = self.bench.begin_plain()
        self.progress.tell(f"a run without the plugin takes {seconds:.3f} s")
        self.bench.check_budget(seconds)
        if seconds < SHORT_RUN and not self.options.run.seconds_in:
            self.progress.tell("that is too short to measure well: give it more to do")
        self.progress.begin("with the plugin")
        known = self.builder.make(DEFAULT, what="the build with the plugin")
        targets = plans.make_targets(plans.Entry(**each) for each in known["entries"])
        name_targets(targets)
        self.builder.targets = targets
        if not targets:
            raise TuneError("the plugin has seen no recursive function in this build")
        return targets

    def select(self, targets):
        """Those that are tried, the hottest first."""
        wanted = self.options.function
        chosen = [target for target in targets if not wanted
                  or wanted.search(target.title) or wanted.search(target.name)]
        if not chosen:
            raise TuneError(
                f"no recursive function fits --function '{wanted.pattern}'; there are: "
                + ", ".join(target.title for target in targets))
        hot = hotness.rank(chosen, self.find_counts())
        number = table.count(len(chosen), "recursive function")
        way = self.state.facts["hot by"]
        if way == "none":
            self.progress.tell(f"{number}; it is not known how hot they are, so all are"
                               " tried, in the order of the plugin's plan")
        else:
            self.progress.tell(f"{number}, {len(hot)} of them hot by the"
                               f" {'samples' if way == 'perf' else way}")
        return hot

    def find_counts(self):
        facts = self.state.facts
        if "counts" not in facts:
            self.progress.begin("which functions are hot")
            counts, known_by, told = hotness.find_counts(
                self.options.hotness, self.builder, self.runner, self.options.tools,
                DEFAULT)
            for line in told:
                self.progress.tell(line)
            facts["counts"], facts["hot by"] = counts, known_by
            self.state.save()
        return facts["counts"]

    def check_default(self, hot):
        """The default must do what the plain build does; or which function is it?"""
        problem = self.bench.check_runs(self.builder.find_same(DEFAULT))
        if not problem:
            return
        lines = [f"the plugin's default plan changes what the program does: {problem}"]
        for target in hot:
            plan = {target.key: "none"}
            known = self.builder.make_or_note(build.name_variant(plan), plan)
            same = self.builder.find_same(build.name_variant(plan))
            if not known["problem"] and not self.bench.check_runs(same):
                lines.append(f"  not so with the plan 'none' for {target.title}"
                             f" ({target.place}), by default: {target.plan}")
        raise TuneError("\n".join(lines))

    def search(self, hot, seconds):
        while True:
            self.bench.restart()
            try:
                return Search(self.bench, self.builder, hot, seconds,
                              self.progress).run()
            except OutputDiffers as error:
                self.check_variant(str(error), hot)

    def check_variant(self, variant, hot):
        """A build that differs is left out; but the default cannot be."""
        if variant == self.builder.find_same(DEFAULT):
            self.check_default(hot)

    def run(self):
        self.open()
        targets = self.begin()
        hot = self.select(targets)
        self.check_default(hot)
        result = self.search(hot, min(self.bench.seconds))
        self.write(result, targets, hot)
        return result

    def write(self, result, targets, hot):
        options, spent = self.options, self.bench.spent
        reasons = {}
        for key in result.plan:
            reasons[key] = "measured by inlinerecursion-tune"
        write_file(options.output, make_header(options, result)
                   + plans.format_plan(result.plan, targets, reasons))
        text = table.to_text(result, hot, spent)
        facts = {"build": options.build, "run": options.run.command,
                 "hot_by": self.state.facts["hot by"],
                 "plain_seconds": min(self.bench.seconds)}
        write_file(options.table, text)
        write_file(options.json, table.to_json(result, hot, spent, facts))
        self.progress.close()
        if options.chart:
            try:
                chart.draw(result, hot, options.chart)
            except TuneError as error:
                self.progress.tell(str(error))
        print(text, end="")


def name_targets(targets):
    from demangle import demangle
    titles = demangle([target.name for target in targets])
    for target, title in zip(targets, titles):
        late = [entry.where for entry in target.entries
                if entry.where not in ("", "early")]
        target.title = f"{title} [{late[0]}]" if late else title
    # Local functions of the same name are told apart by their files.
    for target in targets:
        if titles.count(target.title) > 1:
            target.title += f" ({target.place})"


def make_header(options, result):
    lines = [f"# Found by inlinerecursion-tune --build '{options.build}'"
             f" --run '{options.run.command}'"]
    verdict = result.final.get("plan/default")
    if result.plan:
        lines.append(f"# {format_speed(verdict.ratio)} as fast as with the plugin's"
                     " default, for this run on this machine.")
    else:
        lines.append("# Nothing beats the plugin's default.")
    # A command may be of several lines.
    return "".join("# " + line.removeprefix("# ") + "\n"
                   for line in "\n".join(lines).splitlines())


def write_file(path, text):
    try:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, errors="backslashreplace")
    except OSError as error:
        raise TuneError(f"{path}: cannot be written: {error.strerror}") from None
