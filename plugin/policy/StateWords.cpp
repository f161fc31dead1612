//===- StateWords.cpp - States, told to the user --------------------------===//

#include "plugin/policy/StateWords.h"
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

std::string llvm::inlinerecursion::describeValues(const Argument &A,
                                                  const StateSet &States) {
  SmallSetVector<Constant *, 16> Values;
  for (const State &S : States.States)
    if (Constant *C = S.Arguments[A.getArgNo()])
      Values.insert(C);
  const bool AreSigned = A.getType()->isIntegerTy() && !isUnsigned(A);
  const auto ByValue = [AreSigned](const Constant *L, const Constant *R) {
    const APInt &Left = cast<ConstantInt>(L)->getValue();
    const APInt &Right = cast<ConstantInt>(R)->getValue();
    return AreSigned ? Left.slt(Right) : Left.ult(Right);
  };
  const auto IsNumber = [](const Constant *C) {
    return isa<ConstantInt>(C) && !C->getType()->isIntegerTy(1);
  };
  std::string Text;
  raw_string_ostream OS(Text);
  const auto Print = [&](const Constant *C) {
    if (IsNumber(C))
      cast<ConstantInt>(C)->getValue().print(OS, AreSigned);
    else
      C->printAsOperand(OS, /*PrintType=*/false);
  };
  OS << describe(A) << " (";
  if (Values.size() > 2 && all_of(Values, IsNumber)) {
    const auto [Least, Most] =
        std::minmax_element(Values.begin(), Values.end(), ByValue);
    Print(*Least);
    OS << " to ";
    Print(*Most);
  } else {
    ListSeparator Comma;
    for (const Constant *C : Values) {
      OS << Comma;
      Print(C);
    }
  }
  OS << ")";
  return OS.str();
}
