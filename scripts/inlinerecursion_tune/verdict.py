"""Is one build faster than another? Decided from pairs of runs, as early as is safe.

A pair is one run of each, right after another, and counts by the logarithm of the ratio
of their times, so that what slows both down cancels. Asked is the median of these. Its
confidence interval is that of order statistics, which assumes nothing about how times are
distributed (W. J. Conover, Practical Nonparametric Statistics, 3rd ed., section 3.2).

Who looks after every pair, and stops when he likes the answer, is wrong more often than
the interval says. So there are five looks, and the error of 1 % that is allowed in all is
shared out evenly among them (Bonferroni). Ten pairs is the least that this error allows
at all. Giving up early is another matter: it never takes a slow build for a fast one, so
two or three pairs are enough for it.
"""

import math
import statistics
from dataclasses import dataclass

from scipy.special import bdtr

LOOKS = (10, 14, 20, 28, 40)
ERROR = 0.01
# A gain below that is not worth a line in a plan.
LEAST_GAIN = math.log(1.005)
# Two pairs that are both that much slower are not looked at any further.
FAR_SLOWER = math.log(1.03)
# An interval wider than that says more about the machine than about the program.
FLAKY = math.log(1.05)


@dataclass(frozen=True)
class Verdict:
    word: str  # faster, slower, no faster, undecided; or what else came of a plan
    pairs: int = 0
    # Of times, candidate / reference; None where nothing was measured.
    ratio: float = None
    low: float = None
    high: float = None
    why: str = ""

    @property
    def is_faster(self):
        return self.word == "faster"


def find_interval(ratios):
    """The interval of the median, at the confidence of one look."""
    error = ERROR / len(LOOKS)
    # How many ratios lie below the median is how many of as many coins show heads. So
    # many are left out at each end that this happens no more often than the error.
    left_out = -1
    while bdtr(left_out + 1, len(ratios), 0.5) <= error / 2:
        left_out += 1
    ordered = sorted(ratios)
    if left_out < 0:
        return -math.inf, math.inf
    return ordered[left_out], ordered[-1 - left_out]


def give_up(ratios):
    """Is there no point in going on?"""
    if len(ratios) == 2:
        return min(ratios) > FAR_SLOWER
    return (len(ratios) in (3, *LOOKS[:-1])
            and statistics.median(ratios) > -LEAST_GAIN)


def name_interval(low, high, is_last):
    if high < 0:
        return "faster"
    if low > 0:
        return "slower"
    if low > -LEAST_GAIN:
        return "no faster"
    if not is_last:
        return None
    return "undecided" if high - low > FLAKY else "no faster"


def judge(ratios, may_give_up=True):
    """The verdict on these logarithms of ratios, or None: another pair, please."""
    pairs = len(ratios)
    if pairs == 0:
        return None
    middle = math.exp(statistics.median(ratios))
    gives_up = may_give_up and give_up(ratios)
    if pairs not in LOOKS:
        word = "slower" if pairs == 2 else "no faster"
        return Verdict(word, pairs, middle, why="given up early") if gives_up else None
    low, high = find_interval(ratios)
    word = name_interval(low, high, pairs == LOOKS[-1])
    if not word and gives_up:
        word = "no faster"
    if not word:
        return None
    why = ""
    if word == "undecided":
        why = f"the times of {pairs} pairs spread too much"
    return Verdict(word, pairs, middle, math.exp(low), math.exp(high), why)
