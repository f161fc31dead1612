//===- Plans.h - Who has a plan ---------------------------------*- C++ -*-===//
//
/// \file
/// Stands in front of all that decides: gives functions the plans that the
/// obeyed file has for them (plan/PlanBook.h), and warns about entries that are
/// meant for this module and do not fit: another body, no such function, a name
/// that several have.  Plans in the source come behind it (Requests.h), and
/// those of a file go before them: whoever tries a plan does not want to edit
/// the source.
///
/// Where no plan is obeyed or written it does nothing.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_PLANS_H
#define INLINERECURSION_PLUGIN_LITERAL_PLANS_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class PlansPass : public PassInfoMixin<PlansPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionPlansPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_PLANS_H
