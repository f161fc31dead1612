//===- SlowModel.h - The pass's decisions, worked out the long way -*- C++ -*-//
///
/// \file
/// A second answer to every question that the pass decides: what a function
/// counts, what would fold in it, whether a chain pays, how many copies a
/// module gets and who calls whom afterwards.
///
/// It shares no code with the pass and takes other ways to the same end: it
/// searches all instructions of the module where the pass follows use lists,
/// repeats until nothing changes where the pass walks depth first, takes blocks
/// out of the control flow graph where the pass asks a dominator tree, and
/// replays chains on lists of calls where the pass rewrites a module.  Nothing
/// in it is quick.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_UNITTESTS_SLOWMODEL_H
#define INLINERECURSION_UNITTESTS_SLOWMODEL_H

#include "llvm/ADT/APInt.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace llvm::unittest {

/// The numbers that a user may set, and the level.
struct ModelOptions {
  unsigned Level = 0;
  unsigned Percentage = 10;
  unsigned MaxDepth = 7;
  unsigned MaxSitesPerCaller = 1;
  unsigned MaxSites = 2;
  unsigned MaxCopies = 25;
  unsigned MaxRingDepth = 10;
};

/// What a function looks like.
struct ModelSummary {
  unsigned Blocks = 0, Insts = 0, Branches = 0, Calls = 0, SelfCalls = 0;
  /// Who calls it and how often it is mentioned there in direct calls of it; in
  /// the order in which its use list first mentions them.
  std::vector<std::pair<const Function *, unsigned>> Callers;
  unsigned Mentions = 0;
};
ModelSummary summarize(const Function &F);

/// How a function is used by anything at all.
struct ModelUses {
  bool Any = false;
  /// Are all of them in direct calls of it?
  bool OnlyCalls = true;
  /// Those in direct calls that stand in other functions.
  unsigned Outside = 0;
};
ModelUses countUses(const Function &F);

/// What a constant in the place of an argument would decide.
struct ModelFolding {
  std::set<const Instruction *> Folded;
  std::set<const Instruction *> Decided;
};
ModelFolding foldWithConstant(const Argument &A);

/// The instructions of all blocks that \p Gate stands before on every way from
/// the entry; blocks without such a way included.
unsigned countBehind(const BasicBlock &Gate);

struct ModelBenefit {
  uint64_t Benefit;
  unsigned Limit;
};
/// None if \p F does not have exactly one argument.
std::optional<ModelBenefit> weigh(const Function &F, unsigned Percentage);

/// One bound of what a depth estimator is told to say of a call site.
struct PlannedBound {
  enum { Null, Variable, Constant } Kind = Constant;
  APInt Value;
};
/// What a depth estimator is told to say of a function.
struct EstimatorPlan {
  bool CanEstimate = true;
  /// The call sites, as numbers of self calls in layout order.
  std::vector<unsigned> Sites;
  /// For each number of a self call.
  std::vector<std::pair<PlannedBound, PlannedBound>> Bounds;
};
/// The depth on which all sites agree.
std::optional<APInt> agreedDepth(const EstimatorPlan &Plan);

/// All that the decision about one function rests on.
struct ModelFacts {
  ModelSummary Summary;
  ModelUses Uses;
  std::optional<APInt> Depth;
  std::optional<ModelBenefit> Benefit;
};
ModelFacts getFacts(const Function &F, const EstimatorPlan &Plan,
                    const ModelOptions &Options);

struct ModelVerdict {
  bool Accepted = false;
  /// The depth that it sets; none if it leaves the depth as it was.
  std::optional<unsigned> Depth;
  /// What it prints.
  std::string Warning;
};
ModelVerdict decide(const ModelFacts &Facts, const ModelOptions &Options);

/// The depth of the ring that a function is granted.
std::optional<unsigned> passGate(const Function &F, ScalarEvolution &SE,
                                 const ModelOptions &Options);

/// A function by its place in the module's list.
using ModelIndex = unsigned;
constexpr ModelIndex NoFunction = ~0U;

/// A `call` instruction: what it calls and which functions it mentions.
struct ModelCall {
  ModelIndex Callee = NoFunction;
  /// Does it call with the type of the callee?
  bool Direct = false;
  std::vector<ModelIndex> Passed, Bundled;
};

/// What is left of a function when only calls count.
struct ModelFunction {
  std::string Name;
  bool Declaration = false, Marked = false, Eligible = false;
  bool AlwaysInline = false, NoInline = false, Internal = false;
  /// In layout order.
  std::vector<ModelCall> Calls;
  /// Functions that anything else in it mentions.
  std::vector<ModelIndex> Mentioned;
};

/// A module after the pass, and what happened on the way.
struct ModelOutcome {
  std::vector<ModelFunction> Functions;
  bool Changed = false, HandedOver = false;
  std::string Warnings;
  /// The analyses that were asked for, in order.
  std::vector<std::string> Log;
  /// What is left in the depth option.
  unsigned Depth = 1;
  /// Copies per accepted function.
  std::map<std::string, unsigned> Copies;
};
ModelOutcome replay(Module &M,
                    const std::map<std::string, EstimatorPlan> &Plans,
                    const ModelOptions &Options,
                    const std::function<ScalarEvolution &(Function &)> &GetSE);

/// A real module in the same form, for comparison.
std::vector<ModelFunction> readFunctions(const Module &M);

} // namespace llvm::unittest

#endif // INLINERECURSION_UNITTESTS_SLOWMODEL_H
