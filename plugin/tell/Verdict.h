//===- Verdict.h - Why a function was chained, or was not -------*- C++ -*-===//
//
/// \file
/// The pass answers with a bool.  This room finds the words for it: the one
/// reason that decided, with its numbers.  Whether a function is accepted is
/// always the costing record's own answer; only the reason is worked out here,
/// rule by rule in the order of the record.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_VERDICT_H
#define INLINERECURSION_PLUGIN_TELL_VERDICT_H

#include "pass/InlineRecursion.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/IR/DiagnosticInfo.h"
#include <optional>
#include <string>

namespace llvm {
namespace inlinerecursion {

/// One decision about one function, ready to become a remark or a line.
struct Verdict {
  using Argument = DiagnosticInfoOptimizationBase::Argument;

  bool Accepted;
  /// Identifies the reason: a remark's name, one word in UpperCamelCase.
  StringRef Name;
  /// The reason as half a sentence, with the numbers as named values.
  SmallVector<Argument, 6> Message;

  Verdict(bool Accepted, StringRef Name) : Accepted(Accepted), Name(Name) {}

  Verdict &operator<<(StringRef Text) {
    Message.emplace_back(Text);
    return *this;
  }
  Verdict &operator<<(Argument Value) {
    Message.push_back(std::move(Value));
    return *this;
  }

  /// The message as plain text.
  std::string str() const;
};

/// Does \p F call itself directly, by `call`, `invoke` or `callbr`?
bool isDirectlyRecursive(const Function &F);

/// Why the driver will not even look at \p F (directly recursive, with a body);
/// none if it will.
std::optional<Verdict> judgeFilter(const Function &F);

/// The decision that the driver is about to take on the freshly analysed
/// \p Costing, with \p CloneCount copies granted so far.  The record and the
/// option that carries the depth are left as they were, and nothing is printed.
Verdict judgeCosting(InlineRecursion::InlineRecursionCosting Costing,
                     unsigned CloneCount);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_VERDICT_H
