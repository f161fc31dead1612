//===- SavedBody.h - A body put aside while another is tried ----*- C++ -*-===//
//
/// \file
/// Whether a rewrite pays is seen only when it is made: the plan for a function
/// that hands on its sum depends on what that leaves of it.  So it is made on a
/// copy of the body, while the body itself is put aside:
///
///   F: body       save      F: copy of body      F.recurse.saved: body
///     |  ^      -------->     |  ^                 |  ^
///     +--+                    +--+                 +--+
///
/// If the plan is granted, the copy is kept.  If not, the function gets its
/// body back, instruction by instruction what it was.
///
/// Only one function is to be asked about while a body is put aside: to all
/// others, what it calls is called twice.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_REWRITE_SAVEDBODY_H
#define INLINERECURSION_PLUGIN_REWRITE_SAVEDBODY_H

namespace llvm {

class Function;

namespace inlinerecursion {

class SavedBody {
public:
  /// Puts the body of \p F aside and leaves a copy in its place.
  explicit SavedBody(Function &F);
  /// What was put aside is forgotten if it has not been put back.
  ~SavedBody();
  SavedBody(const SavedBody &) = delete;
  SavedBody &operator=(const SavedBody &) = delete;

  /// Puts the body back, in place of whatever the function consists of now.
  void restore();

private:
  Function &F;
  /// Null once it has been put back.
  Function *Saved;
};

/// Erases \p F, which is called by nobody but itself.
void eraseFunction(Function &F);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_REWRITE_SAVEDBODY_H
