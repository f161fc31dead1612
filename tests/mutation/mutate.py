"""All the ways to break a C++ source in one place, by its text.

The source is cut into tokens; comments, strings and preprocessor lines are left
alone, so that what remains is code. It relies on the layout that clang-format
gives the code: blanks around binary operators and none inside template
brackets, statements that begin on a line of their own.

Not every mutant compiles (`<` of a template, a removed declaration); who runs
them finds out, and does not count those.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<string>R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*')
  | (?P<number>\b\d[\w.]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator><<=|>>=|->|\+\+|--|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|<<|::|\S)
  """, re.S | re.M | re.X)

OPENING, CLOSING = "([{", ")]}"

# What a binary operator, with a blank on either side, turns into.
BINARY = {"<": ["<=", ">="], ">": [">=", "<="], "<=": ["<"], ">=": [">"],
          "==": ["!="], "!=": ["=="], "&&": ["||"], "||": ["&&"],
          "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
          "&": ["|"], "|": ["&"], "+=": ["-="], "-=": ["+="],
          "|=": ["=", "&="], "&=": ["=", "|="]}
UNARY = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "min": "max", "max": "min",
         "any_of": "all_of", "all_of": "any_of", "none_of": "any_of"}

# Words that a statement which can be taken away does not begin with.
NOT_EXPRESSIONS = {
    "alignas", "auto", "case", "class", "const", "constexpr", "default", "do",
    "else", "enum", "for", "friend", "if", "namespace", "private", "protected",
    "public", "return", "static", "static_assert", "struct", "switch",
    "template", "try", "typedef", "union", "using", "while", "break",
    "continue", "explicit", "virtual", "operator", "inline", "extern",
    "assert", "llvm_unreachable"}
JUMPS = {"break", "continue", "return"}
ASSIGNMENTS = {"=", "+=", "-=", "|=", "&=", "*=", "++", "--"}


@dataclass(frozen=True)
class Mutant:
    """text[begin:end] is replaced; kind says what for."""
    begin: int
    end: int
    replacement: str
    kind: str

    def apply(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]


@dataclass
class Token:
    kind: str
    text: str
    begin: int
    end: int
    partner: int = -1  # index of the bracket that belongs to this one
    inside: str = ""  # the bracket that it stands in


def tokenize(text):
    """The code of the text, brackets matched; raises ValueError if they do not
    match."""
    tokens, pending = [], []
    for match in TOKEN.finditer(text):
        if match.lastgroup in ("comment", "directive"):
            continue
        token = Token(match.lastgroup, match.group(), *match.span())
        if pending:
            token.inside = tokens[pending[-1]].text
        if token.kind == "operator" and token.text in OPENING:
            pending.append(len(tokens))
        elif token.kind == "operator" and token.text in CLOSING:
            if not pending:
                raise ValueError(f"a '{token.text}' closes nothing")
            token.partner = pending.pop()
            tokens[token.partner].partner = len(tokens)
        tokens.append(token)
    if pending:
        raise ValueError(f"a '{tokens[pending[-1]].text}' is not closed")
    return tokens


def mutants(text):
    """Every mutant of a source, in the order of its text."""
    tokens = tokenize(text)
    found = []
    for index, token in enumerate(tokens):
        if token.kind == "number":
            found += change_number(text, token)
        elif token.kind == "word":
            if token.text in WORDS:
                found.append(replace(token, WORDS[token.text], "word"))
            if token.text in ("if", "while"):
                found += negate_condition(text, tokens, index)
        elif token.kind == "operator":
            found += change_operator(text, tokens, index)
        if begins_statement(tokens, index):
            found += remove_statement(text, tokens, index)
    # Two ways to drop the middle one of three operands differ in blanks only.
    distinct = {"".join(m.apply(text).split()): m for m in reversed(found)}
    return sorted(distinct.values(),
                  key=lambda m: (m.begin, m.end, m.replacement))


