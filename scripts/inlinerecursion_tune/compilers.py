"""The compilers that builds call: clang and flang, with what the place wants of them.

They are scripts, the same for every build. What differs is in configuration files at the
place, which clang reads without complaint where an option does not apply, as in a call
that only links.
"""

import re
import shlex
import shutil
from dataclasses import dataclass
from pathlib import Path

from inlinerecursion_tune.errors import TuneError

# Assembler sources know no options of a plugin.
CLANG = """\
#!/bin/sh
echo "$*" >> {place}/calls
case " $* " in
*.s\\ *|*.S\\ *|*.sx\\ *) exec {compiler} "$@" ;;
*" -c "*) compiler={compiler}; . {folder}/bin/reuse ;;
*" -S "*|*" -E "*) ;;
*" -fuse-ld=lld "*)
  case " $* " in *" -flto"*)
    exec {compiler} --config={place}/compile.cfg --config={place}/link.cfg "$@" ;;
  esac ;;
esac
exec {compiler} --config={place}/compile.cfg "$@"
"""
# A file that a plan is not about comes out as with the plugin's default: that build keeps
# its objects, under the hash of folder and command line, and others take them.
REUSE = """\
# Ends the compiler's script if it knows the object, or has compiled it.
reusable() {{
  source= object= listing= wants=
  for word; do
    case $wants in
    object) object=$word; wants=; continue ;;
    listing) listing=$word; wants=; continue ;;
    skipped) wants=; continue ;;
    esac
    case $word in
    -o) wants=object ;;
    -MF) wants=listing ;;
    -MD|-MMD) listing=${{listing:-beside}} ;;
    -MT|-MQ|-I|-D|-U|-include|-isystem|-idirafter|-iquote|-Xclang|-mllvm|-arch)
      wants=skipped ;;
    -o*|-MF*|-S|-E|-M|-MM|-|@*|-x*|-save-temps*|--coverage|-fprofile*|-f*coverage*|\\
    -gsplit*|-fsave*|-fmodule*|-emit*|-MJ*) return 1 ;;
    *.c|*.cc|*.cpp|*.cxx|*.C|*.c++|*.cp|*.CPP)
      [ -z "$source" ] || return 1
      source=$word ;;
    esac
  done
  [ "$source" ] || return 1
  name=${{source##*/}}
  object=${{object:-${{name%.*}}.o}}
  [ "$listing" != beside ] || listing=${{object%.*}}.d
}}
if [ -e {place}/concerned ] && reusable "$@"; then
  known={folder}/objects/$(printf '%s\\n' "$0" "$PWD" "$@" | sha256sum | cut -c1-32)
  if [ -e $known/object ] && ! grep -qxF -e "$name" {place}/concerned; then
    echo "known: $name" >> {place}/calls
    cp $known/object "$object" || exit
    [ -z "$listing" ] || cp $known/listing "$listing"
    exit
  fi
  "$compiler" --config={place}/compile.cfg "$@" || exit
  if [ -e {place}/keeps ] && [ ! -e $known ]; then
    mkdir -p {folder}/objects $known.$$
    cp "$object" $known.$$/object
    [ -z "$listing" ] || cp "$listing" $known.$$/listing
    mv -T $known.$$ $known 2>/dev/null || rm -rf $known.$$
  fi
  exit 0
fi
"""
# flang reads options behind -mllvm before it loads plugins, so the plugin is there
# before all else; the linker, which flang starts, must not get it.
FLANG = """\
#!/bin/sh
echo "$*" >> {place}/calls
case " $* " in
*" -c "*|*" -S "*)
  [ -s {place}/flang.cfg ] && export LD_PRELOAD={plugin}
  exec {compiler} --config={place}/flang.cfg "$@" ;;
esac
exec {compiler} "$@" -L{libraries}
"""
NAMES = {"cc": ("clang", CLANG), "cxx": ("clang++", CLANG), "fc": ("flang-new", FLANG)}
PROFILE = "-fprofile-instr-generate\n"


