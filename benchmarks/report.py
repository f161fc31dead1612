"""The report: tables and plots from the results, as Markdown and HTML.

All of it is drawn from results.json, which the same directory holds, so a report
can be rendered again without measuring. A document is a list of blocks, and each
of the two formats has one function per block. gnuplot draws the plots as SVG.
"""

import html
import json
import math
import subprocess

import figures
from builds import CLASSES, BenchError

PAGE_MARK = "<!-- figures: {} -->"
PAGE_END = "<!-- end of figures -->"


# --- Blocks ------------------------------------------------------------------


def heading(level, text):
    return ("heading", level, text)


def paragraph(text):
    return ("paragraph", text)


def table(header, rows):
    return ("table", header, [[str(c) for c in row] for row in rows])


def code(text):
    return ("code", text)


def image(file, text):
    return ("image", file, text)


def markdown(blocks):
    return "\n".join(markdown_block(*block) for block in blocks)


def markdown_block(kind, *parts):
    if kind == "heading":
        return f"{'#' * parts[0]} {parts[1]}\n"
    if kind == "code":
        return f"```\n{parts[0]}\n```\n"
    if kind == "image":
        return f"![{parts[1]}]({parts[0]})\n"
    if kind == "paragraph":
        return parts[0] + "\n"
    header, rows = parts
    widths = [max(len(row[i]) for row in [header, *rows])
              for i in range(len(header))]
    rule = ["-" * widths[0]] + ["-" * (w - 1) + ":" for w in widths[1:]]
    lines = [[c.ljust(w) if i == 0 else c.rjust(w)
              for i, (c, w) in enumerate(zip(row, widths))]
             for row in [header, rule, *rows]]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines) + "\n"


def html_document(blocks):
    title = next(block[2] for block in blocks if block[0] == "heading")
    style = ("body{font:15px sans-serif;max-width:75em;margin:2em auto;"
             "padding:0 1em}table{border-collapse:collapse;margin:1em 0}"
             "td,th{padding:.15em .6em;border-bottom:1px solid #ccc;"
             "text-align:right;font-variant-numeric:tabular-nums}"
             "td:first-child,th:first-child{text-align:left}"
             "pre{background:#f4f4f4;padding:.6em;overflow:auto}"
             "img{max-width:100%}")
    body = "\n".join(html_block(*block) for block in blocks)
    return (f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8">\n'
            f"<title>{html.escape(title)}</title>\n<style>{style}</style>"
            f"</head><body>\n{body}\n</body></html>\n")


def html_block(kind, *parts):
    if kind == "heading":
        return f"<h{parts[0]}>{html.escape(parts[1])}</h{parts[0]}>"
    if kind == "code":
        return f"<pre>{html.escape(parts[0])}</pre>"
    if kind == "image":
        return f'<p><img src="{parts[0]}" alt="{html.escape(parts[1])}"></p>'
    if kind == "paragraph":
        return f"<p>{html.escape(parts[0])}</p>"
    header, rows = parts
    lines = ["".join(f"<th>{html.escape(c)}</th>" for c in header)]
    lines += ["".join(f"<td>{html.escape(c)}</td>" for c in row) for row in rows]
    return ("<table>\n" + "\n".join(f"<tr>{line}</tr>" for line in lines) +
            "\n</table>")


# --- Numbers as text ---------------------------------------------------------


def number(value, digits=2):
    return "-" if value is None else f"{value:.{digits}f}"


def percent(value):
    return "-" if value is None else f"{(value - 1) * 100:+.2f} %"


# --- Sections: results -> blocks ---------------------------------------------


def labels_of(part, rows=None):
    """The columns that any of the rows has, in their order."""
    rows = part["rows"] if rows is None else rows
    return [l for l in part["columns"] if any(l in r["seconds"] for r in rows)]


def of_class(rows, kind):
    return [r for r in rows if r["class"] == kind]


def class_section(results):
    """Per class: geometric means, and on how many inputs who is ahead."""
    part = results["run"]
    blocks = []
    for kind in CLASSES:
        rows = of_class(part["rows"], kind)
        if not rows:
            continue
        lines = []
        for label in labels_of(part, rows):
            if label == "clang":
                continue
            means = [figures.geometric_mean(figures.ratios(rows, rival, label))
                     for rival in ("clang", "gcc")]
            lines.append([label, *map(number, means)] +
                         ["/".join(map(str, figures.standing(rows, rival, label)))
                          for rival in ("clang", "gcc")])
        blocks += [paragraph(f"Class {kind}, {len(rows)} inputs of "
                             f"{len(figures.by_kernel(rows))} kernels:"),
                   table([kind, "clang/X", "gcc/X", "against clang",
                          "against gcc"], lines)]
    return blocks


