"""What the plugin adds to compile time.

Four measurements, from exact to real:

start  Instructions to compile a file with next to nothing in it: what loading
       the library, its relocations and its options cost each compilation.
count  Instructions to compile the code bases' sample units, with and without
       the plugin, and how many of them the plugin's passes take, with everything
       that they call.  The rest of the difference is indirect: analyses that
       others find computed, or have to compute again, and code that is there
       because of the plugin.  Counted by callgrind, which is some hundred times
       slower than the compiler; hence a sample.
total  Instructions to compile all units, on demand, and their machine code.
       Cachegrind counts them, in half of callgrind's time.
time   User time to compile all units: the sum of the units' medians, over rounds
       in which all variants of a unit run in turn, on one processor.  The plain
       compiler takes part twice; how far it is from itself is the error.  And the
       machine code of all units.
"""

import os
import re
import statistics
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from builds import (COMPILER, BuildFailure, Variant, compile_command,
                    find_all_units)
from sources import CodebasesError

EMPTY_PROGRAM = "int increment(int number) { return number + 1; }\n"


# --- Counting instructions ---------------------------------------------------


def count_instructions(command, directory, in_passes=False):
    """Instructions in all, and, on demand, those in each of the plugin's
    passes."""
    with tempfile.TemporaryDirectory() as temporary:
        profile = Path(temporary) / "profile"
        done = run_tool(["valgrind", "--tool=callgrind",
                         f"--callgrind-out-file={profile}", *command],
                        directory)
        if done.returncode or not profile.exists():
            raise BuildFailure(f"failed under valgrind: {' '.join(command)}\n"
                               f"  {done.stdout.strip()[-500:]}")
        total = re.search(r"^totals: (\d+)", profile.read_text(), re.M)
        annotated = run_tool(["callgrind_annotate", "--inclusive=yes",
                              "--threshold=100", str(profile)],
                             directory).stdout if in_passes else ""
    passes = {}
    # Pass managers call passes through a PassModel; it is there even where the
    # pass's own `run` is inlined.
    for count, name in re.findall(
            r"^ *([\d,]+) .*?:llvm::detail::PassModel<llvm::\w+, "
            r"llvm::inlinerecursion::(\w+),.*>::run\(", annotated, re.M):
        passes[name] = passes.get(name, 0) + int(count.replace(",", ""))
    return int(total[1]), passes


def run_tool(command, directory):
    try:
        return subprocess.run(command, cwd=directory, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, errors="replace")
    except FileNotFoundError:
        raise CodebasesError("valgrind, which counts the instructions, is not "
                             "installed; install it, or use --no-count")


def measure_start(plugin):
    """Instructions to compile next to nothing, by what is loaded how."""
    library = str(plugin.shared_object)
    ways = {"plain": [],
            "-load": ["-Xclang", "-load", "-Xclang", library],
            "-fpass-plugin": [f"-fpass-plugin={library}"],
            "--config": [f"--config={plugin.configuration}"]}
    with tempfile.TemporaryDirectory() as temporary:
        source = Path(temporary) / "empty.c"
        source.write_text(EMPTY_PROGRAM)
        return {name: count_instructions(
            [COMPILER, *flags, "-O2", "-c", str(source), "-o",
             f"{temporary}/empty.o"], temporary)[0]
            for name, flags in ways.items()}


def count_unit(base, sources, unit, variant):
    with tempfile.TemporaryDirectory() as temporary:
        return count_instructions(
            compile_command(base, variant, sources / unit,
                            Path(temporary) / "unit.o"), sources,
            in_passes=variant.plugin is not None)


def measure_counts(base, sources, variants, progress):
    rows = []
    for plain, levels in variants:
        for unit in base.sample:
            progress(f"{base.name}: counting instructions for {unit} at "
                     f"-O{plain.optimisation}")
            expected, _ = count_unit(base, sources, unit, plain)
            for variant in levels:
                total, passes = count_unit(base, sources, unit, variant)
                rows.append({"code base": base.name, "unit": unit,
                             "optimisation": plain.optimisation,
                             "level": variant.level, "plain": expected,
                             "total": total, "passes": passes})
                progress(f"{base.name}: level {variant.level}: "
                         f"{percent(total, expected)}")
    return rows


