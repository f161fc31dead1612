"""Reads the optimisation records of LLVM.

A record is a sequence of YAML documents, one for each remark of each pass:

    --- !Passed
    Pass:            inlinerecursion
    Name:            AutoRing
    DebugLoc:        { File: walk.c, Line: 3, Column: 0 }
    Function:        walk
    Hotness:         200
    Args:
      - Callee:          walk
      - Growth:          '69'
    ...

Most of a record is about other passes, and parsing YAML is slow, so documents are told
apart by their first and last lines, and only this plugin's are parsed.
"""

import os
import re
from dataclasses import dataclass, field
from pathlib import Path

import yaml

PASS = "inlinerecursion"
# What clang and lld call them; thin LTO appends the number of the module.
RECORD_NAME = re.compile(r"\.opt(\.ld)?\.yaml(\.thin\.\d+\.yaml)?$")
# Parses no values: a function called "null" or "1" stays one.
LOADER = getattr(yaml, "CBaseLoader", yaml.BaseLoader)


class BadRecord(Exception):
    """What is wrong with a record, for the user."""


@dataclass
class Remark:
    kind: str  # "Passed", "Missed" or "Analysis"
    name: str
    function: str
    file: str = ""
    line: int = 0
    hotness: int = None
    # (key, value) in their order, the text as "String"
    arguments: list = field(default_factory=list)

    def argument(self, key, default=""):
        return next((value for name, value in self.arguments if name == key), default)

    def number(self, key):
        value = self.argument(key)
        return int(value) if value.isdigit() else 0

    def text(self):
        return "".join(value for _, value in self.arguments)


@dataclass
class Record:
    path: Path
    remarks: list = field(default_factory=list)
    # Empty, or what is wrong with it.
    problem: str = ""


def make_remark(kind, values):
    place = values.get("DebugLoc", {})
    arguments = []
    for given in values.get("Args", []):
        # The place of an argument stands beside it.
        arguments += [(key, value) for key, value in given.items() if key != "DebugLoc"]
    hotness = values.get("Hotness")
    return Remark(
        kind,
        values["Name"],
        values["Function"],
        os.path.normpath(place["File"]) if place else "",
        int(place["Line"]) if place else 0,
        None if hotness is None else int(hotness),
        arguments,
    )


def parse_document(text):
    """The remark in a document, or None if another pass has made it."""
    kind, _, body = text.partition("\n")
    if not re.search(rf"^Pass: +{PASS}$", body, re.M):
        return None
    try:
        return make_remark(kind.strip(), yaml.load(body, Loader=LOADER))
    except (yaml.YAMLError, AttributeError, KeyError, TypeError, ValueError):
        raise BadRecord("cannot be understood") from None


def parse_record(text, record):
    """Adds the plugin's remarks in the text to the record."""
    begin, *documents = re.split(r"^--- !", text, flags=re.M)
    if begin.strip():
        raise BadRecord("is no optimisation record in YAML")
    for document in documents:
        body, end, _ = document.partition("\n...\n")
        if not end:
            raise BadRecord("is truncated")
        if remark := parse_document(body):
            record.remarks.append(remark)


def read_record(path):
    """What a record says; as much as can be read of one that is at fault."""
    record = Record(path)
    try:
        parse_record(path.read_text(errors="surrogateescape"), record)
    except BadRecord as error:
        record.problem = str(error)
    except OSError as error:
        record.problem = f"cannot be read: {error.strerror}"
    return record


def find_records(paths):
    """The records below folders, and the files that are named, each once; those of
    linkers last, as they know more. Folders that cannot be read are records at fault."""
    found, closed = {}, []

    def give_up(error):
        closed.append(Record(Path(error.filename),
                             problem=f"cannot be read: {error.strerror}"))

    for path in paths:
        if not path.is_dir():
            found[path] = None
            continue
        for folder, folders, names in os.walk(path, onerror=give_up):
            folders.sort()
            found.update((Path(folder) / name, None) for name in sorted(names)
                         if RECORD_NAME.search(name))
    return sorted(found, key=lambda path: ".opt.ld." in path.name), closed
