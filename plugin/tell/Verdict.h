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
#include "llvm/ADT/StringRef.h"
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
  /// What a remark says between the name of the function and the message.
  StringRef Outcome;
  /// The reason as half a sentence, with the numbers as named values.
  SmallVector<Argument, 6> Message;
  /// What stands in a record, for programs that read it, and not in the text.
  SmallVector<Argument, 2> RecordOnly;
  /// What the user can do about a refusal, in a few words; empty where nothing
  /// helps, or what would help is no gain.
  StringRef Remedy;
  /// What is added to the module, more or less (instructions).
  uint64_t Growth = 0;
  /// What is built, as plans say it (plan/PlanSpec.h); empty where nothing is.
  std::string Plan;
  /// Was it decided behind the inliner?
  bool IsLate = false;

  Verdict(bool Accepted, StringRef Name)
      : Accepted(Accepted), Name(Name),
        Outcome(Accepted ? "rebuilt as a " : "not chained: ") {}

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

/// The name of a refusal that is no news: an earlier run has built something.
constexpr StringLiteral AlreadyChained = "AlreadyChained";

/// The decision to leave a function as it is, for the reason \p Name.
inline Verdict refuse(StringRef Name, StringRef Remedy = "") {
  Verdict V(/*Accepted=*/false, Name);
  V.Remedy = Remedy;
  return V;
}

/// The decision to rebuild a function.
inline Verdict accept(StringRef Name) { return {/*Accepted=*/true, Name}; }

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_VERDICT_H
