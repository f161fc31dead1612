//===- StateWords.cpp - States, told to the user --------------------------===//

#include "plugin/policy/StateWords.h"
#include "host/DirectCalls.h"
#include "plugin/recursion/States.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/BinaryFormat/Dwarf.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/Function.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Support/raw_ostream.h"
#include <algorithm>
#include <optional>

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Most states that are listed one by one.
static constexpr unsigned MaxStatesListed = 8;
/// Most characters of what names a state.
static constexpr unsigned MaxStateWord = 24;
/// Most characters of the links between all states.
static constexpr unsigned MaxLinksLength = 400;

std::string llvm::inlinerecursion::describe(const Argument &A) {
  return A.hasName() ? ("'" + A.getName() + "'").str()
                     : "argument " + utostr(A.getArgNo() + 1);
}

//===----------------------------------------------------------------------===//
// Signs
//===----------------------------------------------------------------------===//

/// Has \p Ty no sign, below typedefs and qualifiers?  A value in the place of a
/// reference has the type that is referred to.  None if it is no number.
static std::optional<bool> isUnsignedType(const DIType *Ty) {
  while (const auto *Derived = dyn_cast_or_null<DIDerivedType>(Ty))
    Ty = Derived->getBaseType();
  const auto *Enumeration = dyn_cast_or_null<DICompositeType>(Ty);
  if (Enumeration && Enumeration->getTag() == dwarf::DW_TAG_enumeration_type)
    return isUnsignedType(Enumeration->getBaseType());
  const auto *Basic = dyn_cast_or_null<DIBasicType>(Ty);
  if (!Basic)
    return std::nullopt;
  switch (Basic->getEncoding()) {
  case dwarf::DW_ATE_signed:
  case dwarf::DW_ATE_signed_char:
    return false;
  case dwarf::DW_ATE_unsigned:
  case dwarf::DW_ATE_unsigned_char:
  case dwarf::DW_ATE_UTF:
    return true;
  default:
    return std::nullopt;
  }
}

/// What the debug information says of the type of \p A.  Its position is that
/// in the source only where no argument was split, dropped or added.
static std::optional<bool> readDebugInfo(const Argument &A) {
  const Function &F = *A.getParent();
  const DISubprogram *Program = F.getSubprogram();
  if (!Program || !Program->getType())
    return std::nullopt;
  // The first is the result.
  const DITypeRefArray Types = Program->getType()->getTypeArray();
  if (!Types || Types.size() != F.arg_size() + 1)
    return std::nullopt;
  return isUnsignedType(Types[A.getArgNo() + 1]);
}

/// Does \p I, which uses \p V, treat that as a number without sign?  None if
/// both kinds are treated the same.
static std::optional<bool> treatsAsUnsigned(const Instruction &I,
                                            const Value &V) {
  if (const auto *Compare = dyn_cast<ICmpInst>(&I);
      Compare && Compare->isRelational())
    return Compare->isUnsigned();
  switch (I.getOpcode()) {
  case Instruction::ZExt:
  case Instruction::UIToFP:
  case Instruction::UDiv:
  case Instruction::URem:
    return true;
  case Instruction::SExt:
  case Instruction::SIToFP:
  case Instruction::SDiv:
  case Instruction::SRem:
    return false;
  case Instruction::LShr:
  case Instruction::AShr:
    if (I.getOperand(0) == &V)
      return I.getOpcode() == Instruction::LShr;
    return std::nullopt;
  default:
    return std::nullopt;
  }
}

/// What the body does with \p A, and with what counts on from it in a loop or
/// on the way to a self call.  Both kinds of treatment tell nothing.
static std::optional<bool> readBody(const Argument &A) {
  SmallSetVector<const Value *, 8> Same;
  Same.insert(&A);
  std::optional<bool> Told;
  for (size_t Next = 0; Next != Same.size(); ++Next)
    for (const User *U : Same[Next]->users()) {
      const auto *I = dyn_cast<Instruction>(U);
      if (!I)
        continue;
      if (isa<PHINode, SelectInst>(I) || I->getOpcode() == Instruction::Add ||
          I->getOpcode() == Instruction::Sub) {
        Same.insert(I);
        continue;
      }
      const std::optional<bool> Unsigned = treatsAsUnsigned(*I, *Same[Next]);
      if (Told && Unsigned && *Told != *Unsigned)
        return std::nullopt;
      if (Unsigned)
        Told = Unsigned;
    }
  return Told;
}

bool llvm::inlinerecursion::isUnsigned(const Argument &A) {
  if (const std::optional<bool> Told = readDebugInfo(A))
    return *Told;
  if (A.hasZExtAttr() || A.hasSExtAttr())
    return A.hasZExtAttr();
  return readBody(A).value_or(false);
}

//===----------------------------------------------------------------------===//
// Values
//===----------------------------------------------------------------------===//

/// Is \p C more than true or false?
static bool isNumber(const Constant &C) {
  return isa<ConstantInt>(C) && !C.getType()->isIntegerTy(1);
}

