"""Prints recursive IR functions with exact numbers of instructions.

The limits of the pass count instructions, branches and calls, so its boundary
tests need functions that are one below or at a number in one respect and well
within the limits in all others:

    bulk.py --insts 20 --branches 5 --calls 1

prints a function `f` of 20 instructions, 5 of them `br` and 1 a `call` (the
one to itself), and a function `call_f` that calls it. With --functions N there
are N such pairs, f0/call_f0 and so on.

The shape is a comparison, a conditional branch to a base case, and behind the
other side: unconditional branches from block to block, calls of a declared
function, additions as filler, the recursive call, the return. --switches turns
some of the filler into `switch` instructions, which are terminators but no
branches.
"""

import argparse
import sys

# icmp, br, ret; sub, call of itself, ret.
FIXED_INSTRUCTIONS = 6


def function(name, insts, branches, calls, switches):
    filler = insts - FIXED_INSTRUCTIONS - (branches - 1) - (calls - 1) - switches
    if branches < 1 or calls < 1 or filler < 0:
        sys.exit(f"bulk.py: {insts} instructions cannot hold {branches}"
                 f" branches, {calls} calls and {switches} switches beside the"
                 f" {FIXED_INSTRUCTIONS} fixed ones; there is at least one"
                 " branch and one call")
    lines = [f"define i32 @{name}(i32 %n) {{",
             "entry:",
             "  %done = icmp eq i32 %n, 0",
             "  br i1 %done, label %base, label %rec",
             "base:",
             "  ret i32 1",
             "rec:"]
    for i in range(branches - 1):
        lines += [f"  br label %hop{i}", f"hop{i}:"]
    for i in range(switches):
        lines += [f"  switch i32 %n, label %case{i} [ i32 5, label %case{i} ]",
                  f"case{i}:"]
    lines += ["  call void @other()"] * (calls - 1)
    lines += [f"  %fill{i} = add i32 %n, {i}" for i in range(filler)]
    lines += ["  %m = sub i32 %n, 1",
              f"  %r = call i32 @{name}(i32 %m)",
              "  ret i32 %r",
              "}",
              f"define i32 @call_{name}(i32 %n) {{",
              f"  %r = call i32 @{name}(i32 %n)",
              "  ret i32 %r",
              "}"]
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--insts", type=int, default=FIXED_INSTRUCTIONS)
    parser.add_argument("--branches", type=int, default=1)
    parser.add_argument("--calls", type=int, default=1)
    parser.add_argument("--switches", type=int, default=0)
    parser.add_argument("--functions", type=int, default=0)
    args = parser.parse_args()

    names = [f"f{i}" for i in range(args.functions)] or ["f"]
    for name in names:
        print("\n".join(function(name, args.insts, args.branches, args.calls,
                                 args.switches)))
    if args.calls > 1:
        print("declare void @other()")


main()
