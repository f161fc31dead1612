//===- ParametersFuzzer.cpp - Texts through the parsers of parameters -----===//
//
/// \file
/// A target of libFuzzer: any text between the angle brackets behind a pass's
/// name is either refused with a message that names the parameter, or printed
/// again as a text that is read in the same way.
///
//===----------------------------------------------------------------------===//

#include "plugin/pipeline/Parameters.h"
#include "plugin/pipeline/Registration.h"
#include "llvm/Passes/PassBuilder.h"
#include "llvm/Support/ErrorHandling.h"
#include "llvm/Support/raw_ostream.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static void expect(bool Holds, const Twine &What) {
  if (!Holds)
    report_fatal_error(What);
}

static void checkParameters(StringRef Text, AcceptedParameters Accepted) {
  Expected<PassParameters> Parameters = parsePassParameters(Text, Accepted);
  if (Parameters) {
    expect(Parameters->Level >= 0 && Parameters->Level <= 4, "level");
    return;
  }
  // The message quotes the parameter that is wrong.
  std::string Message = toString(Parameters.takeError());
  StringRef Rest = StringRef(Message).split('\'').second;
  bool Named = false;
  SmallVector<StringRef, 8> Words;
  Text.split(Words, ';');
  for (StringRef Word : Words)
    Named |= Rest.startswith(Word);
  expect(Named, "a message without the parameter: " + Message);
}

/// What a pipeline's text is printed as, or nothing if it is refused.
static std::string printed(StringRef Text) {
  PassInstrumentationCallbacks PIC;
  PassBuilder PB(nullptr, PipelineTuningOptions(), std::nullopt, &PIC);
  registerPlugin(PB);
  ModulePassManager MPM;
  if (Error E = PB.parsePassPipeline(MPM, Text)) {
    consumeError(std::move(E));
    return "";
  }
  std::string Result;
  raw_string_ostream OS(Result);
  MPM.printPipeline(OS, [&PIC](StringRef Name) {
    StringRef Known = PIC.getPassNameForClassName(Name);
    return Known.empty() ? Name : Known;
  });
  return Result;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size) {
  StringRef Text(reinterpret_cast<const char *>(Data), Size);
  if (Text.contains('\0')) // no command line can hold it
    return 0;
  for (bool Level : {false, true})
    for (bool FindRequests : {false, true}) {
      AcceptedParameters Accepted{};
      Accepted.Level = Level;
      Accepted.FindRequests = FindRequests;
      checkParameters(Text, Accepted);
    }

  // Brackets and commas would end the parameters, and name LLVM's passes.
  if (Text.find_first_of("<>(),") != StringRef::npos)
    return 0;
  for (StringRef Name :
       {"inlinerecursion", "print<inlinerecursion>", "inlinerecursion-requests",
        "inlinerecursion-protect", "inlinerecursion-pipeline"}) {
    std::string Once = printed((Name + "<" + Text + ">").str());
    if (!Once.empty())
      expect(printed(Once) == Once, "printed otherwise: " + Once);
  }
  return 0;
}
