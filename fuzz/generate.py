#!/usr/bin/env python3
"""Random recursive programs, the same for the same seed.

    generate.py SEED [--features SET] [--focus states] [--directory DIR]

A program is one C or C++ file (or two) of one to five recursive functions and
a main that enters them. It prints its seed, how often each function was
entered, and a running checksum. The checksum is multiplied at each step, so it
also tells in which order things happened.

Several programs in the same language can be written into one file, which
prints a line for each: all names at file scope then end with the seed. The
compiler finds no header to read; the few things from the C library are
declared here.

What keeps programs free of undefined behaviour:

- Arithmetic is done in u32 and u64, and wraps. Signed operands are small enough
  by construction. Divisors are odd, shift counts masked.
- Every function has a recursion argument that stands for a number of levels
  left: itself in a function that counts down, its distance from a limit in one
  that counts up. The guard stops when fewer levels are left than the largest
  step, so the argument stays in its range, whatever its type.
- A call with side effects is a statement of its own, or stands next to operands
  that nothing else can change.
- Everything is initialised, pointers lead to four u32 or nowhere, and none of
  them outlives what it points to. Memory of a restrict pointer is handed over
  at an entry and reached by nothing else; a level moves it on by three at most.
  Floating-point values shrink towards small numbers at each operation and never
  become NaN.
- The number of activations is worked out while generating. Functions for which
  it is too large, or that call each other, burn fuel: a global counter,
  refilled at each entry from main, without which they return. Functions of the
  shape "pure" have no memory to count in; their depth is made to fit.
- Recursion is thousands of levels deep only in small functions without loops
  around the call, which nothing but main enters, so that the stack suffices.
- Nothing is changed between setjmp and longjmp that is read afterwards.

What makes the compiler plugin act: shapes (see Shape) that fit the rules of
its levels, and its rings.

Features switch ingredients on; some are known to be hard on any pass that
copies functions. FEATURES says what there is.
"""

import argparse
import os
import random
import re
from dataclasses import dataclass, field

import states

FEATURES = {
    "int128": "128-bit arguments",
    "bitint": "_BitInt arguments (C)",
    "floats": "float, double, long double arguments",
    "vectors": "vector arguments",
    "structs": "small structs by value",
    "byval": "structs that are passed and returned in memory",
    "varargs": "variadic functions",
    "pointers": "pointers to globals, to callers' locals, and null",
    "restrict": "restrict pointers, and pointers computed from them",
    "callbacks": "pointers to functions as arguments",
    "pure": "functions without memory, and such that only write globals",
    "equal-calls": "several self calls with equal arguments",
    "sums": "functions that do nothing with results but add them up",
    "choices": "a switch between ways to recurse, and leaves, with many calls",
    "deep": "recursion of thousands of levels",
    "frames": "large local variables",
    "indirect": "recursion and entries through a pointer to the function",
    "address": "comparisons of functions' addresses",
    "mutual": "functions that call each other in a cycle",
    "remainder": "remainders of the argument in the entry block",
    "requests": "annotated functions",
    "weak": "weak functions that nothing overrides",
    "override": "weak functions that the second file overrides",
    "twofiles": "a second file with functions of its own",
    "inlining": "inline, noinline, always_inline, flatten, cold, optnone",
    "computed-goto": "tables of labels, local and static",
    "setjmp": "setjmp and longjmp through the recursion",
    "vla": "arrays of variable length and alloca",
    "cleanup": "cleanup attribute",
    "threadlocal": "thread-local variables",
    "musttail": "calls that must be tail calls",
    "target": "functions with target features of their own",
    "convention": "ms_abi, regcall, vectorcall",
    "asm": "inline assembly, with and without labels",
    "cxx": "C++ at times",
    "exceptions": "throw, try and catch (C++)",
    "destructors": "objects with destructors (C++)",
    "methods": "recursive member functions (C++)",
    "states": "whole programs of what is entered with constants, at times",
}
DEFAULT_FEATURES = set(FEATURES)

FUEL = 300
MAX_UNFUELLED = 3000
DEEP_LEVELS = (1000, 3000)
# How many u32 a restrict pointer leads to at an entry.
OWN_SIZE = 256
# The most levels of a recursion that nothing ends, per number of self calls.
PURE_LEVELS = {1: 40, 2: 10, 3: 6, 4: 5}

# Not preserve_most: clang 16 loses results of such functions.
CONVENTIONS = ["ms_abi", "regcall", "vectorcall"]
SMALL_INTS = ["signed char", "unsigned char", "short", "unsigned short"]
INTS = [*SMALL_INTS, "int", "int", "int", "unsigned", "unsigned", "long",
        "unsigned long", "long long", "unsigned long long"]

PRELUDE = """\
#ifdef __cplusplus
#define LIBRARY extern "C"
#else
#define LIBRARY extern
#endif
LIBRARY int printf(const char *, ...);
/* As large as the C library's for x86-64. */
struct __jmp_buf_tag { long Words[25]; };
typedef struct __jmp_buf_tag jmp_buf[1];
LIBRARY __attribute__((returns_twice)) int _setjmp(struct __jmp_buf_tag *);
LIBRARY __attribute__((noreturn)) void longjmp(struct __jmp_buf_tag *, int);
#define va_list __builtin_va_list
#define va_start __builtin_va_start
#define va_arg __builtin_va_arg
#define va_end __builtin_va_end
#ifdef REQUESTS
#include "inlinerecursion/request.h"
#define REQUEST INLINERECURSION_SPECIALIZE
#else
#define REQUEST
#endif
typedef unsigned u32;
typedef unsigned long long u64;
typedef u32 vec __attribute__((vector_size(16)));
struct Small { int a; u32 b; };
struct Mixed { double d; u32 b; };
struct Large { u32 w[6]; u64 x; };
typedef u32 (*Callback)(u32);
static u32 twist(u32 X) { return X * 2654435761u ^ X >> 7; }
static u32 plain(u32 X) { return X + 1; }
static struct Small makeSmall(u32 X, u32 Y) {
  struct Small S = {(int)(X & 65535u), Y};
  return S;
}
static struct Mixed makeMixed(u32 X, u32 Y) {
  struct Mixed S = {(double)(X & 65535u), Y};
  return S;
}
static struct Large makeLarge(u32 X, u32 Y) {
  struct Large S = {{X, Y, X ^ Y, 1u, 2u, X + Y}, X * 3ull};
  return S;
}
"""

SHARED = """\
u64 Hash = 0xcbf29ce484222325ull;
u32 Fuel, Count[16];
u32 A[16] = {3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7, 9, 3};
"""

DECLARED = """\
extern u64 Hash;
extern u32 Fuel, Count[16], A[16];
"""

HELPERS = """\
#define MIX(E) (Hash = (Hash ^ (u64)(E)) * 0x100000001b3ull)
static inline void mixDouble(double D) {
  u64 Bits;
  __builtin_memcpy(&Bits, &D, 8);
  MIX(Bits);
}
static __attribute__((noinline)) void event(u32 Kind, u32 Value) {
  MIX(Kind);
  MIX(Value);
}
static u32 count(u32 X) { return ++A[X & 15]; }
static void cleanUp(u32 *X) { MIX(*X); }
static __thread u32 Local;
static volatile u32 Opaque[8] = {@OPAQUE@};
"""

# What is at file scope and belongs to one program.
OWN_NAMES = re.compile(
    r"\b(Hash|Fuel|Count|A|MIX|mixDouble|event|count|cleanUp|Local|Opaque|Top|"
    r"Guard|Object|Host|program|f\d+|enter\d+|Pointer_f\d+|"
    r"Table\d+|Word\d+|Kept\d+|Saved\d+|fn\d+)\b")
