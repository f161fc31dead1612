//===- PassOption.cpp - The options of the pass by name -------------------===//

#include "plugin/ir/PassOption.h"
#include "llvm/ADT/StringMap.h"
#include "llvm/ADT/Twine.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/ErrorHandling.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

cl::Option &llvm::inlinerecursion::findAnyPassOption(StringRef Name) {
  const StringMap<cl::Option *> &Options = cl::getRegisteredOptions();
  const auto Found = Options.find(Name);
  if (Found == Options.end())
    report_fatal_error("InlineRecursion: the pass has no option '" + Name +
                           "'; the plugin was built with another pass",
                       /*gen_crash_diag=*/false);
  return *Found->second;
}

unsigned llvm::inlinerecursion::getPassOption(StringRef Name) {
  return findPassOption<unsigned>(Name);
}

void llvm::inlinerecursion::setPassOption(StringRef Name, unsigned Value) {
  findPassOption<unsigned>(Name) = Value;
}
