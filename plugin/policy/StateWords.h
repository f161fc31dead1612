//===- StateWords.h - States, told to the user ------------------*- C++ -*-===//
//
/// \file
/// What remarks say of the states of a function (recursion/States.h): which
/// arguments are known, what values they have, and which state leads to which.
///
/// IR knows no signs.  Whether `i8 250` is 250 or -6 is told by who made the
/// function, if anything tells it: its debug information, how the argument is
/// extended to a register, or what the body does with it.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_STATEWORDS_H
#define INLINERECURSION_PLUGIN_POLICY_STATEWORDS_H

#include <string>

namespace llvm {

class Argument;

namespace inlinerecursion {

struct StateSet;

/// What \p A is called: its name, or its number from one on.
std::string describe(const Argument &A);

/// \p A and the values that \p States have for it: all of them, or the least
/// and the greatest number.
std::string describeValues(const Argument &A, const StateSet &States);

/// Is \p A, an integer, a number without sign in the source, as far as can be
/// told?
bool isUnsigned(const Argument &A);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_STATEWORDS_H
