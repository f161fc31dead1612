//===- BodyHash.cpp - Is a function still what a plan was made for --------===//

#include "plugin/plan/BodyHash.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/DerivedTypes.h"
#include "llvm/IR/Function.h"
#include "llvm/IR/GlobalVariable.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/InstrTypes.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/IntrinsicInst.h"
#include "llvm/Support/MD5.h"
#include "llvm/Support/raw_ostream.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// \p Name without \p Part and the digits behind it.
static std::string cutOut(StringRef Name, StringRef Part) {
  const size_t Place = Name.find(Part);
  if (Place == StringRef::npos)
    return Name.str();
  const StringRef Rest = Name.drop_front(Place + Part.size());
  return (Name.take_front(Place) + Rest.ltrim("0123456789")).str();
}

std::string llvm::inlinerecursion::getNameInSource(StringRef Name) {
  // Either may stand in the middle of a name that the plugin has made of it.
  return cutOut(cutOut(Name, ".llvm."), ValueSuffix);
}

namespace {
/// Writes a function in a way that depends on nothing but what it does.
class CanonicalText {
public:
  explicit CanonicalText(raw_ostream &OS) : OS(OS) {}

  void write(const Function &F);

private:
  void writeType(const Type &T);
  void writeOperand(const Value &V);
  void writeConstant(const Constant &C);
  void writeGlobal(const GlobalValue &G);
  void writeInstruction(const Instruction &I);

  raw_ostream &OS;
  DenseMap<const Value *, unsigned> Numbers;
};
} // namespace

void CanonicalText::writeType(const Type &T) {
  // Names of structures change when modules are linked.
  OS << unsigned(T.getTypeID());
  if (const auto *Integer = dyn_cast<IntegerType>(&T))
    OS << "i" << Integer->getBitWidth();
  else if (const auto *Array = dyn_cast<ArrayType>(&T))
    OS << "x" << Array->getNumElements();
  else if (const auto *Vector = dyn_cast<VectorType>(&T))
    OS << "v" << Vector->getElementCount().getKnownMinValue();
  OS << "(";
  for (const Type *Part : T.subtypes())
    writeType(*Part);
  OS << ")";
}

void CanonicalText::writeGlobal(const GlobalValue &G) {
  const auto *Variable = dyn_cast<GlobalVariable>(&G);
  if (!G.hasPrivateLinkage() || !Variable || !Variable->hasInitializer()) {
    OS << "@" << getNameInSource(G.getName());
    return;
  }
  // Strings and tables without a name are numbered in each module.
  OS << "=";
  if (const auto *Data =
          dyn_cast<ConstantDataSequential>(Variable->getInitializer()))
    OS << toHex(Data->getRawDataValues());
  else
    writeType(*Variable->getValueType());
}

void CanonicalText::writeConstant(const Constant &C) {
  if (const auto *Global = dyn_cast<GlobalValue>(&C))
    return writeGlobal(*Global);
  writeType(*C.getType());
  if (const auto *Integer = dyn_cast<ConstantInt>(&C))
    Integer->getValue().print(OS, /*isSigned=*/false);
  else if (const auto *Number = dyn_cast<ConstantFP>(&C))
    Number->getValueAPF().bitcastToAPInt().print(OS, /*isSigned=*/false);
  else if (const auto *Data = dyn_cast<ConstantDataSequential>(&C))
    OS << toHex(Data->getRawDataValues());
  else if (const auto *Expression = dyn_cast<ConstantExpr>(&C))
    OS << Expression->getOpcodeName();
  else
    OS << "#" << C.getValueID();
  for (const Value *Operand : C.operand_values())
    writeOperand(*Operand);
}

void CanonicalText::writeOperand(const Value &V) {
  OS << " ";
  if (const auto It = Numbers.find(&V); It != Numbers.end())
    OS << "%" << It->second;
  else if (const auto *C = dyn_cast<Constant>(&V))
    writeConstant(*C);
  else
    // Metadata and inline assembly.
    OS << "?" << V.getValueID();
}

void CanonicalText::writeInstruction(const Instruction &I) {
  OS << I.getOpcodeName() << " ";
  writeType(*I.getType());
  OS << I.getRawSubclassOptionalData();
  if (const auto *Compare = dyn_cast<CmpInst>(&I))
    OS << Compare->getPredicate();
  else if (const auto *Address = dyn_cast<GetElementPtrInst>(&I))
    writeType(*Address->getSourceElementType());
  else if (const auto *Variable = dyn_cast<AllocaInst>(&I))
    writeType(*Variable->getAllocatedType());
  for (const Value *Operand : I.operand_values())
    writeOperand(*Operand);
  if (const auto *Phi = dyn_cast<PHINode>(&I))
    for (const BasicBlock *Block : Phi->blocks())
      writeOperand(*Block);
  OS << "\n";
}

void CanonicalText::write(const Function &F) {
  auto Add = [this](const Value &V) {
    Numbers.try_emplace(&V, Numbers.size());
  };
  writeType(*F.getFunctionType());
  for (const Argument &A : F.args())
    Add(A);
  for (const BasicBlock &Block : F) {
    Add(Block);
    for (const Instruction &I : Block)
      if (!isa<DbgInfoIntrinsic>(I))
        Add(I);
  }
  for (const Instruction &I : instructions(F))
    if (!isa<DbgInfoIntrinsic>(I))
      writeInstruction(I);
}

std::string llvm::inlinerecursion::hashBody(const Function &F) {
  std::string Text;
  raw_string_ostream OS(Text);
  CanonicalText(OS).write(F);
  MD5 Hash;
  Hash.update(OS.str());
  MD5::MD5Result Result;
  Hash.final(Result);
  return toHex(ArrayRef<uint8_t>(Result).take_front(8), /*LowerCase=*/true);
}
