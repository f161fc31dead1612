"""What is told while the tuner works: a line for each verdict, and a bar on a terminal."""

import sys

NAME = "inlinerecursion-tune"


def say(message):
    text = f"{NAME}: {message}".encode(errors="backslashreplace").decode()
    print(text, file=sys.stderr, flush=True)


def format_speed(ratio):
    return f"{1 / ratio:.3f}x" if ratio else ""


class Progress:
    def __init__(self, budget):
        self.told = set()
        self.bar = None
        self.best = {}
        if sys.stderr.isatty():
            try:
                from tqdm import tqdm
            except ModuleNotFoundError:
                return
            self.bar = tqdm(total=round(budget, 1), unit="s", dynamic_ncols=True,
                            bar_format="{l_bar}{bar}| {n:.0f}/{total:.0f} s run time"
                                       " {postfix}")

    def tell(self, line):
        """One line, once: a search that begins again repeats itself."""
        if line in self.told:
            return
        self.told.add(line)
        if self.bar is not None:
            self.bar.clear()
        say(line)
        if self.bar is not None:
            self.bar.refresh()

    def tell_row(self, row):
        verdict = row.verdict
        # They stand in the table.
        if verdict.word in ("refused", "same"):
            return
        parts = [f"{row.target.title}: {row.plan}: {verdict.word}"]
        if verdict.ratio:
            parts.append(f"{format_speed(verdict.ratio)} in {verdict.pairs} pairs")
        if verdict.why:
            parts.append(verdict.why)
        self.tell(", ".join(parts))

    def note_best(self, champion):
        self.best[champion.target.title] = champion
        if self.bar is not None:
            self.bar.set_postfix_str("best: " + ", ".join(
                f"{title} {format_speed(each.ratio)}"
                for title, each in self.best.items()))

    def begin(self, what):
        if self.bar is not None:
            self.bar.set_description_str(what)

    def show(self, spent):
        if self.bar is not None:
            self.bar.n = min(spent, self.bar.total)
            self.bar.refresh()

    def close(self):
        if self.bar is not None:
            self.bar.close()
            self.bar = None
