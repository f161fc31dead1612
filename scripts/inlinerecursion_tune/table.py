"""What was found, as text and as JSON."""

import json

from inlinerecursion_tune.progress import format_speed

# "plan/default": the plan's speed as a multiple of the default's.
FINAL = {
    "default/plain": "the plugin's default, beside no plugin",
    "plan/plain": "the plan, beside no plugin",
    "plan/default": "the plan, beside the plugin's default",
}


def count(number, noun):
    return f"{number} {noun}" if number == 1 else f"{number} {noun}s"


def describe(verdict):
    """A verdict of the last races, in words."""
    if not verdict.ratio:
        return f"{verdict.word}: {verdict.why}"
    text = f"{format_speed(verdict.ratio)} as fast"
    if verdict.low:
        text += (f" (at least {1 / verdict.high:.3f}x, at most {1 / verdict.low:.3f}x,"
                 f" {count(verdict.pairs, 'pair')})")
    return text


def order_rows(result, targets):
    """All rows of the hottest function first, each in the order of the search."""
    for target in targets:
        yield target, [row for row in result.rows if row.target.key == target.key]


def make_lines(result, targets):
    yield "function", "heat", "plan", "beside", "verdict", "times as fast", "pairs", "why"
    for target, rows in order_rows(result, targets):
        heat = "" if target.heat is None else f"{100 * target.heat:.1f} %"
        yield target.title, heat, target.plan, "", "default", "", "", ""
        for row in rows:
            verdict = row.verdict
            beside = "best so far" if row.phase == "race" else "default"
            yield (target.title, heat, row.plan, beside if verdict.ratio else "",
                   verdict.word, format_speed(verdict.ratio), str(verdict.pairs or ""),
                   verdict.why)


def format_table(lines):
    lines = list(lines)
    widths = [max(map(len, column)) for column in zip(*lines)]
    numbers = {1, 5, 6}
    for line in lines:
        yield "  ".join(
            cell.rjust(width) if index in numbers else cell.ljust(width)
            for index, (cell, width) in enumerate(zip(line, widths))).rstrip()


def list_final(result):
    for name, title in FINAL.items():
        if verdict := result.final.get(name):
            if not result.plan:
                # It has lost.
                title = title.replace("the plan,", "the best that was found,")
            yield f"{title}: {describe(verdict)}"


def list_plan(result, targets):
    if not result.plan:
        yield "nothing beats the plugin's default; the plan says nothing"
    for target in targets:
        if target.key in result.plan:
            yield (f"{target.title} ({target.place}): {result.plan[target.key]},"
                   f" in the place of {target.plan}")


def to_text(result, targets, spent):
    lines = list(format_table(make_lines(result, targets))) if targets else []
    lines += list(list_plan(result, targets)) + list(list_final(result))
    if result.out_of_budget:
        lines.append("the budget was not enough for all: the same command with a larger"
                     " --budget goes on from here")
    return "\n".join([*lines, f"{spent:.1f} s of run time measured"]) + "\n"


def make_verdict(verdict):
    return {"verdict": verdict.word, "pairs": verdict.pairs, "ratio": verdict.ratio,
            "low": verdict.low, "high": verdict.high, "why": verdict.why}


def to_json(result, targets, spent, facts):
    return json.dumps({
        "plan": [{"function": target.title, "symbol": target.name, "file": target.place,
                  "plan": result.plan[target.key], "default": target.plan}
                 for target in targets if target.key in result.plan],
        "functions": [{"function": target.title, "symbol": target.name,
                       "file": target.place, "heat": target.heat,
                       "default": target.plan, "reason": target.reason}
                      for target in targets],
        "tried": [{"function": row.target.title, "symbol": row.target.name,
                   "file": row.target.place, "plan": row.plan, "done": row.done,
                   "against": "best" if row.phase == "race" else "default",
                   **make_verdict(row.verdict)} for row in result.rows],
        "final": {name: make_verdict(verdict)
                  for name, verdict in result.final.items()},
        "out_of_budget": result.out_of_budget,
        "seconds_measured": spent,
        **facts,
    }, indent=2) + "\n"
