"""Plans as a table, and as JSON."""

import json

from inlinerecursion_plan.names import demangle_mangled


def count(number, noun):
    return f"{number} {noun}" if number == 1 else f"{number} {noun}s"


def select(entries, function):
    """(entry, its demangled name) of those whose name, in either form, matches a regular
    expression, if there is one."""
    names = demangle_mangled([entry.name for entry in entries])
    return [(entry, name) for entry, name in zip(entries, names)
            if not function or function.search(name) or function.search(entry.name)]


def describe_total(shown, files):
    functions = {(entry.name, entry.file) for entry, _ in shown}
    return (f"{count(len(shown), 'plan')} for {count(len(functions), 'function')} in"
            f" {count(files, 'file')}")


def to_text(shown, files):
    """Columns that would be empty are left out."""
    columns = [
        ("function", [name for _, name in shown]),
        ("file", [entry.file for entry, _ in shown]),
        ("where", [entry.where for entry, _ in shown]),
        ("plan", [str(entry.plan) for entry, _ in shown]),
        ("reason", [entry.reason for entry, _ in shown]),
    ]
    columns = [(title, cells) for title, cells in columns if any(cells)]
    widths = [max(map(len, [title, *cells])) for title, cells in columns]
    lines = ["  ".join(map(str.ljust, line, widths)).rstrip()
             for line in zip(*([title, *cells] for title, cells in columns))]
    return "\n".join([*lines, describe_total(shown, files)]) + "\n"


def to_json(shown, problems):
    return json.dumps({
        "plans": [{
            "function": name,
            "symbol": entry.name,
            "file": entry.file,
            "where": entry.where,
            "plan": str(entry.plan),
            "body": entry.body,
            "reason": entry.reason,
            "place": entry.origin,
        } for entry, name in shown],
        "problems": problems,
    }, indent=2) + "\n"
