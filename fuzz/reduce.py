"""Makes the files of a failing program small, line by line.

Generated programs have one statement or brace per line, so that lines are a
good unit. An edit takes away a run of lines in which braces match, or a block's
braces and head but not what is in it, or puts something simpler in the place of
an expression. An edit stays if the caller still finds the program failing; it
has to make sure that it is still a proper program, for example that it compiles
without warnings about uninitialised variables, that the plain compiler agrees
with itself, and that sanitizers find nothing.

Edits are tried from the end of a file to its beginning, large ones first, so
that those which are still to be tried stay valid; rounds are repeated until one
changes nothing or time is up.
"""

import re
import time

SIMPLER = (
    (r"MIX\(.*\);", "MIX(1);"),
    (r"\breturn \((u32|int|u64|short)\).*;", "return 1;"),
    (r"^for \(int (\w+) = 0.*\)$", r"for (int \1 = 0; \1 < 2; ++\1)"),
    (r"^if \(.*\)$", "if (n & 1)"),
    (r"^(u32|u64) (\w+) = .*;", r"\1 \2 = 1;"),
    (r"^__attribute__\(\(\w+\)\) ", ""),
)


def is_balanced(lines):
    depth = 0
    for line in lines:
        for character in line:
            depth += (character == "{") - (character == "}")
            if depth < 0:
                return False
    return depth == 0


def blocks(lines):
    """(first, last) of the lines with only an opening brace, and its match."""
    open_, found = [], []
    for index, line in enumerate(lines):
        if line.strip() == "{":
            open_.append(index)
        elif line.strip() == "}" and open_:
            found.append((open_.pop(), index))
    return found


def edits(lines):
    """Rounds of edits, each a list of (first, end, lines instead)."""
    # Whole blocks with the line in front of them, functions included.
    yield [(first - 1, last + 1, []) for first, last in blocks(lines)]
    size = max(len(lines) // 2, 1)
    while size >= 1:
        yield [(first, first + size, []) for first in
               range(0, len(lines), max(size // 2, 1))]
        size //= 2
    yield [(first - 1, last + 1, lines[first + 1:last])
           for first, last in blocks(lines)]
    simpler = []
    for index, line in enumerate(lines):
        for pattern, replacement in SIMPLER:
            shorter = re.sub(pattern, replacement, line)
            if shorter != line:
                simpler.append((index, index + 1, [shorter]))
    yield simpler


def reduce(files, still_fails, seconds):
    """The smallest version of files ({name: text}) found in the given time for
    which still_fails(files) holds."""
    deadline = time.monotonic() + seconds
    best = dict(files)

    def reduce_file(name):
        changed = False
        number = 0
        while True:
            lines = best[name].split("\n")
            rounds = list(edits(lines))
            if number >= len(rounds):
                return changed
            for first, end, instead in sorted(rounds[number], reverse=True):
                lines = best[name].split("\n")
                if end > len(lines) or first < 0 or \
                        (not instead and not is_balanced(lines[first:end])):
                    continue
                if time.monotonic() > deadline:
                    return False
                trial = {**best, name: "\n".join(lines[:first] + instead
                                                 + lines[end:])}
                if trial[name] != best[name] and still_fails(trial):
                    best.update(trial)
                    changed = True
            number += 1

    while any([reduce_file(name) for name in sorted(best, reverse=True)]):
        pass
    return best
