"""Makes rows of remarks: one for each function, whatever number of records has it.

An inline function stands in the records of many objects, and with link-time optimisation
every function in those of the compiler and the linker. It is the same one if its name is
one that C++ has only once in a program, or if name, file and line are the same. Other
functions without a place (no debug information) are the same only within a record.
"""

import re
from dataclasses import asdict, dataclass, field

from demangle import demangle

# Behind names: a local function that thin LTO has made visible, and what is left of a
# function that was taken apart, maybe one that is handed its sum.
PROMOTED = re.compile(r"\.llvm\.\d+$")
REST = re.compile(r"(\.recurse\.(rest|sum)(\.\d+)?)+$")
# The name of the decision to make copies for states, and what stands behind the names of
# these: what they know.
STATES = "AutoStates"
STATE = re.compile(r"\.specialized\..*$")
# What stands in a record and not in its text.
RECORD_ONLY = ("Growth", "Plan", "States", "Links")
# In the names of copies, which a linker may find to be recursive.
COPY = re.compile(r"\.recurse\.|\.specialized\.")
# In the names that C++ makes: something that each file may have for itself.
LOCAL = re.compile(r"^_ZL|^_ZZ|_GLOBAL__N_|\$_")

SORTS = ("file", "function", "growth", "hotness")


@dataclass
class Decision:
    """What one record says about a function."""

    rebuilt: bool
    name: str
    shape: str = ""
    copies: int = 0
    growth: int = 0
    text: str = ""
    remedy: str = ""
    # What becomes of it, as plan files say it.
    plan: str = "none"
    # Of copies for states: what each knows, and who calls whom.
    states: str = ""
    links: str = ""

    @property
    def is_news(self):
        return self.name != "AlreadyChained"

    @property
    def phrase(self):
        """What follows on the name of a part."""
        return f"for {self.text}" if self.name == STATES else f"as a {self.text}"


@dataclass
class Row:
    function: str
    symbol: str
    file: str
    line: int
    hotness: int = None
    records: list = field(default_factory=list)
    decision: Decision = None

    def __getattr__(self, name):
        # Pictures and tables ask the row.
        if name in ("rebuilt", "shape", "copies", "growth", "remedy",
                    "states", "links"):
            return getattr(self.decision, name)
        raise AttributeError(name)

    @property
    def automatic(self):
        return self.decision.name.startswith("Auto")

    @property
    def place(self):
        return f"{self.file}:{self.line}" if self.file else ""

    @property
    def reason(self):
        return "" if self.rebuilt else self.decision.text

    def to_json(self):
        return {
            "function": self.function,
            "symbol": self.symbol,
            "file": self.file,
            "line": self.line,
            "rebuilt": self.rebuilt,
            "name": self.decision.name,
            "shape": self.shape,
            "copies": self.copies,
            "growth": self.growth,
            "hotness": self.hotness,
            "reason": self.reason,
            "remedy": self.remedy,
            "plan": self.decision.plan,
            "text": self.decision.text,
            "records": self.records,
        }


@dataclass
class Totals:
    functions: int
    rebuilt: int
    left: int
    growth: int

    def to_json(self):
        return asdict(self)


def decide(remark):
    """What a remark says, or None if it is no decision."""
    if remark.kind not in ("Passed", "Missed"):
        return None
    rebuilt = remark.kind == "Passed"
    parts = [(key, value) for key, value in remark.arguments if key != "Remedy"]
    while rebuilt and parts and parts[-1][0] in RECORD_ONLY:
        # They stand behind the text, not in it.
        parts.pop()
    text = "".join(value for _, value in parts)
    begin = " rebuilt as a " if rebuilt else " not chained: "
    shape = remark.argument("Shape")
    if remark.name == STATES:
        begin, shape = " rebuilt for ", "states"
    text = text.partition(begin)[2]
    if not text:
        return None
    remedy = remark.argument("Remedy")
    return Decision(
        rebuilt,
        remark.name,
        shape if rebuilt else "",
        remark.number("Copies") if rebuilt else 0,
        remark.number("Growth") if rebuilt else 0,
        text.removesuffix("; ") if remedy else text,
        remedy,
        remark.argument("Plan") if rebuilt else "none",
        remark.argument("States"),
        remark.argument("Links"),
    )


