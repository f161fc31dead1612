"""What the pass costs as a module grows, along several axes.

Modules are generated (the shapes below), and opt runs each with all module passes
of the plugin (inlinerecursion-pipeline) and with none (no-op-module), the plugin
loaded both times. The cost is the difference of the two CPU times, the smallest
of some runs each: noise only ever adds. Peak memory is that of the whole command.
The exponent says how cost grows with size: 1 is linear, 2 quadratic.
"""

from dataclasses import dataclass

from builds import BenchError, error_line, measure_command, file_hash, ROOT
from figures import fit_exponent

OPT = "opt-16"
MEMORY_KIB = 6000000
TIMEOUT = 300
LEVELS = (0, 3)
# Times differ by this much between runs of the same command; smaller costs are
# not fitted.
RESOLUTION = 0.01
# Chains that are built at once, for the axis of their depth: one alone is too
# quick to be measured, and the estimator follows a recursion no deeper than 32.
CHAINS = 3000
OPEN = "-maximum-clone-limit-inline-recursion=1000000000"


def recursive(name, hops=0):
    """A function that counts its argument down, with HOPS more blocks."""
    lines = [f"define internal i32 @{name}(i32 %n) {{",
             "  %done = icmp eq i32 %n, 0",
             "  br i1 %done, label %base, label %hop0",
             "base:", "  ret i32 1"]
    for i in range(hops):
        lines += [f"hop{i}:", f"  %c{i} = icmp ne i32 %n, {1000 + i}",
                  f"  br i1 %c{i}, label %hop{i + 1}, label %base"]
    return lines + [f"hop{hops}:", "  %m = sub i32 %n, 1",
                    f"  %r = call i32 @{name}(i32 %m)",
                    "  %s = add i32 %r, %n", "  ret i32 %s", "}"]


def caller(name, callee, argument):
    return [f"define i32 @{name}() {{",
            f"  %r = call i32 @{callee}(i32 {argument})", "  ret i32 %r", "}"]


def plain_functions(size):
    for i in range(size):
        yield [f"define i32 @g{i}(i32 %n) {{", "  %a = mul i32 %n, 3",
               "  %b = xor i32 %a, 5", "  ret i32 %b", "}"]


def recursive_functions(size):
    for i in range(size // 2):
        yield recursive(f"f{i}")
        yield caller(f"call{i}", f"f{i}", 2)


def call_sites(size):
    yield recursive("f")
    for i in range(size):
        yield caller(f"call{i}", "f", 2)


def chain_depths(size):
    for i in range(CHAINS):
        yield recursive(f"f{i}")
        yield caller(f"call{i}", f"f{i}", size - 1)


def blocks(size):
    yield recursive("f", size - 3)
    yield caller("call", "f", 2)


@dataclass(frozen=True)
class Axis:
    """One way for a module to grow."""

    title: str
    unit: str
    shape: object
    sizes: tuple
    levels: tuple = LEVELS
    options: object = lambda size: []


AXES = (
    Axis("functions without recursion", "functions", plain_functions,
         (1000, 5000, 20000, 50000, 100000, 200000)),
    Axis("recursive functions, default limits", "functions",
         recursive_functions, (1000, 5000, 20000, 50000, 100000, 200000)),
    Axis("recursive functions, all chained", "functions", recursive_functions,
         (1000, 2000, 5000, 10000, 20000, 50000, 100000, 200000),
         options=lambda size: [OPEN]),
    Axis("call sites of one function", "calls", call_sites,
         (1000, 5000, 20000, 50000, 100000, 200000),
         options=lambda size: [OPEN]),
    Axis(f"depth of {CHAINS} chains", "copies", chain_depths,
         (2, 4, 8, 16, 32), levels=(0,),
         options=lambda size: [OPEN, "-default-recursion-depth-threshold="
                               f"{size}"]),
    Axis("blocks of one function", "blocks", blocks,
         (1000, 3000, 10000, 30000, 100000),
         options=lambda size: [OPEN, "-inlinerecursion-max-function-size="
                               "1000000000"]),
)
QUICK_SIZES = 2


def write_module(axis, size, path):
    with open(path, "w", encoding="utf-8") as out:
        for lines in axis.shape(size):
            out.write("\n".join(lines) + "\n")


def best_of(command, runs):
    """The smallest CPU time of some runs, and the largest peak memory in MiB."""
    results = []
    for _ in range(runs):
        status, output, seconds, memory = measure_command(
            ["prlimit", f"--as={MEMORY_KIB * 1024}", *command], timeout=TIMEOUT)
        if status != 0:
            reason = (f"takes longer than {TIMEOUT} s" if status is None
                      else error_line(status, output))
            raise BenchError(f"{' '.join(command)}: {reason}")
        results.append((seconds, memory))
        if seconds > 10:
            break
    return min(s for s, _ in results), max(m for _, m in results) // 1024


def pass_command(plugin, axis, size, level, module):
    passes = ("no-op-module" if level is None
              else f"inlinerecursion-pipeline<level={level}>")
    return [OPT, "-load", str(plugin), f"-load-pass-plugin={plugin}",
            *axis.options(size), f"-passes={passes}", "-disable-output",
            str(module)]


def measure_point(axis, size, plugin, scratch, runs):
    """The record of one module: times and memory without and per level."""
    text, module = scratch / "scale.ll", scratch / "scale.bc"
    write_module(axis, size, ROOT / text)
    best_of([OPT, "-passes=no-op-module", str(text), "-o", str(module)], 1)
    record = {"size": size}
    for level in (None, *axis.levels):
        name = "none" if level is None else f"L{level}"
        seconds, memory = best_of(
            pass_command(plugin, axis, size, level, module), runs)
        record[name] = {"seconds": round(seconds, 4), "memory": memory}
    (ROOT / text).unlink()
    (ROOT / module).unlink()
    return record


def measure_scale(state, plugin, runs, quick, tell):
    """All axes: title, unit, points, and an exponent per level."""
    scratch = state.directory
    code = file_hash(plugin) + file_hash("benchmarks/scale.py")
    results = []
    for axis in AXES:
        points = []
        for size in axis.sizes[:QUICK_SIZES] if quick else axis.sizes:
            tell(f"[scale] {axis.title}: {size}")
            key = f"{axis.title} {size} {runs} {code[:24]} {code[64:88]}"
            if not state.get("scale", key):
                state.add("scale", key,
                          **measure_point(axis, size, plugin, scratch, runs))
            points.append(state.get("scale", key)[0])
        results.append({"title": axis.title, "unit": axis.unit,
                        "levels": [f"L{l}" for l in axis.levels],
                        "options": axis.options("SIZE"),
                        "points": points,
                        "exponents": exponents(axis, points)})
    return results


def cost(point, name):
    return point[name]["seconds"] - point["none"]["seconds"]


def exponents(axis, points):
    fits = {}
    for name in (f"L{l}" for l in axis.levels):
        large = [p for p in points if cost(p, name) >= RESOLUTION]
        fits[name] = fit_exponent([p["size"] for p in large],
                                  [cost(p, name) for p in large])
    return fits
