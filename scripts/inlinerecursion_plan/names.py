"""What functions are called in plans: as the linker knows them, or as in the source."""

import re

from demangle import demangle

# Behind the parameters.
QUALIFIERS = re.compile(r"( const| volatile| restrict| &&?| \[[^]]*\]| \(\.[^)]*\))+$")
# What a linker may know a function of C++ as; others are no lines for the demangler.
MANGLED = re.compile(r"_+Z[\w.$@]+")
OPENING, CLOSING = "(<[{", ")>]}"
# Of another version of the same interface.
TAGS = re.compile(r"(\[abi:[^]]*\])+$")
OPERATOR = re.compile(r"\boperator\b")


def find_opening(text):
    """Where the bracket begins that ends the text."""
    depth = 0
    for index in range(len(text) - 1, -1, -1):
        depth += (text[index] in CLOSING) - (text[index] in OPENING)
        if depth == 0:
            return index
    return 0


def cut_bracket(text, closing):
    return text[:find_opening(text)] if text.endswith(closing) else text


def cut_return_type(text):
    """Templates are demangled with what they return."""
    depth, begin = 0, 0
    for index, letter in enumerate(text):
        depth += (letter in OPENING) - (letter in CLOSING)
        if letter == " " and depth == 0:
            begin = index + 1
    return text[begin:]


def without_parameters(name):
    """A demangled C++ function without parameters, return type and arguments of the
    template, as a source that calls it has it."""
    name = cut_bracket(QUALIFIERS.sub("", name), ")")
    if begin := OPERATOR.search(name):
        # Its name may hold brackets and spaces.
        return cut_return_type(name[:begin.start()]) + TAGS.sub("", name[begin.start():])
    return cut_return_type(TAGS.sub("", cut_bracket(name, ">")))


def demangle_mangled(names):
    """As the source has them; what is no name of the linker stays what it is."""
    mangled = list(filter(MANGLED.fullmatch, dict.fromkeys(names)))
    known = dict(zip(mangled, demangle(mangled)))
    return [known.get(name, name) for name in names]


def find_names(symbols):
    """{symbol: all that it may be called, the most exact name first}"""
    found = {}
    for symbol, whole in zip(symbols, demangle_mangled(symbols)):
        found[symbol] = [symbol]
        if whole != symbol:
            found[symbol] += [whole, without_parameters(whole)]
    return found
