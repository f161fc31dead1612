"""Runs the kernels and keeps what was measured.

hyperfine takes the times (Debian package hyperfine). It runs the commands it is
given one after another, which would let a machine that slows down meanwhile
favour whatever came first. So it is called for one run of one program at a time
(--runs 1 --warmup 0, no shell), round robin over all builds of a kernel and input:
A B C A B C ... A run's time is the user CPU time that hyperfine reports; a
build's time is the median over the rounds. Everything runs pinned to one CPU.

Every sample goes to build/bench/state.jsonl as soon as it is there, under the hash
of the program, its arguments, the round and the programs that it ran among, and is
looked up there before anything runs. An interrupted measurement thus goes on where
it stopped. Where one program of a row has changed, all of them run again: times of
another hour, on a machine that was busier or not, say nothing about the new ones.
"""

import fcntl
import hashlib
import json
import os
import signal
import statistics
import subprocess
from concurrent.futures import ThreadPoolExecutor

from builds import ROOT, BenchError, Column, measure_command

RUN_TIMEOUT = 60
# A counting build does this part of a kernel's repeats (kernel.h).
COUNTED_SHARE = 20
COUNTING = Column("count", "clang")


class State:
    """Records in a file of JSON lines, found by what was measured."""

    def __init__(self, directory, fresh=False):
        self.directory = directory
        self.path = ROOT / directory / "state.jsonl"
        self.path.parent.mkdir(parents=True, exist_ok=True)
        self.records = {}
        # Held until this program ends: two at a time would disturb each other's
        # times anyhow.
        self.lock = open(self.path.with_name("lock"), "w", encoding="utf-8")
        try:
            fcntl.flock(self.lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError:
            raise BenchError(f"another ./bench is at work in {directory}; wait "
                             "for it") from None
        if fresh:
            self.path.unlink(missing_ok=True)
        if self.path.exists():
            self.load()

    def close(self):
        self.lock.close()

    def load(self):
        text = self.path.read_text(encoding="utf-8")
        for line in text.splitlines():
            try:
                record = json.loads(line)
                self.keep(record.pop("kind"), record.pop("key"), record)
            except (ValueError, KeyError, AttributeError):
                continue  # cut off by an interruption
        if text and not text.endswith("\n"):
            with open(self.path, "a", encoding="utf-8") as out:
                out.write("\n")

    def keep(self, kind, key, record):
        self.records.setdefault((kind, key), []).append(record)

    def get(self, kind, key):
        return self.records.get((kind, key), [])

    def add(self, kind, key, **record):
        line = json.dumps({"kind": kind, "key": key, **record})
        with open(self.path, "a", encoding="utf-8") as out:
            out.write(line + "\n")
        self.keep(kind, key, record)


class Runner:
    """Counts the calls of kernels and measures their builds."""

    def __init__(self, state, builder, cpu, work, jobs, tell):
        self.state, self.builder, self.cpu = state, builder, cpu
        self.work, self.jobs, self.tell = work, jobs, tell

    def count(self, kernel, value, arguments):
        """Runs the counting build: its repeats and calls."""
        program = self.builder.build(kernel, COUNTING, value, ("-DKERNEL_COUNT",))
        if program.error:
            raise BenchError(f"{kernel.name}: {program.error}")
        key = " ".join([program.key, *arguments])
        if not self.state.get("count", key):
            status, output, _, _ = measure_command(
                [str(program.path), *arguments], timeout=RUN_TIMEOUT)
            if status != 0:
                raise BenchError(f"the counting build of {kernel.name} with input "
                                 f"{value} ended with status {status}: "
                                 f"{last_line(output)}")
            result, calls = output.splitlines()
            self.state.add("count", key, result=result,
                           repeats=int(result.split()[2]),
                           calls=int(calls.split()[1]))
        return self.state.get("count", key)[0]

    def plan(self, kernel, value):
        """Program arguments that make the usual work, and what they must print.

        The usual work is the number of calls that the kernel's own count of
        repeats makes with the first input.
        """
        first = self.count(kernel, kernel.inputs[0], [])
        counted = str(first["repeats"])
        here = self.count(kernel, value, [counted, *kernel.arguments(value)])
        budget = first["calls"] * COUNTED_SHARE * self.work
        repeats = max(1, round(budget * here["repeats"] / here["calls"]))
        arguments = [str(repeats), *kernel.arguments(value)]
        return arguments, self.count(kernel, value, arguments)

    def run_once(self, program, arguments):
        """One run by hyperfine: user seconds and output, or an error."""
        scratch = ROOT / self.builder.directory
        out, export = scratch / "output", scratch / "hyperfine.json"
        pinned = [] if self.cpu is None else ["taskset", "-c", str(self.cpu)]
        command = pinned + [
            "hyperfine", "-N", "--runs", "1", "--warmup", "0", "--style", "none",
            "--ignore-failure", "--output", str(out), "--export-json",
            str(export), " ".join(["./" + str(program.path), *arguments])]
        child = subprocess.Popen(command, cwd=ROOT, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE, text=True,
                                 start_new_session=True)
        try:
            _, errors = child.communicate(timeout=RUN_TIMEOUT)
        except BaseException as stopped:
            os.killpg(child.pid, signal.SIGKILL)
            child.wait()
            if isinstance(stopped, subprocess.TimeoutExpired):
                return None, None, f"runs longer than {RUN_TIMEOUT} s"
            raise
        if child.returncode != 0:
            return None, None, f"hyperfine: {last_line(errors)}"
        result = json.loads(export.read_text())["results"][0]
        status, output = result["exit_codes"][0], out.read_text()
        if status != 0:
            return None, None, f"ended with status {status}: {last_line(output)}"
        return result["user"], output.strip(), None

    def sample(self, program, among, arguments, number):
        """The sample of one round among these programs, from the state or by a
        run."""
        key = " ".join([program.content, *arguments, f"cpu={self.cpu}",
                        f"among={among}"])
        known = [r for r in self.state.get("run", key) if r["round"] == number]
        if not known:
            seconds, output, error = self.run_once(program, arguments)
            if error:
                return None, None, error
            self.state.add("run", key, round=number, seconds=seconds,
                           output=output)
            return seconds, output, None
        return known[0]["seconds"], known[0]["output"], None

    def measure(self, kernel, value, columns, rounds):
        """Builds and runs a kernel with one input; returns the report's row."""
        arguments, counted = self.plan(kernel, value)
        row = {"kernel": kernel.name, "class": kernel.kind, "input": value,
               "calls": counted["calls"], "arguments": arguments,
               "output": counted["result"], "problems": [], "seconds": {},
               "samples": {}, "text": {}, "compile": {}, "program": {}}
        mine = [c for c in columns if c.applies(kernel)]
        with ThreadPoolExecutor(self.jobs) as pool:
            programs = dict(zip((c.label for c in mine), pool.map(
                lambda c: self.builder.build(kernel, c, value), mine)))
        for label, program in list(programs.items()):
            row["text"][label] = program.text
            row["compile"][label] = program.seconds
            row["program"][label] = program.content[:8]
            if program.error:
                row["problems"].append(f"{label}: {program.error}")
                del programs[label]
        contents = sorted({program.content for program in programs.values()})
        among = hashlib.sha256(" ".join(contents).encode()).hexdigest()[:16]
        for number in range(rounds):
            for label, program in list(programs.items()):
                seconds, output, error = self.sample(program, among, arguments,
                                                     number)
                if not error and output != counted["result"]:
                    error = (f"prints '{output}', not '{counted['result']}'")
                if error:
                    row["problems"].append(f"{label}: {error}")
                    del programs[label]
                    continue
                row["samples"].setdefault(label, []).append(seconds)
        for label in programs:
            row["seconds"][label] = statistics.median(row["samples"][label])
        return row

    def measure_all(self, kernels, columns, rounds, inputs):
        work = [(k, v) for k in kernels for v in k.inputs[:inputs]]
        rows = []
        for index, (kernel, value) in enumerate(work, 1):
            self.tell(f"[{index}/{len(work)}] {kernel.name} {value}")
            rows.append(self.measure(kernel, value, columns, rounds))
        return rows


def last_line(text):
    return (text.strip().splitlines() or ["no output"])[-1]
