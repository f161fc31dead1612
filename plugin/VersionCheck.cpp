//===- VersionCheck.cpp - Is this the LLVM that it was built for? ---------===//
//
/// \file
/// A plugin calls LLVM through C++ interfaces, whose layout changes with every
/// major version: in another one it crashes, or runs for ever, as soon as it
/// touches anything.  So this runs before everything else when the library is
/// loaded, and touches nothing of LLVM but one C function.
///
/// LLVM 16 and later tell their version (LLVMGetVersion in llvm-c/Core.h).  Of
/// earlier ones the name of the shared library tells, as it does in every
/// distribution.  Where neither is to be found, as in a tool that is linked
/// statically and exports nothing, the library is loaded as it is.
///
//===----------------------------------------------------------------------===//

// No header of LLVM's: what is checked is whether any of them is right.
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

namespace {
/// The version of the LLVM in this process, as far as it is known.
struct FoundVersion {
  /// 0 if not known.
  unsigned Major = 0;
  char Text[32] = "";
};
} // namespace

/// Asks LLVM itself.  False if it does not tell.
static bool askLLVM(FoundVersion &Found) {
  using GetVersionFn = void (*)(unsigned *, unsigned *, unsigned *);
  void *Symbol = dlsym(RTLD_DEFAULT, "LLVMGetVersion");
  if (!Symbol)
    return false;
  unsigned Minor = 0, Patch = 0;
  reinterpret_cast<GetVersionFn>(Symbol)(&Found.Major, &Minor, &Patch);
  snprintf(Found.Text, sizeof(Found.Text), "%u.%u.%u", Found.Major, Minor,
           Patch);
  return true;
}

/// Reads a version off the name of a library, `.../libLLVM-14.so.1`, or off
/// that of the file behind it, `libLLVM-14.0.6.so`.  Ends the walk through the
/// libraries when one is found.
static int readName(dl_phdr_info *Library, size_t, void *Data) {
  static const char Stem[] = "libLLVM-";
  auto &Found = *static_cast<FoundVersion *>(Data);
  char Path[PATH_MAX];
  const char *Names[] = {realpath(Library->dlpi_name, Path),
                         Library->dlpi_name};
  for (const char *Name : Names) {
    const char *Version = Name ? strstr(Name, Stem) : nullptr;
    if (!Version)
      continue;
    Version += strlen(Stem);
    Found.Major = strtoul(Version, nullptr, 10);
    const char *End = strstr(Version, ".so");
    const int Length = End ? int(End - Version) : int(strlen(Version));
    snprintf(Found.Text, sizeof(Found.Text), "%.*s", Length, Version);
    if (Found.Major)
      return 1;
  }
  return 0;
}

/// In front of all other initialisation of the library.
__attribute__((constructor(101))) static void checkVersion() {
  constexpr unsigned BuiltFor = INLINERECURSION_LLVM_MAJOR;
  FoundVersion Found;
  if (!askLLVM(Found))
    dl_iterate_phdr(readName, &Found);
  if (Found.Major == 0 || Found.Major == BuiltFor)
    return;
  fprintf(stderr,
          "InlineRecursion: error: built for LLVM %u, loaded into LLVM %s: use "
          "clang-%u, opt-%u or lld-%u, or build the plugin for LLVM %u\n",
          BuiltFor, Found.Text, BuiltFor, BuiltFor, BuiltFor, Found.Major);
  // Nothing of the process is to run any more.
  _exit(1);
}