def share_lines(part):
    """How many of all inputs each plugin column is ahead on."""
    lines = []
    for label in part["columns"]:
        if label in ("clang", "gcc"):
            continue
        for rival in ("clang", "gcc"):
            ahead, level, behind = figures.standing(part["rows"], rival, label)
            total = ahead + level + behind
            if total:
                lines.append(f"{label:12} ahead of {rival:5} on "
                             f"{ahead * 100 / total:3.0f} % of {total} inputs, "
                             f"behind on {behind * 100 / total:3.0f} %")
    return lines


def speed_up(group, above, below):
    """The mean ratio over a kernel's inputs, or "=" if no program differs."""
    if all(figures.same_program(row, above, below) for row in group):
        return "="
    return number(figures.geometric_mean(figures.ratios(group, above, below)))


def kernel_section(results):
    """Per kernel: geometric means over its inputs."""
    part = results["run"]
    blocks = []
    for kind in CLASSES:
        rows = of_class(part["rows"], kind)
        if not rows:
            continue
        labels = [l for l in labels_of(part, rows) if l != "clang"]
        lines = [[name] + [speed_up(group, "clang", label) for label in labels]
                 for name, group in figures.by_kernel(rows).items()]
        blocks.append(table([f"clang/X, {kind}", *labels], lines))
    return blocks


def input_section(results):
    """Every input: median seconds."""
    part = results["run"]
    labels = labels_of(part)
    return [table(["kernel", "input", "ns/call", *labels],
                  [[r["kernel"], r["input"],
                    number(figures.nanoseconds_per_call(r, "clang"))] +
                   [number(r["seconds"].get(l), 3) for l in labels]
                   for r in part["rows"]])]


def verdict_lines(part):
    plugin = [l for l in part["columns"] if part["families"][l] == "plugin"]
    lines = [figures.verdict_line(*found)
             for found in figures.slower(part["rows"], plugin)]
    if plugin and not lines:
        lines = ["no input is slower with the plugin than with plain clang by "
                 f"more than {figures.TOLERANCE * 100:.0f} %"]
    return lines + [f"WRONG: {r['kernel']} {r['input']}: {p}"
                    for r in part["rows"] for p in r["problems"]]


def verdict_section(results):
    return [code("\n".join(verdict_lines(results["run"])))]


def swing_section(results):
    """Per kernel: worst over best time per call."""
    part = results["run"]
    labels = labels_of(part)
    compared = {name: figures.neighbours(group)
                for name, group in figures.by_kernel(part["rows"]).items()}
    lines = [[name, " ".join(row["input"] for row in group)] +
             [number(figures.swing(group, label)) for label in labels]
             for name, group in compared.items() if len(group) > 1]
    return [table(["worst/best", "inputs", *labels], lines)] if lines else []


def size_section(results):
    """Per class and column: text and compile time against plain clang."""
    part = results["run"]
    lines = []
    for kind in CLASSES:
        rows = of_class(part["rows"], kind)
        for label in labels_of(part, rows):
            if label == "clang":
                continue
            grown = [figures.geometric_mean(
                r[what][label] / r[what]["clang"] for r in rows
                if label in r["seconds"] and "clang" in r["seconds"])
                for what in ("text", "compile")]
            lines.append([kind, label, *map(number, grown)])
    return [table(["class", "column", "text", "compile time"], lines)]


def why_section(results):
    """gcc variants: time over that of plain gcc -O3."""
    part = results["why"]
    labels = [l for l in part["columns"] if l != "gcc"]
    return [table(["kernel", "gcc, s", *labels],
                  [[r["kernel"], number(r["seconds"].get("gcc"), 3)] +
                   [speed_up([r], l, "gcc") for l in labels]
                   for r in part["rows"]])]


