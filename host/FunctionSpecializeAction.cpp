//===- FunctionSpecializeAction.cpp - Constants around a ring -------------===//
#include "FunctionSpecializeAction.h"

using namespace llvm;

std::map<Function *, std::set<CallInst *>>
FunctionSpecializeAction::selectCI(Module &, bool) {
  return {};
}

bool FunctionSpecializeAction::transform(
    Module &, std::map<Function *, std::set<CallInst *>> &,
    const std::set<CallInst *> &) {
  return false;
}