static void printValue(raw_ostream &OS, const Constant &C, bool Unsigned) {
  if (isNumber(C))
    cast<ConstantInt>(C).getValue().print(OS, /*isSigned=*/!Unsigned);
  else
    C.printAsOperand(OS, /*PrintType=*/false);
}

std::string llvm::inlinerecursion::describeValues(const Argument &A,
                                                  const StateSet &States) {
  SmallSetVector<Constant *, 16> Values;
  for (const State &S : States.States)
    if (Constant *C = S.Arguments[A.getArgNo()])
      Values.insert(C);
  const bool Unsigned = A.getType()->isIntegerTy() && isUnsigned(A);
  const auto ByValue = [Unsigned](const Constant *L, const Constant *R) {
    const APInt &Left = cast<ConstantInt>(L)->getValue();
    const APInt &Right = cast<ConstantInt>(R)->getValue();
    return Unsigned ? Left.ult(Right) : Left.slt(Right);
  };
  std::string Text;
  raw_string_ostream OS(Text);
  OS << describe(A) << " (";
  if (Values.size() > 2 &&
      all_of(Values, [](const Constant *C) { return isNumber(*C); })) {
    const auto [Least, Most] =
        std::minmax_element(Values.begin(), Values.end(), ByValue);
    printValue(OS, **Least, Unsigned);
    OS << " to ";
    printValue(OS, **Most, Unsigned);
  } else {
    ListSeparator Comma;
    for (const Constant *C : Values) {
      OS << Comma;
      printValue(OS, *C, Unsigned);
    }
  }
  OS << ")";
  return OS.str();
}

//===----------------------------------------------------------------------===//
// Links
//===----------------------------------------------------------------------===//

/// The values in the state \p S; empty if that is longer than names should be,
/// or not one word.
static std::string describeState(const State &S, const Function &F) {
  std::string Text;
  raw_string_ostream OS(Text);
  ListSeparator Comma(",");
  for (const Argument &A : F.args()) {
    OS << Comma;
    if (const Constant *C = S.Arguments[A.getArgNo()])
      printValue(OS, *C, isUnsigned(A));
    else
      OS << "_";
  }
  OS.flush();
  const bool IsWord = Text.size() <= MaxStateWord && none_of(Text, isSpace);
  return IsWord ? Text : "";
}

std::string llvm::inlinerecursion::listStates(const Function &F,
                                              const StateSet &States) {
  const unsigned Count = States.States.size();
  std::string Text;
  raw_string_ostream OS(Text);
  ListSeparator Space(" ");
  const auto List = [&](unsigned Number) {
    const std::string Word = describeState(States.States[Number], F);
    OS << Space << (Word.empty() ? "#" + utostr(Number) : Word);
  };
  if (Count <= MaxStatesListed) {
    for (unsigned Number = 0; Number != Count; ++Number)
      List(Number);
    return OS.str();
  }
  List(0);
  List(1);
  OS << Space << "...";
  List(Count - 1);
  return OS.str();
}

/// Where \p S, with the number \p From, leads to, as "+1,-3"; each state once.
static std::string listSuccessors(const State &S, unsigned From) {
  SmallSetVector<unsigned, 8> Next;
  for (const Successor &To : S.Next)
    Next.insert(To.State);
  std::string Text;
  raw_string_ostream OS(Text);
  ListSeparator Comma(",");
  for (unsigned To : Next) {
    OS << Comma;
    if (To < From)
      OS << "-" << From - To;
    else
      OS << "+" << To - From;
  }
  return OS.str();
}

/// May anybody enter \p F itself, once \p States have their copies?
static bool isEnteredOtherwise(const Function &F, const StateSet &States) {
  if (!F.hasLocalLinkage())
    return true;
  const unsigned SelfCalls = count_if(F.users(), [](const User *U) {
    const auto *Call = dyn_cast<CallBase>(U);
    return Call && isSelfCall(*Call);
  });
  return F.getNumUses() != States.Entries.size() + SelfCalls;
}

std::string llvm::inlinerecursion::listLinks(const Function &F,
                                             const StateSet &States) {
  SmallSetVector<unsigned, 8> Entered;
  for (const auto &[Call, Number] : States.Entries)
    Entered.insert(Number);
  SmallVector<std::string, 16> Words;
  for (unsigned Number : Entered)
    Words.push_back("in:" + utostr(Number));
  if (isEnteredOtherwise(F, States))
    Words.push_back("others");
  const unsigned Count = States.States.size();
  for (unsigned From = 0, End; From != Count; From = End) {
    const std::string Next = listSuccessors(States.States[From], From);
    for (End = From + 1; End != Count; ++End)
      if (listSuccessors(States.States[End], End) != Next)
        break;
    if (Next.empty())
      continue;
    const std::string Last = End - From > 1 ? "-" + utostr(End - 1) : "";
    Words.push_back(utostr(From) + Last + ":" + Next);
  }
  std::string Text;
  for (const std::string &Word : Words) {
    if (Text.size() + Word.size() > MaxLinksLength)
      return Text + " ...";
    Text += (Text.empty() ? "" : " ") + Word;
  }
  return Text;
}
