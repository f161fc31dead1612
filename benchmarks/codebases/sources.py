"""Fetches and unpacks source packages of the distribution that this machine runs.

Source packages are usually not switched on.  A copy of the machine's configured
package sources, with `deb` turned into `deb-src`, goes into the cache directory
together with everything that apt downloads for it; the machine's own
configuration and package lists are neither changed nor needed.

Only the upstream archive is taken, without the distribution's patches: what is
measured is the code as its authors released it.

What is there already is not fetched again, so after the first run no network is
needed.
"""

import hashlib
import re
import shutil
import subprocess
from pathlib import Path

SYSTEM_SOURCES = Path("/etc/apt")
OS_RELEASE = Path("/etc/os-release")
FETCH_SECONDS = 300


class CodebasesError(Exception):
    """One line for the user."""


def read_codename():
    found = re.search(r"^VERSION_CODENAME=(\w+)", OS_RELEASE.read_text(), re.M)
    if not found:
        raise CodebasesError(f"{OS_RELEASE} names no release; this needs Debian")
    return found[1]


def is_of_release(suites, codename):
    """Third parties have no source packages; their suites have other names."""
    return any(re.match(rf"{codename}\b", suite) for suite in suites)


def convert_lines(text, codename):
    """The one-line format: deb [options] URI suite component..."""
    converted = []
    for line in text.splitlines():
        found = re.match(r"deb\s+(\[.*?\]\s+)?(\S+)\s+(\S+)\s+(.+)", line.strip())
        if found and is_of_release([found[3]], codename):
            converted.append(
                f"deb-src {found[1] or ''}{found[2]} {found[3]} {found[4]}")
    return "\n".join(converted) + "\n" if converted else ""


def convert_stanzas(text, codename):
    """The format of fields, in stanzas with an empty line between."""
    uncommented = re.sub(r"^#.*\n?", "", text, flags=re.M)
    converted = []
    for stanza in re.split(r"\n\s*\n", uncommented):
        types = re.search(r"^Types:(.*)", stanza, re.M | re.I)
        suites = re.search(r"^Suites:(.*)", stanza, re.M | re.I)
        if (types and suites and "deb" in types[1].split()
                and is_of_release(suites[1].split(), codename)):
            converted.append(stanza[:types.start()] + "Types: deb-src"
                             + stanza[types.end():])
    return "\n\n".join(part.strip("\n") for part in converted) + "\n" \
        if converted else ""


class SourcePackages:
    """The directory of everything fetched, and the way to fetch more."""

    def __init__(self, cache, progress):
        self.cache = cache
        self.progress = progress
        self.apt = cache / "apt"
        self.updated = False

    def apt_options(self):
        settings = {
            "Dir::Etc::sourcelist": "/dev/null",
            "Dir::Etc::sourceparts": self.apt / "sources",
            "Dir::State::lists": self.apt / "lists",
            "Dir::Cache": self.apt / "cache",
            "APT::Sandbox::User": "root",
            "APT::Update::Error-Mode": "any",
            "Acquire::Retries": 2,
        }
        return [word for name, value in settings.items()
                for word in ("-o", f"{name}={value}")]

    def write_configuration(self):
        codename = read_codename()
        for name in ("sources", "lists/partial", "cache/archives/partial"):
            (self.apt / name).mkdir(parents=True, exist_ok=True)
        count = 0
        listed = [SYSTEM_SOURCES / "sources.list"]
        listed += sorted((SYSTEM_SOURCES / "sources.list.d").glob("*"))
        for path in listed:
            if not path.is_file() or path.suffix not in (".list", ".sources"):
                continue
            convert = (convert_lines if path.suffix == ".list"
                       else convert_stanzas)
            text = convert(path.read_text(), codename)
            if text:
                (self.apt / "sources" / path.name).write_text(text)
                count += 1
        if not count:
            raise CodebasesError(
                f"no package source for {codename} is configured in "
                f"{SYSTEM_SOURCES}; source packages cannot be fetched")

    def run_apt(self, what, arguments, directory):
        try:
            done = subprocess.run(
                ["apt-get", "-q", *self.apt_options(), *arguments],
                cwd=directory, stdin=subprocess.DEVNULL, text=True,
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                timeout=FETCH_SECONDS)
        except FileNotFoundError:
            raise CodebasesError("apt-get is not installed; the source packages "
                                 "come from a Debian machine's package sources")
        except subprocess.TimeoutExpired:
            raise CodebasesError(f"{what} took more than {FETCH_SECONDS} s; "
                                 "is there a network connection?")
        if done.returncode == 0:
            return
        errors = re.findall(r"^E: (.*)", done.stdout, re.M)
        reason = errors[0] if errors else f"exit status {done.returncode}"
        raise CodebasesError(f"{what} failed ({reason}); "
                             "is there a network connection?")

    def update(self):
        if self.updated:
            return
        self.progress("updating the list of source packages")
        self.write_configuration()
        self.run_apt("fetching the list of source packages", ["update"],
                     self.cache)
        self.updated = True

    def find_archive(self, package):
        found = [path for path in self.archives.glob(f"{package}_*.orig.tar.*")
                 if path.suffix != ".asc"]
        return found[0] if found else None

    @property
    def archives(self):
        return self.cache / "archives"

    def fetch(self, package):
        """The upstream archive of the package, from the cache or the network."""
        self.archives.mkdir(parents=True, exist_ok=True)
        archive = self.find_archive(package)
        if archive:
            return archive
        self.update()
        self.progress(f"fetching {package}")
        source = ["source", "--download-only", "--tar-only"]
        try:
            self.run_apt(f"fetching the source package {package}",
                         [*source, package], self.archives)
        except CodebasesError:
            # The newest version may be listed but not yet, or no longer, held
            # by the mirror; the release's own is older and stays.
            self.run_apt(f"fetching the source package {package}",
                         [*source, f"{package}/{read_codename()}"],
                         self.archives)
        archive = self.find_archive(package)
        if not archive:
            raise CodebasesError(f"the source package {package} holds no "
                                 "upstream archive")
        return archive

    def prepare(self, name, package, commands):
        """The directory of unpacked sources, with commands run in it once."""
        archive = self.fetch(package)
        directory = self.cache / "sources" / name
        stamp = directory / ".prepared"
        mark = f"{archive.name} {hashlib.sha256(commands.encode()).hexdigest()}\n"
        if stamp.exists() and stamp.read_text() == mark:
            return directory
        self.progress(f"unpacking {archive.name}")
        shutil.rmtree(directory, ignore_errors=True)
        directory.mkdir(parents=True)
        subprocess.run(["tar", "-xf", archive, "-C", directory], check=True)
        flatten(directory)
        log = self.cache / "sources" / f"{name}.log"
        with open(log, "wb") as output:
            done = subprocess.run(
                ["bash", "-euo", "pipefail", "-c", commands], cwd=directory,
                stdin=subprocess.DEVNULL, stdout=output,
                stderr=subprocess.STDOUT)
        if done.returncode:
            raise CodebasesError(f"{name}: configuring the sources failed; "
                                 f"see {log}")
        stamp.write_text(mark)
        return directory

    def version(self, package):
        name = self.find_archive(package).name
        return name[len(package) + 1:name.index(".orig.tar")]


def flatten(directory):
    """Archives usually hold one directory; its contents are wanted."""
    contents = list(directory.iterdir())
    if len(contents) != 1 or not contents[0].is_dir():
        return
    inner = contents[0].rename(directory / ".unpacked")
    for path in inner.iterdir():
        path.rename(directory / path.name)
    inner.rmdir()
