"""Do the plugin and inlinerecursion-plan say the same about plans?

    same_words.py --opt COMMAND --tool COMMAND --scratch DIR TEXTS FOLDER

TEXTS has a plan in each line, good ones and bad ones. They, and each pair of a first word
and a later one that occur in them, become one plan file; what the two complain about has
to be the same. Those that nobody complains about have to mean the same: the tool writes
them anew, and the plugin adds its own decisions to what the tool has written and to what
it was given, which have to be one text then.

The two have to say the same about each file in FOLDER, too. Where the name of one begins
with `no-yaml` their parsers have words of their own: each has to complain in one line
that begins and ends as the other's.

Prints the differences, and how much was compared; exits with 1 if there are any.
"""

import argparse
import json
import re
import shlex
import subprocess
import sys
from pathlib import Path

PREFIX = "InlineRecursion: warning: "
RECURSIVE = """\
source_filename = "same_words.c"
define i32 @f(i32 %n) {
  %end = icmp eq i32 %n, 0
  br i1 %end, label %done, label %more
more:
  %m = lshr i32 %n, 1
  %a = call i32 @f(i32 %m)
  %b = add i32 %a, %n
  ret i32 %b
done:
  ret i32 1
}
"""


class Both:
    def __init__(self, args):
        self.opt = shlex.split(args.opt)
        self.tool = shlex.split(args.tool)
        self.module = args.scratch / "same_words.ll"
        self.module.write_text(RECURSIVE)
        self.complaints = 0

    def run_opt(self, option):
        done = subprocess.run(
            [*self.opt, "-passes=inlinerecursion-pipeline", option, "-disable-output",
             str(self.module)], capture_output=True, text=True)
        if done.returncode:
            sys.exit(f"same_words.py: {shlex.join(done.args)} failed:\n{done.stderr}")
        return done.stderr.replace(PREFIX, "")

    def run_tool(self, *words, status):
        done = subprocess.run([*self.tool, *map(str, words)], capture_output=True,
                              text=True)
        if done.returncode not in status:
            sys.exit(f"same_words.py: {shlex.join(done.args)} exits with"
                     f" {done.returncode}:\n{done.stderr}")
        return done.stdout

    def compare(self, paths):
        """What both say about each file; None, and the difference told, where it is not
        the same."""
        lines = self.run_tool("check", *paths, status=(0, 1))
        return [self.compare_one(path, lines) for path in paths]

    def compare_one(self, path, lines):
        said = self.run_opt(f"-inlinerecursion-plan={path}")
        # One of them may hold line breaks.
        wanted = "".join(re.findall(rf"^{re.escape(str(path))}:(?:.*\n(?!/))*.*\n", lines,
                                    re.M))
        self.complaints += len(said.splitlines())
        if is_same(path, said, wanted):
            return said
        print(f"{path}:\n plugin: {said}\n   tool: {wanted}")
        return None

    def compare_meanings(self, path):
        """Of a file with nothing wrong in it."""
        merged, given = path.with_suffix(".merged"), path.with_suffix(".given")
        self.run_tool("merge", path, "-o", merged, status=(0,))
        given.write_bytes(path.read_bytes())
        for each in (merged, given):
            said = self.run_opt(f"-inlinerecursion-write-plan={each}")
            if said:
                print(f"{each}: {said}")
                return False
        if merged.read_bytes() == given.read_bytes():
            return True
        print(f"{merged} and {given} are not the same")
        return False


def is_same(path, one, other):
    if not path.name.startswith("no-yaml"):
        return one == other
    frame = re.compile(re.escape(str(path)) + r":[0-9]+: .+(; the file is .*)\n")
    matches = [frame.fullmatch(text) for text in (one, other)]
    return all(matches) and matches[0][1] == matches[1][1]


def make_texts(path):
    texts = path.read_text().splitlines()
    words = [text.split(" ") for text in texts]
    firsts = dict.fromkeys(first for first, *_ in words if first)
    others = dict.fromkeys(word for _, *rest in words for word in rest if word)
    return list(dict.fromkeys(
        [*texts, *(f"{first} {other}" for first in firsts for other in others)]))


def write_texts(path, texts):
    """An entry for each."""
    entries = [f"  - name: f{number:04}\n    plan: {json.dumps(text)}\n"
               for number, text in enumerate(texts)]
    path.write_text("version: 1\nmodule: elsewhere.c\nfunctions:\n" + "".join(entries))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--opt", required=True)
    parser.add_argument("--tool", required=True)
    parser.add_argument("--scratch", required=True, type=Path)
    parser.add_argument("texts", type=Path)
    parser.add_argument("folder", type=Path)
    args = parser.parse_args()
    both = Both(args)
    texts = make_texts(args.texts)
    write_texts(args.scratch / "texts.plan", texts)
    files = sorted(args.folder.iterdir())
    said, *others = both.compare([args.scratch / "texts.plan", *files])
    wrong = [said, *others].count(None)
    good = []
    if said is not None:
        bad = set(map(int, re.findall(r":\d+: 'f(\d+)': ", said)))
        good = [text for number, text in enumerate(texts) if number not in bad]
        write_texts(args.scratch / "good.plan", good)
        wrong += not both.compare_meanings(args.scratch / "good.plan")
    print(f"{len(texts)} texts, {len(good)} of them good, {len(files)} files,"
          f" {both.complaints} complaints, {wrong} differences")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
