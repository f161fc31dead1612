//===- PlanOptions.cpp - Which plan files a compilation has ---------------===//

#include "plugin/plan/PlanOptions.h"
#include "llvm/IR/LLVMContext.h"
#include "llvm/IR/Module.h"
#include "llvm/Remarks/RemarkStreamer.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/WithColor.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<std::string>
    ObeyedFile("inlinerecursion-plan", cl::Hidden, cl::value_desc("file"),
               cl::desc("Obey the plans for functions in this file"));

static cl::opt<std::string> WrittenFile(
    "inlinerecursion-write-plan", cl::Hidden, cl::ValueOptional,
    cl::value_desc("file"),
    cl::desc("Write what is decided about functions to this file, or beside "
             "the optimisation records"));

StringRef llvm::inlinerecursion::getObeyedPlanFile() { return ObeyedFile; }

bool llvm::inlinerecursion::isPlanWritten() {
  return WrittenFile.getNumOccurrences() > 0;
}

std::optional<std::string>
llvm::inlinerecursion::getWrittenPlanFile(const Module &M) {
  if (!WrittenFile.empty())
    return WrittenFile;
  // Only the compiler's driver knows what the object is called.
  remarks::RemarkStreamer *Records = M.getContext().getMainRemarkStreamer();
  if (!Records || !Records->getFilename()) {
    WithColor::warning(errs(), "InlineRecursion")
        << "-inlinerecursion-write-plan does not know where; name a file, or "
           "compile with -fsave-optimization-record\n";
    return std::nullopt;
  }
  StringRef Name = *Records->getFilename();
  if (!Name.consume_back(".opt.yaml"))
    Name.consume_back(".yaml");
  return (Name + ".plan.yaml").str();
}
