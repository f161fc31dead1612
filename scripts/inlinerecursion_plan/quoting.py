"""Texts as LLVM writes them in YAML, so that a file is the same whoever has written it."""

import re

# Read as something else where they stand without quotes.
OTHER = re.compile(r"""
    null | Null | NULL | ~ | true | True | TRUE | false | False | FALSE
    | \.nan | \.NaN | \.NAN | [-+]?\.(inf|Inf|INF)
    | 0o[0-7]+ | 0x[0-9a-fA-F]+
    | [-+]? (\.[0-9]+ | [0-9]+(\.[0-9]*)?) ([eE][-+]?[0-9]+)?
""", re.X)
PLAIN = re.compile(r"[A-Za-z0-9_\-^., \t]*")
INDICATORS = "-?:\\,[]{}#&*!|>'\"%@`"
SPACE = " \t\v\f"
# What single quotes cannot hold.
SPECIAL = re.compile(r"[\x00-\x08\x0a-\x1f\x7f-\U0010ffff]")

ESCAPES = {
    "\\": "\\\\", '"': '\\"', "\0": "\\0", "\a": "\\a", "\b": "\\b", "\t": "\\t",
    "\n": "\\n", "\v": "\\v", "\f": "\\f", "\r": "\\r", "\x1b": "\\e", "\x7f": "\x7f",
    "\xad": "\xad", "\x85": "\\N", "\xa0": "\\_", "\u2028": "\\L", "\u2029": "\\P",
}


def escape(letter):
    if letter in ESCAPES:
        return ESCAPES[letter]
    number = ord(letter)
    if letter.isprintable():
        return letter
    kind, digits = ("x", 2) if number < 0x100 else (
        ("u", 4) if number < 0x10000 else ("U", 8))
    return f"\\{kind}{number:0{digits}X}"


def quote(text):
    """A text that is not empty, in the quotes that it needs."""
    if SPECIAL.search(text):
        return '"' + "".join(map(escape, text)) + '"'
    if (text[0] in SPACE or text[-1] in SPACE or text[0] in INDICATORS
            or OTHER.fullmatch(text) or not PLAIN.fullmatch(text)):
        return "'" + text.replace("'", "''") + "'"
    return text
