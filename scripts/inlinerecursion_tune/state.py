"""What is known already, in a file of the working folder.

The search decides by nothing but what was measured, so that is all that is kept: which
builds there were, and the times of each pair of runs. After an interruption the search
runs again from its beginning, is answered from here as far as that goes, and so takes
the same decisions. The file is replaced as a whole, never changed in place.
"""

import json
import os

NAME = "state.json"


class State:
    def __init__(self, path, inputs):
        self.path = path
        self.inputs = inputs
        self.variants = {}  # id: what build.py keeps about it
        self.pairs = {}  # "CANDIDATE REFERENCE PHASE": [[seconds, seconds], ...]
        self.facts = {}  # the plain program's times, and which functions are hot

    def save(self):
        text = json.dumps({"inputs": self.inputs, "variants": self.variants,
                           "pairs": self.pairs, "facts": self.facts}, indent=1)
        new = self.path.with_suffix(".new")
        with open(new, "w", errors="surrogateescape") as file:
            file.write(text)
            file.flush()
            os.fsync(file.fileno())
        os.replace(new, self.path)


def load_state(folder, inputs):
    """The state of a working folder, and what keeps it from being used, if anything."""
    state = State(folder / NAME, inputs)
    try:
        known = json.loads(state.path.read_text(errors="surrogateescape"))
    except FileNotFoundError:
        return state, ""
    except (OSError, ValueError):
        return state, "what is known from before cannot be read"
    changed = [name for name, value in inputs.items()
               if known.get("inputs", {}).get(name) != value]
    if changed:
        return state, f"{', '.join(changed)} changed since"
    for name in ("variants", "pairs", "facts"):
        setattr(state, name, known[name])
    return state, ""