def scale_section(results):
    """Per axis: cost and memory against size, and the exponent."""
    blocks = [image("scale.svg", "Cost of the pass against size")]
    for axis in results["scale"]["axes"]:
        levels = axis["levels"]
        lines = []
        for point in axis["points"]:
            base = point["none"]
            lines.append([point["size"], number(base["seconds"], 3),
                          base["memory"]] +
                         [f"{point[l]['seconds'] - base['seconds']:.3f}"
                          for l in levels] +
                         [point[l]["memory"] for l in levels])
        exponents = ", ".join(f"{l} {number(axis['exponents'][l])}"
                              for l in levels)
        options = " ".join(axis["options"]) or "none"
        blocks += [heading(3, axis["title"][0].upper() + axis["title"][1:]),
                   table([axis["unit"], "opt, s", "MiB"] +
                         [f"{l} adds, s" for l in levels] +
                         [f"{l}, MiB" for l in levels], lines),
                   paragraph(f"Exponent: {exponents}. Options: {options}.")]
    return blocks


def cost_section(results):
    """What benchmarks/codebases found: what loading the plugin costs, what it
    adds to the instructions and to the time of compiling."""
    part = results["cost"]
    blocks = []
    start = part.get("start", {})
    if start:
        blocks += [paragraph("Instructions to compile next to nothing:"),
                   table(["loaded by", "instructions", "more"],
                         [[way, count, count - start["plain"]]
                          for way, count in start.items()])]
    if part.get("count"):
        blocks += [paragraph("Instructions to compile one unit:"),
                   table(["code base", "unit", "-O", "level", "plain",
                          "with plugin", "in its passes"],
                         [[r["code base"], r["unit"], r["optimisation"],
                           r["level"], r["plain"],
                           percent(r["total"] / r["plain"]),
                           percent(1 + sum(r["passes"].values()) / r["plain"])]
                          for r in part["count"]])]
    if part.get("total"):
        blocks += [paragraph("Instructions to compile all units:"),
                   table(["code base", "units", "-O", "level", "plain",
                          "with plugin", "unit with most", "", "text, plain",
                          "text"],
                         [[r["code base"], r["units"], r["optimisation"],
                           r["level"], r["plain"],
                           percent(r["total"] / r["plain"]),
                           r["most"]["unit"],
                           percent(r["most"]["total"] / r["most"]["plain"]),
                           r["plain text"],
                           percent(r["text"] / r["plain text"])]
                          for r in part["total"]])]
    if part.get("time"):
        levels = list(part["time"][0]["levels"])
        blocks += [paragraph("User seconds to compile all units. Plain is measured "
                             "twice: the difference is the error."),
                   table(["code base", "units", "-O", "plain, s", "plain again"] +
                         [f"level {l}" for l in levels] + ["text, plain"] +
                         [f"text, level {l}" for l in levels],
                         [[r["code base"], r["units"], r["optimisation"],
                           number(r["plain"], 3),
                           percent(r["plain again"] / r["plain"])] +
                          [percent(r["levels"][l] / r["plain"]) for l in levels] +
                          [r["text"]["plain"]] +
                          [percent(r["text"]["levels"][l] / r["text"]["plain"])
                           for l in levels]
                          for r in part["time"]])]
    return blocks


SECTIONS = {"classes": ("run", class_section), "kernels": ("run", kernel_section),
            "inputs": ("run", input_section), "swing": ("run", swing_section),
            "verdicts": ("run", verdict_section), "size": ("run", size_section),
            "why": ("why", why_section), "cost": ("cost", cost_section),
            "scale": ("scale", scale_section)}


# --- The document ------------------------------------------------------------


def about_blocks(part):
    about = part["about"]
    return [code("\n".join([f"{name + ':':20} {value}"
                            for name, value in about["facts"].items()] +
                           about["commands"]))]


