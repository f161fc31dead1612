# Most of the time that a source takes to compile goes into the headers of LLVM,
# so they are compiled once.  A source has to include what it uses all the same:
# the presets other than release build without this, and find out.

set(SHARED_HEADERS
  <map>
  <optional>
  <string>
  <vector>
  <llvm/ADT/MapVector.h>
  <llvm/ADT/STLExtras.h>
  <llvm/Analysis/InstructionSimplify.h>
  <llvm/Analysis/OptimizationRemarkEmitter.h>
  <llvm/Analysis/PostDominators.h>
  <llvm/Analysis/ScalarEvolutionExpressions.h>
  <llvm/IR/IRBuilder.h>
  <llvm/IR/InstIterator.h>
  <llvm/IR/IntrinsicInst.h>
  <llvm/IR/Module.h>
  <llvm/IR/PatternMatch.h>
  <llvm/Passes/PassBuilder.h>
  <llvm/Support/CommandLine.h>
  <llvm/Transforms/Utils/BasicBlockUtils.h>
  <llvm/Transforms/Utils/Cloning.h>
  <llvm/Transforms/Utils/Local.h>)

# share_headers(TARGET PRIVATE HEADER...) compiles the headers for a target;
# share_headers(TARGET REUSE_FROM OTHER) takes those of a target that is compiled
# with the same options.  A source with options of its own does without.
function(share_headers TARGET)
  get_target_property(SOURCES ${TARGET} SOURCES)
  foreach(SOURCE IN LISTS SOURCES)
    get_source_file_property(OPTIONS ${SOURCE} COMPILE_OPTIONS)
    if(OPTIONS)
      set_source_files_properties(${SOURCE} PROPERTIES
        SKIP_PRECOMPILE_HEADERS ON)
    endif()
  endforeach()
  target_precompile_headers(${TARGET} ${ARGN})
endfunction()
