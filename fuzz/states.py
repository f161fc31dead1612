"""Random programs whose recursive functions are entered with constants.

Such a function has *slots*: arguments whose values follow from those of an
entry (a counter, a remainder, a flag, a place in a table, a function), each
with a range that no step leaves. Slots are passed by value or by reference,
which is where a variable may be changed under another name. Beside them stand
arguments of which nothing is known.

What keeps programs free of undefined behaviour is said in generate.py. What is
special here:

- A step of a slot stays in its range, whatever the slot is, except the step of a
  counter, which a guard at the top of the body allows.
- Recursion ends by fuel, which is a global, by a number of levels that is handed
  down and unknown, or by a counter; the number of activations is worked out for
  the latter two.
- A counter in memory may be set back under another name, and is no end.
- A pointer to a variable that is kept in a global is taken from there again
  before the variable is left.
"""

from dataclasses import dataclass, field

CALLBACKS = ["twist", "plain", "count"]
FUEL = 300
MAX_ACTIVATIONS = 2500
FIELDS = {"signed char": "a", "u32": "b", "long": "c"}

# Behind the prelude, once in a file.
PRELUDE = """\
typedef int (*Order)(const u32 *, const u32 *);
struct Known { signed char a; u32 b; long c; };
static int less(const u32 *X, const u32 *Y) { return *X < *Y; }
static int more(const u32 *X, const u32 *Y) { return *X > *Y; }
static int byLowBits(const u32 *X, const u32 *Y) {
  return (*X & 7) < (*Y & 7);
}
"""


@dataclass
class Slot:
    name: str
    kind: str
    type: str
    low: int = 0
    high: int = 0
    # value, read (const T *), reference (const T &), write (T *), field (const
    # struct Known *)
    form: str = "value"
    table: str = ""    # that leads from value to value
    kept: str = ""     # a global of the same range
    saved: str = ""    # a global pointer to such

    @property
    def value(self):
        if self.kind == "optional":
            return f"(has_{self.name} ? *{self.name} : 5u)"
        if self.form in ("read", "write"):
            return f"(*{self.name})"
        if self.form == "field":
            return f"{self.name}->{FIELDS[self.type]}"
        return self.name

    @property
    def parameter(self):
        if self.kind == "optional":
            return f"u32 has_{self.name}, const u32 *{self.name}"
        return {"value": f"{self.type} {self.name}",
                "read": f"const {self.type} *{self.name}",
                "reference": f"const {self.type} &{self.name}",
                "write": f"{self.type} *{self.name}",
                "field": f"const struct Known *{self.name}"}[self.form]

    @property
    def size(self):
        return self.high - self.low + 1

    @property
    def is_number(self):
        return self.kind not in ("optional", "callback", "order", "cursor",
                                 "double", "pair")


@dataclass
class Recursion:
    name: str
    index: int
    slots: list
    unknown: list
    returns: str
    end: str             # fuel, levels, counter
    fan: int
    levels: int = 0
    storage: str = "static"
    attributes: str = ""
    request: bool = False
    second_file: bool = False
    mutual: list = field(default_factory=list)
    body: list = field(default_factory=list)

    @property
    def is_fuelled(self):
        return self.end in ("fuel", "both") or bool(self.mutual)

    @property
    def activations(self):
        if self.is_fuelled:
            return FUEL
        total, width = 0, 1
        for _ in range(self.levels + 1):
            total += width
            width *= self.fan
            if total > 10**6:
                break
        return total


