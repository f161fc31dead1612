"""What ends the tuner, or takes one plan out of the search."""


class TuneError(Exception):
    """What the user reads, and the exit status."""

    def __init__(self, message, status=1):
        super().__init__(message)
        self.status = status


class OutOfBudget(Exception):
    """The run time that may be spent is spent."""


class Differs(Exception):
    """A run did not do what the plain build's does: says in what, in half a sentence."""
