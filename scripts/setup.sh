#!/usr/bin/env bash
# Makes the project ready for use: installs missing Debian packages, configures
# and builds.
#
#   scripts/setup.sh [--all] [TARGET]     TARGET defaults to everything
#
# With --all, what only some tests need is installed, too: the other LLVMs that they
# load the plugin into, libtool, ccache and distcc.  Without it, those tests leave out what is
# missing and say so.
#
# Every step is skipped when its result is already there, so that a repeated
# call costs a fraction of a second: packages are looked up with one
# dpkg-query, CMake runs only when build/release is not configured for this
# checkout, and Ninja knows what there is to build (it also re-runs CMake when a
# CMakeLists.txt has changed or a globbed file came or went).
#
# apt, CMake and Ninja write to build/setup.log, which is shown only when the
# step fails; everything else is said on stderr, so that callers own stdout.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
root=$PWD
all=
if [[ ${1-} == --all ]]; then
  all=yes
  shift
fi
target=${1-}

# LLVM's shared library brings what LLVM itself is linked with, so none of the
# libraries behind LLVM's static archives (zstd, libedit, curl) is needed.
packages=(llvm-16-dev llvm-16-tools clang-16 lld-16 flang-16 libclang-rt-16-dev
          cmake ninja-build g++ gcc python3 python3-yaml libgtest-dev libgmock-dev
          graphviz python3-scipy python3-matplotlib python3-tqdm)
if [[ $all ]]; then
  packages+=(libtool-bin ccache distcc)
  for version in 14 15 19; do
    packages+=("llvm-$version" "clang-$version" "lld-$version")
  done
fi

say() { echo "setup: $*" >&2; }
fail() { echo "setup: error: $*" >&2; exit 1; }

for tool in apt-get dpkg-query; do
  command -v "$tool" >/dev/null ||
    fail "$tool not found: packages can be set up on Debian 12 only;" \
      "elsewhere, install LLVM 16 with clang, lld and flang, CMake, Ninja and" \
      "GoogleTest, then run cmake --preset release"
done

mkdir -p build 2>/dev/null && touch build/setup.lock 2>/dev/null ||
  fail "cannot write to $root/build: make the checkout writable"
log=$root/build/setup.log

# Two runs at once would fight over apt's lock and over the build directory.
exec 9>build/setup.lock
if ! flock --nonblock 9; then
  say "waiting for another set-up of this checkout"
  flock 9
fi

# give_up LINES WHAT: show the last LINES lines of the log, say what failed.
give_up() {
  tail -n "$1" "$log" >&2
  fail "$2 failed (full output: $log)"
}

# Packages dpkg has never heard of make dpkg-query fail; they are absent from
# its output all the same.
installed=" $(dpkg-query -W -f='${db:Status-Status}=${Package} ' \
  "${packages[@]}" 2>/dev/null || true)"
missing=()
for package in "${packages[@]}"; do
  [[ $installed == *" installed=$package "* ]] || missing+=("$package")
done

if ((${#missing[@]})); then
  if [[ $(id -u) == 0 ]]; then
    become=()
  elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
    become=(sudo -n)
  else
    fail "packages are missing and need root, run:" \
      "sudo apt-get update && sudo apt-get install -y" \
      "--no-install-recommends ${missing[*]}"
  fi
  apt=("${become[@]}" env DEBIAN_FRONTEND=noninteractive apt-get
       -o DPkg::Lock::Timeout=300)
  say "installing ${missing[*]}"
  # A broken third-party source fails the update although the packages may
  # still be found; whether they are is for the installation to say.
  "${apt[@]}" update >"$log" 2>&1 </dev/null || cat "$log" >&2
  "${apt[@]}" install -y --no-install-recommends "${missing[@]}" \
    >"$log" 2>&1 </dev/null || give_up 20 "apt-get install ${missing[*]}"
fi

# A copied or moved checkout carries a build directory of the old place along,
# which would silently build the old place's sources.
configured() {
  [[ build/release/build.ninja -nt CMakePresets.json ]] &&
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" build/release/CMakeCache.txt
}
if ! configured; then
  say "configuring"
  cmake --preset release --fresh >"$log" 2>&1 </dev/null ||
    give_up 40 "cmake --preset release"
fi

# Says so, once, when it turns out that something is being compiled.
cmake --build --preset release ${target:+--target "$target"} 2>&1 </dev/null |
  tee "$log" |
  sed -un '/^\[.*\] Building /{s/.*/setup: building/p; :rest; n; b rest}' >&2 ||
  give_up 200 "cmake --build --preset release"
