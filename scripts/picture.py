"""Draws what the pass did to the call graph, before and after, with graphviz.

For each function that was rebuilt there is one row: on the left the function that
calls itself, on the right its copies, in a line with the function at its end (a
chain), in a circle beside it or behind it (a ring), or in a line that ends (a leaf
chain). Copies for states are linked as the record says; of many, the first two and the
last have a box each, and all others share one. Only direct calls that the pass rewired
are drawn; callers outside are one box.

What is drawn has a name (function), a shape and a number of copies; where it is
automatic, the function enters its ring itself. Copies for states have their known
arguments (states) and who calls whom (links), as plugin/policy/StateWords.h says.
"""

import re
import subprocess
from dataclasses import dataclass, field

BEFORE, COPY, ORIGIN = "#d0d0d0", "#a8d5a2", "#f3d08b"


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def draw_before(number, function):
    caller, body = f"b{number}_caller", f"b{number}_body"
    return [
        f"subgraph cluster_before{number} {{ label={quoted('before')};",
        f"{caller} [label=callers, shape=plaintext];",
        f"{body} [label={quoted(function)}, fillcolor={quoted(BEFORE)}];",
        f"{caller} -> {body}; {body} -> {body}; }}",
    ]


def links_after(entry, caller, origin, names):
    """Who calls whom once the copies are there, without the link that closes a ring."""
    if entry.shape == "leaf chain":
        # The function goes on as it did, and enters the leaves near the end.
        ways = [[caller, origin], [origin, origin], [origin, *names]]
    elif entry.shape == "split":
        ways = [[caller, origin], [origin, origin]]
    elif entry.shape.endswith("ring"):
        # A ring of a level is entered by the callers, one of the policy by what is
        # left of the function.
        automatic = getattr(entry, "automatic", False)
        ways = [[caller, origin, *names]] if automatic else [
            [caller, *names], [origin, origin]]
    else:
        ways = [[caller, *names, origin], [origin, origin]]
    return [pair for way in ways for pair in zip(way, way[1:])]


@dataclass
class Links:
    """Who calls whom among the copies for states, by their numbers."""

    entered: list = field(default_factory=list)
    pairs: list = field(default_factory=list)
    # May somebody call the function itself?
    others: bool = False
    # Were there too many to tell all of them?
    more: bool = False


def read_links(text):
    """What stands in a record as "in:0 others 0-6:+1 7:-7,+0"."""
    links = Links()
    for word in text.split():
        head, _, tail = word.partition(":")
        if head == "in":
            links.entered.append(int(tail))
        elif head == "others":
            links.others = True
        elif head == "...":
            links.more = True
        else:
            first, _, last = head.partition("-")
            links.pairs += [(state, state + int(step))
                            for state in range(int(first), int(last or first) + 1)
                            for step in tail.split(",")]
    return links


def place_states(number, copies, words):
    """Which box each state has, and what stands in the boxes."""
    boxes = [f"a{number}_{state}" for state in range(copies)]
    labels = {}
    for place, word in enumerate(words):
        if word == "...":
            # Of those behind it, only the last has a box of its own.
            shared = range(place, copies - 1)
            boxes[place:-1] = [boxes[place]] * len(shared)
            labels[boxes[place]] = f"{len(shared)} more"
        else:
            state = place if place + 1 < len(words) else copies - 1
            label = f"copy {state}" if word.startswith("#") else f"for ({word})"
            labels[boxes[state]] = label
    return boxes, labels


def draw_states(number, entry):
    copies, links = int(entry.copies), read_links(entry.links)
    boxes, labels = place_states(number, copies, entry.states.split())
    title = f"after: {copies} {'state' if copies == 1 else 'states'}"
    if links.more:
        title += ", not all calls are shown"
    caller, others, origin = (f"a{number}_{name}" for name in ("caller", "others", "origin"))
    lines = [
        f"subgraph cluster_after{number} {{ label={quoted(title)};",
        f"{caller} [label=callers, shape=plaintext];",
        *(f"{box} [label={quoted(label)}, fillcolor={quoted(COPY)}];"
          for box, label in labels.items()),
    ]
    # Each arrow once, and those that lead back without constraint, so that the copies
    # stand in the order of their numbers.
    entered = dict.fromkeys(boxes[state] for state in links.entered)
    lines += [f"{caller} -> {box};" for box in entered]
    arrows = dict.fromkeys((boxes[above], boxes[below], above < below)
                           for above, below in links.pairs)
    lines += [f"{above} -> {below}{'' if down else ' [constraint=false]'};"
              for above, below, down in arrows]
    if links.others:
        lines += [
            f"{others} [label={quoted('callers with other values')}, shape=plaintext];",
            f"{origin} [label={quoted(entry.function)}, fillcolor={quoted(ORIGIN)}];",
            f"{others} -> {origin}; {origin} -> {origin};",
        ]
    return lines + ["}"]


def draw_after(number, entry):
    if entry.shape == "states":
        return draw_states(number, entry)
    copies = int(entry.copies)
    caller, origin = f"a{number}_caller", f"a{number}_origin"
    names = [f"a{number}_{index}" for index in range(copies)]
    title = f"after: {entry.shape}" + (f" of {copies}" if copies else "")
    is_split = entry.shape.startswith("split")
    callers = "callers, work up to the test" if is_split else "callers"
    left = "rest of " + entry.function if is_split else entry.function
    lines = [
        f"subgraph cluster_after{number} {{ label={quoted(title)};",
        f"{caller} [label={quoted(callers)}, shape=plaintext];",
        f"{origin} [label={quoted(left)}, fillcolor={quoted(ORIGIN)}];",
    ]
    for index, name in enumerate(names):
        lines.append(f'{name} [label="copy {index}", fillcolor={quoted(COPY)}];')
    lines += [f"{above} -> {below};"
              for above, below in links_after(entry, caller, origin, names)]
    if entry.shape.endswith("ring"):
        # Without constraint, so that the copies still stand in a line and the
        # closing link is seen to lead back.
        lines.append(f"{names[-1]} -> {names[0]} [constraint=false, penwidth=2];")
    return lines + ["}"]


def to_dot(chained):
    """The picture in graphviz's own language."""
    lines = [
        "digraph chains { compound=true; rankdir=TB; fontname=Helvetica;",
        "node [shape=box, style=filled, fillcolor=white, fontname=Helvetica];",
    ]
    for number, entry in enumerate(chained):
        lines += draw_before(number, entry.function) + draw_after(number, entry)
    return "\n".join(lines + ["}"]) + "\n"


def draw(chained, path):
    """Writes the picture to PATH, whose ending names the format (svg, png, pdf).

    Returns an error message, or "" if all is well.
    """
    kind = path.suffix.lstrip(".")
    try:
        done = subprocess.run(
            ["dot", f"-T{kind}", "-o", str(path)],
            input=to_dot(chained),
            text=True,
            capture_output=True,
        )
    except FileNotFoundError:
        return "graphviz is missing: install the Debian package graphviz"
    return done.stderr.strip() if done.returncode else ""


def draw_each(chained):
    """A picture of each one, as SVG to be put into a page; None without graphviz."""
    pages = "".join(to_dot([entry]) for entry in chained)
    try:
        done = subprocess.run(
            ["dot", "-Tsvg"], input=pages, text=True, capture_output=True
        )
    except FileNotFoundError:
        return None
    pictures = re.findall(r"<svg.*?</svg>", done.stdout, re.S)
    if done.returncode or len(pictures) != len(chained):
        return None
    # Names that the page has once, and there is a picture for each function.
    return [re.sub(r' id="[^"]*"', "", picture) for picture in pictures]
