"""The working folder.

    state.json      what is known (state.py)
    outputs         what the tuner has written elsewhere
    sources/        the sources as they were at the beginning
    bin/            the compilers that builds call (compilers.py)
    objects/        those of the plugin's default, for other builds
    place/          the build that runs, or is being built, now
    variants/ID/    the other builds

A build's folder holds `id`, `tree` (a copy of the sources, built), `plan.yaml` (what it
obeys), `written.yaml` (what the plugin made of it), `concerned` (the sources that the
plan is about), `calls` (a line for each call of a compiler) and `build.log`. Every build
is made and run at place/tree, so that paths which it contains hold, and two builds that do
the same are the same bytes; others are put aside by renaming.
"""

import fcntl
import hashlib
import os
import shutil
import subprocess
from pathlib import Path

from inlinerecursion_tune.errors import TuneError


def list_files(folder, leave_out=()):
    """All files and links below, in order, but for those left out."""
    for name, folders, files in os.walk(folder):
        folders[:] = sorted(each for each in folders
                            if Path(name, each) not in leave_out)
        # A link to a folder is a file to everyone here.
        links = [each for each in folders if Path(name, each).is_symlink()]
        for each in sorted([*files, *links]):
            path = Path(name, each)
            if path not in leave_out and (path.is_symlink() or path.is_file()):
                yield path


def hash_file(path):
    if path.is_symlink():
        return "link " + os.readlink(path)
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "blake2b").hexdigest()


def hash_files(folder, leave_out=()):
    """One number for all that is in a folder."""
    whole = hashlib.blake2b(digest_size=16)
    for path in list_files(folder, leave_out):
        whole.update(f"{path.relative_to(folder)} {hash_file(path)}\n".encode(
            errors="surrogateescape"))
    return whole.hexdigest()


def format_size(size):
    for unit in ("bytes", "KiB", "MiB"):
        if size < 1024:
            return f"{size:.0f} {unit}"
        size /= 1024
    return f"{size:.1f} GiB"


class Workspace:
    def __init__(self, folder, source, outputs):
        self.folder = folder
        self.source = source
        # What the tuner itself writes is no input of it.
        self.leave_out = {folder, *outputs}
        self.place = folder / "place"
        self.tree = self.place / "tree"
        self.variants = folder / "variants"
        self.sources = folder / "sources"
        self.lock = None

    def open(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        # Nobody commits it by accident.
        (self.folder / ".gitignore").write_text("*\n")
        self.lock = open(self.folder / "lock", "w")
        try:
            fcntl.flock(self.lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise TuneError(f"{self.folder}: another tuner is at work there; name another"
                            " folder with --work") from None
        self.note_outputs()

    def note_outputs(self):
        """What earlier calls have written is no input, either."""
        noted = self.folder / "outputs"
        if noted.exists():
            self.leave_out |= set(map(Path, noted.read_text().splitlines()))
        noted.write_text("".join(f"{path}\n" for path in sorted(self.leave_out)))

    def clear(self):
        for path in self.folder.iterdir():
            if path.is_dir():
                shutil.rmtree(path)
            elif path.name not in ("lock", ".gitignore", "outputs"):
                path.unlink()

    def check_size(self, limit):
        size = sum(path.lstat().st_size
                   for path in list_files(self.source, self.leave_out))
        if size > limit:
            raise TuneError(
                f"{self.source} holds {format_size(size)}, and each build is made in a"
                f" copy of it: name a smaller folder with --source, or allow more than"
                f" {format_size(limit)} with --copy-limit")

    def take_sources(self):
        """Copies the sources, once; what is built later is built of this copy."""
        if self.sources.exists():
            return

        def leave_out(folder, names):
            return [name for name in names
                    if Path(folder, name) in self.leave_out or not (
                        Path(folder, name).is_symlink() or Path(folder, name).is_dir()
                        or Path(folder, name).is_file())]

        new = self.folder / "sources.new"
        shutil.rmtree(new, ignore_errors=True)
        shutil.copytree(self.source, new, symlinks=True, ignore=leave_out)
        new.rename(self.sources)

    def put_aside(self):
        """Makes room at the place."""
        if not self.place.exists():
            return
        name = self.place / "id"
        if not name.exists():
            # Interrupted while it was made.
            shutil.rmtree(self.place)
            return
        self.variants.mkdir(exist_ok=True)
        aside = self.variants / name.read_text()
        shutil.rmtree(aside, ignore_errors=True)
        self.place.rename(aside)

    def begin(self):
        """An unbuilt copy of the sources at the place."""
        self.put_aside()
        self.place.mkdir()
        subprocess.run(["cp", "-a", "--reflink=auto", self.sources, self.tree],
                       check=True)

    def finish(self, variant):
        """From now on it is a build, and can be put aside and come back."""
        new = self.place / "id.new"
        new.write_text(variant)
        new.rename(self.place / "id")

    def activate(self, variant):
        """Brings a build to the place; False if it is not there any more."""
        name = self.place / "id"
        if name.exists() and name.read_text() == variant:
            return True
        if not (self.variants / variant / "id").exists():
            return False
        self.put_aside()
        (self.variants / variant).rename(self.place)
        return True

    def drop(self, variant):
        """Frees the room of a build that is out of the race."""
        name = self.place / "id"
        if name.exists() and name.read_text() == variant:
            self.put_aside()
        shutil.rmtree(self.variants / variant, ignore_errors=True)

    def drop_unless(self, kept, variant):
        if variant != kept:
            self.drop(variant)

    def find_built(self):
        """Files at the place that can be run and that the build has made or changed."""
        for path in list_files(self.tree):
            if path.is_symlink() or not os.access(path, os.X_OK):
                continue
            source = self.sources / path.relative_to(self.tree)
            if not source.is_file() or hash_file(source) != hash_file(path):
                yield path
