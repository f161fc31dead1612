"""Does a plan fit what a build has written that obeyed it?

Finds functions as the plugin does (plugin/plan/PlanBook.h, plugin/literal/Plans.h), but
among those that the build has decided about: what it wrote has all recursive functions.
"""

from collections import defaultdict

from inlinerecursion_plan.names import find_names


def split_path(path):
    """The components, the last one first."""
    return [part for part in path.split("/") if part][::-1]


def count_common(one, other):
    """How much two paths have in common at their ends."""
    # The same path is closer than one that goes on.
    count = int(one == other != "")
    for a, b in zip(split_path(one), split_path(other)):
        if a != b:
            break
        count += 1
    return count


def is_same_file(entry, written):
    return (not entry.file or not written.file
            or count_common(entry.file, written.file) > 0)


def select_closest(entries, file):
    common = [count_common(entry.file, file) for entry in entries]
    return [entry for entry, count in zip(entries, common) if count == max(common)]


class Matching:
    def __init__(self, entries, written):
        self.entries = entries
        self.written = written
        self.by_name = defaultdict(list)
        for entry in entries:
            self.by_name[entry.name].append(entry)
        self.names = find_names([function.name for function in written])
        self.files = {function.file for function in written}
        self.called = defaultdict(list)
        for function in written:
            for name in self.names[function.name]:
                self.called[name].append(function)
        # For each entry what it is meant for, and what is wrong with it.
        self.meant = defaultdict(list)
        self.complaints = defaultdict(list)
        # For each entry whose file is like that of a function, a closer one.
        self.outdone = {}

    def complain(self, entry, message):
        said = f"{entry.origin}: the plan for '{entry.name}' {message}"
        if said not in self.complaints[entry]:
            self.complaints[entry].append(said)

    def refuse(self, entry, message):
        self.complain(entry, f"does not count: {message}")

    def find(self, function):
        """The entries for a function that was written; several if they cannot be told
        apart."""
        for name in self.names[function.name]:
            found = [entry for entry in self.by_name[name]
                     if entry.where == function.where and is_same_file(entry, function)]
            # A name that is said more exactly counts, wherever it is said.
            best = select_closest(found, function.file)
            self.outdone.update((entry, best[0]) for entry in found
                                if entry not in best)
            if best:
                return best
        return []

    def match(self, function):
        found = self.find(function)
        for entry in found:
            self.meant[entry].append(function)
            if entry.plan != found[0].plan:
                self.refuse(entry, f"so is that of {found[0].origin}, and the two differ;"
                                   " remove one of them")

    def explain_missing(self, entry):
        places = {function.where for function in self.called[entry.name]
                  if is_same_file(entry, function)}
        if closer := self.outdone.get(entry):
            self.refuse(entry, f"that of {closer.origin} is closer to the file of the"
                               " function; remove it, or write the plan anew")
        elif places - {entry.where}:
            self.refuse(entry, f"it is 'where: {entry.where}', and the build decided about"
                               f" the function at {', '.join(sorted(places))}; correct it,"
                               " or write the plan anew")
        elif entry.file and any(count_common(entry.file, file) for file in self.files):
            self.refuse(entry, f"there is no such recursive function in '{entry.file}';"
                               " remove it, or write the plan anew")
        else:
            self.refuse(entry, "the build has decided about no such function"
                               + (f", and about none of '{entry.file}'" if entry.file
                                  else "")
                               + "; remove it, or write the plan anew")

    def compare(self, entry):
        functions = self.meant[entry]
        for file in {function.file for function in functions}:
            symbols = {function.name for function in functions if function.file == file}
            if len(symbols) > 1:
                self.refuse(entry, f"{len(symbols)} functions have that name; write it"
                                   " with its parameters, or as the linker knows it")
                return
        for function in functions:
            if entry.body and function.body and entry.body != function.body:
                self.refuse(entry, "it was made for another body of the function; write"
                                   " the plan anew, or remove its 'body:'")
            elif not entry.plan.is_followed_by(function.plan):
                why = f" ({function.reason})" if function.reason else ""
                self.complain(entry, f"is not followed: it says '{entry.plan}', and"
                                     f" {function.origin} '{function.plan}'{why}; write"
                                     " what can be built, or remove it")

    def run(self):
        for function in self.written:
            self.match(function)
        for entry in self.entries:
            if entry not in self.meant:
                self.explain_missing(entry)
            elif not self.complaints[entry]:
                self.compare(entry)
        return [said for entry in self.entries for said in self.complaints[entry]]


def check_against(entries, written):
    """What is wrong with entries, in their order, of which a build has written
    others."""
    return Matching(entries, written).run()