def replace(token, replacement, kind):
    return Mutant(token.begin, token.end, replacement, kind)


def change_number(text, token):
    # The inline room of a container decides nothing.
    if not token.text.isdigit() or text[token.end] == ">":
        return []
    value = int(token.text)
    values = [value + 1] + ([value - 1] if value else [])
    return [replace(token, str(v), "number") for v in values]


def change_operator(text, tokens, index):
    token = tokens[index]
    spaced = text[token.begin - 1].isspace() and text[token.end].isspace()
    found = []
    if spaced:
        found += [replace(token, other, "operator")
                  for other in BINARY.get(token.text, [])]
    if token.text in UNARY:
        found.append(replace(token, UNARY[token.text], "operator"))
    if token.text == "!":
        found.append(replace(token, "", "not"))
    if token.text in ("&&", "||") and spaced:
        found += drop_operand(tokens, index)
    return found


def drop_operand(tokens, index):
    """`A && B` becomes `A`, and becomes `B`."""
    ends = {"&&", "||", ",", ";", "?", ":", "=", "return", "|=", "&="}
    right = index + 1
    while tokens[right].text not in ends and tokens[right].text not in CLOSING:
        bracket = tokens[right].text in OPENING
        right = (tokens[right].partner if bracket else right) + 1
    left = index - 1
    while tokens[left].text not in ends and tokens[left].text not in OPENING:
        bracket = tokens[left].text in CLOSING
        left = (tokens[left].partner if bracket else left) - 1
    return [
        Mutant(tokens[index - 1].end, tokens[right - 1].end, "", "operand"),
        Mutant(tokens[left + 1].begin, tokens[index + 1].begin, "", "operand")]


def negate_condition(text, tokens, index):
    opening = tokens[index + 1]
    if opening.text != "(":
        return []
    begin, end = index + 2, opening.partner
    inside = [t.text for t in tokens[begin:end]]
    if ";" in inside:
        begin += len(inside) - inside[::-1].index(";")
    elif "=" in inside and inside.index("=") < (inside + ["("]).index("("):
        return []  # declares a variable
    first, last = tokens[begin].begin, tokens[end].begin
    return [Mutant(first, last, f"!({text[first:last]})", "condition")]


def begins_statement(tokens, index):
    if not index or tokens[index].inside == "(" or tokens[index].text == "{":
        return False
    before = tokens[index - 1]
    return (before.text in (";", "{", "}", "else", "do")
            or before.text == ")" and is_controlled(tokens, index))


def is_controlled(tokens, index):
    """Does an if, else or loop stand before this statement or block?"""
    before = tokens[index - 1]
    if before.text == ")":
        before = tokens[before.partner - 1]
    return before.text in ("if", "else", "for", "while")


def remove_statement(text, tokens, index):
    """An empty statement in the place of a call, an assignment or a jump."""
    end = index
    while tokens[end].text != ";":
        if tokens[end].text in CLOSING:
            return []
        end = (tokens[end].partner if tokens[end].text in OPENING
               else end) + 1
        if end >= len(tokens):
            return []
    first = tokens[index]
    body = tokens[index:end]
    if first.text in JUMPS:
        # The last return of a function has to stay.
        removable = (first.text != "return"
                     or tokens[end + 1].text != "}"
                     or is_controlled(tokens, tokens[end + 1].partner)
                     or is_controlled(tokens, index))
    else:
        removable = (first.text not in NOT_EXPRESSIONS
                     and not declares(body)
                     and any(t.text in ASSIGNMENTS or t.text == "("
                             for t in body))
    if not removable:
        return []
    return [Mutant(first.begin, tokens[end].end, ";", "statement")]


def declares(body):
    """A type and a name behind it."""
    words = re.sub(r" <[^;=]*>", "", " ".join(t.text for t in body))
    return bool(re.match(r"\w+(?: :: \w+)*(?: [*&])* \w+ (?:[=({\[]|$)",
                         words + " "))
