//===- OtherCalls.h - What a recursion calls but itself ---------*- C++ -*-===//
//
/// \file
/// A recursive function spends its time on its self calls or on what else it
/// calls.  Whether another call stays one is up to the inliner, which runs
/// after the copies are built; what it will do is foretold here, roughly.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_RECURSION_OTHERCALLS_H
#define INLINERECURSION_PLUGIN_RECURSION_OTHERCALLS_H

namespace llvm {

class Function;

namespace inlinerecursion {

/// What the calls of other functions come to.
struct OtherCalls {
  /// Those that stay calls.
  unsigned Count = 0;
  /// Of these, the ones of functions that are known.
  unsigned DirectCount = 0;
  /// The instructions of those that are inlined.
  unsigned InlinedSize = 0;
  /// What is inlined here, and would not be into copies; null if nothing.
  const Function *OnlyCallee = nullptr;
};

/// The calls of other functions that \p F makes, if it returns and nothing is
/// thrown.  \p InlinerFollows: an inliner is to come, which makes nothing of
/// some.
OtherCalls findOtherCalls(const Function &F, bool InlinerFollows);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_RECURSION_OTHERCALLS_H
