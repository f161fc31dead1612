"""Configuration of the tests that run the plugin inside opt and clang.

Every tool is named by its full path: what is tested is the plugin in the LLVM
it was built for, whatever the path of the caller holds.

A test directory needs no registration anywhere; CMake finds the directories
that hold tests. Helpers shared by several of them live in tools/, inputs of a
single directory in its Inputs/.
"""

import os
import shutil
import subprocess
import sys

import lit.formats

config.name = "InlineRecursion"
config.test_format = lit.formats.ShTest(execute_external=False)
config.test_source_root = os.path.dirname(os.path.abspath(__file__))
config.excludes = ["Inputs", "tools"]


def llvm_tool(name):
    return os.path.join(config.llvm_tools_dir, name)


plugin = config.plugin
opt = llvm_tool("opt")
tools = os.path.join(config.test_source_root, "tools")
# The interpreter itself, where CMake may have found a script that looks for one.
python = sys.executable

# opt only warns about a plugin that it cannot load and goes on without, and then
# a test that expects "nothing happens" would pass.
loads = subprocess.run(
    [opt, f"-load-pass-plugin={plugin}", "-passes=inlinerecursion",
     "-disable-output", os.devnull],
    capture_output=True, text=True)
if loads.returncode != 0:
    lit_config.fatal(f"{opt} cannot load {plugin}: build the project first\n"
                     f"{loads.stderr}")

# What is not installed by default; scripts/setup.sh --all does it.
if shutil.which("libtool"):
    config.available_features.add("libtool")

# They are replaced one after the other, each wherever its name stands, so a name
# that another one starts with comes after it.
config.substitutions += [
    ("%plugin", plugin),
    # The pass under the new and under the legacy pass manager.
    ("%opt_path", opt),
    ("%opt", f"{opt} -load-pass-plugin={plugin} -verify-each"),
    ("%legacy_opt",
     f"{opt} -load {plugin} -enable-new-pm=0 -verify-each"),
    # -load comes on top of -fpass-plugin so that -mllvm knows the options.
    ("%clang_with_pass",
     f"{llvm_tool('clang')} -fpass-plugin={plugin} -Xclang -load -Xclang"
     f" {plugin}"),
    ("%clangxx", llvm_tool("clang++")),
    ("%clang", llvm_tool("clang")),
    ("%lld", llvm_tool("ld.lld")),
    ("%flang", llvm_tool("flang-new")),
    ("%llvm_bin", config.llvm_tools_dir),
    ("%llvm_libs", os.path.join(config.llvm_tools_dir, "..", "lib")),
    ("%python", python),
    # IR functions with exact counts; see the docstrings of the two scripts.
    ("%bulk", f"{python} {os.path.join(tools, 'bulk.py')}"),
    # Programs that must do the same with and without the plugin.
    ("%compare",
     f"{python} {os.path.join(tools, 'compare.py')}"
     f" --bin {config.llvm_tools_dir} --plugin {plugin} --scratch %t.dir"),
]
# What the plugin did to a whole program, from a checkout.
config.substitutions.append(
    ("%report", f"{python} "
     + os.path.join(config.test_source_root, "..", "scripts", "inlinerecursion-report")))
# What plan files say, and what is wrong with them.
config.substitutions.append(
    ("%plan_tool", f"{python} "
     + os.path.join(config.test_source_root, "..", "scripts", "inlinerecursion-plan")))
# The search for the best plan, by the Python that Debian has the libraries for.
config.substitutions.append(
    ("%tune", os.path.join(config.test_source_root, "..", "scripts",
                           "inlinerecursion-tune")))
# The commands of a document, run and compared.
config.substitutions.append(
    ("%documented",
     f"{python} {os.path.join(tools, 'run_documented.py')}"
     f" --build {os.path.dirname(os.path.dirname(plugin))} --scratch %t.dir"))
for tool in ["FileCheck", "count", "not", "split-file", "llvm-link",
             "llvm-profdata", "obj2yaml"]:
    config.substitutions.append(
        (rf"(?<![-\w%/.]){tool}(?![-\w.])", llvm_tool(tool)))
