//===- Plan.cpp - What is to be built of one function ---------------------===//

#include "plugin/rewrite/Plan.h"
#include "llvm/Support/ErrorHandling.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

StringRef llvm::inlinerecursion::getShapeName(Plan::Shape Kind) {
  switch (Kind) {
  case Plan::Nothing:
    return "nothing";
  case Plan::Chain:
    return "chain";
  case Plan::Leaves:
    return "leaf chain";
  case Plan::Ring:
    return "ring";
  case Plan::Split:
    return "split";
  case Plan::States:
    return "copy for each state";
  }
  llvm_unreachable("a shape without a name");
}