# The part of programs that are made of states.
STATES_SHARE = 0.1
FOCUSES = {"none": STATES_SHARE, "states": 0.9}


@dataclass
class Param:
    """An argument behind the recursion argument."""
    name: str
    # int, float, vec, small, mixed, large, pointer, own (a restrict pointer),
    # callback
    kind: str
    type: str


@dataclass
class Function:
    name: str
    index: int
    shape: str
    up: bool
    limit: int      # most levels below an entry
    step: int       # largest step of a call
    type: str       # of the recursion argument
    returns: str
    params: list = field(default_factory=list)
    variadic: bool = False
    attributes: str = ""
    storage: str = "static"
    request: bool = False
    method: bool = False
    second_file: bool = False
    body: list = field(default_factory=list)
    fan: int = 0        # most self calls in an activation
    outside: int = 0    # most activations of others, per activation
    fuelled: bool = True
    jumps: bool = False  # has a computed goto

    @property
    def activations(self):
        """An upper bound for one entry, itself included."""
        levels, total, width = self.limit, 0, 1
        for _ in range(levels + 1):
            total += width
            width *= max(self.fan, 0)
            if total > 10**6:
                break
            if width == 0:
                break
        return total * (1 + self.outside)


class Generator:
    def __init__(self, seed, features):
        self.seed = seed
        self.rng = random.Random(f"recursion {seed}")
        self.features = features
        self.cxx = self.has("cxx") and self.rng.random() < 0.2
        self.functions = []
        self.unique = 0
        self.throws = False  # so entries stand in try blocks
        self.tables = []  # pointers to functions that are used

    # -- small helpers ------------------------------------------------------

    def has(self, feature):
        return feature in self.features

    def chance(self, probability):
        return self.rng.random() < probability

    def maybe(self, feature, probability):
        return self.has(feature) and self.chance(probability)

    def pick(self, *choices):
        return self.rng.choice(choices)

    def name(self, prefix):
        self.unique += 1
        return f"{prefix}{self.unique}"

    # -- expressions ---------------------------------------------------------

    def leaf(self, scope, local=False):
        """A u32 (or u64) value; if local, one that no call can change."""
        local = local or scope.local
        choices = [f"{self.rng.randrange(1, 200)}u"]
        for name, kind in scope.values:
            if kind == "int":
                choices += [f"(u32){name}"] * 3
            elif kind == "small":
                choices += [f"(u32){name}.a", f"{name}.b"]
            elif kind == "mixed":
                choices.append(f"{name}.b")
            elif kind == "large":
                choices += [f"{name}.w[{self.rng.randrange(6)}]",
                            f"(u32){name}.x"]
            elif kind == "vec":
                choices.append(f"{name}[{self.rng.randrange(4)}]")
            elif kind == "pointer" and not local:
                element = self.rng.randrange(4)
                choices.append(f"({name} ? {name}[{element}] : {element}u)")
            elif kind == "array" and not local:
                choices.append(f"{name}[{self.rng.randrange(4)}]")
            elif kind == "own" and not local:
                choices.append(f"{name}[{self.rng.randrange(8)}]")
            elif kind == "float":
                choices.append(f"(u32)({name} > {self.rng.randrange(9)}.0)")
        if not local:
            choices += [f"A[{self.rng.randrange(16)}]", "(u32)Hash"]
            if self.chance(0.2):
                choices.append(f"Opaque[{self.rng.randrange(8)}]")
        return self.rng.choice(choices)

    def expr(self, scope, depth=2, local=False):
        if depth == 0 or self.chance(0.25):
            return self.leaf(scope, local)
        a = self.expr(scope, depth - 1, local)
        b = self.expr(scope, depth - 1, local)
        return self.pick(
            f"({a} + {b})", f"({a} - {b})", f"({a} * {b})", f"({a} ^ {b})",
            f"({a} | {b})", f"({a} & {b})", f"({a} << ({b} & 7))",
            f"({a} >> ({b} & 15))", f"({a} / ({b} | 1u))",
            f"({a} % ({b} | 1u))", f"({a} < {b} ? {a} : {b})",
            f"~{a}", f"(u32)((int)({a} & 1023) - (int)({b} & 511))",
            f"(u32)((u64){a} * {b} >> 9)")

    def condition(self, scope, local=False):
        a = self.expr(scope, 1, local)
        operator = self.pick("==", "!=", "<", "<=", ">", ">=")
        mask, value = self.pick((1, 1), (3, 2), (7, 3), (15, 9), (31, 17))
        if self.chance(0.3):
            return f"(int)({a} & {mask}) {operator} {value}"
        if self.chance(0.1):
            return (f"({a} & {mask}) {operator} {value} && "
                    f"{self.condition(scope, local)}")
        return f"({a} & {mask}) {operator} {value}"

    # -- the recursion argument ----------------------------------------------

    def levels_left(self, f, name="n"):
        return f"({f.limit} - (int){name})" if f.up else f"(int){name}"

    def argument_for(self, f, levels):
        """The recursion argument of f for an expression of levels."""
        return f"({f.type})({f.limit} - ({levels}))" if f.up else \
            f"({f.type})({levels})"

    def guard(self, f):
        """A condition under which f has to stop."""
        if f.up:
            bound = f.limit - f.step
            forms = [f"n > {bound}", f"n >= {bound + 1}", f"!(n <= {bound})",
                     f"{bound} < n", f"(u32)n > {bound}u"]
            if f.step == 1:
                forms += [f"n == {f.limit}"] * 3
            forms += [f"n + {f.step} > {f.limit}"]
        else:
            forms = [f"n < {f.step}", f"n <= {f.step - 1}", f"!(n >= {f.step})",
                     f"{f.step} > n", f"(u32)n - {f.step}u > 1000u"]
            if f.step == 1:
                forms += ["n == 0", "!n", "n == 0"]
        if f.type.startswith("_BitInt"):
            forms = [form for form in forms if "u32" not in form] or forms
        return self.rng.choice(forms)

    # -- calls ---------------------------------------------------------------

    def actual(self, p, scope, kind_of_call):
        """An expression for the parameter p; pure."""
        same = [name for name, kind in scope.values if kind == p.kind]
        constant = kind_of_call == "constant"
        if p.kind == "int":
            small = self.rng.randrange(0, 100)
            if constant:
                return f"({p.type}){small}"
            if same and self.chance(0.6):
                name = p.name if p.name in same and self.chance(0.7) else \
                    self.rng.choice(same)
                return self.pick(
                    name, f"({p.type})((u32){name} + {small}u)",
                    f"({p.type})((u32){name} ^ {small}u)",
                    f"({p.type})((u32){name} * 3u)")
            if self.chance(0.3):
                return f"({p.type}){small}"
            return f"({p.type}){self.expr(scope, 1)}"
        if p.kind == "float":
            if same and not constant and self.chance(0.7):
                name = self.rng.choice(same)
                return self.pick(name, f"({p.type})({name} * 0.5 + 1.0)",
                                 f"({p.type})({name} * 0.25 - 2.0)")
            if constant or self.chance(0.5):
                return f"({p.type}){self.rng.randrange(64) * 0.25}"
            return f"({p.type})({self.expr(scope, 1)} & 255u)"
        if p.kind == "pointer":
            choices = [f"&A[{self.rng.randrange(12)}]", "A", "(u32 *)0"]
            if not constant:
                choices += [name for name, kind in scope.values
                            if kind in ("pointer", "array")
                            and not (scope.no_locals and kind == "array")] * 3
            return self.rng.choice(choices)
        if p.kind == "own":
            # Another function's memory is reached through its own pointers.
            based = [n for n in same if n.split("_")[0] == p.name]
            if based:
                return self.pick(*based, f"{p.name} + 1",
                                 f"{p.name} + ({self.leaf(scope)} & 1)")
            return (f"(u32 *)__builtin_memset(__builtin_alloca({OWN_SIZE * 4})"
                    f", 1, {OWN_SIZE * 4})")
        if p.kind == "callback":
            choices = ["twist", "count", "plain"]
            return self.rng.choice(choices + same * 3 if not constant
                                   else choices)
        if same and not constant and self.chance(0.7):
            return self.rng.choice(same)
        a, b = ((f"{self.rng.randrange(90)}u", f"{self.rng.randrange(90)}u")
                if constant else (self.expr(scope, 1), self.expr(scope, 1)))
        make = {"vec": f"(vec){{{a}, {b}, 1u, 2u}}",
                "small": f"makeSmall({a}, {b})",
                "mixed": f"makeMixed({a}, {b})",
                "large": f"makeLarge({a}, {b})"}
        return make[p.kind]

    def call(self, f, first, scope, kind_of_call="any", through=None):
        arguments = [first]
        arguments += [self.actual(p, scope, kind_of_call) for p in f.params]
        if f.variadic:  # how many there are, and they
            values = [self.leaf(scope) for _ in range(self.rng.randrange(2, 4))]
            arguments.append(f"{len(values)}")
            arguments += [f"(u32){v}" for v in values]
        callee = through or f.name
        if f.method and through is None:
            callee = f"Host.{f.name}" if scope.host != "method" else f.name
        return f"{callee}({', '.join(arguments)})"

    def use_result(self, f, call, scope, lines, keep=True):
        """A statement that makes the call and mixes its result."""
        if f.returns == "void":
            lines.append(f"{call};")
            return
        r = self.name("r")
        kind = self.kind_of(f.returns)
        lines.append(f"{self.type_of(f.returns)} {r} = {call};")
        self.mix_value(r, kind, lines)
        if keep and not scope.frozen:
            scope.values.append((r, kind))

    def kind_of(self, returns):
        return returns if returns in ("small", "mixed", "large", "vec") else \
            "float" if returns in ("double", "float", "long double") else "int"

    def type_of(self, returns):
        return {"small": "struct Small", "mixed": "struct Mixed",
                "large": "struct Large"}.get(returns, returns)

    def mix_value(self, name, kind, lines):
        if kind == "int":
            lines.append(f"MIX({name});")
        elif kind == "float":
            lines.append(f"mixDouble((double){name});")
        elif kind == "vec":
            lines.append(f"MIX({name}[0] + 3u * {name}[3]);")
        elif kind == "small":
            lines.append(f"MIX((u32){name}.a + 5u * {name}.b);")
        elif kind == "mixed":
            lines.append(f"mixDouble({name}.d);")
        else:
            lines.append(f"MIX({name}.w[0] + {name}.w[5] + {name}.x);")

    def value_of(self, f, scope):
        """A value for f to return; pure."""
        e = self.expr(scope, 2)
        if f.returns in ("double", "float", "long double"):
            return f"({f.returns})({e} & 1023u) * 0.5"
        if f.returns == "vec":
            return f"(vec){{{e}, 1u, 2u, {self.leaf(scope)}}}"
        if f.returns in ("small", "mixed", "large"):
            return f"make{f.returns.capitalize()}({e}, {self.leaf(scope)})"
        return f"({f.returns}){e}"

    def leave(self, f, scope, lines):
        lines.append("return;" if f.returns == "void" else
                     f"return {self.value_of(f, scope)};")

    # -- statements ----------------------------------------------------------

    def effect(self, f, scope, lines):
        """One statement without a recursive call."""
        if any(kind == "own" for _, kind in scope.values) and self.chance(0.3):
            self.effect_on_own(scope, lines)
            return
        roll = self.rng.randrange(14)
        e = self.expr(scope, 2)
        if roll <= 2:
            lines.append(f"MIX({e});")
        elif roll == 3:
            lines.append(f"A[{self.leaf(scope)} & 15] "
                         f"{self.pick('+=', '^=', '-=', '=')} {e};")
        elif roll == 4:
            lines.append(f"event({self.rng.randrange(9)}, {e});")
        elif roll == 5 and not scope.frozen:
            v = self.name("v")
            lines.append(f"{self.pick('u32', 'u32', 'u64')} {v} = {e};")
            scope.values.append((v, "int"))
        elif roll == 6:
            s = self.name("s")
            lines.append("{")
            lines.append(f"static u32 {s} = {self.rng.randrange(9)};")
            lines.append(f"{s} = {s} * 3u + {e};")
            lines.append(f"MIX({s});")
            lines.append("}")
        elif roll == 7:
            lines.append(f"Opaque[{self.rng.randrange(8)}] = {e} & 255u;")
        elif roll == 8:
            i = self.name("i")
            lines.append(f"for (int {i} = 0; {i} < {self.pick(2, 3, 5, 8)}; "
                         f"++{i})")
            lines.append("{")
            inner = scope.inner()
            inner.values.append((i, "int"))
            self.effect(f, inner, lines)
            lines.append("}")
        elif roll == 9:
            lines.append(f"if ({self.condition(scope)})")
            lines.append("{")
            self.effect(f, scope.inner(), lines)
            lines.append("}")
            if self.chance(0.4):
                lines.append("else")
                lines.append("{")
                self.effect(f, scope.inner(), lines)
                lines.append("}")
        elif roll == 10:
            pointers = [n for n, k in scope.values if k == "pointer"]
            arrays = [n for n, k in scope.values if k == "array"]
            if pointers and self.chance(0.5):
                p = self.rng.choice(pointers)
                lines.append(f"if ({p}) {p}[{self.rng.randrange(4)}] += {e};")
            elif arrays and not scope.frozen:
                lines.append(f"{self.rng.choice(arrays)}"
                             f"[{self.rng.randrange(4)}] ^= {e};")
            else:
                lines.append(f"MIX({e});")
        elif roll == 11 and self.has("callbacks"):
            callbacks = [n for n, k in scope.values if k == "callback"]
            g = self.rng.choice(callbacks + ["twist", "count"])
            lines.append(f"MIX({g}({e}));")
        elif roll == 12 and not scope.frozen and self.chance(0.5):
            self.special(f, scope, lines)
        else:
            lines.append(f"MIX({e});")

    def effect_on_own(self, scope, lines):
        """A statement with memory that belongs to a restrict pointer."""
        owns = [n for n, kind in scope.values if kind == "own"]
        own = self.rng.choice(owns)
        parameter = own.split("_")[0]
        if not scope.frozen and self.chance(0.4):
            own = self.name(f"{parameter}_")
            lines.append(f"u32 *{own} = {parameter} + "
                         f"{self.pick('1', '2', f'({self.leaf(scope)} & 3)')};")
            scope.values.append((own, "own"))
        if self.chance(0.3):
            lines.append(f"MIX({own}[{self.rng.randrange(8)}]);")
        else:
            lines.append(f"{own}[{self.rng.randrange(8)}] "
                         f"{self.pick('+=', '^=', '=')} {self.expr(scope, 1)};")

    def special(self, f, scope, lines):
        """A statement of the kind that is hard to copy."""
        e = self.expr(scope, 1)
        kinds = [k for k in ("computed-goto", "vla", "cleanup", "threadlocal",
                             "asm", "destructors") if self.has(k)]
        if not self.cxx:
            kinds = [k for k in kinds if k != "destructors"]
        # In C++, any computed goto may lead to any label, but not past an
        # initialiser.
        if f.method or (self.cxx and (scope.objects or f.jumps)):
            kinds = [k for k in kinds if k != "computed-goto"]
        if not kinds:
            lines.append(f"MIX({e});")
            return
        kind = self.rng.choice(kinds)
        if kind == "computed-goto":
            a, b, end, t = (self.name(p) for p in ("la", "lb", "le", "t"))
            const = "static void *const" if self.chance(0.5) else "void *"
            f.jumps = True
            lines.append("{")
            lines.append(f"{const} {t}[2] = {{&&{a}, &&{b}}};")
            lines.append(f"goto *{t}[{e} & 1];")
            lines.append(f"{a}: MIX({self.rng.randrange(99)});")
            lines.append(f"goto {end};")
            lines.append(f"{b}: event(1, {self.leaf(scope)});")
            lines.append(f"{end}:;")
            lines.append("}")
        elif kind == "vla":
            v = self.name("w")
            lines.append("{")
            if self.chance(0.5):
                lines.append(f"u32 *{v} = (u32 *)__builtin_alloca("
                             f"16 + ({e} & 16));")
            else:
                lines.append(f"u32 {v}[4 + ({e} & 3)];")
            for i in range(4):
                lines.append(f"{v}[{i}] = {self.leaf(scope)};")
            lines.append(f"MIX({v}[{self.leaf(scope)} & 3]);")
            lines.append("}")
        elif kind == "cleanup":
            c = self.name("c")
            lines.append(f"__attribute__((cleanup(cleanUp))) u32 {c} = {e};")
            scope.objects = True
        elif kind == "threadlocal":
            lines.append(f"Local = Local * 5u + {e};")
            lines.append("MIX(Local);")
        elif kind == "asm":
            v = self.name("v")
            lines.append(f"u32 {v} = {e};")
            # Any compiler may make two of it, so no name that can only be once.
            label = self.pick("", ".Lhere%=: ", "77: ")
            lines.append(f'__asm__ volatile("{label}addl $3, %0" : "+r"({v}) '
                         ': : "cc");')
            scope.values.append((v, "int"))
        else:
            lines.append(f"Guard {self.name('g')}({e});")
            scope.objects = True

    # -- recursive calls -----------------------------------------------------

    def recursive_call(self, f, scope, mutual):
        """(callee, text of the call)"""
        if mutual and self.chance(0.5):
            callee = self.rng.choice(mutual)
            step = self.rng.randrange(1, f.step + 1)
            levels = f"{self.levels_left(f)} - {step}"
            if callee.limit < f.limit:
                levels = f"({levels}) < {callee.limit} ? ({levels}) : " \
                         f"{callee.limit}"
            return callee, self.call(callee, self.argument_for(callee, levels),
                                     scope)
        step = self.rng.randrange(1, f.step + 1)
        first = f"n {'+' if f.up else '-'} {step}"
        if f.type == "signed char" and self.chance(0.5):
            first = f"(signed char)({first})"
        through = None
        if self.may_point_to(f, "indirect", 0.06):
            through = self.pointer_to(f)
        return f, self.call(f, first, scope, through=through)

    def may_point_to(self, f, feature, probability):
        # Level 0 takes no functions whose address is taken.
        if f.shape in ("bounded", "tiny", "pure"):
            probability /= 6
        return not f.method and self.maybe(feature, probability)

    def pointer_to(self, f):
        name = f"Pointer_{f.name}"
        if name not in self.tables:
            self.tables.append(name)
        return name

    def place_choices(self, f, scope, mutual, lines):
        """A switch with leaves and cases that recurse, as an evaluator of trees
        has.  Returns the largest number of recursive calls in a run of it."""
        for _ in range(self.pick(0, 0, 1)):
            self.effect(f, scope, lines)
        cases = list(range(8))
        self.rng.shuffle(cases)
        lines.append(f"switch ({self.expr(scope, 1)} & 7)")
        lines.append("{")
        fan = run = 0
        for _ in range(self.pick(1, 1, 2)):
            lines.append(f"case {cases.pop()}:")
            lines.append("{")
            self.leave(f, scope.inner(), lines)
            lines.append("}")
        for _ in range(self.pick(2, 3, 4)):
            lines.append(f"case {cases.pop()}:")
            if len(cases) > 4 and self.chance(0.3):
                lines.append(f"case {cases.pop()}:")
            lines.append("{")
            inner = scope.inner()
            for _ in range(self.pick(1, 2, 2, 3)):
                callee, text = self.recursive_call(f, inner, mutual)
                self.use_result(callee, text, inner, lines)
                run += 1
            lines.append("}")
            fan = max(fan, run)
            if self.chance(0.85):
                lines.append("break;")
                run = 0
        if self.chance(0.5):
            lines.append("default:")
            lines.append("{")
            self.effect(f, scope.inner(), lines)
            lines.append("}")
        lines.append("}")
        return fan

    def place_calls(self, f, scope, count, mutual, lines):
        """Statements with the recursive calls, and effects around them.
        Returns the largest number of recursive calls in a run of them."""
        fan = 0
        while count > 0:
            for _ in range(self.rng.randrange(0, 2 if f.shape == "tiny" else
                                              3)):
                self.effect(f, scope, lines)
            roll = self.rng.randrange(13)
            if f.shape == "tiny":
                roll = 0
            callee, text = self.recursive_call(f, scope, mutual)
            if roll <= 3:
                self.use_result(callee, text, scope, lines)
                count, fan = count - 1, fan + 1
            elif roll <= 5:
                lines.append(f"if ({self.condition(scope)})")
                lines.append("{")
                inner = scope.inner()
                callee, text = self.recursive_call(f, inner, mutual)
                self.use_result(callee, text, inner, lines)
                lines.append("}")
                count, fan = count - 1, fan + 1
                if count > 0 and self.chance(0.5):
                    lines.append("else")
                    lines.append("{")
                    inner = scope.inner()
                    callee, text = self.recursive_call(f, inner, mutual)
                    self.use_result(callee, text, inner, lines)
                    lines.append("}")
                    count -= 1
            elif roll <= 8:
                trips = self.rng.randrange(2, 5)
                i = self.name("i")
                bound = trips if self.chance(0.6) else \
                    f"(int)({self.expr(scope, 1)} & 3)"
                if self.chance(0.3) and not f.up:
                    bound = f"(int)n + {trips - f.limit}"
                lines.append(f"for (int {i} = 0; {i} < {bound}; ++{i})")
                lines.append("{")
                inner = scope.inner()
                inner.values.append((i, "int"))
                if self.chance(0.4):
                    self.effect(f, inner, lines)
                if self.chance(0.3):
                    lines.append(f"if ({self.condition(inner)}) "
                                 f"{self.pick('continue', 'break')};")
                callee, text = self.recursive_call(f, inner, mutual)
                self.use_result(callee, text, inner, lines)
                lines.append("}")
                count, fan = count - 1, fan + max(trips, 3)
            elif roll == 9:
                lines.append(f"switch ({self.expr(scope, 1)} & 3)")
                lines.append("{")
                most = 0
                for case in self.rng.sample(range(4), self.pick(2, 3)):
                    lines.append(f"case {case}:")
                    lines.append("{")
                    if count > 0:
                        inner = scope.inner()
                        callee, text = self.recursive_call(f, inner, mutual)
                        self.use_result(callee, text, inner, lines)
                        count, most = count - 1, most + 1
                    else:
                        self.effect(f, scope.inner(), lines)
                    lines.append("}")
                    if self.chance(0.7):
                        lines.append("break;")
                if self.chance(0.5):
                    lines.append("default:")
                    lines.append("{")
                    self.effect(f, scope.inner(), lines)
                    lines.append("}")
                lines.append("}")
                fan += most
            elif roll == 10 and self.has("exceptions") and self.cxx:
                lines.append("try")
                lines.append("{")
                inner = scope.inner()
                callee, text = self.recursive_call(f, inner, mutual)
                self.use_result(callee, text, inner, lines)
                lines.append("}")
                lines.append("catch (int Thrown)")
                lines.append("{")
                lines.append("MIX((u32)Thrown + 77u);")
                lines.append("}")
                count, fan = count - 1, fan + 1
            elif (roll == 10 and self.has("setjmp") and not self.cxx
                  and not scope.frozen):
                here, saved = self.name("here"), self.name("saved")
                lines.append(f"jmp_buf {here}, *{saved} = Top;")
                lines.append(f"Top = &{here};")
                lines.append(f"if (_setjmp({here}) == 0)")
                lines.append("{")
                inner = scope.inner()
                inner.frozen = True
                callee, text = self.recursive_call(f, inner, mutual)
                self.use_result(callee, text, inner, lines)
                lines.append("}")
                lines.append("else")
                lines.append("{")
                lines.append("MIX(4711);")
                lines.append("}")
                lines.append(f"Top = {saved};")
                count, fan = count - 1, fan + 1
                # What was declared before may live in registers, but nothing
                # of it changes in the frozen part; arrays may.
                scope.values = [v for v in scope.values if v[1] != "array"]
            elif roll == 11:
                # From each level to all that are left.
                i = self.name("i")
                lines.append(
                    f"for (int {i} = (int)n + {f.step}; {i} <= {f.limit}; "
                    f"++{i})" if f.up else
                    f"for (int {i} = {f.step}; {i} <= (int)n; ++{i})")
                lines.append("{")
                inner = scope.inner()
                inner.values.append((i, "int"))
                first = f"({f.type}){i}" if f.up else f"({f.type})(n - {i})"
                self.use_result(f, self.call(f, first, inner), inner, lines)
                lines.append("}")
                count, fan = count - 1, fan + (4 if f.limit < 8 else 20)
            else:
                # Swapping and swapping back, as in a search.
                i, j = self.rng.sample(range(16), 2)
                t = self.name("v")
                lines.append(f"u32 {t} = A[{i}];")
                lines.append(f"A[{i}] = A[{j}];")
                lines.append(f"A[{j}] = {t};")
                self.use_result(callee, text, scope, lines)
                lines.append(f"{t} = A[{i}];")
                lines.append(f"A[{i}] = A[{j}];")
                lines.append(f"A[{j}] = {t};")
                count, fan = count - 1, fan + 1
        return fan

    # -- functions -----------------------------------------------------------

    def make_param(self, number):
        kinds = ["int"] * 6
        for feature, kind in (("floats", "float"), ("vectors", "vec"),
                              ("structs", "small"), ("structs", "mixed"),
                              ("byval", "large"), ("pointers", "pointer"),
                              ("pointers", "pointer"), ("restrict", "own"),
                              ("restrict", "own"), ("callbacks", "callback")):
            if self.has(feature):
                kinds.append(kind)
        kind = self.rng.choice(kinds)
        type_ = {"vec": "vec", "small": "struct Small",
                 "mixed": "struct Mixed", "large": "struct Large",
                 "pointer": "u32 *", "own": "u32 *__restrict",
                 "callback": "Callback"}.get(kind)
        if kind == "int":
            type_ = self.rng.choice(INTS)
            if self.maybe("int128", 0.12):
                type_ = self.pick("__int128", "unsigned __int128")
            elif not self.cxx and self.maybe("bitint", 0.08):
                type_ = self.pick("_BitInt(33)", "unsigned _BitInt(17)",
                                  "_BitInt(100)")
        elif kind == "float":
            type_ = self.pick("float", "double", "double", "long double")
        name = self.name("own") if kind == "own" else f"p{number}"
        return Param(name, kind, type_)

    def make_function(self, index):
        r = self.rng
        shapes = ["bounded"] * 5 + ["tiny"] * 3 + ["general"] * 4
        if self.has("remainder"):
            shapes += ["ring"] * 4
        if self.has("pure"):
            shapes += ["pure"] * 4
        shape = r.choice(shapes)
        f = Function(f"f{index}", index, shape, up=self.chance(0.5), limit=0,
                     step=1, type="int", returns="u32")
        f.type = r.choice(INTS) if self.chance(0.4) else self.pick(
            "int", "int", "unsigned")
        if shape == "bounded":
            f.limit = r.randrange(2, 8)
        elif shape == "tiny":
            f.limit = r.randrange(2, 30)
        elif shape == "pure":
            f.fan = self.pick(1, 1, 2, 2, 2, 3, 4)
            f.limit = r.randrange(2, PURE_LEVELS[f.fan] + 1)
            if f.fan == 1 and self.maybe("deep", 0.3):
                f.limit = r.randrange(*DEEP_LEVELS)
                f.type = self.pick("int", "unsigned", "long")
        else:
            f.limit = r.randrange(4, 40)
            f.step = self.pick(1, 1, 1, 2, 3)
            if self.maybe("int128", 0.08):
                f.type = self.pick("__int128", "unsigned __int128")
            elif not self.cxx and self.maybe("bitint", 0.06):
                f.type = self.pick("_BitInt(33)", "unsigned _BitInt(17)")
        if shape == "ring" and f.type in SMALL_INTS and self.chance(0.7):
            f.type = "int"  # promotions hide the argument from the gate

        returns = ["void", "void", "u32", "u32", "int", "u64", "short",
                   "unsigned char"]
        if shape in ("general", "ring"):
            for feature, type_ in (("floats", "double"), ("structs", "small"),
                                   ("byval", "large"), ("vectors", "vec"),
                                   ("floats", "long double"),
                                   ("structs", "mixed"),
                                   ("int128", "__int128")):
                if self.has(feature):
                    returns.append(type_)
            f.params = [self.make_param(i) for i in
                        range(self.pick(0, 0, 1, 1, 2, 3, 5))]
            f.variadic = self.maybe("varargs", 0.1)
        elif shape == "tiny":
            f.params = [self.make_param(i) for i in range(self.pick(0, 0, 1))]
        elif shape == "pure":
            returns = ["u32", "u32", "int", "u64", "unsigned char"]
            f.params = [Param(f"p{i}", "int", self.rng.choice(INTS))
                        for i in range(self.pick(0, 0, 1, 2, 3))]
        f.returns = r.choice(returns)

        if shape in ("general", "ring", "pure") or self.chance(0.25):
            f.storage = self.pick("static", "static", "static", "", "")
        marks = []
        if self.maybe("inlining", 0.25):
            mark = self.pick("noinline", "always_inline", "inline", "flatten",
                             "cold", "optnone")
            if mark == "inline":
                f.storage = f"{f.storage} inline".strip()
            elif mark == "always_inline":
                f.storage = f"{f.storage} inline".strip()
                marks.append("always_inline")
            elif mark == "optnone":
                marks += ["optnone", "noinline"] if self.chance(0.3) else []
            else:
                marks.append(mark)
        if f.storage == "" and self.maybe("weak", 0.3):
            marks.append("weak")
        if self.maybe("target", 0.05) and "always_inline" not in marks:
            marks.append('target("sse4.2")')
        if (self.maybe("convention", 0.06) and not f.variadic
                and "long double" not in [p.type for p in f.params]):
            marks.append(self.pick(*CONVENTIONS))
        if any(m in CONVENTIONS for m in marks):
            f.params = [p for p in f.params
                        if p.kind in ("int", "pointer")
                        and "Int" not in p.type and "int128" not in p.type]
            f.returns = self.pick("u32", "int") if shape == "pure" else \
                self.pick("void", "u32", "int")
            if "Int" in f.type or "int128" in f.type:
                f.type = "int"
        f.attributes = "".join(f"__attribute__(({m})) " for m in marks)
        f.request = self.maybe("requests", 0.6 if shape == "ring" else 0.05)
        if (self.cxx and self.maybe("methods", 0.25) and not marks
                and not f.variadic):
            f.method, f.storage = True, ""
        return f

    def make_body(self, f, mutual, entered):
        """Fills f.body; functions in entered may be entered from it."""
        scope = Scope(host="method" if f.method else "")
        scope.values = [("n", "int")]
        scope.values += [(p.name, p.kind) for p in f.params]
        lines = []

        if f.shape == "ring" or (f.shape == "general"
                                 and self.maybe("remainder", 0.2)):
            divisor = self.pick(2, 2, 3, 4, 4, 5, 6, 7, 8, 8, 1, 9, 12, 16)
            c = self.name("c")
            lines.append(f"u32 {c} = (u32)(n % {divisor});")
            scope.values.append((c, "int"))
            if self.chance(0.2):
                c = self.name("c")
                lines.append(f"u32 {c} = (u32)(n / {divisor});")
                scope.values.append((c, "int"))
        if f.shape != "tiny" or self.chance(0.6):
            lines.append(f"++Count[{f.index}];")
        if f.shape == "general" and self.chance(0.3):
            t = self.name("t")
            lines.append(f"u32 {t}[4] = "
                         f"{{1u, {self.leaf(scope)}, (u32)n, 2u}};")
            scope.values.append((t, "array"))
        if f.shape in ("general", "ring") and self.maybe("frames", 0.06):
            self.large_local(scope, lines)
        if f.variadic:
            v, i = self.name("v"), self.name("i")
            lines += [f"u32 {v} = 0;", "{", "va_list Args;",
                      "va_start(Args, Rest);",
                      f"for (int {i} = 0; {i} < Rest; ++{i})", "{",
                      f"{v} = {v} * 7u + va_arg(Args, u32);", "}",
                      "va_end(Args);", "}"]
            scope.values.append((v, "int"))
        if self.may_point_to(f, "address", 0.06):
            lines.append(f"MIX({self.pointer_to(f)} == {f.name});")

        for p in f.params:
            if p.kind == "own" and self.chance(0.6):
                self.effect_on_own(scope, lines)

        # The guard: a return, a switch, or everything else in its branch.
        style = self.rng.randrange(10)
        closing = []
        lines.append("@FUEL@")
        if style <= 5 or f.type.startswith(("_BitInt", "unsigned _BitInt")):
            lines.append(f"if ({self.guard(f)})")
            lines.append("{")
            if self.chance(0.5) and f.shape != "tiny":
                self.effect(f, scope.inner(), lines)
            self.leave(f, scope.inner(), lines)
            lines.append("}")
        elif style <= 7 and f.step == 1:
            lines.append("switch (n)")
            lines.append("{")
            lines.append(f"case {f.limit if f.up else 0}:")
            self.leave(f, scope.inner(), lines)
            if self.chance(0.5) and f.limit > 2:
                lines.append(f"case {f.limit - 1 if f.up else 1}:")
                lines.append(f"event(2, {self.leaf(scope)});")
                if self.chance(0.5):
                    self.leave(f, scope.inner(), lines)
                else:
                    lines.append("break;")
            if self.chance(0.5):
                lines.append("default:")
                lines.append(f"MIX({self.rng.randrange(50)});")
            lines.append("}")
        else:
            lines.append(f"if (!({self.guard(f)}))")
            lines.append("{")
            closing.append("}")
        outer, inner = scope, scope.inner() if closing else scope
        for _ in range(self.pick(0, 0, 0, 1, 2)):
            if f.shape == "tiny":
                break
            lines.append(f"if ({self.condition(inner)} && "
                         f"{self.condition(inner)})")
            lines.append("{")
            self.leave(f, inner.inner(), lines)
            lines.append("}")
        if self.cxx and self.maybe("exceptions", 0.15) and f.shape != "tiny":
            self.throws = True
            lines.append(f"if ({self.condition(inner)} && "
                         f"{self.condition(inner)}) "
                         f"throw (int)({self.leaf(inner)} & 255u);")
        if (not self.cxx and self.maybe("setjmp", 0.1)
                and f.shape not in ("tiny", "ring")):
            lines.append(f"if (Top && {self.condition(inner)}) "
                         "longjmp(*Top, 1);")

        count = 1
        if f.shape in ("general", "ring"):
            count = self.pick(1, 1, 1, 2, 2, 3, 4)
        elif f.shape == "bounded":
            count = self.pick(1, 1, 1, 1, 1, 2)
        last = None
        if f.returns in ("u32", "int", "u64") and self.chance(0.3):
            last = self.pick("tail", "operand")
        if self.can_must_tail(f) and self.chance(0.5):
            last = "musttail"
        if last:
            count -= 1
        if f.shape == "general" and self.maybe("choices", 0.15):
            fan = self.place_choices(f, inner, mutual, lines)
        else:
            fan = self.place_calls(f, inner, count, mutual, lines)
        if last == "musttail" and inner.objects:
            last = "tail"
        if last == "operand":
            callee, text = self.recursive_call(f, inner, [])
            operator = self.pick("+", "-", "*", "^", "|")
            operand = self.expr(inner, 1, local=True)
            lines.append(f"return ({f.returns})((u32)({operand}) {operator} "
                         f"(u32){text});")
            fan += 1
        elif last:
            inner.no_locals = True
            step = self.rng.randrange(1, f.step + 1)
            text = self.call(f, f"n {'+' if f.up else '-'} {step}", inner)
            mark = "__attribute__((musttail)) " if last == "musttail" else ""
            lines.append(f"{mark}return {text};")
            fan += 1
        else:
            for other in entered:
                if self.chance(0.08 if other.shape == "bounded" else 0.3):
                    levels = self.rng.randrange(0, other.limit + 1)
                    text = self.call(other, self.argument_for(other, levels),
                                     inner)
                    self.use_result(other, text, inner, lines)
                    f.outside += 1 if other.fuelled else other.activations
            if f.shape != "tiny" and self.chance(0.5):
                self.effect(f, inner, lines)
            if self.chance(0.7) and not closing:
                self.leave(f, inner, lines)
            elif f.returns != "void" or closing:
                lines += closing
                closing = []
                self.leave(f, outer, lines)
        lines += closing
        if closing and f.returns != "void":
            self.leave(f, outer, lines)

        f.fan = fan
        f.fuelled = bool(mutual) or f.activations > MAX_UNFUELLED or \
            self.chance(0.15)
        fuel = []
        if f.fuelled:
            exit_ = []
            start = Scope()
            start.values = [("n", "int")]
            self.leave(f, start, exit_)
            fuel = ["if (Fuel == 0)", "{", *exit_, "}", "--Fuel;"]
        at = lines.index("@FUEL@")
        f.body = lines[:at] + fuel + lines[at + 1:]

    def make_pure_body(self, f):
        """A function that reads and writes nothing but its own variables, or
        only writes globals; with f.fan self calls."""
        if self.maybe("sums", 0.4):
            self.make_sum_body(f)
            return
        writes = self.chance(0.35)
        equal = self.maybe("equal-calls", 0.6)
        scope = Scope()
        scope.local = True
        scope.values = [("n", "int"), *((p.name, "int") for p in f.params)]
        # Work in front of the test.
        lines = [f"++Count[{f.index}];"] if writes and self.chance(0.6) else []
        lines += [f"if ({self.guard(f)})", "{"]
        self.leave(f, scope, lines)
        lines.append("}")
        if self.maybe("frames", 0.2) and f.limit < DEEP_LEVELS[0]:
            self.large_local(scope, lines)
        lines.append(f"u32 sum = {self.expr(scope, 1)};")
        scope.values.append(("sum", "int"))
        form = self.pick("calls", "calls", "loop", "tail", "branch")
        _, text = self.recursive_call(f, scope, [])
        if form == "loop":
            i = self.name("i")
            lines += [f"for (int {i} = 0; {i} < {f.fan}; ++{i})", "{"]
            lines += [f"sum = sum {self.pick('+', '^', '*')} {text};"]
            if not equal:
                lines.append(f"sum = sum * 3u + (u32){i};")
            lines.append("}")
        elif form == "tail":
            lines += [f"if ({self.condition(scope)})", "{",
                      f"return {text};", "}"]
        elif form == "branch":
            lines += [f"if ({self.condition(scope)})", "{",
                      f"sum -= {text};", "}"]
        results = []
        for _ in range(f.fan if form in ("calls", "tail") else f.fan - 1
                       if form == "branch" else 0):
            if not equal:
                _, text = self.recursive_call(f, scope, [])
            results.append(self.name("r"))
            lines.append(f"u32 {results[-1]} = (u32){text};")
            if writes:
                e = self.expr(scope, 1)
                lines.append(self.pick(f"A[{self.rng.randrange(16)}] = {e};",
                                       f"++Count[{f.index}];",
                                       f"Hash = Hash * 31u + {e};"))
        scope.values += [(name, "int") for name in results]
        total = self.pick(" + ", " + ", " - ").join(
            ["sum", *results, f"({self.expr(scope, 1)})"])
        lines.append(f"return ({f.returns})({total});")
        f.body, f.fuelled = lines, False

    def make_sum_body(self, f):
        """A function that combines what its f.fan self calls return, and does
        little else with it."""
        scope = Scope()
        scope.local = True
        scope.values = [("n", "int"), *((p.name, "int") for p in f.params)]
        if f.returns == "int":  # sums wrap
            f.returns = "u32"
        writes = self.chance(0.6)
        operator = self.pick("+", "+", "+", "+", "^", "*", "|", "&")
        lines = [f"++Count[{f.index}];"] if writes and self.chance(0.5) else []
        lines += [f"if ({self.guard(f)})", "{"]
        self.leave(f, scope, lines)
        lines += ["}", f"{f.returns} s = ({f.returns}){self.expr(scope, 1)};"]

        def call():
            return self.recursive_call(f, scope, [])[1]

        def term():
            return self.pick(f"A[{self.rng.randrange(16)}]", "(u32)Hash") \
                if writes and self.chance(0.5) else self.expr(scope, 1)

        left = f.fan
        while left > 0:
            if writes and self.chance(0.6):
                lines.append(self.pick(
                    f"A[{self.rng.randrange(16)}] += {self.expr(scope, 1)};",
                    f"Hash = Hash * 31u + {self.expr(scope, 1)};"))
            form = self.rng.randrange(9)
            if form <= 2:
                lines.append(f"s = s {operator} {call()};")
            elif form == 3 and left >= 2:
                lines.append(f"s = s {operator} ({call()} {operator} {call()});")
                left -= 1
            elif form == 4 and left >= 2:
                i = self.name("i")
                lines += [f"for (int {i} = 0; {i} < {left}; ++{i})", "{",
                          f"s = s {operator} {call()};", "}"]
                left = 1
            elif form == 5:
                lines += [f"if ({self.condition(scope)})",
                          f"s = s {operator} {call()};"]
                if self.chance(0.4):
                    lines += ["else",
                              f"s = s {operator} {self.expr(scope, 1)};"]
            elif form == 6:
                lines += [f"if ({self.condition(scope)})",
                          f"return s {operator} {call()};"]
            elif form == 7:
                r = self.name("r")
                lines += [f"{f.returns} {r} = {call()};",
                          f"s = s {operator} {term()};",
                          f"s = s {operator} {r};"]
            else:
                lines += [f"switch ({self.expr(scope, 1)} & 7)", "{",
                          "case 0:", "case 3:", "break;", "case 5:",
                          f"s = ({f.returns}){self.expr(scope, 1)};", "break;",
                          "default:", f"s = s {operator} {call()};", "}"]
            if self.chance(0.3):
                lines.append(f"s = s {operator} {term()};")
            left -= 1
        lines.append("return s;")
        f.body, f.fuelled = lines, False

    def large_local(self, scope, lines):
        """An array that takes much of the stack."""
        t, i = self.name("t"), self.name("i")
        size = self.pick(16, 40, 64, 65, 100, 300)
        lines += [f"u32 {t}[{size}];",
                  f"for (int {i} = 0; {i} < {size}; ++{i})", "{",
                  f"{t}[{i}] = {self.leaf(scope)} * (u32){i};", "}"]
        v = self.name("v")
        lines.append(f"u32 {v} = {t}[{self.leaf(scope)} % {size}u];")
        scope.values.append((v, "int"))

    def can_must_tail(self, f):
        return (self.has("musttail") and not self.cxx and not f.variadic
                and not f.method and f.returns in ("u32", "int")
                and not any(p.kind in ("large",) for p in f.params)
                and self.chance(0.15))

    def signature(self, f, name=None):
        arguments = [f"{f.type} n"]
        arguments += [f"{p.type} {p.name}" for p in f.params]
        if f.variadic:
            arguments += ["int Rest", "..."]
        return f"{self.type_of(f.returns)} {name or f.name}" \
               f"({', '.join(arguments)})"

    # -- the program ---------------------------------------------------------

    def entry(self, f, lines, scope, constant):
        """An entry of f from outside."""
        if constant:
            levels = str(self.rng.randrange(max(f.limit - 4, 0), f.limit + 1))
            value = f.limit - int(levels) if f.up else int(levels)
            first = f"{value}"
        else:
            levels = f"(int)(Opaque[{self.rng.randrange(8)}] % {f.limit + 1}u)"
            first = self.argument_for(f, levels)
        kind = "constant" if constant and self.chance(0.7) else "any"
        through = None
        if self.may_point_to(f, "indirect", 0.08):
            through = self.pointer_to(f)
        text = self.call(f, first, scope, kind, through)
        lines.append(f"Fuel = {FUEL};")
        if self.throws:
            lines += ["try", "{"]
            self.use_result(f, text, scope, lines, keep=False)
            lines += ["}", "catch (int Thrown)", "{", "MIX(Thrown);", "}"]
        else:
            self.use_result(f, text, scope, lines, keep=False)

    def program(self):
        r = self.rng
        # Most programs are small: what goes wrong does so in one function, and
        # more programs are tried in the same time.
        number = self.pick(1, 1, 1, 2) if self.chance(0.75) else \
            self.pick(2, 3, 4, 5)
        functions = [self.make_function(i) for i in range(number)]
        groups = []
        if self.has("mutual"):
            free = [f for f in functions if f.shape in ("general", "ring")]
            if len(free) >= 2 and self.chance(0.5):
                groups = [free[:r.randrange(2, len(free) + 1)]]
        done = []
        for f in functions:
            mutual = [g for group in groups if f in group for g in group
                      if g is not f]
            entered = [g for g in done if not mutual
                       and g.limit < DEEP_LEVELS[0]]
            if f.shape == "tiny":
                entered = []
            if f.shape == "pure":
                self.make_pure_body(f)
            else:
                self.make_body(f, mutual, entered)
            done.append(f)

        # The second file holds whatever has nothing of its own in the first.
        second = []
        if self.has("twofiles") and not self.cxx and self.chance(0.15):
            local = [f"{f.name}(" for f in functions if "static" in f.storage]
            for f in functions:
                if "static" not in f.storage and "inline" not in f.storage \
                        and not f.request and "weak" not in f.attributes \
                        and not any(call in line for call in local
                                    for line in f.body):
                    f.second_file = True
                    second.append(f)
        override = None
        if self.has("override") and not self.cxx and self.chance(0.08):
            weak = [f for f in functions if "weak" in f.attributes]
            override = r.choice(weak) if weak else None

        main, wrappers = self.main(functions)
        files = [self.file(functions, [f for f in functions
                                       if not f.second_file],
                           wrappers, main, SHARED)]
        if second or override:
            bodies = list(second)
            extra = []
            if override:
                marks = override.attributes.replace("__attribute__((weak)) ",
                                                    "")
                strong = Function(**{**override.__dict__, "request": False,
                                     "attributes": marks})
                start = Scope()
                start.values = [("n", "int")]
                strong.body = [f"++Count[{strong.index}];",
                               "MIX(0x5eed);"]
                self.leave(strong, start, strong.body)
                extra.append(strong)
            files.append(self.file([f for f in functions
                                    if "static" not in f.storage
                                    and f is not override] + extra,
                                   bodies + extra, [], None, DECLARED))
        return files

    def main(self, functions):
        wrappers, lines = [], []
        entries = []
        for f in functions:
            if f.shape == "bounded":
                number = self.pick(1, 1, 1, 1, 1, 1, 1, 2)
            else:
                number = self.pick(1, 2, 2, 3)
            for _ in range(number):
                constant = self.chance(0.95 if f.shape == "bounded" else 0.6)
                entries.append((f, constant))
        self.rng.shuffle(entries)
        for f, constant in entries:
            scope = Scope()
            if self.chance(0.3):
                name = self.name("enter")
                body = []
                self.entry(f, body, scope, constant)
                repeated = self.pick(1, 2)
                attribute = self.pick("", "__attribute__((noinline)) ")
                wrappers.append([f"{attribute}static void {name}(void)", "{",
                                 *body, "}"])
                lines += [f"{name}();"] * repeated
            elif self.chance(0.25):
                i = self.name("i")
                lines.append(f"for (int {i} = 0; {i} < {self.pick(2, 3)}; "
                             f"++{i})")
                lines.append("{")
                scope.values.append((i, "int"))
                self.entry(f, lines, scope, constant)
                lines.append("}")
            else:
                lines.append("{")
                self.entry(f, lines, scope, constant)
                lines.append("}")
        lines += ["for (int i = 0; i < 16; ++i)", "MIX(A[i]);"]
        formats = "".join(" %u" for f in functions)
        counts = "".join(f"Count[{f.index}], " for f in functions)
        lines.append(f'printf("{self.seed}:{formats} %016llx\\n", '
                     f"{counts}Hash);")
        head = "__attribute__((noinline)) static void program(void)"
        return [head, "{", *lines, "}"], wrappers

    def file(self, declared, defined, wrappers, main, shared):
        opaque = ", ".join(str(self.rng.randrange(1, 250)) for _ in range(8))
        out = [shared + HELPERS.replace("@OPAQUE@", opaque)]
        out.append("jmp_buf *Top;" if main else "extern jmp_buf *Top;")
        if self.cxx:
            out += ["struct Guard", "{", "u32 V;",
                    "explicit Guard(u32 V) : V(V) { MIX(V + 1); }",
                    "~Guard() { MIX(V + 2); }", "};"]
        methods = [f for f in declared if f.method]
        if methods:
            out += ["struct Object", "{", "u32 State;"]
            out += [f"{self.signature(f)};" for f in methods]
            out += ["};", "static Object Host;"]
        for f in declared:
            if not f.method:
                request = "REQUEST " if f.request else ""
                # Plain `inline` in C needs a declaration without it.
                storage = f.storage
                if not self.cxx and storage == "inline":
                    storage = "extern"
                out.append(f"{request}{f.attributes}{storage} "
                           f"{self.signature(f)};".replace("  ", " "))
        # Pointers to functions, which the compiler cannot look through.
        for f in declared:
            if f"Pointer_{f.name}" in self.tables:
                star = f"(*volatile Pointer_{f.name})"
                signature = self.signature(f, star)
                convention = "".join(
                    f"__attribute__(({c})) " for c in CONVENTIONS
                    if f"(({c}))" in f.attributes)
                out.append(f"{convention}static {signature} = {f.name};")
        for f in defined:
            owner = f"Object::{f.name}" if f.method else None
            request = "REQUEST " if f.request and f.method else ""
            storage = f.storage
            out.append("")
            out.append(f"{request}{f.attributes}{storage} "
                       f"{self.signature(f, owner)}".replace("  ", " ").strip())
            out += ["{", *f.body, "}"]
        for wrapper in wrappers:
            out += ["", *wrapper]
        if main:
            out += ["", *main]
        return "\n".join(out) + "\n"


