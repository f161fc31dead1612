"""Tests of ./bench's own arithmetic, memory and reports, without any compiler.

    python3 -m unittest discover -s benchmarks
"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
sys.dont_write_bytecode = True

import builds
import figures
import measure
import report
import scale


def row(kernel="k", value="1", calls=1000, **seconds):
    return {"kernel": kernel, "class": "bounded", "input": value, "calls": calls,
            "problems": [], "arguments": [],
            "seconds": {l.replace("_", "-"): s for l, s in seconds.items()},
            "text": {l: 100 for l in seconds}, "compile": {l: 1 for l in seconds}}


class Figures(unittest.TestCase):
    def test_geometric_mean(self):
        self.assertAlmostEqual(figures.geometric_mean([1, 10, 100]), 10)
        self.assertIsNone(figures.geometric_mean([]))

    def test_ratio_needs_both_times(self):
        self.assertEqual(figures.ratio(row(clang=3, gcc=2), "clang", "gcc"), 1.5)
        self.assertIsNone(figures.ratio(row(clang=3), "clang", "gcc"))
        self.assertIsNone(figures.ratio(row(clang=3, gcc=0), "clang", "gcc"))

    def test_standing_has_a_margin(self):
        rows = [row(gcc=1.0, L0=0.9), row(gcc=1.0, L0=1.02),
                row(gcc=1.0, L0=0.98), row(gcc=1.0, L0=1.04), row(gcc=1.0)]
        self.assertEqual(figures.standing(rows, "gcc", "L0"), (1, 2, 1))

    def test_slower(self):
        rows = [row(value="5", clang=1.0, L0=1.029, L1=1.1),
                row(value="6", clang=1.0, L0=1.031)]
        found = figures.slower(rows, ["L0", "L1"])
        self.assertEqual([(r["input"], labels) for r, labels, _ in found],
                         [("5", ["L1"]), ("6", ["L0"])])
        self.assertEqual(figures.verdict_line(*found[0]),
                         "SLOWER: k 5 at L1 takes 10.0 % more time than plain "
                         "clang")

    def test_slower_names_a_program_once_and_tells_its_rounds(self):
        measured = row(value="5", clang=1.0, L0=1.1, L1=1.1, L2=1.2)
        measured["program"] = {"clang": "a", "L0": "b", "L1": "b", "L2": "c"}
        measured["samples"] = {"a": [1.0, 1.0, 1.2], "b": [1.1, 1.02, 1.3],
                               "c": [1.2, 1.2, 1.3]}
        lines = [figures.verdict_line(*found)
                 for found in figures.slower([measured], ["L0", "L1", "L2"])]
        self.assertEqual(lines, [
            "SLOWER: k 5 at L0, L1 takes 10.0 % more time than plain clang, in 2 "
            "of 3 rounds",
            "SLOWER: k 5 at L2 takes 20.0 % more time than plain clang, in 3 of 3 "
            "rounds"])

    def test_neighbours_are_consecutive(self):
        def chosen(*inputs):
            return [r["input"] for r in
                    figures.neighbours([{"input": i} for i in inputs])]
        self.assertEqual(chosen("9", "4000", "11", "10", "1", "2"),
                         ["9", "10", "11"])
        self.assertEqual(chosen("32", "64", "65", "256"),
                         ["32", "64", "65", "256"])
        self.assertEqual(chosen("12,7,3", "12,8,3"), ["12,7,3", "12,8,3"])

    def test_swing_is_per_call(self):
        rows = [row(calls=1000, clang=1.0), row(calls=2000, clang=3.0)]
        self.assertAlmostEqual(figures.swing(rows, "clang"), 1.5)
        self.assertIsNone(figures.swing(rows[:1], "clang"))

    def test_fit_exponent(self):
        sizes = [10, 100, 1000, 5000]
        self.assertAlmostEqual(
            figures.fit_exponent(sizes, [3 * s ** 1.5 for s in sizes]), 1.5)
        self.assertAlmostEqual(figures.fit_exponent(sizes, [7] * 4), 0)
        # The middle point of three is off by a factor of two, which has no
        # weight in the slope.
        self.assertAlmostEqual(
            figures.fit_exponent([1, 10, 100], [1, 20, 100]), 1)
        self.assertIsNone(figures.fit_exponent([10], [3]))
        self.assertIsNone(figures.fit_exponent([10, 20], [3, -1]))


class FakeBuilder:
    """Programs that are not there."""

    def __init__(self, refused=()):
        self.refused = refused
        self.directory = Path("nowhere")

    def build(self, kernel, column, value, extra=()):
        key = f"{kernel.name}.{column.label}.{value}"
        if column.label in self.refused:
            return builds.Program(key, Path(key), error="no")
        return builds.Program(key, Path(key), text=10, content=key)


class NewGccBuilder(FakeBuilder):
    """gcc makes another file than before."""

    def build(self, kernel, column, value, extra=()):
        program = super().build(kernel, column, value, extra)
        if column.label == "gcc":
            program.content += ".new"
        return program


class SameBuilder(FakeBuilder):
    """Every compiler makes the same file."""

    def build(self, kernel, column, value, extra=()):
        program = super().build(kernel, column, value, extra)
        program.content = value
        return program


class FakeRunner(measure.Runner):
    """Runs nothing: each run takes a tenth of a second more than the last."""

    def __init__(self, state, builder, prints="k repeats 4 result 9"):
        super().__init__(state, builder, None, 1.0, 1, lambda text: None)
        self.runs, self.prints = [], prints

    def count(self, kernel, value, arguments):
        # Twice the input is twice the calls; 5 repeats unless told.
        repeats = int(arguments[0]) if arguments else 5
        return {"repeats": repeats, "calls": repeats * 100 * int(value),
                "result": "k repeats 4 result 9"}

    def run_once(self, program, arguments):
        self.runs.append((program.key, *arguments))
        return len(self.runs) / 10, self.prints, None


KERNEL = SimpleNamespace(name="k", kind="bounded", inputs=["1", "2"],
                         is_fortran=False, arguments=lambda value: [value])
COLUMNS = [builds.Column("clang", "clang"), builds.Column("gcc", "gcc"),
           builds.Column("rings", "clang", only="ring")]


class Measuring(unittest.TestCase):
    def setUp(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self.temporary.cleanup)
        self.directory = Path(self.temporary.name)

        self.opened = None

    def state(self, fresh=False):
        """A state as the next ./bench finds it, the one before being over."""
        if self.opened:
            self.opened.close()
        self.opened = measure.State(self.directory, fresh)
        self.addCleanup(self.opened.close)
        return self.opened

    def test_round_robin_and_median(self):
        runner = FakeRunner(self.state(), FakeBuilder())
        result = runner.measure(KERNEL, "1", COLUMNS, 3)
        self.assertEqual([key for key, *_ in runner.runs],
                         ["k.clang.1", "k.gcc.1"] * 3)
        self.assertEqual(result["seconds"], {"clang": 0.3, "gcc": 0.4})
        self.assertEqual(result["problems"], [])

    def test_work_is_the_same_for_every_input(self):
        runner = FakeRunner(self.state(), FakeBuilder())
        first, second = (runner.measure(KERNEL, value, COLUMNS, 1)
                         for value in KERNEL.inputs)
        self.assertEqual(first["arguments"], ["100", "1"])
        self.assertEqual(second["arguments"], ["50", "2"])
        self.assertEqual(first["calls"], second["calls"])

    def test_resume(self):
        FakeRunner(self.state(), FakeBuilder()).measure(KERNEL, "1", COLUMNS, 2)
        with open(self.directory / "state.jsonl", "a", encoding="utf-8") as file:
            file.write('{"kind": "run", "key": "k.clang.1 100 1 cpu=No')
        runner = FakeRunner(self.state(), FakeBuilder())
        result = runner.measure(KERNEL, "1", COLUMNS, 3)
        self.assertEqual(len(runner.runs), 2)
        self.assertEqual(result["samples"],
                         {"clang": [0.1, 0.3, 0.1], "gcc": [0.2, 0.4, 0.2]})
        # What was measured after the torn line is there the next time.
        runner = FakeRunner(self.state(), FakeBuilder())
        runner.measure(KERNEL, "1", COLUMNS, 3)
        self.assertEqual(runner.runs, [])

    def test_a_row_with_a_new_program_is_measured_whole(self):
        FakeRunner(self.state(), FakeBuilder()).measure(KERNEL, "1", COLUMNS, 2)
        runner = FakeRunner(self.state(), NewGccBuilder())
        runner.measure(KERNEL, "1", COLUMNS, 2)
        self.assertEqual([key for key, *_ in runner.runs],
                         ["k.clang.1", "k.gcc.1"] * 2)

    def test_one_at_a_time(self):
        self.state()
        with self.assertRaisesRegex(builds.BenchError, "another ./bench"):
            measure.State(self.directory)

    def test_fresh_forgets(self):
        FakeRunner(self.state(), FakeBuilder()).measure(KERNEL, "1", COLUMNS, 1)
        runner = FakeRunner(self.state(fresh=True), FakeBuilder())
        runner.measure(KERNEL, "1", COLUMNS, 1)
        self.assertEqual(len(runner.runs), 2)

    def test_same_programs_share_their_samples(self):
        runner = FakeRunner(self.state(), SameBuilder())
        result = runner.measure(KERNEL, "1", COLUMNS, 2)
        self.assertTrue(figures.same_program(result, "gcc", "clang"))
        self.assertEqual(len(runner.runs), 2)
        self.assertEqual(result["seconds"]["gcc"], result["seconds"]["clang"])

    def test_wrong_output_and_failed_build(self):
        runner = FakeRunner(self.state(), FakeBuilder(refused=["gcc"]),
                            prints="k repeats 4 result 8")
        result = runner.measure(KERNEL, "1", COLUMNS, 2)
        self.assertEqual(result["problems"],
                         ["gcc: no", "clang: prints 'k repeats 4 result 8', not "
                          "'k repeats 4 result 9'"])
        self.assertEqual(result["seconds"], {})


class Kernels(unittest.TestCase):
    def test_every_kernel_has_three_inputs(self):
        for kernel in builds.find_kernels(None, None):
            with self.subTest(kernel.name):
                self.assertGreaterEqual(len(set(kernel.inputs)), 3)
                self.assertEqual(len(set(kernel.inputs)), len(kernel.inputs))
                self.assertEqual(kernel.macro is not None,
                                 kernel.kind == "bounded" or
                                 kernel.name.endswith("_const"))

    def test_unroll_source(self):
        text = ("int other(int N) { return N; }\n\n"
                "static int f(int N,\n             int M) {\n  KERNEL_CALL();\n"
                "  return f(N - 1, f(M, 0));\n}\nint main() { return f(9, 9); }\n")
        inline = "__attribute__((always_inline)) inline "
        head, body = "static int {}(int N,\n             int M)", (
            " {{\n  KERNEL_CALL();\n  return {0}(N - 1, {0}(M, 0));\n}}\n")
        self.assertEqual(
            builds.unroll_source(text, 2),
            "int other(int N) { return N; }\n\n" + "\n".join([
                head.format("f") + ";\n",
                inline + head.format("f1") + body.format("f"),
                inline + head.format("f2") + body.format("f1"),
                head.format("f") + body.format("f2")]) +
            "int main() { return f(9, 9); }\n")

    def test_every_kernel_can_be_unrolled(self):
        for kernel in builds.find_kernels(["unbounded"], None):
            with self.subTest(kernel.name):
                text = (builds.ROOT / kernel.path).read_text(encoding="utf-8")
                calls = text.count("KERNEL_CALL();")
                self.assertGreater(calls, 0)
                self.assertEqual(
                    builds.unroll_source(text, 3).count("KERNEL_CALL();"),
                    4 * calls)

    def test_selection(self):
        names = [k.name for k in builds.find_kernels(["bounded"], ["horner"])]
        self.assertEqual(names, ["bounded_horner"])
        with self.assertRaises(builds.BenchError):
            builds.find_kernels(None, ["nosuch"])

    def test_columns(self):
        def labels(*arguments):
            return [c.label for c in builds.choose_columns(*arguments)]
        self.assertEqual(labels(["L2"], None, False, "", False), ["clang", "L2"])
        self.assertEqual(labels(None, ["0", "3"], False, "", False),
                         ["clang", "gcc", "L0", "L3"])
        self.assertNotIn("L0", labels(None, None, False, "", True))
        self.assertEqual(builds.choose_columns(["L0"], None, False, "-mllvm -x",
                                               False)[1].flags[-2:],
                         ("-mllvm", "-x"))


class Fortran(unittest.TestCase):
    """Kernels that flang and gfortran compile."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.builder = builds.Builder(
            SimpleNamespace(directory=Path(temporary.name)), Path("p.so"))
        self.kernel, = builds.find_kernels(None, ["states_rows_module"])
        self.columns = {c.label: c for c in builds.COLUMNS}

    def command(self, label):
        return self.builder.command(self.kernel, self.columns[label], "40",
                                    ("-DX",))

    def test_command(self):
        self.assertEqual(self.command("gcc"),
                         ["gfortran", "-cpp", "-O3", "-DX", str(self.kernel.path)])
        plain, plugin = self.command("clang"), self.command("L0")
        self.assertEqual(plain[:3], ["flang-new-16", "-cpp", "-O3"])
        self.assertEqual([f for f in plugin if f not in plain],
                         ["-fpass-plugin=p.so"])

    def test_flang_knows_no_options_of_the_plugin(self):
        mine = [c.label for c in builds.COLUMNS if c.applies(self.kernel)]
        self.assertEqual(mine, ["clang", "gcc", "clang-spec", "L0"])
        more = builds.choose_columns(["L0"], None, False, "-mllvm -x", False)
        self.assertFalse(more[1].applies(self.kernel))

    def test_its_sources_are_not_unrolled(self):
        mine = [c.label for c in builds.WHY_COLUMNS if c.applies(self.kernel)]
        self.assertIn("no ipa-cp", mine)
        self.assertNotIn("clang 1", mine)


