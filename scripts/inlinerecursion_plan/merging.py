"""Several plans as one."""

from inlinerecursion_plan.files import Document


class Merged:
    def __init__(self, last_wins):
        self.last_wins = last_wins
        # Key of an entry: the entry, and the module of its document.
        self.found = {}
        self.modules = set()
        self.conflicts = []

    def add(self, document):
        self.modules.add(document.module)
        for entry in document.entries:
            there = self.found.setdefault(entry.key, (entry, document.module))[0]
            if self.last_wins:
                self.found[entry.key] = entry, document.module
            elif (there.plan, there.body) != (entry.plan, entry.body):
                self.conflicts.append(describe_conflict(entry, there))

    def make_documents(self):
        """In the plugin's order."""
        documents = {module: Document(module) for module in sorted(self.modules)}
        for key in sorted(self.found):
            entry, module = self.found[key]
            documents[module].entries.append(entry)
        return list(documents.values())


def describe_conflict(entry, there):
    what = "body" if entry.plan == there.plan else "plan"
    return (f"{entry.origin}: '{entry.name}' has another {what} at {there.origin}; remove"
            " one of them, or have the later one count with --last")


def merge(documents, last_wins=False):
    """One document for each module, and what they do not agree on.

    The same function is one entry if plan and body are the same; otherwise the first one
    stays, or the last one if that is wished for.
    """
    merged = Merged(last_wins)
    for document in documents:
        merged.add(document)
    return merged.make_documents(), merged.conflicts
