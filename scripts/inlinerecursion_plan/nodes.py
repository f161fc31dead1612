"""YAML as a tree that knows its lines, as the plugin reads it.

PyYAML's own trees say neither where nothing stands in place of a value nor which values
are repeated by a name.
"""

import bisect
import re
from dataclasses import dataclass

import yaml

LOADER = getattr(yaml, "CBaseLoader", yaml.BaseLoader)
# White space and comments.
NOTHING = re.compile(r"(?:\s|#[^\n]*)*")


class NodeError(Exception):
    """What is wrong, and in which line."""

    def __init__(self, message, line):
        super().__init__(message)
        self.line = line


@dataclass
class Node:
    # A str, a list of nodes, a dictionary of nodes, or None where nothing stands.
    value: object
    line: int
    # Of its name, in a dictionary.
    key_line: int = 0


class Reader:
    def __init__(self, text):
        self.text = text
        self.newlines = [match.start() for match in re.finditer("\n", text)]
        self.events = yaml.parse(text, Loader=LOADER)

    def line_of(self, index):
        return 1 + bisect.bisect_left(self.newlines, index)

    def line_behind(self, mark):
        """Where the next thing stands."""
        return self.line_of(NOTHING.match(self.text, mark.index).end())

    def next(self):
        try:
            return next(self.events)
        except yaml.reader.ReaderError as error:
            raise NodeError(error.reason, self.line_of(error.position)) from None
        except yaml.MarkedYAMLError as error:
            mark = error.problem_mark or error.context_mark
            raise NodeError(error.problem, mark.line + 1) from None

    def read(self, event):
        """The node that begins with an event."""
        line = self.line_of(event.start_mark.index)
        if isinstance(event, yaml.ScalarEvent):
            return self.read_scalar(event, line)
        if isinstance(event, yaml.SequenceStartEvent):
            return Node(list(self.read_until(yaml.SequenceEndEvent)), line)
        if isinstance(event, yaml.MappingStartEvent):
            if event.anchor or event.tag:
                line = self.line_behind(event.end_mark)
            return Node(self.read_mapping(), line)
        raise NodeError("unknown node kind", self.line_behind(event.end_mark))

    def read_scalar(self, event, line):
        raw = self.text[event.start_mark.index:event.end_mark.index]
        if event.value == "" and not raw:
            return Node(None, self.line_behind(event.end_mark))
        if "\n" not in raw or event.style in ("|", ">") or "\\" in raw:
            return Node(event.value, line)
        # LLVM leaves the lines of one text as they are.
        return Node(raw[1:-1] if event.style else raw, line)

    def read_until(self, end):
        while not isinstance(event := self.next(), end):
            yield self.read(event)

    def read_mapping(self):
        mapping = {}
        nodes = self.read_until(yaml.MappingEndEvent)
        for key in nodes:
            if not isinstance(key.value, str):
                raise NodeError("Map key must be a scalar", key.line)
            mapping[key.value] = next(nodes)
            mapping[key.value].key_line = key.line
        return mapping


def read_documents(text):
    """The root of each document that has one."""
    reader = Reader(text)
    while not isinstance(event := reader.next(), yaml.StreamEndEvent):
        if isinstance(event, yaml.DocumentStartEvent):
            root = reader.read(reader.next())
            if root.value is not None:
                yield root
