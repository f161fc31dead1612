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
/// Records have the links between the states as well, short enough to be read
/// by people, for pictures (scripts/picture.py).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_POLICY_STATEWORDS_H
#define INLINERECURSION_PLUGIN_POLICY_STATEWORDS_H

#include <string>

namespace llvm {

class Argument;
class Function;

namespace inlinerecursion {

struct StateSet;

/// What \p A is called: its name, or its number from one on.
std::string describe(const Argument &A);

/// \p A and the values that \p States have for it: all of them, or the least
/// and the greatest number.
std::string describeValues(const Argument &A, const StateSet &States);

/// The known arguments of \p F in each of \p States, as "0,_": all in a row
/// between spaces, or, where there are many, the first, the second, "..." and
/// the last.
std::string listStates(const Function &F, const StateSet &States);

/// Which of \p States, counted from zero, \p F is entered in, and which lead to
/// which:
///
///   in:0 others 0-6:+1 7:-7,+0
///
/// Callers enter the first; others may call the function itself, with what is
/// not known; the states 0 to 6 call the next one, the state 7 the first and
/// itself.  What is too long ends with "...".
std::string listLinks(const Function &F, const StateSet &States);

/// Is \p A, an integer, a number without sign in the source, as far as can be
/// told?
bool isUnsigned(const Argument &A);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_POLICY_STATEWORDS_H
