"""The report as one page of HTML that needs no other file.

A click on a heading sorts the table by that column, numbers from the largest down.
"""

from html import escape

from inlinerecursion_report.text import describe_totals
from picture import draw_each

NO_PICTURES = "No pictures: they need graphviz (Debian package graphviz)."

STYLE = """\
body { font: 15px/1.4 sans-serif; margin: 2em; color: #222; background: #fff; }
table { border-collapse: collapse; }
th, td { padding: .35em .8em; text-align: left; vertical-align: top;
         border-bottom: 1px solid #ddd; }
th { cursor: pointer; white-space: nowrap; background: #f4f4f4; position: sticky; top: 0; }
th[aria-sort=ascending]::after { content: " \\25B2"; }
th[aria-sort=descending]::after { content: " \\25BC"; }
td.number { text-align: right; font-variant-numeric: tabular-nums; }
td.name { font-family: monospace; overflow-wrap: break-word; }
tr.rebuilt td:first-child { border-left: 4px solid #6aa860; }
tr.left td:first-child { border-left: 4px solid #ccc; }
p.problem { color: #a00; }
summary { cursor: pointer; white-space: nowrap; }
svg { max-width: 100%; height: auto; }
"""

SCRIPT = """\
for (const head of document.querySelectorAll("th"))
  head.addEventListener("click", () => {
    const body = document.querySelector("tbody"), column = head.cellIndex;
    const isNumber = head.dataset.number === "yes";
    const was = head.getAttribute("aria-sort");
    const up = was ? was === "descending" : !isNumber;
    const key = row => row.cells[column].dataset.key;
    const compare = isNumber ? (a, b) => key(a) - key(b)
                             : (a, b) => key(a).localeCompare(key(b));
    for (const other of document.querySelectorAll("th"))
      other.removeAttribute("aria-sort");
    head.setAttribute("aria-sort", up ? "ascending" : "descending");
    body.append(...[...body.rows].sort((a, b) => up ? compare(a, b) : compare(b, a)));
  });
"""


def text_cell(text, kind=""):
    attribute = f' class="{kind}"' if kind else ""
    # Lines may break behind each folder.
    shown = escape(text).replace("/", "/<wbr>")
    return f'<td{attribute} data-key="{escape(text)}">{shown}</td>'


def number_cell(number, text=None):
    shown = "" if number is None else str(number) if text is None else text
    return f'<td class="number" data-key="{-1 if number is None else number}">{shown}</td>'


def picture_cell(row, picture):
    if not picture:
        return '<td data-key=""></td>'
    return (f'<td data-key="{escape(row.shape)}"><details><summary>before, after'
            f"</summary>{picture}</details></td>")


# Title, whether it sorts as a number, the cell of a row with a picture or None, and
# whether a row has anything to show there.
COLUMNS = (
    ("Function", False, lambda row, _: text_cell(row.function, "name"),
     lambda row, _: True),
    ("Place", False, lambda row, _: text_cell(row.place, "name"),
     lambda row, _: row.place),
    ("Shape", False, lambda row, _: text_cell(row.shape), lambda row, _: True),
    ("Copies", True, lambda row, _: number_cell(row.copies or None),
     lambda row, _: row.copies),
    ("Growth", True,
     lambda row, _: number_cell(row.growth if row.rebuilt else None, f"+{row.growth}"),
     lambda row, _: row.rebuilt),
    ("Hotness", True, lambda row, _: number_cell(row.hotness),
     lambda row, _: row.hotness is not None),
    ("Records", True, lambda row, _: number_cell(len(row.records)),
     lambda row, _: len(row.records) > 1),
    ("Reason", False, lambda row, _: text_cell(row.reason), lambda row, _: row.reason),
    ("What helps", False, lambda row, _: text_cell(row.remedy),
     lambda row, _: row.remedy),
    ("Picture", False, picture_cell, lambda row, picture: picture),
)


def make_table(rows, pictures):
    """The table without the columns that would be empty."""
    drawn = [(row, pictures.get(index)) for index, row in enumerate(rows)]
    columns = [column for column in COLUMNS if any(column[3](*each) for each in drawn)]
    heads = "".join(
        f'<th scope="col" data-number="{"yes" if is_number else "no"}">{title}</th>'
        for title, is_number, _, _ in columns)
    body = "".join(
        f'<tr class="{"rebuilt" if row.rebuilt else "left"}">'
        + "".join(make_cell(row, picture) for _, _, make_cell, _ in columns) + "</tr>\n"
        for row, picture in drawn)
    return (f"<table>\n<thead>\n<tr>{heads}</tr>\n</thead>\n"
            f"<tbody>\n{body}</tbody>\n</table>\n")


def find_pictures(rows):
    """{index of a rebuilt row: its picture}; None without graphviz."""
    rebuilt = [index for index, row in enumerate(rows) if row.rebuilt]
    if not rebuilt:
        return {}
    pictures = draw_each([rows[index] for index in rebuilt])
    return None if pictures is None else dict(zip(rebuilt, pictures))


def to_html(rows, totals, records, problems):
    pictures = find_pictures(rows)
    notes = [] if pictures is not None else [f"<p>{NO_PICTURES}</p>\n"]
    notes += [f'<p class="problem">{escape(problem)}</p>\n' for problem in problems]
    return (
        '<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
        f"<title>Recursive functions</title>\n<style>\n{STYLE}</style>\n</head>\n<body>\n"
        f"<h1>Recursive functions</h1>\n<p>{describe_totals(totals, records)}</p>\n"
        f"{''.join(notes)}{make_table(rows, pictures or {})}<script>\n{SCRIPT}</script>\n"
        "</body>\n</html>\n"
    )
