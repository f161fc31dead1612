//===- Verdict.h - One decision about one function --------------*- C++ -*-===//
//
/// \file
/// What was decided about a recursive function, and the one reason that decided
/// it, with its numbers.  Whoever decides makes one; remarks and the printer
/// tell it.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_VERDICT_H
#define INLINERECURSION_PLUGIN_TELL_VERDICT_H

#include "llvm/ADT/SmallVector.h"
#include "llvm/IR/DiagnosticInfo.h"
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

/// The decision to leave a function as it is, for the reason \p Name.
inline Verdict refuse(StringRef Name) { return {/*Accepted=*/false, Name}; }

/// The decision to rebuild a function.
inline Verdict accept(StringRef Name) { return {/*Accepted=*/true, Name}; }

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_VERDICT_H