class Scope:
    """The names that an expression may use."""

    def __init__(self, host=""):
        self.values = []
        self.frozen = False     # between setjmp and the end of its branch
        self.no_locals = False  # no pointers to locals, for tail calls
        self.objects = False    # with destructors, over which no goto leads
        self.local = False      # nothing but local variables
        self.host = host

    def inner(self):
        scope = Scope(self.host)
        scope.values = list(self.values)
        scope.frozen = self.frozen
        scope.no_locals = self.no_locals
        scope.objects = self.objects
        scope.local = self.local
        return scope


def parse_features(text):
    """A set: "default", "all", or names; "-name" takes one away."""
    chosen = set()
    for index, word in enumerate(text.split(",")):
        if word == "all":
            chosen |= set(FEATURES)
        elif word == "default":
            chosen |= DEFAULT_FEATURES
        elif word.lstrip("-") not in FEATURES:
            raise ValueError(f"unknown feature '{word}'; known: all default "
                             + " ".join(FEATURES))
        elif word.startswith("-"):
            chosen = (chosen or set(DEFAULT_FEATURES)) - {word[1:]}
        else:
            chosen.add(word)
    return chosen


class Program:
    """The program of a seed: the text of its file, or of its two."""

    def __init__(self, seed, features=None, states_share=STATES_SHARE):
        features = DEFAULT_FEATURES if features is None else features
        generator = Generator(seed, features)
        self.seed = seed
        self.cxx = generator.cxx
        rng = random.Random(f"states {seed}")
        if "states" in features and rng.random() < states_share:
            self.texts = states.StatesGenerator(
                rng, generator.has, self.cxx, seed).program(
                    SHARED, DECLARED, HELPERS)
        else:
            self.texts = generator.program()

    def renamed(self, text):
        return OWN_NAMES.sub(rf"\1_{self.seed}", text)