def run_blocks(results):
    part = results["run"]
    blocks = [
        heading(2, "Run time"), *about_blocks(part),
        paragraph("clang/X: how many times as fast as plain clang -O3 column X is; "
                  "gcc/X the same for gcc -O3. Means are geometric. \"Against\" "
                  "counts inputs: X ahead / level within 3 % / behind."),
        *class_section(results), code("\n".join(share_lines(part))),
        heading(3, "Kernels"),
        paragraph("Geometric means over the inputs of each kernel; = where "
                  "the column's programs are those of plain clang, byte by "
                  "byte.")]
    for kind in CLASSES:
        if of_class(part["rows"], kind):
            blocks.append(image(f"{kind}.svg", f"Speed-up over clang, {kind}"))
    blocks += [*kernel_section(results), heading(3, "Slower than plain clang"),
               *verdict_section(results)]
    swing = swing_section(results)
    if swing:
        blocks += [heading(3, "Neighbouring inputs"),
                   paragraph("The worst time per call over the best one, across "
                             "the longest run of consecutive inputs of a kernel, "
                             "or all of them where there is none. Inputs of the "
                             "class bounded, and starts of rings that are "
                             "constants, are compiled in: another one is another "
                             "program. Calls are those of the source program, "
                             "counted by a build of its own."),
                   *swing]
    return blocks + [
        heading(3, "Size and compile time of the kernels"),
        paragraph("Times as much as plain clang: text bytes, and CPU time of "
                  "compiling and linking one kernel."),
        *size_section(results),
        heading(3, "Every input"),
        paragraph("Median user seconds; ns/call is plain clang's."),
        *input_section(results)]


def document(results):
    blocks = [heading(1, "Measured")]
    if "run" in results:
        blocks += run_blocks(results)
    if "cost" in results:
        blocks += [heading(2, "Compile time and size of code bases"),
                   *about_blocks(results["cost"]), *cost_section(results)]
    if "scale" in results:
        blocks += [heading(2, "Cost against size"),
                   *about_blocks(results["scale"]),
                   paragraph("What the plugin's module passes add to opt, in CPU "
                             "seconds, and peak memory. An exponent of 1 means "
                             "that cost grows as fast as size; it is fitted to "
                             "costs of at least 10 ms."),
                   *scale_section(results)]
    if "why" in results:
        blocks += [heading(2, "gcc, piece by piece"),
                   *about_blocks(results["why"]),
                   paragraph("Time over that of gcc -O3, so 1.00 means that what "
                             "is switched off does not matter, and = that the "
                             "program is the same. Depth N: a function is inlined "
                             "into itself N deep at most, not 8. Neither: depth 0 "
                             "and no ipa-cp. Clang N: plain clang, but with the "
                             "recursion inlined into itself N deep in the "
                             "source."),
                   *why_section(results)]
    return blocks


# --- Plots -------------------------------------------------------------------

GNUPLOT_START = ('set terminal svg size {},{} font "sans-serif,12" '
                 'background "white"\nset output "{}"\n')


TICS = [(str(2 ** i), 2 ** i) for i in range(7)] + [("1/2", 0.5), ("1/4", 0.25)]


def bars(rows, labels, file):
    """A gnuplot script: speed-ups over clang, a cluster of bars per kernel.

    The bars are logarithms, so that they start at 1, the speed of clang.
    """
    groups = figures.by_kernel(rows)
    lines = ["$data << EOD", " ".join(["kernel", *labels])]
    ends = {0, 1}
    for name, group in groups.items():
        means = [figures.geometric_mean(figures.ratios(group, "clang", l))
                 for l in labels]
        ends |= {f(math.log2(m)) for f in (math.floor, math.ceil)
                 for m in means if m}
        lines.append(" ".join([name.partition("_")[2].replace("_", "-"),
                               *("NaN" if m is None else f"{math.log2(m):.4f}"
                                 for m in means)]))
    return (GNUPLOT_START.format(max(400, 60 * len(groups) + 100), 360, file) +
            "\n".join(lines) + "\nEOD\n"
            "set style data histograms\nset style histogram clustered gap 1\n"
            "set style fill solid 0.8 noborder\nset rmargin 8\n"
            f"set yrange [{min(ends)}:{max(ends)}]\n"
            "set ytics (" + ", ".join(f"'{t}' {math.log2(v)}"
                                     for t, v in TICS) + ")\n"
            "set ylabel 'times as fast as clang -O3'\nset grid ytics\n"
            "set xtics rotate by -35 noenhanced\nset key top center horizontal outside "
            "noenhanced\nset boxwidth 0.9\nset xzeroaxis linetype -1\n"
            f"plot for [i=2:{len(labels) + 1}] $data using i:xtic(1) "
            "title columnheader(i)\n")


