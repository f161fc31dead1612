//===- LinkStep.h - Is link-time optimisation to come? ----------*- C++ -*-===//
//
/// \file
/// With link-time optimisation a module goes through the same passes twice, in
/// the compiler and in the linker.  Clang says so by flags of the module, which
/// it sets before its passes run.  They are still there in the linker, and the
/// backends of thin LTO run the same pipeline, and may be given the same
/// options where they are processes of their own.  So a compile step that
/// leaves something to the linker leaves a flag behind as well (LeftMark):
///
///   compile step          flags of clang            the linker is to come
///   backend of thin LTO   flags of clang, LeftMark  the linker is here
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_LINKSTEP_H
#define INLINERECURSION_PLUGIN_IR_LINKSTEP_H

#include "plugin/ir/Names.h"
#include "llvm/IR/Module.h"

namespace llvm {
namespace inlinerecursion {

/// Is \p M in a compile step, with a linker to come that optimises?
inline bool isLinkToCome(const Module &M) {
  // The first one is set for both kinds of link-time optimisation, the second
  // one for the full kind.
  return (M.getModuleFlag("EnableSplitLTOUnit") ||
          M.getModuleFlag("ThinLTO")) &&
         !M.getModuleFlag(LeftMark);
}

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_LINKSTEP_H
