//===- PassOption.h - The options of the pass by name -----------*- C++ -*-===//
//
/// \file
/// The pass keeps its options to itself (they are static in its source), and
/// LLVM's registry of options is the only way to them.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_PASSOPTION_H
#define INLINERECURSION_PLUGIN_IR_PASSOPTION_H

#include "llvm/ADT/StringRef.h"
#include "llvm/Support/CommandLine.h"

namespace llvm {
namespace inlinerecursion {

/// Sets `inline-recursion-depth`, which carries the depth of the current
/// function from the decision to the transformation.
constexpr StringLiteral DepthOption = "inline-recursion-depth";
/// The longest ring that the gate grants (copies).
constexpr StringLiteral LongestRingOption = "special-inline-recursion-depth";
/// The most copies that one run makes in a module.
constexpr StringLiteral CloneLimitOption =
    "maximum-clone-limit-inline-recursion";

/// As below, of any type.
cl::Option &findAnyPassOption(StringRef Name);

/// The option \p Name of the pass or the plugin, whose values are of type T.
/// There has to be one: compilation ends with an error that names it otherwise.
template <typename T> cl::opt<T> &findPassOption(StringRef Name) {
  return static_cast<cl::opt<T> &>(findAnyPassOption(Name));
}

/// The current value of the unsigned option \p Name.
unsigned getPassOption(StringRef Name);

/// Sets the unsigned option \p Name.
void setPassOption(StringRef Name, unsigned Value);

/// Keeps changes of an option to itself: the value from before is back when it
/// ends.
class PassOptionScope {
public:
  explicit PassOptionScope(StringRef Name)
      : Name(Name), Before(getPassOption(Name)) {}
  /// Sets the option as well.
  PassOptionScope(StringRef Name, unsigned Value)
      : Name(Name), Before(getPassOption(Name)) {
    setPassOption(Name, Value);
  }
  ~PassOptionScope() { setPassOption(Name, Before); }
  PassOptionScope(const PassOptionScope &) = delete;
  PassOptionScope &operator=(const PassOptionScope &) = delete;

private:
  StringRef Name;
  unsigned Before;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_PASSOPTION_H