def scale_lines(axes, file):
    """A gnuplot script: cost against size, a line per axis and level."""
    data, plots = [], []
    for axis in axes:
        for level in axis["levels"]:
            points = [(p["size"], p[level]["seconds"] - p["none"]["seconds"])
                      for p in axis["points"]]
            points = [(s, c) for s, c in points if c > 0.001]
            if not points:
                continue
            name = f"$d{len(data)}"
            data.append("\n".join([f"{name} << EOD"] +
                                  [f"{s} {c:.4f}" for s, c in points] + ["EOD"]))
            plots.append(f"{name} with linespoints title "
                         f"'{axis['title']}, {level}'")
    return (GNUPLOT_START.format(900, 600, file) + "\n".join(data) +
            "\nset logscale xy 10\nset grid\nset key bottom outside horizontal\n"
            "set xlabel 'size'\nset ylabel 'CPU seconds added'\n"
            "plot " + ", ".join(plots) + "\n") if plots else ""


def draw(script):
    try:
        subprocess.run(["gnuplot"], input=script, text=True, check=True,
                       capture_output=True)
    except subprocess.CalledProcessError as error:
        raise BenchError(f"gnuplot: {error.stderr.strip()}") from None


def draw_all(results, directory):
    if "run" in results:
        part = results["run"]
        for kind in CLASSES:
            rows = of_class(part["rows"], kind)
            labels = [l for l in ("gcc", "L0", "L0-request")
                      if l in labels_of(part, rows)] if rows else []
            if labels:
                draw(bars(rows, labels, directory / f"{kind}.svg"))
    if "scale" in results:
        draw(scale_lines(results["scale"]["axes"], directory / "scale.svg"))


# --- Files -------------------------------------------------------------------


def load(directory):
    path = directory / "results.json"
    if not path.exists():
        return {}
    try:
        return json.loads(path.read_text(encoding="utf-8"))
    except ValueError as error:
        raise BenchError(f"{path} is not JSON ({error}); remove it") from None


def dump(results):
    """JSON with one line per row, so that two reports can be compared."""
    def compact(value, depth=0):
        if depth < 3 and isinstance(value, dict):
            lines = [f"{json.dumps(k)}: {compact(v, depth + 1)}"
                     for k, v in value.items()]
            return "{\n" + ",\n".join(lines) + "\n}"
        if depth < 3 and isinstance(value, list) and value and isinstance(
                value[0], dict):
            return "[\n" + ",\n".join(json.dumps(v) for v in value) + "\n]"
        return json.dumps(value)
    return compact(results) + "\n"


def keep_others(part, before, kernels):
    """Puts the rows of `before` whose kernels are not in `kernels` into `part`."""
    if not before:
        return
    if part["columns"] != before["columns"]:
        raise BenchError("--keep needs the columns that the report has: "
                         + ", ".join(before["columns"]))
    measured = {kernel.name for kernel in kernels}
    kept = [row for row in before["rows"] if row["kernel"] not in measured]
    part["rows"] = sorted(kept + part["rows"],
                          key=lambda row: CLASSES.index(row["class"]))
    facts = before["about"]["facts"]
    then = [f"{len(kept)} rows of {facts['date']}", facts.get("plugin", "no plugin")]
    part["about"]["facts"]["kept"] = "; ".join(
        [", ".join(then), *filter(None, [facts.get("kept")])])


def write(results, directory):
    """Writes results.json, report.md, report.html and the plots."""
    directory.mkdir(parents=True, exist_ok=True)
    blocks = document(results)
    (directory / "results.json").write_text(dump(results), encoding="utf-8")
    draw_all(results, directory)
    (directory / "report.md").write_text(markdown(blocks), encoding="utf-8")
    (directory / "report.html").write_text(html_document(blocks),
                                           encoding="utf-8")


def fill_page(text, results):
    """Puts the sections of the report between the marks of a page."""
    lines, skipping = [], False
    for line in text.splitlines():
        if line == PAGE_END:
            skipping = False
        if skipping:
            continue
        lines.append(line)
        for name, (part, section) in SECTIONS.items():
            if line != PAGE_MARK.format(name):
                continue
            skipping = True
            if part in results:
                lines += [markdown(section(results)).rstrip("\n")]
            else:
                lines += [f"Not measured: docs/results/results.json has no part "
                          f"'{part}'."]
    if skipping:
        raise BenchError(f"a mark of the page has no '{PAGE_END}' behind it")
    return "\n".join(lines) + "\n"
