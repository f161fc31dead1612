"""The chart: for each function, how fast the program is with each plan."""

from inlinerecursion_tune.errors import TuneError
from inlinerecursion_tune.table import order_rows

# By the verdict that a plan got: was it faster than all before it, beyond doubt?
COLOURS = {"accepted": "#2a7f3f", "not accepted": "#8a8a8a", "undecided": "#c9a227"}
ACCEPTED = {"faster": "accepted", "undecided": "undecided"}


def select_bars(result, targets):
    """[(title, times as fast as the default, verdict)]: the measured plans, each beside
    the default, with the verdict of its last race."""
    bars = {}
    for row in (row for _, rows in order_rows(result, targets) for row in rows):
        if row.screened:
            key = (row.target.title, row.plan)
            bars[key] = (f"{row.target.title}: {row.plan}", 1 / row.screened,
                         row.verdict.word)
    return list(bars.values())


def list_final_bars(result):
    names = {"plan/default": "the plan as a whole"}
    for name, title in names.items():
        verdict = result.final.get(name)
        if verdict and verdict.ratio:
            yield title, 1 / verdict.ratio, verdict.word
    verdict = result.final.get("default/plain")
    if verdict and verdict.ratio:
        yield "without the plugin", verdict.ratio, "no faster"


def draw(result, targets, path):
    try:
        import matplotlib
    except ModuleNotFoundError:
        raise TuneError("no chart: install the Debian package python3-matplotlib"
                        ) from None
    matplotlib.use("Agg")
    # The same chart for the same numbers.
    matplotlib.rcParams["svg.hashsalt"] = "inlinerecursion-tune"
    from matplotlib import pyplot

    bars = [*list_final_bars(result), *select_bars(result, targets)]
    figure, axes = pyplot.subplots(figsize=(9, 1.2 + 0.28 * max(len(bars), 1)))
    titles = [title for title, _, _ in bars]
    axes.barh(range(len(bars)), [speed - 1 for _, speed, _ in bars], left=1,
              color=[COLOURS[ACCEPTED.get(word, "not accepted")] for _, _, word in bars])
    axes.set_yticks(range(len(bars)), titles)
    axes.invert_yaxis()
    axes.axvline(1, color="black", linewidth=0.8)
    axes.set_xlabel("times as fast as with the plugin's default")
    handles = [pyplot.Rectangle((0, 0), 1, 1, color=colour)
               for colour in COLOURS.values()]
    axes.legend(handles, COLOURS, loc="best", fontsize="small")
    figure.tight_layout()
    try:
        figure.savefig(path, metadata={"Date": None} if path.suffix == ".svg" else None)
    except (OSError, ValueError) as error:
        raise TuneError(f"{path}: cannot be written: {error}") from None
    finally:
        pyplot.close(figure)
