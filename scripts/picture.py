"""Draws what the pass did to the call graph, before and after, with graphviz.

For each function that was rebuilt there is one row: on the left the function that
calls itself, on the right its copies, in a line with the function at its end (a
chain) or in a circle beside it (a ring). Only direct calls that the pass rewired
are drawn; callers outside are one box.
"""

import subprocess

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


def draw_after(number, entry):
    copies, ring = int(entry.copies), entry.shape == "ring"
    caller, origin = f"a{number}_caller", f"a{number}_origin"
    names = [f"a{number}_{index}" for index in range(copies)]
    title = f"after: {entry.shape} of {copies}"
    lines = [
        f"subgraph cluster_after{number} {{ label={quoted(title)};",
        f"{caller} [label=callers, shape=plaintext];",
        f"{origin} [label={quoted(entry.function)}, fillcolor={quoted(ORIGIN)}];",
    ]
    for index, name in enumerate(names):
        lines.append(f'{name} [label="copy {index}", fillcolor={quoted(COPY)}];')
    links = [caller, *names] + ([] if ring else [origin])
    lines += [f"{above} -> {below};" for above, below in zip(links, links[1:])]
    lines.append(f"{origin} -> {origin};")
    if ring:
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