@dataclass
class Tools:
    """Where the plugin and the LLVM that it is for are."""

    plugin: Path
    llvm: Path

    def find(self, name):
        """A tool of this LLVM, or None."""
        path = self.llvm / name
        return path if path.exists() else None

    def find_header(self):
        """The option for the folder of inlinerecursion/request.h, which sources may need
        without the plugin as well: that of an installation, or of a checkout."""
        for folder in (self.plugin.parents[1], *self.plugin.parents[2:4]):
            if (folder / "include/inlinerecursion/request.h").exists():
                return f"-idirafter {folder / 'include'}\n"
        return ""

    def describe(self):
        return f"{self.plugin} {self.llvm}"


def find_plugin(here):
    """The plugin of this checkout, or of this installation."""
    for folder in (here.parent / "build/release/lib", here.parent / "lib",
                   *sorted((here.parent / "lib").glob("*-linux-gnu"))):
        if found := sorted(folder.glob("InlineRecursion-*.so")):
            return found[-1]
    raise TuneError("the plugin is not found: name it with --plugin FILE", 2)


def find_llvm(plugin):
    match = re.fullmatch(r"InlineRecursion-(\d+)\.so", plugin.name)
    major = match[1] if match else "16"
    folder = Path(f"/usr/lib/llvm-{major}/bin")
    if not folder.is_dir():
        clang = shutil.which(f"clang-{major}")
        if not clang:
            raise TuneError(f"clang-{major} is not found: install it, or name the folder"
                            " of its LLVM with --llvm DIR", 2)
        folder = Path(clang).resolve().parent
    return folder


def write_compilers(workspace, tools):
    """{"cc": path, ...} of those that this LLVM has."""
    folder = workspace.folder / "bin"
    folder.mkdir(exist_ok=True)
    (folder / "reuse").write_text(
        REUSE.format(place=workspace.place, folder=workspace.folder))
    written = {}
    for name, (tool, script) in NAMES.items():
        compiler = tools.find(tool)
        if not compiler:
            continue
        written[name] = folder / name
        written[name].write_text(script.format(
            compiler=shlex.quote(str(compiler)), place=workspace.place,
            plugin=shlex.quote(str(tools.plugin)),
            libraries=shlex.quote(str(tools.llvm.parent / "lib")),
            folder=workspace.folder))
        written[name].chmod(0o755)
    return written


def write_configuration(workspace, tools, with_plugin, instrumented=False):
    """What the compilers are to do in the build that begins."""
    place, plugin = workspace.place, tools.plugin
    options = [f"-inlinerecursion-plan={place}/plan.yaml",
               f"-inlinerecursion-write-plan={place}/written.yaml"]
    load = f"-fpass-plugin={plugin}\n"
    behind = "".join(f"-mllvm {option}\n" for option in options)
    link = "".join(f"-Wl,-mllvm,{option}\n" for option in [f"-load={plugin}", *options])
    # A plan that is refused is no reason for -Werror to end the build.
    compile_ = f"{load}-Xclang -load -Xclang {plugin}\n-Wno-error=pass-failed\n{behind}"
    if instrumented:
        compile_ = PROFILE
    elif not with_plugin:
        compile_ = ""
    texts = {
        "compile.cfg": tools.find_header() + compile_,
        "link.cfg": f"-Wl,--load-pass-plugin={plugin}\n{link}" if with_plugin else "",
        "flang.cfg": load + behind if with_plugin else "",
    }
    for name, text in texts.items():
        (place / name).write_text(text)


def write_concerned(workspace, modules, keeps):
    """The sources that a build's plan is about; every other object may be known."""
    names = sorted({Path(module).name for module in modules})
    (workspace.place / "concerned").write_text("".join(f"{name}\n" for name in names))
    if keeps:
        (workspace.place / "keeps").touch()
