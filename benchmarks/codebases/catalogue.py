"""The code bases: where they come from, what is compiled, how they check themselves.

A unit is a source file; a program is linked from units.  Patterns are relative
to the unpacked sources, and one that starts with `!` takes files out again.

Checks are shell scripts, run with `-euo pipefail` in an empty directory.  They
find the programs in $BIN, the sources in $SRC, and the directory checks/ in
$CHECKS.  A check has passed if its exit status is 0 and it printed what it
printed with the plain compiler's program.  Where the programs' authors wrote
tests that judge themselves, those are used.
"""

from dataclasses import dataclass


@dataclass(frozen=True)
class CodeBase:
    name: str
    package: str  # the name of the source package
    programs: dict  # name: patterns of its units
    check: str
    prepare: str = ":"  # run once in the unpacked sources
    flags: tuple = ()
    libraries: tuple = ()
    # Units whose instructions `cost` counts: neither the smallest nor those
    # that take minutes, and with recursive functions where there are any.
    sample: tuple = ()


def make_cjson_programs():
    plain = ("parse_examples parse_number parse_hex4 parse_string parse_array "
             "parse_object parse_value print_string print_number print_array "
             "print_object print_value misc_tests parse_with_opts "
             "compare_tests cjson_add readme_examples minify_tests").split()
    utils = "json_patch_tests old_utils_tests misc_utils_tests".split()
    # The tests include cJSON.c, to get at its local functions.
    programs = {name: (f"tests/{name}.c", "tests/unity/src/unity.c")
                for name in plain}
    programs.update({name: (f"tests/{name}.c", "tests/unity/src/unity.c",
                            "cJSON_Utils.c") for name in utils})
    return programs


PCRE2_UNITS = tuple(
    f"src/pcre2_{name}.c" for name in
    ("auto_possess chartables compile config context convert dfa_match error "
     "extuni find_bracket jit_compile maketables match match_data newline "
     "ord2utf pattern_info script_run serialize string_utils study substitute "
     "substring tables ucd valid_utf xclass").split())

ZLIB_UNITS = ("*.c",)
EXPAT_UNITS = ("expat/lib/xmlparse.c", "expat/lib/xmlrole.c",
               "expat/lib/xmltok.c")
MINISAT_UNITS = ("minisat/core/Solver.cc", "minisat/utils/*.cc")

RUN_SCRIPTS = r"""
for script in "$CHECKS"/{scripts}; do
  echo "== ${{script##*/}}"
  {command} "$script"
done
"""

