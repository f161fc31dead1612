"""The language that plans are written in, as plugin/plan/PlanSpec.h has it.

    spec = parse("ring copies=4 no-guard")
    str(spec)                              # "ring copies=4 no-guard"
    str(Spec("leaves", levels=(6, 3)))     # "leaves levels=6,3"

The plugin reads the same texts and says the same words about wrong ones; a test gives
both the same list (tests/plan/same-words.test). Needs nothing but Python.
"""

import re
from dataclasses import dataclass

SHAPES = ("none", "chain", "ring", "leaves", "split", "states")
MAX_COPIES = 1000
MAX_ARGUMENTS = 10000

# What begins with a change of the recursion, if it has one.
PREPARED = ("ring", "leaves", "split")
# Words that stand alone or behind "no-", the shapes that take them, in the order in
# which they are written.
FLAGS = {
    "guard": ("ring",),
    "staggered": ("ring",),
    "pass-sum": PREPARED,
    "loop-first": PREPARED,
}
# Built by the pass itself, by the rules of its level.
RULES = "rules"
RULED = ("chain", "ring")

# Where a look at a function is taken: in front of the inliner, behind it, and the same
# two in a link step.
PLACES = ("early", "late", "link", "link-late")


class LanguageError(ValueError):
    """What is wrong with a plan, and what there is instead, in one line."""


@dataclass(frozen=True)
class Spec:
    """One plan. What is None or empty is for the automatic policy to decide."""

    shape: str = "none"
    copies: int = None
    # In descending order.
    levels: tuple = ()
    # Counted from 1, in ascending order.
    arguments: tuple = ()
    guard: bool = None
    staggered: bool = None
    pass_sum: bool = None
    loop_first: bool = None
    rules: bool = False

    def flag(self, word):
        return getattr(self, field_of(word))

    def __str__(self):
        words = [self.shape]
        if self.copies is not None:
            words.append(f"copies={self.copies}")
        for name in ("levels", "arguments"):
            if numbers := getattr(self, name):
                words.append(f"{name}={','.join(map(str, numbers))}")
        for word in FLAGS:
            if self.flag(word) is not None:
                words.append(word if self.flag(word) else f"no-{word}")
        return " ".join(words + [RULES] * self.rules)

    def is_followed_by(self, made):
        """Is all that this plan says true of `made`, which says everything?"""
        return (
            self.shape == made.shape
            and self.copies in (None, made.copies)
            and self.levels in ((), made.levels)
            and self.arguments in ((), made.arguments)
            and all(self.flag(word) in (None, bool(made.flag(word))) for word in FLAGS)
            and made.rules >= self.rules
        )


def field_of(word):
    return word.replace("-", "_")


def parse_number(name, text, least, most):
    digits = re.fullmatch("0*([0-9]{1,9})", text)
    if not digits or not least <= int(digits[1]) <= most:
        raise LanguageError(
            f"'{name}' takes numbers from {least} to {most}, not '{text}'")
    return int(digits[1])


def parse_list(name, text, least, most, in_order):
    numbers = []
    for piece in text.split(","):
        number = parse_number(name, piece, least, most)
        if numbers and not in_order(numbers[-1], number):
            raise LanguageError(f"the numbers of '{name}' are not in order: '{text}'")
        numbers.append(number)
    return tuple(numbers)


def parse_numbers(word, shape):
    """{field: value} for `NAME=NUMBERS`; None for another word, or one that the shape
    does not take."""
    name, _, text = word.partition("=")
    if name == "copies" and shape in ("chain", "ring"):
        least = 2 if shape == "ring" else 1
        return {"copies": parse_number(name, text, least, MAX_COPIES)}
    if name == "levels" and shape == "leaves":
        return {"levels": parse_list(name, text, 2, MAX_COPIES - 1, int.__gt__)}
    if name == "arguments" and shape == "states":
        return {"arguments": parse_list(name, text, 1, MAX_ARGUMENTS, int.__lt__)}
    return None


def parse_flag(word, shape):
    """{field: value} for a word that stands alone; None as above."""
    if word == RULES and shape in RULED:
        return {"rules": True}
    name = word.removeprefix("no-")
    if shape in FLAGS.get(name, ()):
        return {field_of(name): name == word}
    return None


def list_words(shape):
    """What may stand behind a shape."""
    words = ["copies=N"] if shape in ("chain", "ring") else []
    words += ["levels=N,M"] if shape == "leaves" else []
    words += ["arguments=N,M"] if shape == "states" else []
    for word, shapes in FLAGS.items():
        if shape in shapes:
            words += [word, f"no-{word}"]
    return ", ".join(words) or "nothing"


def parse(text):
    """The plan that a text says; LanguageError if it says none."""
    shape, *words = [word for word in text.split(" ") if word] or [""]
    if shape not in SHAPES:
        raise LanguageError(f"unknown shape '{shape}'; write one of {', '.join(SHAPES)}")
    fields = {}
    for word in words:
        said = parse_numbers(word, shape) or parse_flag(word, shape)
        if not said:
            raise LanguageError(f"unknown word '{word}' behind '{shape}', which takes"
                                f" {list_words(shape)}")
        fields |= said
    return Spec(shape, **fields)