def files(programs, bundled=None):
    """(names and texts of the files of one or more programs); bundled: do
    functions have the names that they have beside other programs?"""
    if bundled is None:
        bundled = len(programs) > 1
    suffix = "cpp" if programs[0].cxx else "c"
    made = {}
    for index in range(max(len(p.texts) for p in programs)):
        made[f"{'ab'[index]}.{suffix}"] = PRELUDE + states.PRELUDE + "\n".join(
            p.renamed(p.texts[index]) if bundled else p.texts[index]
            for p in programs if index < len(p.texts))
    calls = [p.renamed("program();") if bundled else "program();"
             for p in programs]
    made[f"a.{suffix}"] += "\n".join(
        ["", "int main(void)", "{", *calls, "return 0;", "}", ""])
    return made


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("seed", type=int)
    parser.add_argument("--features", default="default")
    parser.add_argument("--focus", choices=FOCUSES, default="none")
    parser.add_argument("--directory", help="where to write the files;"
                        " without it they are printed")
    args = parser.parse_args()
    try:
        features = parse_features(args.features)
    except ValueError as error:
        raise SystemExit(f"generate.py: {error}")
    share = FOCUSES[args.focus]
    for name, text in files([Program(args.seed, features, share)]).items():
        if args.directory:
            os.makedirs(args.directory, exist_ok=True)
            with open(os.path.join(args.directory, name), "w") as file:
                file.write(text)
        else:
            print(f"/* {name} */")
            print(text)


if __name__ == "__main__":
    main()
