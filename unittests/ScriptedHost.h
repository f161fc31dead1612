//===- ScriptedHost.h - Collaborators that follow a script ------*- C++ -*-===//
///
/// \file
/// Stand-ins for the two classes of host/: linked in the place of the real
/// ones, they answer what the running test has set, and record what the pass
/// asked.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_UNITTESTS_SCRIPTEDHOST_H
#define INLINERECURSION_UNITTESTS_SCRIPTEDHOST_H

#include "TestModule.h"
#include <map>
#include <set>

namespace llvm::unittest {

using DepthPair = std::pair<const SCEV *, const SCEV *>;

struct HostScript {
  // What the depth estimator answers.
  bool CanEstimate = true;
  std::function<std::vector<CallInst *>(Function &)> CallSites;
  std::function<DepthPair(ScalarEvolution &, CallInst &)> DepthOf;

  // What the specialisation component answers.
  std::map<Function *, std::set<CallInst *>> Selected;
  bool TransformChanged = false;

  // What either was asked, in order, and with which inputs.
  std::vector<std::string> Log;
  ScalarEvolution *SE = nullptr;
  DominatorTree *DT = nullptr;
  std::map<Function *, std::set<CallInst *>> SelectedAsPassed;
  std::set<CallInst *> ExcludedAsPassed;
};

/// The script of the running test.
extern HostScript *CurrentScript;

/// A test with a script of its own.
class ScriptedHostTest : public PassTest {
protected:
  ScriptedHostTest() { CurrentScript = &Script; }
  ~ScriptedHostTest() override { CurrentScript = nullptr; }

  HostScript Script;
};

} // namespace llvm::unittest

#endif // INLINERECURSION_UNITTESTS_SCRIPTEDHOST_H
