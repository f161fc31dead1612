//===- Verdict.cpp - One decision about one function ----------------------===//

#include "plugin/tell/Verdict.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

std::string Verdict::str() const {
  std::string Text;
  for (const Argument &Piece : Message)
    Text += Piece.Val;
  return Text;
}