# --- Counting all of them ----------------------------------------------------


def count_total(base, sources, unit, variant):
    """Instructions to compile a unit, and its machine code."""
    with tempfile.TemporaryDirectory() as temporary:
        command = compile_command(base, variant, unit,
                                  Path(temporary) / "unit.o")
        done = run_tool(["valgrind", "--tool=cachegrind", "--cache-sim=no",
                         "--cachegrind-out-file=/dev/null", *command], sources)
        count = re.search(r"I\s+refs:\s+([\d,]+)", done.stdout)
        if done.returncode or not count:
            raise BuildFailure(f"failed under valgrind: {' '.join(command)}\n"
                               f"  {done.stdout.strip()[-500:]}")
        return (int(count[1].replace(",", "")),
                measure_text(Path(temporary) / "unit.o"))


def measure_totals(base, sources, variants, jobs, progress):
    rows = []
    for plain, levels in variants:
        progress(f"{base.name}: counting instructions for all units at "
                 f"-O{plain.optimisation}")
        units = find_all_units(base, sources)

        def count_all(variant):
            with ThreadPoolExecutor(jobs) as pool:
                return list(pool.map(
                    lambda unit: count_total(base, sources, unit, variant),
                    units))

        expected, plain_text = zip(*count_all(plain))
        for variant in levels:
            counts, text = zip(*count_all(variant))
            most = max(range(len(units)),
                       key=lambda unit: counts[unit] / expected[unit])
            rows.append({"code base": base.name, "units": len(units),
                         "optimisation": plain.optimisation,
                         "level": variant.level, "plain": sum(expected),
                         "total": sum(counts), "plain text": sum(plain_text),
                         "text": sum(text),
                         "most": {"unit": str(Path(units[most]).name),
                                  "plain": expected[most],
                                  "total": counts[most]}})
    return rows


# --- Measuring time ----------------------------------------------------------


