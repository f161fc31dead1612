"""Prints pictures of copies for states, in graphviz's language.

Usage: draw_states.py FOLDER, where FOLDER holds picture.py
"""

import sys
from types import SimpleNamespace

sys.path.insert(0, sys.argv[1])
from picture import to_dot  # noqa: E402

PICTURES = {
    "cycle": (3, "_,0 _,1 _,2", "in:0 others 0-1:+1 2:-2,+0"),
    "local": (1, "7", "in:0"),
    "many": (20, "0 1 ... #19", "in:0 in:5 0-18:+1"),
    "untold": (2, "0 1", "in:0 0:+1 ..."),
}
for name, (copies, states, links) in PICTURES.items():
    print(name)
    print(to_dot([SimpleNamespace(function="f", shape="states", copies=copies,
                                  states=states, links=links)]))
