//===- Parameters.h - What stands behind the name of a pass -----*- C++ -*-===//
//
/// \file
/// The parameters of the passes that the plugin offers by name, `Name<a;b=N>`.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PIPELINE_PARAMETERS_H
#define INLINERECURSION_PLUGIN_PIPELINE_PARAMETERS_H

#include "plugin/policy/Bounds.h"
#include "llvm/ADT/StringRef.h"
#include "llvm/Support/Error.h"

namespace llvm {
namespace inlinerecursion {

/// What can stand between the angle brackets behind a pass's name.
struct PassParameters {
  /// `level=N`, 0 to 4; 0 leaves it to `inline-recursion-opt-level`.
  int Level = 0;
  /// `find-requests` or `no-find-requests`; without either, the option
  /// `inlinerecursion-find-requests` decides.
  bool FindRequests;
  /// `auto` or `no-auto`; without either, the option `inlinerecursion-auto`
  /// decides.
  bool Auto;
  /// As getLimitParameters() lists them.
  Bounds Limits;

  PassParameters();
};

/// Which of them a pass takes.
struct AcceptedParameters {
  bool Level = false;
  bool FindRequests = false;
  bool Auto = false;
  bool Limits = false;
};

/// Reads \p Text, parameters separated by semicolons.  Returns an error that
/// names the parameter if one is unknown, malformed or not \p Accepted.
Expected<PassParameters> parsePassParameters(StringRef Text,
                                             AcceptedParameters Accepted);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_PARAMETERS_H
