//===- PlanSpec.cpp - The language that plans are written in --------------===//

#include "plugin/plan/PlanSpec.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Support/raw_ostream.h"
#include <functional>

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
/// Shapes as a set of bits.
constexpr unsigned bit(PlanSpec::Shape Kind) { return 1u << Kind; }
constexpr unsigned Prepared =
    bit(PlanSpec::Ring) | bit(PlanSpec::Leaves) | bit(PlanSpec::Split);

/// A word that stands alone, or behind `no-`.
struct FlagWord {
  StringLiteral Name;
  unsigned Shapes;
  std::optional<bool> PlanSpec::*Field;
};

} // namespace

static constexpr StringLiteral ShapeNames[] = {"none",   "chain", "ring",
                                               "leaves", "split", "states"};

// In the order in which they are printed.
static constexpr FlagWord Flags[] = {
    {"guard", bit(PlanSpec::Ring), &PlanSpec::Guard},
    {"staggered", bit(PlanSpec::Ring), &PlanSpec::Staggered},
    {"pass-sum", Prepared, &PlanSpec::PassSum},
    {"loop-first", Prepared, &PlanSpec::LoopFirst},
};

static constexpr StringLiteral CopiesWord = "copies";
static constexpr StringLiteral LevelsWord = "levels";
static constexpr StringLiteral ArgumentsWord = "arguments";
static constexpr StringLiteral RulesWord = "rules";
static constexpr unsigned MaxArguments = 10000;

static Error makeError(const Twine &Message) {
  return createStringError(inconvertibleErrorCode(), Message);
}

/// One number in \p Text, from \p Least to \p Most.
static Expected<unsigned> parseNumber(StringRef Name, StringRef Text,
                                      unsigned Least, unsigned Most) {
  unsigned Number;
  if (Text.getAsInteger(10, Number) || Number < Least || Number > Most)
    return makeError("'" + Name + "' takes numbers from " + Twine(Least) +
                     " to " + Twine(Most) + ", not '" + Text + "'");
  return Number;
}

/// The numbers in \p Text, separated by commas, each beyond the one before
/// it as \p InOrder says.
static Error parseList(StringRef Name, StringRef Text, unsigned Least,
                       unsigned Most,
                       function_ref<bool(unsigned, unsigned)> InOrder,
                       SmallVectorImpl<unsigned> &List) {
  SmallVector<StringRef, 4> Pieces;
  Text.split(Pieces, ',');
  for (StringRef Piece : Pieces) {
    Expected<unsigned> Number = parseNumber(Name, Piece, Least, Most);
    if (!Number)
      return Number.takeError();
    if (!List.empty() && !InOrder(List.back(), *Number))
      return makeError("the numbers of '" + Name + "' are not in order: '" +
                       Text + "'");
    List.push_back(*Number);
  }
  return Error::success();
}

/// Reads \p Word, `Name=Numbers`, into \p Spec.  False if it is something else,
/// or nothing that the shape takes.
static Expected<bool> parseNumbers(StringRef Word, PlanSpec &Spec) {
  const auto [Name, Text] = Word.split('=');
  Error Failed = Error::success();
  if (Name == CopiesWord &&
      (Spec.Kind == PlanSpec::Chain || Spec.Kind == PlanSpec::Ring)) {
    Expected<unsigned> Number = parseNumber(
        Name, Text, Spec.Kind == PlanSpec::Ring ? 2 : 1, MaxPlannedCopies);
    if (!Number)
      Failed = Number.takeError();
    else
      Spec.Copies = *Number;
  } else if (Name == LevelsWord && Spec.Kind == PlanSpec::Leaves) {
    Spec.Levels.clear();
    Failed = parseList(Name, Text, 2, MaxPlannedCopies - 1,
                       std::greater<unsigned>(), Spec.Levels);
  } else if (Name == ArgumentsWord && Spec.Kind == PlanSpec::States) {
    Spec.Arguments.clear();
    Failed = parseList(Name, Text, 1, MaxArguments, std::less<unsigned>(),
                       Spec.Arguments);
  } else {
    return false;
  }
  if (Failed)
    return std::move(Failed);
  return true;
}

/// Reads \p Word, which stands alone, into \p Spec; false as above.
static bool parseFlag(StringRef Word, PlanSpec &Spec) {
  if (Word == RulesWord &&
      (Spec.Kind == PlanSpec::Chain || Spec.Kind == PlanSpec::Ring)) {
    Spec.ByRules = true;
    return true;
  }
  const bool IsWanted = !Word.consume_front("no-");
  for (const FlagWord &Flag : Flags)
    if (Word == Flag.Name && (Flag.Shapes & bit(Spec.Kind))) {
      Spec.*Flag.Field = IsWanted;
      return true;
    }
  return false;
}

/// What may stand behind the shape \p Kind, for an error.
static std::string listWords(PlanSpec::Shape Kind) {
  std::string List;
  raw_string_ostream OS(List);
  ListSeparator Comma;
  if (Kind == PlanSpec::Chain || Kind == PlanSpec::Ring)
    OS << Comma << CopiesWord << "=N";
  if (Kind == PlanSpec::Leaves)
    OS << Comma << LevelsWord << "=N,M";
  if (Kind == PlanSpec::States)
    OS << Comma << ArgumentsWord << "=N,M";
  for (const FlagWord &Flag : Flags)
    if (Flag.Shapes & bit(Kind))
      OS << Comma << Flag.Name << Comma << "no-" << Flag.Name;
  return List.empty() ? "nothing" : OS.str();
}

Expected<PlanSpec> PlanSpec::parse(StringRef Text) {
  SmallVector<StringRef, 8> Words;
  Text.split(Words, ' ', /*MaxSplit=*/-1, /*KeepEmpty=*/false);
  const StringRef Name = Words.empty() ? "" : Words.front();
  const auto *Found = find(ShapeNames, Name);
  if (Found == std::end(ShapeNames))
    return makeError("unknown shape '" + Name + "'; write one of " +
                     join(ArrayRef(ShapeNames), ", "));
  PlanSpec Spec(Shape(Found - std::begin(ShapeNames)));
  for (StringRef Word : drop_begin(Words)) {
    Expected<bool> IsNumber = parseNumbers(Word, Spec);
    if (!IsNumber)
      return IsNumber.takeError();
    if (!*IsNumber && !parseFlag(Word, Spec))
      return makeError("unknown word '" + Word + "' behind '" + Name +
                       "', which takes " + listWords(Spec.Kind));
  }
  return Spec;
}

std::string PlanSpec::str() const {
  std::string Text;
  raw_string_ostream OS(Text);
  OS << ShapeNames[Kind];
  if (Copies)
    OS << " " << CopiesWord << "=" << *Copies;
  auto PrintList = [&OS](StringRef Name, ArrayRef<unsigned> List) {
    if (List.empty())
      return;
    OS << " " << Name << "=";
    interleave(List, OS, ",");
  };
  PrintList(LevelsWord, Levels);
  PrintList(ArgumentsWord, Arguments);
  for (const FlagWord &Flag : Flags)
    if (const std::optional<bool> Value = this->*Flag.Field)
      OS << (*Value ? " " : " no-") << Flag.Name;
  if (ByRules)
    OS << " " << RulesWord;
  return OS.str();
}
