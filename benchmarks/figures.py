"""From rows of medians to the figures of the report. No input, no output."""

import math

# A difference below this is taken for noise.
TOLERANCE = 0.03


def ratio(row, above, below):
    """How many times as fast BELOW is as ABOVE, or None where a time is missing
    or too short to compare."""
    a, b = row["seconds"].get(above), row["seconds"].get(below)
    return a / b if a and b else None


def ratios(rows, above, below):
    return [r for row in rows if (r := ratio(row, above, below)) is not None]


def same_program(row, one, other):
    """Whether two columns' programs are the same file, byte by byte."""
    programs = row.get("program", {})
    return one in programs and programs[one] == programs.get(other)


def geometric_mean(values):
    """The geometric mean, or None of nothing."""
    values = list(values)
    if not values:
        return None
    return math.exp(sum(map(math.log, values)) / len(values))


def standing(rows, rival, label):
    """On how many rows LABEL is (ahead of, level with, behind) RIVAL."""
    values = ratios(rows, rival, label)
    ahead = sum(v > 1 + TOLERANCE for v in values)
    behind = sum(1 / v > 1 + TOLERANCE for v in values)
    return ahead, len(values) - ahead - behind, behind


def samples(row, label):
    """The seconds of a column's program, round by round; none in old results."""
    return row.get("samples", {}).get(row.get("program", {}).get(label), [])


def slower(rows, labels, base="clang"):
    """(row, labels, share of time more) for what is slower than the base, all
    columns of one program together."""
    found = []
    for row in rows:
        programs = {}
        for label in labels:
            if (r := ratio(row, label, base)) is not None and r > 1 + TOLERANCE:
                program = row.get("program", {}).get(label, label)
                programs.setdefault(program, ([], r - 1))[0].append(label)
        found += [(row, *columns) for columns in programs.values()]
    return found


def rounds_slower(row, label, base="clang"):
    """In how many rounds a column was slower than the base, and of how many."""
    pairs = list(zip(samples(row, label), samples(row, base)))
    return sum(x > b * (1 + TOLERANCE) for x, b in pairs), len(pairs)


def verdict_line(row, labels, more, base="clang"):
    count, total = rounds_slower(row, labels[0], base)
    rounds = f", in {count} of {total} rounds" if total else ""
    return (f"SLOWER: {row['kernel']} {row['input']} at {', '.join(labels)} takes "
            f"{more * 100:.1f} % more time than plain {base}{rounds}")


def by_kernel(rows):
    groups = {}
    for row in rows:
        groups.setdefault(row["kernel"], []).append(row)
    return groups


def nanoseconds_per_call(row, label):
    seconds = row["seconds"].get(label)
    return seconds * 1e9 / row["calls"] if seconds and row["calls"] else None


def neighbours(rows):
    """The rows of the longest run of consecutive inputs, at least three; all of
    them if there is none."""
    numbers = {int(row["input"]): row for row in rows if row["input"].isdigit()}
    runs = []
    for number in sorted(numbers):
        if number - 1 not in numbers:
            runs.append([])
        runs[-1].append(numbers[number])
    longest = max(runs, key=len, default=[])
    return longest if len(longest) >= 3 else rows


def swing(rows, label):
    """Worst over best time per call over rows of one kernel."""
    times = [t for row in rows
             if (t := nanoseconds_per_call(row, label)) is not None]
    return max(times) / min(times) if len(times) > 1 else None


def fit_exponent(sizes, costs):
    """The exponent e of cost = c * size^e by least squares on logarithms."""
    points = [(math.log(s), math.log(c)) for s, c in zip(sizes, costs)
              if s > 0 and c > 0]
    if len({x for x, _ in points}) < 2:
        return None
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return (sum((x - mean_x) * (y - mean_y) for x, y in points) /
            sum((x - mean_x) ** 2 for x, _ in points))
