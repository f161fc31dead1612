//===- OneCopy.cpp - Is another copy of the plugin in this process? -------===//
//
/// \file
/// A library that is loaded twice by the same path is there once, and so it is
/// by two names of one file.  Two files are two libraries: the one that a
/// configuration file names, say, and the one of a build tree behind
/// -fpass-plugin=.  Both register the same options, and LLVM ends the process
/// over that, with words about options that nobody has given.
///
///   clang --config=inlinerecursion.cfg -fpass-plugin=build/...-16.so
///                  |                                 |
///                  v                                 v
///         its options are LLVM's             finds them there: says which two
///         by now                             files, and what to do
///
/// So this runs before the second copy's options come to life, and behind
/// VersionCheck.cpp, which has made sure that LLVM may be asked.  The option
/// that is there lies in the memory of the other copy, which tells its path.
///
//===----------------------------------------------------------------------===//

#include "llvm/ADT/StringMap.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/Signals.h"
#include "llvm/Support/WithColor.h"
#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <unistd.h>

using namespace llvm;

/// One that stands in the pass, so that a compiler which the pass is linked
/// into is a copy as well.
static constexpr StringLiteral OneOfOurs = "inline-recursion-opt-level";

/// The file that \p Address comes from, by its full name if it has one.
static std::string findFile(const void *Address) {
  Dl_info Info;
  if (!dladdr(Address, &Info) || !Info.dli_fname)
    return "a file that is not known";
  char Path[PATH_MAX];
  return realpath(Info.dli_fname, Path) ? Path : Info.dli_fname;
}

/// Right behind the check of the version, in front of all options.
__attribute__((constructor(102))) static void checkOnlyCopy() {
  const StringMap<cl::Option *> &Registered = cl::getRegisteredOptions();
  const auto Other = Registered.find(OneOfOurs);
  if (Other == Registered.end())
    return;
  WithColor::error(errs(), "InlineRecursion")
      << "loaded from two files, " << findFile(Other->second) << " and "
      << findFile(reinterpret_cast<const void *>(&checkOnlyCopy))
      << ": name one of them only (a configuration file and the flags of a "
         "CMake package load the plugin themselves)\n";
  // As LLVM does when it gives up: half-written files go away.
  sys::RunInterruptHandlers();
  _exit(1);
}
