"""Which plans are worth a try for a function.

First every shape by itself, rings in a few sizes; then what lies next to the best one. The
plugin refuses what does not fit the function, so nothing is ruled out here.
"""

from inlinerecursion_tune.plans import is_done

FIRST = (
    "none", "chain", "states", "leaves", "split",
    "ring copies=2 guard", "ring copies=2 no-guard",
    "ring copies=3 guard", "ring copies=3 no-guard",
    "ring copies=4 guard", "ring copies=4 no-guard",
    "ring copies=6 guard", "ring copies=6 no-guard",
)
FEWEST_COPIES = 2
MOST_COPIES = 9
# Each is there, or its opposite is.
RING_SWITCHES = ("guard", "staggered")
SWITCHES = ("pass-sum", "loop-first")
MOST_LEVELS = 9


def get_first(default):
    """Plans to begin with; what the plugin does by itself is none of them."""
    return [text for text in FIRST if not (default and is_done(text, default))]


def read_words(plan):
    """(shape, {key: value}, {switch: True or False}) of a plan."""
    shape, *words = plan.split()
    numbers, switches = {}, {}
    for word in words:
        key, is_number, value = word.partition("=")
        if is_number:
            numbers[key] = value
        else:
            switches[word.removeprefix("no-")] = not word.startswith("no-")
    return shape, numbers, switches


def make_text(shape, numbers, switches):
    words = [shape, *(f"{key}={value}" for key, value in numbers.items())]
    words += [name if is_on else f"no-{name}" for name, is_on in switches.items()]
    return " ".join(words)


def vary_copies(shape, numbers, switches):
    copies = int(numbers["copies"])
    for other in (copies - 1, copies + 1):
        if FEWEST_COPIES <= other <= MOST_COPIES:
            yield make_text(shape, {**numbers, "copies": other}, switches)


def vary_levels(shape, numbers, switches):
    levels, comma, further = numbers["levels"].partition(",")
    for other in (int(levels) - 1, int(levels) + 1):
        if 1 <= other <= MOST_LEVELS:
            yield make_text(shape, {**numbers, "levels": f"{other}{comma}{further}"},
                            switches)


def get_neighbours(done):
    """Plans that differ in one thing from what was done."""
    shape, numbers, switches = read_words(done)
    if "rules" in switches or shape not in ("ring", "leaves", "split"):
        return []
    found = []
    if shape == "ring" and "copies" in numbers:
        found += vary_copies(shape, numbers, switches)
    if shape == "leaves" and "levels" in numbers:
        found += vary_levels(shape, numbers, switches)
    for name in (RING_SWITCHES if shape == "ring" else ()) + SWITCHES:
        found.append(make_text(shape, numbers,
                               {**switches, name: not switches.get(name, False)}))
    return found
