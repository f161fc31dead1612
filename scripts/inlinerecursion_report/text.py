"""The report as text, and as JSON."""

import json


def count(number, noun):
    return f"{number} {noun}" if number == 1 else f"{number} {noun}s"


def describe_totals(totals, records):
    return (f"{count(totals.functions, 'recursive function')} in"
            f" {count(records, 'record')}: {totals.rebuilt} rebuilt, {totals.left} not;"
            f" +{count(totals.growth, 'instruction')}")


def make_columns(rows):
    """[(title, is a number, cells)]; columns that would be empty are left out."""
    columns = [
        ("function", False, [row.function for row in rows]),
        ("file:line", False, [row.place for row in rows]),
        ("shape", False, [row.shape or "-" for row in rows]),
        ("copies", True, [str(row.copies or "") for row in rows]),
        ("growth", True, [f"+{row.growth}" if row.rebuilt else "" for row in rows]),
        ("hotness", True, ["" if row.hotness is None else str(row.hotness)
                           for row in rows]),
        ("records", True, [str(len(row.records)) for row in rows]),
        ("reason", False, [row.reason for row in rows]),
        ("what helps", False, [row.remedy for row in rows]),
    ]
    if all(len(row.records) == 1 for row in rows):
        columns = [column for column in columns if column[0] != "records"]
    return [column for column in columns if any(column[2])]


def to_text(rows, totals, records):
    lines = []
    if rows:
        columns = make_columns(rows)
        widths = [max(map(len, [title, *cells])) for title, _, cells in columns]
        for line in zip(*([title, *cells] for title, _, cells in columns)):
            lines.append("  ".join(
                cell.rjust(width) if is_number else cell.ljust(width)
                for cell, width, (_, is_number, _) in zip(line, widths, columns)
            ).rstrip())
    return "\n".join([*lines, describe_totals(totals, records)]) + "\n"


def to_json(rows, totals, modules, problems):
    return json.dumps({
        "functions": [row.to_json() for row in rows],
        "totals": totals.to_json(),
        "modules": modules,
        "problems": problems,
    }, indent=2) + "\n"
