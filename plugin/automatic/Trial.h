//===- Trial.h - A preparation that can be taken back -----------*- C++ -*-===//
//
/// \file
/// Makes of a function what the policy wants to plan for
/// (policy/Preparation.h): one that hands on its sum, one whose tail calls are
/// a loop, or both.  What that is worth is known only then, so it is made on
/// trial, and kept only if a plan is granted.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_TRIAL_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_TRIAL_H

#include "plugin/policy/Bounds.h"
#include "plugin/policy/Facts.h"
#include "plugin/rewrite/Plan.h"
#include "plugin/rewrite/SavedBody.h"
#include <memory>
#include <optional>

namespace llvm {
namespace inlinerecursion {

/// A function, prepared if the policy wants it so, and the plan for that.
class Trial {
public:
  /// \p Known and \p Unprepared are the facts of \p F and the plan for it as it
  /// is; neither is used any more once a preparation was made.
  Trial(Function &F, FunctionAnalysisManager &FAM, const Bounds &Limits,
        const Facts &Known, const Plan &Unprepared);

  /// Was anything prepared?
  bool isPrepared() const { return Before != nullptr; }
  /// Have its tail calls become loops?
  bool madeLoops() const { return HasLoops; }
  /// Is its sum handed on?
  bool passesSum() const { return Subject != &F; }

  /// The function that plans are for, which is another one than F where a sum
  /// is handed on.
  Function &getSubject() const { return *Subject; }
  const Facts &getFacts() const { return Prepared ? *Prepared : Known; }
  const Plan &getPlan() const { return Wanted ? *Wanted : Unprepared; }

  /// Leaves F as it is now.  The trial is over.
  void keep() { Before.reset(); }

  /// Makes F what it was.  The trial is over.
  void takeBack();

private:
  void putAside();
  void passSum();
  void makeLoops();
  void plan();

  Function &F;
  FunctionAnalysisManager &FAM;
  const Bounds Limits;
  const Facts &Known;
  const Plan &Unprepared;
  Function *Subject;
  /// The body from before; null if nothing was prepared.
  std::unique_ptr<SavedBody> Before;
  bool HasLoops = false;
  std::unique_ptr<Facts> Prepared;
  std::optional<Plan> Wanted;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_TRIAL_H
