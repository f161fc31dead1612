//===- Parameters.cpp - What stands behind the name of a pass -------------===//

#include "plugin/pipeline/Parameters.h"
#include "plugin/literal/Requests.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<bool> AutoOption(
    "inlinerecursion-auto", cl::init(true), cl::Hidden,
    cl::desc("Build rings of copies also for recursive functions that the "
             "pass refuses, where that pays"));

PassParameters::PassParameters()
    : FindRequests(isFindingRequestsEnabled()), Auto(AutoOption),
      Limits(getDefaultBounds()) {}

static Error makeParameterError(const Twine &Message) {
  return createStringError(inconvertibleErrorCode(), Message);
}

/// Reads one of the limits into \p Limits.  False if \p Parameter is something
/// else; an error if it has no number, or one that is too large.
static Expected<bool> parseLimits(StringRef Parameter, Bounds &Limits) {
  for (const LimitParameter &P : getLimitParameters()) {
    StringRef Number = Parameter;
    if (!Number.consume_front(P.Name) || !Number.consume_front("="))
      continue;
    unsigned &Value = Limits.*P.Field;
    if (!Number.getAsInteger(10, Value) && Value <= P.Most)
      return true;
    const std::string Most = P.Most == ~0u ? "on" : "to " + utostr(P.Most);
    return makeParameterError("invalid number in parameter '" + Parameter +
                              "'; " + P.Name + " is a number from 0 " + Most);
  }
  return false;
}

static std::string listKnown(AcceptedParameters Accepted) {
  std::string Known;
  if (Accepted.Level)
    Known += " level=N";
  if (Accepted.FindRequests)
    Known += " find-requests no-find-requests";
  if (Accepted.Auto)
    Known += " auto no-auto";
  if (Accepted.Limits)
    for (const LimitParameter &P : getLimitParameters())
      Known += (" " + P.Name + "=N").str();
  return Known.empty() ? " none" : Known;
}

Expected<PassParameters>
llvm::inlinerecursion::parsePassParameters(StringRef Text,
                                           AcceptedParameters Accepted) {
  PassParameters Parameters;
  while (!Text.empty()) {
    StringRef Parameter;
    std::tie(Parameter, Text) = Text.split(';');
    StringRef Value = Parameter;
    if (Accepted.Level && Value.consume_front("level=")) {
      if (Value.getAsInteger(10, Parameters.Level) || Parameters.Level < 0 ||
          Parameters.Level > 4)
        return makeParameterError("invalid level in parameter '" + Parameter +
                                  "'; a level is a number from 0 to 4");
      continue;
    }
    if (Accepted.FindRequests &&
        (Parameter == "find-requests" || Parameter == "no-find-requests")) {
      Parameters.FindRequests = Parameter == "find-requests";
      continue;
    }
    if (Accepted.Auto && (Parameter == "auto" || Parameter == "no-auto")) {
      Parameters.Auto = Parameter == "auto";
      continue;
    }
    if (Accepted.Limits) {
      Expected<bool> Found = parseLimits(Parameter, Parameters.Limits);
      if (!Found)
        return Found.takeError();
      if (*Found)
        continue;
    }
    return makeParameterError("unknown parameter '" + Parameter +
                              "'; known:" + listKnown(Accepted));
  }
  return Parameters;
}
