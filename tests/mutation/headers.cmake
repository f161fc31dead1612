# Read by CMake in the copy that tests/mutation/run builds: LLVM's headers are
# compiled once, because one source is compiled again for every mutant.

# A file with options of its own cannot share them.  The arguments go to
# target_precompile_headers().
function(share_headers TARGET)
  get_target_property(SOURCES ${TARGET} SOURCES)
  foreach(SOURCE IN LISTS SOURCES)
    get_source_file_property(OPTIONS ${SOURCE} TARGET_DIRECTORY ${TARGET}
      COMPILE_OPTIONS)
    if(OPTIONS)
      set_source_files_properties(${SOURCE} TARGET_DIRECTORY ${TARGET}
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
  endforeach()
  target_precompile_headers(${TARGET} ${ARGN})
endfunction()

function(share_all_headers)
  set(HEADERS)
  file(GLOB_RECURSE FILES pass/*.h pass/*.cpp host/*.h host/*.cpp
    plugin/*.h plugin/*.cpp)
  foreach(FILE IN LISTS FILES)
    file(STRINGS ${FILE} LINES REGEX "^#include \"llvm/")
    string(REGEX REPLACE "#include \"([^\"]*)\"" "<\\1>" LINES "${LINES}")
    list(APPEND HEADERS ${LINES})
  endforeach()
  list(REMOVE_DUPLICATES HEADERS)
  share_headers(InlineRecursionPassObjects PRIVATE ${HEADERS})
  share_headers(InlineRecursionHostObjects
    REUSE_FROM InlineRecursionPassObjects)
  share_headers(InlineRecursionPluginObjects
    REUSE_FROM InlineRecursionPassObjects)
  # This one includes the pass's source.
  share_headers(FoldingAndBenefitTests PRIVATE ${HEADERS} <gmock/gmock.h>
    <gtest/gtest.h>)
endfunction()

cmake_language(DEFER CALL share_all_headers)