class StatesGenerator:
    """program() makes the functions, and what main does with them."""

    def __init__(self, rng, has, cxx, seed):
        self.rng, self.has, self.cxx, self.seed = rng, has, cxx, seed
        self.unique = 0
        self.shared, self.declared = [], []  # globals, and how others see them
        self.local = []   # static data, in each file
        self.entering = []  # callbacks that enter a recursion
        self.frozen = {}  # counters in memory, and what the guard saw
        self.through, self.fresh = set(), []
        self.pointers = []
        self.two_files = has("twofiles") and self.chance(0.12)
        self.throws = cxx and has("exceptions") and self.chance(0.3)

    def chance(self, probability):
        return self.rng.random() < probability

    def pick(self, *choices):
        return self.rng.choice(choices)

    def name(self, prefix):
        self.unique += 1
        return f"{prefix}{self.unique}"

    # -- slots ---------------------------------------------------------------

    def make_slot(self, kind=None):
        kind = kind or self.rng.choice(
            ["bounded"] * 3 + ["ring"] * 4 + ["toggle"] * 4 + ["table"] * 3 +
            ["half"] * 2 + ["same"] * 2 + ["sign", "wrap", "wrap"] +
            ["callback"] * 3 * self.has("callbacks") +
            ["order"] * 2 * self.has("callbacks") + ["cursor"] +
            ["optional"] * 2 + ["double"] * self.has("floats") +
            ["pair"] * self.has("structs"))
        r = self.rng
        slot = Slot(self.name("s"), kind, self.pick(
            "int", "int", "u32", "u32", "signed char", "unsigned char",
            "short", "unsigned short", "long", "u64"))
        if kind == "counter":
            slot.high = r.randrange(2, 10)
            if slot.type in ("int", "signed char", "short", "long") and \
                    self.chance(0.3):
                slot.low = -r.randrange(1, 9)
        elif kind in ("ring", "table"):
            slot.high = r.randrange(1, 8)
        elif kind == "toggle":
            slot.high = 1
            if self.chance(0.4):
                slot.type = "bool" if self.cxx else "_Bool"
        elif kind == "half":
            slot.high = r.randrange(3, 80)
        elif kind == "same":
            slot.high = r.randrange(1, 20)
        elif kind == "wrap":
            slot.type = self.pick("unsigned char", "unsigned char",
                                  "unsigned short")
            slot.high = 255 if slot.type == "unsigned char" else 65535
        elif kind == "bounded":
            slot.low, slot.high = r.randrange(0, 3), r.randrange(4, 12)
        elif kind == "sign":
            slot.type = self.pick("int", "short", "long", "signed char")
            slot.high = r.randrange(1, 9)
            slot.low = -slot.high
        else:
            slot.type = {"optional": "const u32 *",
                         "callback": "Callback", "order": "Order",
                         "cursor": "const char *", "double": "double",
                         "pair": "struct Small"}[kind]
            slot.high = r.randrange(2, 6)
        if kind == "cursor":
            slot.table = self.name("Word")
            text = "".join(self.pick(*"abc") for _ in
                           range(r.randrange(2, 8)))
            self.local.append(f'static const char {slot.table}[] = "{text}";')
            slot.low, slot.high = 0, len(text)
        if kind == "table":
            self.add_table(slot)
        if slot.is_number and self.chance(0.28):
            self.make_reference(slot)
        return slot

    def add_table(self, slot):
        slot.table = self.name("Table")
        values = ", ".join(str(self.rng.randrange(slot.size))
                           for _ in range(slot.size))
        qualifier = self.pick("static const", "static const", "static const",
                              "static", "static volatile")
        self.local.append(f"{qualifier} {self.pick('unsigned char', 'int')} "
                          f"{slot.table}[{slot.size}] = {{{values}}};")

    def make_reference(self, slot):
        forms = ["read"] * 4 + ["write"]
        if self.cxx:
            forms += ["reference"] * 4
        if slot.type in FIELDS:
            forms += ["field"] * 3
        slot.form = self.rng.choice(forms)
        if slot.form != "field" and self.chance(0.4):
            slot.kept = self.name("Kept")
            value = self.constant(slot)
            self.shared.append(f"{slot.type} {slot.kept} = {value};")
            self.declared.append(f"extern {slot.type} {slot.kept};")
            if not self.throws and self.chance(0.4):
                slot.saved = self.name("Saved")
                self.shared.append(
                    f"{slot.type} *{slot.saved} = &{slot.kept};")
                self.declared.append(f"extern {slot.type} *{slot.saved};")

    def functions_for(self, slot):
        if slot.kind == "order":
            return ["less", "more", "byLowBits"]
        return CALLBACKS + self.entering

    def constant(self, slot):
        """A value of the slot's range that is known."""
        if slot.kind in ("callback", "order"):
            return self.rng.choice(self.functions_for(slot))
        if slot.kind == "optional":
            return self.pick("0, (const u32 *)0", "0, (const u32 *)0",
                             f"1, &A[{self.rng.randrange(16)}]")
        if slot.kind == "cursor":
            return self.pick(slot.table, f"&{slot.table}[1]")
        if slot.kind == "double":
            return f"{self.rng.randrange(16) * 0.5}"
        if slot.kind == "pair":
            return f"(struct Small){{{self.rng.randrange(slot.size)}, " \
                   f"{self.rng.randrange(9)}u}}"
        if slot.kind == "counter" and self.chance(0.7):
            return str(slot.low)
        return str(self.rng.randrange(slot.low, slot.high + 1))

    def ranged(self, slot, value):
        """An expression for a u32 brought into the slot's range."""
        if slot.kind in ("callback", "order"):
            a, b = self.constant(slot), self.constant(slot)
            return f"({value} & 1 ? {a} : {b})"
        if slot.kind == "optional":
            return f"1, &A[{value} & 15]"
        if slot.kind == "cursor":
            return f"&{slot.table}[{value} % {slot.size}u]"
        if slot.kind == "double":
            return f"({value} & 15u) * 0.5"
        if slot.kind == "pair":
            return f"(struct Small){{(int)({value} % {slot.size}u), 3u}}"
        return f"({slot.type})({slot.low} + (int)({value} % {slot.size}u))"

    def following(self, f, slot, inner):
        """The next value of a slot, in its range."""
        v, roll = slot.value, self.rng.random()
        if slot.kind != "counter":
            if roll < 0.05:
                return self.constant(slot)
            if roll < 0.06:
                return self.ranged(slot, self.unknown(f, inner))
            if roll < 0.16:
                other = self.number(f, inner)
                return self.ranged(slot, f"(u32){other}")
            if roll < 0.28 and slot.kind != "optional":
                return v
        return self.step(f, slot, v)

    def step(self, f, slot, v):
        if slot.kind == "optional":
            return f"has_{slot.name}, {slot.name}"
        low, high, n = slot.low, slot.high, slot.size
        k = self.rng.randrange(1, 4)
        if slot.kind == "counter":
            v = self.frozen.get(slot.name, v)
            text = f"{v} + {min(k, self.counter_step)}"
        elif slot.kind == "bounded":
            text = self.pick(
                f"{v} < {high} ? {v} + 1 : {low}",
                f"{v} > {low} ? {v} - 1 : {high}",
                f"{v} < {high} ? {v} + 1 : {v}",
                f"{v} + {k} > {high} ? {high} : {v} + {k}",
                f"{v} > {low + 1} ? {v} - 2 : {v} + 1",
                f"{v} == {high} ? {low} : {v} + 1")
            others = [o for o in f.slots if o.kind == "bounded"
                      and o is not slot and low <= o.low and o.high <= high]
            if others and self.chance(0.5):
                o = self.rng.choice(others).value
                text = self.pick(f"{v} < {o} ? {v} : {o}",
                                 f"{v} > {o} ? {v} : {o}")
        elif slot.kind == "ring":
            text = self.pick(
                f"({v} + 1) % {n}", f"({v} + 1) % {n}", f"({v} + {k}) % {n}",
                f"{v} * {k} % {n}", f"({v} * 2 + 1) % {n}",
                f"{v} == 0 ? {high} : {v} - 1", f"{high} - {v}")
        elif slot.kind == "toggle":
            text = self.pick(f"!{v}", f"{v} ^ 1", f"1 - {v}",
                             f"{v} ? 0 : 1", f"{v} == 0")
        elif slot.kind == "table":
            text = self.pick(f"{slot.table}[{v}]", f"{slot.table}[{v}]",
                             f"{slot.table}[({v} + 1) % {n}]")
        elif slot.kind == "half":
            text = self.pick(
                f"{v} / 2", f"{v} >> 1", f"{v} / 3",
                f"{v} * 2 > {high} ? 1 : {v} * 2",
                f"{v} & 1 ? {v} / 2 : {v} - {v} / 4")
        elif slot.kind == "wrap":
            k = self.pick(3, 64, 64, 85, 128, 8192, 16384, 21845)
            text = self.pick(f"{v} + {k}", f"{v} + {k}", f"{v} - {k}",
                             f"{v} * 2", f"{v} / 2", f"~{v}", f"-{v}",
                             f"{v} << 4", f"{v} ^ {k}")
        elif slot.kind == "sign":
            text = self.pick(f"-{v}", f"{v} < 0 ? {v} + 1 : -{v}",
                             f"{v} > 0 ? {v} - 1 : -{v}",
                             f"{v} < 0 ? -{v} : {v}")
        elif slot.kind == "same":
            text = v
        elif slot.kind in ("callback", "order"):
            others = [o.value for o in f.slots if o.kind == slot.kind]
            a, b = self.constant(slot), self.constant(slot)
            return self.pick(v, self.rng.choice(others),
                             self.rng.choice(others), a,
                             f"({v} == {a} ? {b} : {v})",
                             f"({self.condition(f)} ? {a} : {b})")
        elif slot.kind == "cursor":
            return f"(*{v} ? {v} + 1 : {slot.table})"
        elif slot.kind == "double":
            return self.pick(f"{v} * 0.5", f"({v} < 8.0 ? {v} + 1.5 : 0.25)",
                             f"({v} > 1.0 ? {v} - 1.0 : {v})")
        else:
            return self.pick(
                f"(struct Small){{({v}.a + 1) % {n}, {v}.b}}",
                f"(struct Small){{{high} - {v}.a, {v}.b ^ 1u}}",
                f"(struct Small){{{v}.a, 7u - ({v}.b & 7u)}}")
        return f"({slot.type})({text})"

    # -- expressions ---------------------------------------------------------

    def number(self, f, inner):
        """A u32 of what is known of the state, mostly."""
        choices = list(inner)
        for slot in f.slots:
            v = slot.value
            if slot.is_number:
                choices += [v, v]
            elif slot.kind == "optional":
                choices.append(v)
            elif slot.kind == "cursor":
                choices.append(f"*{v}")
            elif slot.kind == "pair":
                choices += [f"{v}.a", f"{v}.b"]
            elif slot.kind == "double":
                choices.append(f"({v} > 2.0)")
        return self.rng.choice(choices or ["3"])

    def unknown(self, f, inner=()):
        choices = [f"A[{self.rng.randrange(16)}]", "(u32)Hash",
                   f"Opaque[{self.rng.randrange(8)}]",
                   *(f"(u32){u}" for u in f.unknown)]
        return self.rng.choice(choices)

    def condition(self, f, inner=()):
        """Of the state, mostly."""
        slot = self.rng.choice(f.slots)
        v, roll = slot.value, self.rng.random()
        if roll < 0.15:
            return f"({self.unknown(f)} & {self.pick(1, 3, 7)}) " \
                   f"{self.pick('==', '!=', '>')} 1"
        if slot.kind in ("callback", "order"):
            return f"{v} {self.pick('==', '!=')} {self.constant(slot)}"
        if slot.kind == "cursor":
            return f"*{v} {self.pick('==', '!=', '<')} 'b'"
        v = f"(int){self.number(f, inner)}"
        return self.pick(f"{v} == {self.rng.randrange(6)}",
                         f"{v} < {self.rng.randrange(9)}",
                         f"{v} >= {self.rng.randrange(9)}", f"({v} & 1)",
                         f"{v} % 3 == 1", f"!{v}",
                         f"{v} == (int){self.number(f, inner)}")

    def expr(self, f, inner=(), depth=2):
        if depth == 0 or self.chance(0.3):
            roll = self.rng.random()
            if roll < 0.5:
                return f"(u32){self.number(f, inner)}"
            return self.unknown(f) if roll < 0.8 else \
                f"{self.rng.randrange(1, 99)}u"
        a = self.expr(f, inner, depth - 1)
        b = self.expr(f, inner, depth - 1)
        return self.pick(f"({a} + {b})", f"({a} - {b})", f"({a} * {b})",
                         f"({a} ^ {b})", f"({a} | {b})", f"({a} & {b})",
                         f"({a} % ({b} | 1u))", f"({a} << ({b} & 7))",
                         f"({a} < {b} ? {a} : {b})", f"({a} >> ({b} & 15))")

    # -- statements ----------------------------------------------------------

    def effect(self, f, lines, inner=()):
        e = self.expr(f, inner)
        roll = self.rng.randrange(12)
        callbacks = [s.value for s in f.slots if s.kind == "callback"]
        orders = [s.value for s in f.slots if s.kind == "order"]
        kept = [s for s in f.slots if s.kept]
        written = [s for s in f.slots if s.form == "write"]
        if roll <= 1:
            lines.append(f"MIX({e});")
        elif roll == 2:
            lines.append(f"A[{self.number(f, inner)} & 15] "
                         f"{self.pick('+=', '^=', '=')} {e};")
        elif roll <= 4:  # a loop that the state bounds
            i = self.name("i")
            lines += [f"for (int {i} = 0; {i} < ((int){self.number(f, inner)}"
                      f" & 7); ++{i})", "{",
                      f"A[({i} + {self.number(f, inner)}) & 15] += "
                      f"{self.expr(f, [*inner, i], 1)};", "}"]
        elif roll == 5:
            lines += [f"if ({self.condition(f, inner)})", "{"]
            self.effect(f, lines, inner)
            lines.append("}")
            if self.chance(0.4):
                lines += ["else", "{"]
                self.effect(f, lines, inner)
                lines.append("}")
        elif roll == 6:
            lines += [f"switch ((int){self.number(f, inner)})", "{",
                      "case 0:", f"MIX({e});",
                      *(["break;"] if self.chance(0.5) else []),
                      f"case {self.pick(1, 2)}:", "event(4, 1);", "break;",
                      "default:", f"A[3] ^= {e};", "}"]
        elif callbacks and roll <= 9:
            lines.append(f"MIX({self.rng.choice(callbacks)}({e}));")
        elif orders and roll <= 10:
            i, j = self.rng.sample(range(16), 2)
            t = self.name("t")
            lines += [f"if ({self.rng.choice(orders)}(&A[{i}], &A[{j}]))",
                      "{", f"u32 {t} = A[{i}];", f"A[{i}] = A[{j}];",
                      f"A[{j}] = {t};", "}"]
        elif kept and roll <= 10:
            slot = self.rng.choice(kept)
            target = f"*{slot.saved}" if slot.saved and self.chance(0.6) \
                else slot.kept
            v = self.step(f, slot, target) if slot.kind != "counter" \
                else self.constant(slot)
            lines.append(f"{target} = {v};" if self.chance(0.7)
                         else f"MIX({target});")
        elif written:
            slot = self.rng.choice(written)
            v = self.step(f, slot, slot.value) if slot.kind != "counter" \
                else self.constant(slot)
            lines += [f"if ({self.condition(f, inner)})",
                      f"{slot.value} = {v};"]
        else:
            lines.append(f"MIX({e});")

    def pass_on(self, f, slot, lines, value, fresh, entry=False):
        """The text for a slot of f in a call; statements go to lines. In fresh,
        variables that may be passed again."""
        if slot.kind == "optional" and self.chance(0.3):
            t = self.name("t")
            lines.append(f"u32 {t} = {self.rng.randrange(9)};")
            return f"1, &{t}"
        if slot.form == "value":
            return value
        if slot.name in self.through and slot.kind != "counter" and \
                self.chance(0.3):
            return slot.name
        if slot.kept and slot.kind != "counter" and self.chance(0.25):
            return self.address_of(slot, slot.kept)
        same = [n for n, s in fresh if s.type == slot.type
                and (s.low, s.high) == (slot.low, slot.high)
                and "field" not in (s.form, slot.form)
                and "counter" not in (s.kind, slot.kind)]
        if same and self.chance(0.4):
            return self.address_of(slot, self.rng.choice(same))
        t = self.name("t")
        if slot.form == "field":
            start = f"*{slot.name}" if slot.name in self.through and \
                self.chance(0.5) else "{0, 0u, 0}"
            lines += [f"struct Known {t} = {start};",
                      f"{t}.{FIELDS[slot.type]} = {value};"]
            return f"&{t}"
        if slot.form in ("read", "reference") and entry and \
                self.chance(0.3):
            c = self.name("Table")
            self.local.append(f"static const {slot.type} {c}[2] = "
                              f"{{{self.constant(slot)}, "
                              f"{self.constant(slot)}}};")
            return self.address_of(slot, f"{c}[{self.pick(0, 1)}]")
        lines.append(f"{slot.type} {t} = {value};")
        fresh.append((t, slot))
        return self.address_of(slot, t)

    def address_of(self, slot, name):
        return name if slot.form == "reference" else f"&{name}"

    def self_call(self, f, lines, inner, valued=False):
        """(function, text of a recursive call), with a value if that is
        wanted."""
        others = [g for g in f.mutual if g.returns != "void" or not valued]
        if others and self.chance(0.5):
            return self.entry(self.rng.choice(others), lines, 0.5, f, inner)
        fresh, arguments = [], []
        self.through = {s.name for s in f.slots if s.form != "value"}
        for slot in f.slots:
            value = self.following(f, slot, inner)
            arguments.append(self.pass_on(f, slot, lines, value, fresh))
        for u in f.unknown:
            arguments.append(self.pick(u, f"{u} + 1u", f"{u} ^ 5u",
                                       self.expr(f, inner, 1)))
        if f.end == "levels":
            arguments.append("levels - 1")
        self.fresh = fresh
        callee = f.name
        if self.has("indirect") and self.chance(0.02):
            callee = self.pointer_to(f)
        return f, f"{callee}({', '.join(arguments)})"

    def entry(self, g, lines, known=0.8, f=None, inner=()):
        """A call of g from outside: with constants for the share `known` of
        its slots."""
        fresh, arguments = [], []
        self.through = set()
        for slot in g.slots:
            unknown = self.unknown(f, inner) if f else \
                f"Opaque[{self.rng.randrange(8)}]"
            if self.chance(known):
                value = self.constant(slot)
            elif f and self.chance(0.5):
                value = self.ranged(slot, f"(u32){self.number(f, inner)}")
            else:
                value = self.ranged(slot, unknown)
            arguments.append(self.pass_on(g, slot, lines, value, fresh, True))
        for _ in g.unknown:
            arguments.append(self.pick("7u", f"Opaque["
                                       f"{self.rng.randrange(8)}]", "A[2]"))
        if g.end == "levels":
            arguments.append(f"Opaque[{self.rng.randrange(8)}] % "
                             f"{g.levels + 1}u")
        self.fresh = fresh
        callee = g.name
        if self.has("indirect") and self.chance(0.06):
            callee = self.pointer_to(g)
        return g, f"{callee}({', '.join(arguments)})"

    def pointer_to(self, f):
        if f.name not in self.pointers:
            self.pointers.append(f.name)
        return f"Pointer_{f.name}"

    def use(self, g, call, lines, into=None):
        """Statements that make the call and use its result; a pointer to a
        variable of the caller is in a global meanwhile, at times."""
        saved = [(s.saved, n) for n, s in self.fresh if s.saved]
        was = None
        if saved and self.chance(0.7):
            name, variable = self.rng.choice(saved)
            slot = next(s for n, s in self.fresh if n == variable)
            was = self.name("was")
            lines += [f"{slot.type} *{was} = {name};",
                      f"{name} = &{variable};"]
        if g.returns == "void":
            lines.append(f"{call};")
        elif into:
            lines.append(f"{into} {self.pick('+=', '+=', '^=')} "
                         f"(u32){call};")
        else:
            r = self.name("r")
            lines += [f"{g.returns} {r} = {call};", f"MIX({r});"]
        if was:
            lines.append(f"{name} = {was};")
        for variable, slot in self.fresh:
            if self.chance(0.15):
                lines.append(f"MIX({variable});")

    def value_of(self, f, inner=()):
        return f"({f.returns})({self.expr(f, inner)})"

    def leave(self, f, lines, result=None):
        if f.returns == "void":
            lines.append("return;")
        elif result and self.chance(0.7):
            lines.append(f"return ({f.returns}){result};")
        else:
            lines.append(f"return {self.value_of(f)};")

    def block(self, head, lines, fill):
        lines += [head, "{"]
        fill()
        lines.append("}")

    def place_call(self, f, lines, room):
        """One statement with a self call, or more; returns how many are made
        at most, no more than room."""
        def one(inner=()):
            g, text = self.self_call(f, lines, inner)
            into = "sum" if self.chance(0.6) else None
            if f.returns in ("bool", "_Bool") and g is f and \
                    self.chance(0.5):
                lines.extend([f"if ({text})", "return 1;"])
            else:
                self.use(g, text, lines, into)

        roll = self.rng.randrange(10)
        if roll <= 2:
            self.block("", lines, one)
        elif roll <= 4:
            self.block(f"if ({self.condition(f)})", lines, one)
            if self.chance(0.6):
                self.block("else", lines, one)
        elif roll <= 6 and room >= 2:
            trips = self.rng.randrange(2, min(room, 4) + 1)
            i = self.name("i")
            kind = self.pick("int", "u32", "unsigned char")

            def trip():
                if self.chance(0.3):
                    lines.append(f"if ({self.condition(f, [i])}) continue;")
                if self.chance(0.3):
                    self.effect(f, lines, [i])
                one([i, i])
            self.block(f"for ({kind} {i} = 0; {i} < {trips}; ++{i})", lines,
                       trip)
            return trips
        elif roll == 7:
            i = self.name("i")
            self.block(f"for (int {i} = 0; {i} < ((int){self.number(f, ())} "
                       f"& {1 if room < 3 else 3}); ++{i})", lines,
                       lambda: one([i]))
            return 1 if room < 3 else 3
        elif roll == 8:
            lines += [f"switch ((int){self.number(f, ())})", "{"]
            cases = self.rng.sample(range(5), self.pick(2, 3))
            for case in cases:
                self.block(f"case {case}:", lines, one)
                lines.append("break;")
            if self.chance(0.5):
                self.block("default:", lines, one)
            lines.append("}")
        elif self.throws:
            self.block("try", lines, one)
            lines += ["catch (int Thrown)", "{", "MIX(Thrown);", "}"]
        else:
            self.block("", lines, one)
        return 1

    # -- functions -----------------------------------------------------------

    def make_function(self, index):
        r = self.rng
        slots = [self.make_slot() for _ in range(self.pick(1, 2, 2, 3))]
        if self.chance(0.5):
            slots.append(self.make_slot("counter"))
        if self.chance(0.12):  # a second of the same type
            model = r.choice(slots)
            if model.kind != "counter":
                slots.append(Slot(**{**model.__dict__,
                                     "name": self.name("s")}))
        r.shuffle(slots)
        counters = [s for s in slots if s.kind == "counter"]
        end = "counter" if counters and self.chance(0.7) else \
            self.pick("fuel", "levels")
        unknown = [self.name("x") for _ in range(self.pick(0, 0, 1, 1, 2))]
        f = Recursion(f"f{index}", index, slots, unknown, self.pick(
            "void", "u32", "u32", "int", "u64", "unsigned char",
            "bool" if self.cxx else "_Bool"), end, self.pick(1, 1, 2, 2, 3))
        if end == "levels":
            f.levels = {1: self.pick(9, 40, 1000), 2: 8, 3: 5}[f.fan]
        f.storage = "" if self.two_files else self.pick(
            "static", "static", "static", "")
        if self.two_files:
            f.second_file = self.chance(0.5)
        if self.has("inlining") and self.chance(0.06):
            mark = self.pick("noinline", "cold", "flatten", "flatten")
            f.attributes = f"__attribute__(({mark})) "
        if self.has("weak") and not f.storage and self.chance(0.02):
            f.attributes = "__attribute__((weak)) "
        f.request = self.has("requests") and self.chance(0.04)
        return f

    def make_body(self, f, entered):
        counters = [s for s in f.slots if s.kind == "counter"]
        self.counter_step = self.pick(1, 1, 1, 2, 3)
        if f.end == "counter":
            # One in memory may be set back under another name.
            safe = [s.size for s in counters if s.form == "value"]
            f.levels = min(safe, default=0)
            if not safe or f.activations > MAX_ACTIVATIONS or self.chance(0.1):
                f.end = "both"
        if f.mutual:
            f.end = "levels" if f.end == "levels" else "both"
        lines = []
        if self.chance(0.8):
            lines.append(f"++Count[{f.index}];")
        if f.is_fuelled:
            lines += ["if (Fuel == 0)", "{"]
            lines.append("return;" if f.returns == "void" else "return 1;")
            lines += ["}", "--Fuel;"]
        if f.end == "levels":
            lines += ["if (levels == 0)", "{"]
            self.leave(f, lines)
            lines.append("}")
        if self.chance(0.3):
            self.effect(f, lines)
        self.frozen = {}
        for slot in counters:
            v = slot.value
            if slot.form != "value":
                # It may change after the guard.
                v = self.frozen[slot.name] = self.name("v")
                lines.append(f"{slot.type} {v} = {slot.value};")
            lines += [f"if ((long){v} > {slot.high - self.counter_step})", "{"]
            if self.chance(0.4):
                self.effect(f, lines)
            self.leave(f, lines)
            lines.append("}")
        for _ in range(self.pick(0, 0, 1)):
            lines += [f"if ({self.condition(f)} && {self.condition(f)})", "{"]
            self.leave(f, lines)
            lines.append("}")
        if self.throws and self.chance(0.3):
            lines.append(f"if ({self.condition(f)} && ({self.unknown(f)} & 7)"
                         f" == 1) throw (int)({self.unknown(f)} & 255u);")
        lines.append(f"u32 sum = {self.expr(f, (), 1)};")
        last = self.pick("", "", "tail", "accumulate") \
            if f.returns in ("u32", "int", "u64") else ""
        room = f.fan - (1 if last else 0)
        while room > 0:
            for _ in range(self.pick(0, 1, 1, 2)):
                self.effect(f, lines)
            room -= self.place_call(f, lines, room)
        for g in entered:
            if self.chance(0.25) and (
                    g.is_fuelled or f.activations * g.activations < 20000):
                g, text = self.entry(g, lines, 0.6, f)
                self.use(g, text, lines)
        if self.chance(0.4):
            self.effect(f, lines)
        if last:
            if self.chance(0.5):
                self.effect(f, lines)
            _, text = self.self_call(f, lines, (), valued=True)
            lines.append(f"return {text};" if last == "tail" else
                         f"return ({f.returns})(sum "
                         f"{self.pick('+', '^', '*', '-')} (u32){text});")
        else:
            self.leave(f, lines, "sum")
        f.body = lines

    def signature(self, f, name=None):
        arguments = [s.parameter for s in f.slots]
        arguments += [f"u32 {u}" for u in f.unknown]
        if f.end == "levels":
            arguments.append("u32 levels")
        return f"{f.returns} {name or f.name}({', '.join(arguments)})"

    # -- the program ---------------------------------------------------------

    def enter(self, f, lines):
        lines.append(f"Fuel = {self.pick(40, 150, FUEL)};")
        if self.throws:
            lines += ["try", "{"]
        g, text = self.entry(f, lines, self.pick(1.0, 1.0, 1.0, 0.9, 0.8, 0.3))
        self.use(g, text, lines)
        if self.throws:
            lines += ["}", "catch (int Thrown)", "{", "MIX(Thrown);", "}"]

    def functions(self):
        functions = [self.make_function(i)
                     for i in range(self.pick(1, 2, 2))]
        if len(functions) > 1 and self.has("mutual") and self.chance(0.3):
            for f in functions[:2]:
                f.mutual = [g for g in functions[:2] if g is not f]
        if self.has("callbacks"):
            hosts = [f for f in functions if f.end == "fuel"]
            if hosts and self.chance(0.3):
                self.entering.append(self.name("fn"))
        done = []
        for f in functions:
            self.make_body(f, [g for g in done if g not in f.mutual])
            done.append(f)
        self.callbacks = []
        for name in self.entering:
            body = []
            g, text = self.entry(self.rng.choice(hosts), body, 0.9)
            self.use(g, text, body)
            self.callbacks.append([f"static u32 {name}(u32 X)", "{", *body,
                                   "return X ^ 9u;", "}"])
        return functions

    def program(self, shared, declared, helpers):
        """The texts of the files; those three stand at their beginnings."""
        functions = self.functions()
        wrappers, lines = [], []
        entries = [f for f in functions
                   for _ in range(self.pick(1, 1, 2, 3))]
        self.rng.shuffle(entries)
        for f in entries:
            if self.chance(0.3):
                name, body = self.name("enter"), []
                self.enter(f, body)
                mark = self.pick("", "__attribute__((noinline)) ")
                wrappers.append([f"{mark}static void {name}(void)", "{", *body,
                                 "}"])
                lines += [f"{name}();"] * self.pick(1, 2)
            else:
                i, head = self.name("i"), ""
                if self.chance(0.2):
                    head = f"for (int {i} = 0; {i} < {self.pick(2, 3)}; " \
                           f"++{i})"
                self.block(head, lines, lambda: self.enter(f, lines))
        lines += ["for (int i = 0; i < 16; ++i)", "MIX(A[i]);"]
        formats = "".join(" %u" for f in functions)
        counts = "".join(f"Count[{f.index}], " for f in functions)
        lines.append(f'printf("{self.seed}:{formats} %016llx\\n", '
                     f"{counts}Hash);")
        main = ["__attribute__((noinline)) static void program(void)", "{",
                *lines, "}"]
        texts = [self.file([helpers, shared, *self.shared], functions,
                           [f for f in functions if not f.second_file],
                           [*wrappers, main])]
        second = [f for f in functions if f.second_file]
        if second:
            texts.append(self.file([helpers, declared, *self.declared],
                                   functions, second, []))
        return texts

    def file(self, head, declared, defined, more):
        common, data, *rest = head
        opaque = ", ".join(str(self.rng.randrange(1, 250)) for _ in range(8))
        out = [data + common.replace("@OPAQUE@", opaque), *rest, *self.local]
        for f in declared:
            out.append(f"{'REQUEST ' * f.request}{f.attributes}"
                       f"{f.storage or 'extern'} {self.signature(f)};")
        for callback in self.callbacks:
            out.append(f"{callback[0]};")
        for name in self.pointers:
            f = next(f for f in declared if f.name == name)
            star = self.signature(f, f"(*volatile Pointer_{name})")
            out.append(f"static {star} = {name};")
        for f in defined:
            out += ["", f"{f.attributes}{f.storage} {self.signature(f)}"
                    .strip(), "{", *f.body, "}"]
        for text in [*self.callbacks, *more]:
            out += ["", *text]
        return "\n".join(out) + "\n"
