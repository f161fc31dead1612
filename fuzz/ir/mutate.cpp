//===- mutate.cpp - Modules made from others by random changes ------------===//
//
/// \file
/// `inlinerecursion-mutate --count=N --seed=S --out=DIR INPUT...` writes
/// DIR/0.bc to DIR/N-1.bc, each made from one of the inputs (text or bitcode)
/// by up to --steps random changes.  The same arguments give the same files.  A
/// module that the verifier no longer accepts is changed again from the start,
/// with other changes.
///
//===----------------------------------------------------------------------===//

#include "Mutations.h"
#include "llvm/Bitcode/BitcodeWriter.h"
#include "llvm/IR/LLVMContext.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/Verifier.h"
#include "llvm/IRReader/IRReader.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/FileSystem.h"
#include "llvm/Support/InitLLVM.h"
#include "llvm/Support/SourceMgr.h"
#include "llvm/Support/WithColor.h"
#include <random>

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::list<std::string> Inputs(cl::Positional, cl::OneOrMore,
                                    cl::desc("INPUT..."));
static cl::opt<unsigned> Count("count", cl::init(1),
                               cl::desc("How many modules to write"));
static cl::opt<unsigned> Seed("seed", cl::init(1), cl::desc("Random seed"));
static cl::opt<unsigned> Steps("steps", cl::init(20),
                               cl::desc("Most changes to a module"));
static cl::opt<std::string> Out("out", cl::Required,
                                cl::desc("Directory for the modules"));

static constexpr size_t MaxSize = 100000;

/// One module from one input, or null if the input is no module.
static std::unique_ptr<Module> makeModule(const std::string &Input,
                                          LLVMContext &Context,
                                          IRMutator &Mutator,
                                          std::mt19937 &Random) {
  for (unsigned Attempt = 0;; ++Attempt) {
    SMDiagnostic Error;
    std::unique_ptr<Module> M = parseIRFile(Input, Error, Context);
    if (!M || verifyModule(*M))
      return nullptr;
    if (Attempt == 10) // as it is, rather than never
      return M;
    bool Good = true;
    for (unsigned I = 0, E = 1 + Random() % Steps; I != E && Good; ++I)
      Good =
          mutateOnce(Mutator, *M, Random(), M->getInstructionCount(), MaxSize);
    if (Good)
      return M;
  }
}

int main(int Argc, char **Argv) {
  InitLLVM Init(Argc, Argv);
  cl::ParseCommandLineOptions(Argc, Argv, "Makes modules from others\n");
  std::unique_ptr<IRMutator> Mutator = makeMutator();
  std::mt19937 Random(Seed);
  for (unsigned I = 0; I != Count; ++I) {
    LLVMContext Context;
    std::unique_ptr<Module> M;
    // Test inputs may be broken on purpose; then another one is taken.
    for (unsigned Attempt = 0; !M && Attempt != 50; ++Attempt)
      M = makeModule(Inputs[Random() % Inputs.size()], Context, *Mutator,
                     Random);
    if (!M) {
      WithColor::error(errs(), "mutate") << "none of the inputs is a module\n";
      return 1;
    }
    std::error_code Error;
    raw_fd_ostream OS(Out + "/" + std::to_string(I) + ".bc", Error);
    if (Error) {
      WithColor::error(errs(), "mutate")
          << Out << ": " << Error.message() << "\n";
      return 1;
    }
    WriteBitcodeToFile(*M, OS);
  }
  return 0;
}