CODE_BASES = (
    CodeBase(
        name="lua",
        package="lua5.4",
        programs={"lua": ("src/*.c", "!src/luac.c"),
                  "luac": ("src/*.c", "!src/lua.c")},
        flags=("-DLUA_COMPAT_5_3", "-DLUA_USE_POSIX"),
        libraries=("-lm",),
        check=RUN_SCRIPTS.format(scripts="*.lua", command="$BIN/lua") + r"""
for script in "$CHECKS"/*.lua; do
  $BIN/luac -o chunk "$script"
  $BIN/luac -l -l chunk | sed 's/0x[0-9a-f]*//g' | cksum
  $BIN/lua chunk | cksum
done
""",
        sample=("src/ltablib.c", "src/lparser.c"),
    ),
    CodeBase(
        name="sqlite3",
        package="sqlite3",
        prepare="""
CC=clang-16 ./configure --disable-tcl --disable-readline
make sqlite3.c shell.c
""",
        programs={"sqlite3": ("sqlite3.c", "shell.c")},
        flags=("-DSQLITE_THREADSAFE=0", "-DSQLITE_OMIT_LOAD_EXTENSION",
               "-DSQLITE_ENABLE_FTS5", "-DSQLITE_ENABLE_RTREE",
               "-DSQLITE_ENABLE_MATH_FUNCTIONS", "-DHAVE_READLINE=0"),
        libraries=("-lm",),
        check=r"""
for script in "$CHECKS"/*.sql; do
  echo "== ${script##*/}"
  $BIN/sqlite3 -batch data.db < "$script"
  $BIN/sqlite3 -batch data.db .dump | cksum
  rm -f data.db
done
""",
    ),
    CodeBase(
        name="zlib",
        package="zlib",
        programs={"example": (*ZLIB_UNITS, "test/example.c"),
                  "minigzip": (*ZLIB_UNITS, "test/minigzip.c")},
        flags=("-I.", "-DHAVE_UNISTD_H", "-D_LARGEFILE64_SOURCE=1"),
        check=r"""
$BIN/example
for level in 1 6 9; do
  cat "$SRC"/*.[ch] "$SRC"/*.pdf > original
  $BIN/minigzip -$level < original > packed.gz
  cksum < packed.gz
  gzip -dc packed.gz | cmp - original
  $BIN/minigzip -d < packed.gz | cmp - original
done
""",
        sample=("trees.c",),
    ),
    CodeBase(
        name="expat",
        package="expat",
        prepare="CC=clang-16 cmake -S expat -B configured",
        programs={"runtests": (*EXPAT_UNITS, "expat/tests/*.c"),
                  "xmlwf": (*EXPAT_UNITS, "expat/xmlwf/xmlwf.c",
                            "expat/xmlwf/xmlfile.c", "expat/xmlwf/codepage.c",
                            "expat/xmlwf/unixfilemap.c")},
        flags=("-Iconfigured", "-Iexpat/lib", "-DHAVE_EXPAT_CONFIG_H"),
        libraries=("-lm",),
        check=r"""
$BIN/runtests
$BIN/xmlwf "$SRC"/testdata/largefiles/recset.xml
python3 "$CHECKS"/nested_xml.py > nested.xml
sed '7s/<n //' nested.xml > broken.xml
for file in nested broken; do
  for option in -c -m -x "-n -r"; do
    mkdir -p out
    $BIN/xmlwf $option -d out $file.xml || echo "exit status $?"
    test ! -f out/$file.xml || cksum < out/$file.xml
    rm -rf out
  done
done
""",
        sample=("expat/lib/xmlparse.c",),
    ),
    CodeBase(
        name="bzip2",
        package="bzip2",
        programs={"bzip2": tuple(f"{name}.c" for name in (
            "blocksort huffman crctable randtable compress decompress bzlib "
            "bzip2").split())},
        flags=("-D_FILE_OFFSET_BITS=64",),
        check=r"""
for number in 1 2 3; do
  $BIN/bzip2 -$number < "$SRC"/sample$number.ref | cmp - "$SRC"/sample$number.bz2
  small=$([ $number = 3 ] && echo -s || true)
  $BIN/bzip2 -d $small < "$SRC"/sample$number.bz2 | cmp - "$SRC"/sample$number.ref
done
cat "$SRC"/*.[ch] "$SRC"/*.pdf | $BIN/bzip2 -9 | cksum
""",
        sample=("bzip2.c",),
    ),
    CodeBase(
        name="cjson",
        package="cjson",
        programs=make_cjson_programs(),
        flags=("-Itests/unity/src", "-Itests"),
        libraries=("-lm",),
        check=r"""
cp -r "$SRC"/tests/inputs "$SRC"/tests/json-patch-tests .
for program in "$BIN"/*; do $program; done
""",
        sample=("cJSON_Utils.c",),
    ),
    CodeBase(
        name="mujs",
        package="mujs",
        programs={"mujs": ("main.c", "js*.c", "utf.c", "regexp.c")},
        flags=("-std=c99", "-D_XOPEN_SOURCE=700"),
        libraries=("-lm",),
        check=RUN_SCRIPTS.format(scripts="*.js", command="$BIN/mujs"),
        sample=("jsparse.c", "jscompile.c"),
    ),
    CodeBase(
        name="duktape",
        package="duktape",
        programs={"duk": ("src/duktape.c", "examples/cmdline/duk_cmdline.c",
                          "extras/print-alert/duk_print_alert.c")},
        flags=("-std=c99", "-Isrc", "-Iextras/print-alert",
               "-DDUK_CMDLINE_PRINTALERT_SUPPORT"),
        libraries=("-lm",),
        check=RUN_SCRIPTS.format(scripts="*.js", command="$BIN/duk"),
    ),
    CodeBase(
        name="tinyscheme",
        package="tinyscheme",
        programs={"scheme": ("scheme.c", "dynload.c")},
        flags=("-DSUN_DL=1", "-DUSE_DL=1", "-DUSE_MATH=1",
               "-DUSE_ASCII_NAMES=0"),
        libraries=("-lm", "-ldl"),
        check='export TINYSCHEMEINIT="$SRC"/init.scm\n'
        + RUN_SCRIPTS.format(scripts="*.scm", command="$BIN/scheme"),
        sample=("scheme.c",),
    ),
    CodeBase(
        name="pcre2",
        package="pcre2",
        prepare="""
cp src/config.h.generic src/config.h
cp src/pcre2.h.generic src/pcre2.h
cp src/pcre2_chartables.c.dist src/pcre2_chartables.c
""",
        programs={"pcre2test": (*PCRE2_UNITS, "src/pcre2posix.c",
                                "src/pcre2test.c")},
        flags=("-Isrc", "-DHAVE_CONFIG_H", "-DPCRE2_CODE_UNIT_WIDTH=8",
               "-DSUPPORT_PCRE2_8", "-DSUPPORT_UNICODE", "-DHAVE_UNISTD_H",
               "-DHAVE_STRERROR", "-DHAVE_MEMMOVE", "-DHAVE_STDINT_H"),
        check=r"""
ln -s "$BIN"/pcre2test pcre2test
srcdir="$SRC" sh "$SRC"/RunTest
""",
        sample=("src/pcre2_study.c",),
    ),
    CodeBase(
        name="tcc",
        package="tcc",
        prepare="./configure --cc=clang-16",
        programs={"tcc": ("tcc.c",)},
        flags=("-DONE_SOURCE=1", "-I."),
        libraries=("-lm", "-ldl", "-lpthread"),
        # Both compilers must make the same object files, byte by byte.
        check=r"""
for file in "$SRC"/tcc.c "$SRC"/tests/tests2/*.c; do
  name=${file##*/}
  if $BIN/tcc -B"$SRC" -I"$SRC" -I"$SRC"/include -DONE_SOURCE=1 -w -c "$file" -o $name.o 2> /dev/null
  then echo "$name $(cksum < $name.o)"
  else echo "$name exit status $?"
  fi
done
""",
    ),
    CodeBase(
        name="tree",
        package="tree",
        programs={"tree": ("*.c",)},
        flags=("-std=c11", "-D_LARGEFILE64_SOURCE", "-D_FILE_OFFSET_BITS=64",
               "-DLINUX", "-D_GNU_SOURCE"),
        check=r"""
cd "$SRC"
for options in "" -a -d "-L 1" "-P *.c --prune" "-J" "-X" "-H ." "-f -i" \
    "--du -h" "-Q --filesfirst" "-v -r" "--fromfile README"; do
  LC_ALL=C $BIN/tree $options
done
""",
        sample=("list.c", "file.c"),
    ),
    CodeBase(
        name="minisat",
        package="minisat2",
        # A friend declaration with a default argument must be a definition.
        prepare="""
sed -i 's/friend Lit mkLit(Var var, bool sign = false);/friend Lit mkLit(Var var, bool sign);/
s/^inline  Lit  mkLit     (Var var, bool sign) {/inline  Lit  mkLit     (Var var, bool sign = false) {/' minisat/core/SolverTypes.h
""",
        programs={"core": (*MINISAT_UNITS, "minisat/core/Main.cc"),
                  "simp": (*MINISAT_UNITS, "minisat/simp/Main.cc",
                           "minisat/simp/SimpSolver.cc")},
        flags=("-I.", "-D__STDC_LIMIT_MACROS", "-D__STDC_FORMAT_MACROS",
               "-Wno-reserved-user-defined-literal"),
        libraries=("-lz", "-lstdc++", "-lm"),
        # 10 says satisfiable and 20 not; the model and the proof's length must
        # agree.
        check=r"""
for holes in 5 7 8; do
  python3 "$CHECKS"/pigeons.py $holes $holes > satisfiable.cnf
  python3 "$CHECKS"/pigeons.py $((holes + 1)) $holes > unsatisfiable.cnf
  for program in core simp; do
    for problem in satisfiable unsatisfiable; do
      $BIN/$program $problem.cnf result > statistics 2> /dev/null || echo "$program $?"
      cat result
      grep -E '^(restarts|conflicts|decisions|propagations)' statistics |
        sed 's/ *(.*//'
    done
  done
done
""",
        sample=("minisat/simp/SimpSolver.cc",),
    ),
    CodeBase(
        name="tinyxml2",
        package="tinyxml2",
        programs={"xmltest": ("tinyxml2.cpp", "xmltest.cpp")},
        libraries=("-lstdc++",),
        check=r"""
cp -r "$SRC"/resources .
mkdir -p resources/out
$BIN/xmltest | grep -v -i 'milli-seconds\|microseconds\|nano'
""",
        sample=("tinyxml2.cpp",),
    ),
    CodeBase(
        name="jsoncpp",
        package="libjsoncpp",
        programs={"jsontest": ("src/lib_json/*.cpp", "src/test_lib_json/*.cpp")},
        flags=("-Iinclude",),
        libraries=("-lstdc++", "-lm"),
        check="$BIN/jsontest",
        sample=("src/lib_json/json_writer.cpp",),
    ),
)