def measure_user_time(command, directory):
    process = subprocess.Popen(command, cwd=directory,
                               stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        raise BuildFailure(f"ended with status {process.returncode}: "
                           + " ".join(map(str, command)))
    return usage.ru_utime


def measure_text(file):
    """Machine code and constants in an object file (bytes)."""
    printed = run_tool(["size", str(file)], None).stdout
    return int(printed.splitlines()[1].split()[0])


def measure_times(base, sources, variants, rounds, progress):
    rows = []
    with tempfile.TemporaryDirectory() as temporary:
        for plain, levels in variants:
            compared = [plain, plain, *levels]
            units = find_all_units(base, sources)
            times = [[[] for _ in compared] for _ in units]
            text = [0] * len(compared)
            for number in range(rounds):
                progress(f"{base.name}: -O{plain.optimisation}, round "
                         f"{number + 1} of {rounds}")
                for unit, measured in zip(units, times):
                    for turn in range(len(compared)):
                        which = (turn + number) % len(compared)
                        measured[which].append(measure_user_time(
                            compile_command(base, compared[which], unit,
                                            Path(temporary) / "unit.o"),
                            sources))
                        if number == 0:
                            text[which] += measure_text(
                                Path(temporary) / "unit.o")
            sums = [sum(statistics.median(unit[which]) for unit in times)
                    for which in range(len(compared))]
            rows.append({"code base": base.name, "units": len(units),
                         "optimisation": plain.optimisation,
                         "plain": sums[0], "plain again": sums[1],
                         "levels": {variant.level: seconds for variant, seconds
                                    in zip(levels, sums[2:])},
                         "text": {"plain": text[0],
                                  "levels": {variant.level: size
                                             for variant, size
                                             in zip(levels, text[2:])}}})
    return rows


# --- Printing ----------------------------------------------------------------


def percent(value, base):
    return f"{100 * (value / base - 1):+.3f} %"


def print_start(start):
    print("start: instructions to compile next to nothing")
    for name, count in start.items():
        print(f"  {name:14} {count:>12,}  {count - start['plain']:>+10,}")


def print_counts(rows):
    print("\ncount: instructions to compile a unit")
    print(f"  {'code base':10} {'unit':24} {'-O':2} {'level':>5} {'plain':>15} "
          f"{'with plugin':>15} {'more':>11} {'in the passes':>13}  most of it in")
    for row in rows:
        in_passes = sum(row["passes"].values())
        largest = sorted(row["passes"].items(), key=lambda item: -item[1])[:2]
        print(f"  {row['code base']:10} {row['unit'][-24:]:24} "
              f"{row['optimisation']:2} {row['level']:5} {row['plain']:15,} "
              f"{row['total']:15,} {percent(row['total'], row['plain']):>11} "
              f"{100 * in_passes / row['plain']:11.3f} %  "
              + ", ".join(f"{name} {count:,}" for name, count in largest))
    for optimisation in sorted({row["optimisation"] for row in rows}):
        for level in sorted({row["level"] for row in rows}):
            chosen = [row for row in rows if row["level"] == level
                      and row["optimisation"] == optimisation]
            plain = sum(row["plain"] for row in chosen)
            total = sum(row["total"] for row in chosen)
            print(f"  all at -O{optimisation}, level {level}: "
                  f"{percent(total, plain)}")


def print_totals(rows):
    print("\ntotal: instructions to compile all units")
    for row in rows:
        most = row["most"]
        print(f"  {row['code base']:10} -O{row['optimisation']} "
              f"{row['units']:3} units  level {row['level']}  plain "
              f"{row['plain']:17,}  {percent(row['total'], row['plain']):>10}  "
              f"at most {percent(most['total'], most['plain'])} "
              f"({most['unit']})  text {row['plain text']:,} "
              f"{percent(row['text'], row['plain text'])}")


def print_times(rows):
    print("\ntime: user seconds to compile all units, sums of medians")
    for row in rows:
        print(f"  {row['code base']:10} -O{row['optimisation']} "
              f"{row['units']:3} units  plain {row['plain']:8.3f}  plain again "
              f"{percent(row['plain again'], row['plain']):>10}  "
              + "  ".join(f"level {level} {percent(seconds, row['plain']):>10}"
                          for level, seconds in row["levels"].items())
              + f"  text {row['text']['plain']:,}  "
              + "  ".join(f"level {level} {percent(size, row['text']['plain'])}"
                          for level, size in row["text"]["levels"].items()))
    for optimisation in sorted({row["optimisation"] for row in rows}):
        chosen = [row for row in rows if row["optimisation"] == optimisation]
        plain = sum(row["plain"] for row in chosen)
        again = sum(row["plain again"] for row in chosen)
        levels = {level: sum(row["levels"][level] for row in chosen)
                  for level in chosen[0]["levels"]}
        print(f"  all at -O{optimisation}: plain {plain:.3f}, plain again "
              f"{percent(again, plain)}, "
              + ", ".join(f"level {level} {percent(seconds, plain)}"
                          for level, seconds in levels.items()))


# --- All ---------------------------------------------------------------------


def measure_cost(options, packages, plugin, progress, save):
    """Calls save with what there is whenever there is more."""
    variants = [(Variant(optimisation=optimisation),
                 [Variant(plugin, level, optimisation=optimisation)
                  for level in options.levels])
                for optimisation in options.optimisations]
    sources = {base.name: packages.prepare(base.name, base.package, base.prepare)
               for base in options.bases}
    results = {"versions": {base.name: packages.version(base.package)
                            for base in options.bases}}
    if not options.no_count:
        progress("counting instructions to start")
        results["start"] = measure_start(plugin)
        print_start(results["start"])
        results["count"] = []
        for base in options.bases:
            results["count"] += measure_counts(base, sources[base.name],
                                               variants, progress)
            save(results)
        print_counts(results["count"])
    if options.count_all:
        results["total"] = []
        for base in options.bases:
            results["total"] += measure_totals(base, sources[base.name],
                                               variants, options.jobs, progress)
            save(results)
        print_totals(results["total"])
    if not options.no_time:
        os.sched_setaffinity(0, {options.cpu})
        results["time"] = []
        for base in options.bases:
            results["time"] += measure_times(base, sources[base.name], variants,
                                             options.rounds, progress)
            save(results)
        print_times(results["time"])