def decide_record(record):
    """The last decision about each function of a record, and where it is."""
    decided, rests = {}, {}
    for remark in record.remarks:
        decision = decide(remark)
        if not decision:
            continue
        symbol = PROMOTED.sub("", remark.function)
        whole = REST.sub("", symbol)
        state_of = decided.get(STATE.sub("", symbol)) if STATE.search(symbol) else None
        if state_of and state_of[1].name == STATES and decision.rebuilt:
            state_of[1].growth += decision.growth
            state_of[1].text += f"; {symbol} {decision.phrase}"
        elif whole != symbol and decision.rebuilt:
            rests[whole] = (remark, decision)
        elif decision.is_news or not (symbol in decided or COPY.search(symbol)):
            decided[symbol] = (remark, decision)
    for symbol, (remark, rest) in rests.items():
        if symbol not in decided:
            decided[symbol] = (remark, rest)
            continue
        whole = decided[symbol][1]
        whole.shape = f"{whole.shape} and {rest.shape}" if whole.rebuilt else rest.shape
        whole.rebuilt = True
        whole.copies = rest.copies
        whole.growth += rest.growth
        whole.states, whole.links = rest.states, rest.links
        whole.text += f"; the rest {rest.phrase}"
    return decided


def supersedes(new, old):
    """Is the decision of a later record to be shown? What has rebuilt a function is."""
    return new.is_news and (new.rebuilt or not old.rebuilt) or not old.is_news


def identify(symbol, remark, record):
    """What two records have in common if they are about the same function."""
    if symbol.startswith("_Z") and not LOCAL.search(symbol):
        return symbol
    return symbol, remark.file, remark.line, "" if remark.file else str(record.path)


def make_rows(records):
    rows = {}
    for record in records:
        for symbol, (remark, decision) in decide_record(record).items():
            row = rows.setdefault(identify(symbol, remark, record),
                                  Row(symbol, symbol, remark.file, remark.line))
            row.records.append(str(record.path))
            if remark.hotness is not None:
                row.hotness = max(row.hotness or 0, remark.hotness)
            if row.decision is None or supersedes(decision, row.decision):
                row.decision = decision
    rows = list(rows.values())
    for row, name in zip(rows, demangle([row.symbol for row in rows])):
        row.function = name
    return rows


def sort_rows(rows, by):
    """In the order wished for; the largest number first, and where nothing else
    decides, as they stand in the sources."""
    def place(row):
        return (row.file, row.line, row.function)

    keys = {
        "file": place,
        "function": lambda row: (row.function, place(row)),
        "growth": lambda row: (-row.growth, place(row)),
        "hotness": lambda row: (row.hotness is None, -(row.hotness or 0), place(row)),
    }
    return sorted(rows, key=keys[by])


def select_rows(rows, only_rebuilt, only_left, function):
    """Those that the user wants to see; `function` is a regular expression or None."""
    return [
        row for row in rows
        if not (only_rebuilt and not row.rebuilt)
        and not (only_left and row.rebuilt)
        and (not function or function.search(row.function)
             or function.search(row.symbol))
    ]


def add_up(rows):
    rebuilt = sum(row.rebuilt for row in rows)
    return Totals(len(rows), rebuilt, len(rows) - rebuilt,
                  sum(row.growth for row in rows))


def find_modules(records):
    """What the summaries in the records say, each about one module."""
    keys = ("Functions", "Rebuilt", "Left", "Growth")
    return [
        {"record": str(record.path),
         **{key.lower(): remark.number(key) for key in keys}}
        for record in records for remark in record.remarks if remark.name == "Summary"
    ]