class Scale(unittest.TestCase):
    def test_exponent_ignores_what_is_too_small(self):
        axis = scale.Axis("a", "things", None, (), levels=(0,))

        def point(size, seconds):
            return {"size": size, "none": {"seconds": 1.0},
                    "L0": {"seconds": 1.0 + seconds}}
        points = [point(1, 0.0099), point(10, 0.1), point(100, 10.0)]
        self.assertAlmostEqual(scale.exponents(axis, points)["L0"], 2)

    def test_shapes_have_their_size(self):
        text = "\n".join(line for lines in scale.blocks(10) for line in lines)
        body = text[:text.index("}")]
        self.assertEqual(body.count(" br ") + body.count(" ret "), 10)
        lines = [l for f in scale.call_sites(7) for l in f]
        self.assertEqual(sum("call i32 @f(i32 2)" in l for l in lines), 7)


RESULTS = {"run": {
    "about": {"facts": {"date": "today"}, "commands": ["clang"]},
    "columns": ["clang", "gcc", "L0"],
    "families": {"clang": "clang", "gcc": "gcc", "L0": "plugin"},
    "rows": [row(value="1", clang=2.0, gcc=1.0, L0=0.5),
             row(value="2", clang=2.0, gcc=1.0, L0=2.2)]}}


class Report(unittest.TestCase):
    def test_markdown_table_lines_up(self):
        self.assertEqual(report.markdown([report.table(["a", "bb"], [["xyz", 1]])]),
                         "| a   | bb |\n| --- | -: |\n| xyz |  1 |\n")

    def test_html_escapes(self):
        text = report.html_document([report.heading(1, "a<b"),
                                     report.table(["x"], [["<i>"]])])
        self.assertIn("<td>&lt;i&gt;</td>", text)
        self.assertNotIn("<i>", text)

    def test_document(self):
        text = report.markdown(report.document(RESULTS))
        self.assertIn("SLOWER: k 2 at L0 takes 10.0 % more", text)
        self.assertIn("L0           ahead of gcc   on  50 % of 2 inputs", text)
        # The mean of 2.0 / 0.5 and 2.0 / 2.2.
        self.assertRegex(text, r"\| k +\| 2\.00 \| 1\.91 \|")

    def test_same_programs_are_marked(self):
        group = [dict(row(clang=1, L0=1), program={"clang": "a", "L0": program})
                 for program in "ab"]
        self.assertEqual(report.speed_up(group[:1], "clang", "L0"), "=")
        self.assertEqual(report.speed_up(group, "clang", "L0"), "1.00")

    def test_cost(self):
        text = report.markdown(report.cost_section({"cost": {
            "start": {"plain": 1000, "-load": 1200},
            "count": [{"code base": "b", "unit": "u.c", "optimisation": "2",
                       "level": 0, "plain": 1000, "total": 1010,
                       "passes": {"One": 3, "Two": 2}}],
            "total": [{"code base": "b", "units": 7, "optimisation": "3",
                       "level": 0, "plain": 4000, "total": 4080,
                       "plain text": 800, "text": 816,
                       "most": {"unit": "u.c", "plain": 100, "total": 107}}],
            "time": [{"code base": "b", "units": 7, "optimisation": "2",
                      "plain": 2.0, "plain again": 1.99,
                      "levels": {"0": 2.02},
                      "text": {"plain": 1000, "levels": {"0": 1030}}}]}}))
        self.assertRegex(text, r"\| -load +\| +1200 \| +200 \|")
        self.assertRegex(text, r"\| +\+1\.00 % \| +\+0\.50 % \|")
        self.assertRegex(text, r"\| +4000 \| +\+2\.00 % \| +u\.c \| "
                               r"+\+7\.00 % \| +800 \| +\+2\.00 % \|")
        self.assertRegex(text, r"\| +2\.000 \| +-0\.50 % \| +\+1\.00 % "
                               r"\| +1000 \| +\+3\.00 % \|")

    def test_dump_reads_back(self):
        with tempfile.TemporaryDirectory() as name:
            Path(name, "results.json").write_text(report.dump(RESULTS),
                                                  encoding="utf-8")
            self.assertEqual(report.load(Path(name)), RESULTS)

    def test_rows_of_other_kernels_are_kept(self):
        kernels = [SimpleNamespace(name="b")]
        before = {"columns": ["clang"], "rows": [row("a"), row("b")],
                  "about": {"facts": {"date": "then", "plugin": "p, 1"}}}
        part = {"columns": ["clang"], "rows": [row("b", value="2")],
                "about": {"facts": {}}}
        report.keep_others(part, before, kernels)
        self.assertEqual([(r["kernel"], r["input"]) for r in part["rows"]],
                         [("a", "1"), ("b", "2")])
        self.assertEqual(part["about"]["facts"]["kept"], "1 rows of then, p, 1")
        report.keep_others(part, None, kernels)
        with self.assertRaisesRegex(builds.BenchError, "needs the columns"):
            report.keep_others({"columns": ["gcc"]}, before, kernels)

    def test_page(self):
        page = "\n".join(["before", report.PAGE_MARK.format("verdicts"), "old",
                          report.PAGE_END, "after",
                          report.PAGE_MARK.format("why"), report.PAGE_END, ""])
        once = report.fill_page(page, RESULTS)
        self.assertIn("SLOWER: k 2", once)
        self.assertNotIn("old", once)
        self.assertIn("has no part 'why'", once)
        self.assertEqual(report.fill_page(once, RESULTS), once)
        with self.assertRaises(builds.BenchError):
            report.fill_page(page.replace(report.PAGE_END, ""), RESULTS)


class CommandLine(unittest.TestCase):
    def bench(self, *arguments):
        return subprocess.run([sys.executable, str(HERE.parent / "bench"),
                               *arguments], text=True, capture_output=True,
                              check=False)

    def test_help(self):
        result = self.bench("--help")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("--quick", result.stdout)

    def test_list(self):
        result = self.bench("--list", "--class", "ring")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("ring_knight_const", result.stdout)
        self.assertNotIn("unbounded_fib", result.stdout)

    def test_bad_arguments_are_one_line(self):
        for arguments in (["--class", "x"], ["--kernels", "x"],
                          ["--columns", "x"], ["--levels", "9"],
                          ["--parts", "x"], ["--pin", "x"]):
            with self.subTest(arguments):
                result = self.bench(*arguments)
                self.assertEqual(result.returncode, 2)
                self.assertRegex(result.stderr, r"\A\./bench: .*'[x9]'.*\n\Z")


if __name__ == "__main__":
    unittest.main()
