"""Plan files, as plugin/plan/PlanFile.h has them.

    documents, complaints = read_plans(Path("tree.plan"))
    Path("other.plan").write_text(print_plans(documents))

What is wrong in a file is told in the plugin's words, a line for each, and what is wrong
is left out, as the plugin does not follow it. What is written has the plugin's own form.
"""

import re
from dataclasses import dataclass, field

from inlinerecursion_plan import language, nodes
from inlinerecursion_plan.quoting import quote

VERSION = 1
KEYS = ("name", "plan", "file", "where", "body", "reason")
# Behind what stops a file from being followed.
NOT_FOLLOWED = ("; the file is not followed, see the chapter on plan files for what it"
                " may hold")


@dataclass(eq=False)
class Entry:
    """One function in a file. Two are never the same; several may stand in one line."""

    name: str
    plan: language.Spec
    file: str = ""
    where: str = "early"
    body: str = ""
    reason: str = ""
    # `FILE:LINE`; empty for what is not read from a file.
    origin: str = ""

    @property
    def key(self):
        """What no two entries of a plan have in common, and what they are sorted by."""
        return self.name, self.file, language.PLACES.index(self.where)


@dataclass
class Document:
    """The entries of one source file, or of several; of none if `module` is empty."""

    module: str = ""
    entries: list = field(default_factory=list)


def read_plans(path, repeated=False):
    """The documents of a file, and what is wrong with it.

    Two entries about one function are wrong unless `repeated` says that the caller
    looks for them. OSError if the file cannot be read.
    """
    return read_text(path.read_bytes(), str(path), repeated)


def read_text(text, name, repeated=False):
    """As read_plans, of the bytes of a file of that name."""
    complaints, seen = [], {}

    def complain(line, message):
        complaints.append(f"{name}:{line}: {message}")

    try:
        roots = list(map(read_root, nodes.read_documents(decode(text))))
    except nodes.NodeError as error:
        complain(error.line, f"{error}{NOT_FOLLOWED}")
        return [], complaints
    documents = []
    for module, raw_entries in roots:
        documents.append(Document(module))
        for raw, line in raw_entries:
            try:
                entry = understand(raw, module)
            except language.LanguageError as error:
                complain(line, error)
                continue
            entry.origin = f"{name}:{line}"
            other = seen.setdefault(entry.key, entry)
            if other is entry or repeated:
                documents[-1].entries.append(entry)
            else:
                complain(line, f"'{entry.name}' has an entry already, at"
                               f" {other.origin}; remove one of them")
    return documents, complaints


def decode(text):
    try:
        return text.decode().removeprefix("\ufeff")
    except UnicodeDecodeError as error:
        raise nodes.NodeError("invalid UTF-8",
                              1 + text[:error.start].count(b"\n")) from None


def read_root(root):
    """The module of a document, and its entries as texts, with their lines."""
    values = need_mapping(root)
    if "version" not in values:
        raise nodes.NodeError("missing required key 'version'", root.line)
    version = parse_version(values["version"])
    if version != VERSION:
        raise nodes.NodeError(f"version {version} is not known; write 'version: {VERSION}'",
                              root.line)
    module = read_value(values, "module")
    functions = values.get("functions", nodes.Node(None, root.line))
    if functions.value in (None, "null", "Null", "NULL", "~"):
        entries = []
    elif isinstance(functions.value, list):
        entries = [read_entry(node) for node in functions.value]
    else:
        raise nodes.NodeError("not a sequence", functions.line)
    reject_unknown(values, ("version", "module", "functions"))
    return module, entries


def read_entry(node):
    if node.value is None:
        return dict.fromkeys(KEYS, ""), node.line
    values = need_mapping(node)
    texts = {key: read_value(values, key) for key in KEYS}
    reject_unknown(values, KEYS)
    return texts, node.line


def need_mapping(node):
    if not isinstance(node.value, dict):
        raise nodes.NodeError("not a mapping", node.line)
    return node.value


def need_text(node):
    if not isinstance(node.value, str):
        raise nodes.NodeError("unexpected scalar", node.line)
    return node.value


def read_value(values, key):
    return need_text(values[key]) if key in values else ""


def reject_unknown(values, known):
    for key, value in values.items():
        if key not in known:
            raise nodes.NodeError(f"unknown key '{key}'", value.key_line)


def parse_version(node):
    text = need_text(node)
    # LLVM takes numbers as C does.
    for pattern, base in ((r"0[xX]([0-9a-fA-F]+)", 16), (r"0[bB]([01]+)", 2),
                          (r"0o?([0-7]+)", 8), (r"([0-9]+)", 10)):
        if match := re.fullmatch(pattern, text):
            if base == 10 and text.startswith("0") and text != "0":
                break
            if len(text) > 20 or int(match[1], base) >= 2 ** 32:
                raise nodes.NodeError("out of range number", node.line)
            return int(match[1], base)
    raise nodes.NodeError("invalid number", node.line)


def understand(raw, module):
    """What the texts of an entry say."""
    if not raw["name"]:
        raise language.LanguageError(
            "an entry without a name; write 'name:' and the function")
    where = raw["where"] or "early"
    if where not in language.PLACES:
        raise language.LanguageError(f"'{raw['name']}': unknown place '{where}'; write"
                                     f" one of {', '.join(language.PLACES)}")
    try:
        plan = language.parse(raw["plan"])
    except language.LanguageError as error:
        raise language.LanguageError(f"'{raw['name']}': {error}") from None
    return Entry(raw["name"], plan, raw["file"] or module, where, raw["body"],
                 raw["reason"])


def print_plans(documents):
    """As the plugin writes them."""
    return "".join(map(print_document, documents)) + ("...\n" if documents else "")


def print_document(document):
    lines = ["---", *print_value("", "version", str(VERSION), quoted=False),
             *print_value("", "module", document.module)]
    if document.entries:
        lines.append("functions:")
    for entry in document.entries:
        values = {
            "name": entry.name,
            "plan": str(entry.plan),
            "file": "" if entry.file == document.module else entry.file,
            "where": "" if entry.where == "early" else entry.where,
            "body": entry.body,
            "reason": entry.reason,
        }
        first, *others = [line for key, text in values.items()
                          for line in print_value("    ", key, text)]
        lines += [first.replace("    ", "  - ", 1), *others]
    return "\n".join([*lines, ""])


def print_value(indent, key, text, quoted=True):
    """A line; none for what is not known."""
    if text:
        yield f"{indent}{key + ':':<16} {quote(text) if quoted else text}"
