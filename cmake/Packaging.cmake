# The documentation, and a Debian package of everything that is installed:
#
#   cd build/release && cpack -G DEB
#
# The package holds two files more than `cmake --install` writes.  Debian's clang and
# flang look for `--config=NAME` beside their executables and nowhere else, so a file of
# that name lies there and includes the one that lies beside the plugin.

set(PackageName inlinerecursion-${LLVM_VERSION_MAJOR})
set(PackageDocDir ${CMAKE_INSTALL_DATAROOTDIR}/doc/${PackageName})

# The same folders as in a checkout, for the links between the pages.
file(GLOB Pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md
  ${PROJECT_SOURCE_DIR}/docs/*.svg)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${CMAKE_CURRENT_LIST_DIR}/copyright
  DESTINATION ${PackageDocDir})
install(FILES ${Pages} DESTINATION ${PackageDocDir}/docs)
install(FILES ${PROJECT_SOURCE_DIR}/docs/results/report.md
  DESTINATION ${PackageDocDir}/docs/results)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${PackageDocDir}
  USE_SOURCE_PERMISSIONS)

# A package goes below /usr, where LLVM's own packages are; only there are the
# compilers at a known place.
set(PackagePrefix /usr)
file(RELATIVE_PATH CompilersFromPrefix ${PackagePrefix} ${LLVM_TOOLS_BINARY_DIR})
if(NOT CompilersFromPrefix MATCHES "^\\.\\.")
  file(RELATIVE_PATH ConfigsFromCompilers /${CompilersFromPrefix}
    /${CMAKE_INSTALL_LIBDIR}/inlinerecursion)
  foreach(Config inlinerecursion.cfg inlinerecursion-flang.cfg)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/compilers/${Config}
      CONTENT "# What --config=${Config}, without a path, finds.\n@${ConfigsFromCompilers}/${Config}\n")
  endforeach()
  install(DIRECTORY ${PROJECT_BINARY_DIR}/compilers/
    DESTINATION ${CompilersFromPrefix} COMPONENT compilers EXCLUDE_FROM_ALL)
  set(CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_BINARY_DIR};${PROJECT_NAME};ALL;/"
    "${PROJECT_BINARY_DIR};${PROJECT_NAME};compilers;/")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${PackageName})
# A placeholder, for whoever publishes the package.
set(CPACK_PACKAGE_CONTACT "InlineRecursion maintainers <maintainers@example.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${PackagePrefix})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "LLVM ${LLVM_VERSION_MAJOR} plugin that makes recursive functions fast")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "A recursive function becomes a chain of copies, in which each copy calls the
next one, so that the inliner and everything behind it has straight code to
work on. The plugin is loaded by clang, flang, opt and lld of LLVM ${LLVM_VERSION_MAJOR}, as in
clang-${LLVM_VERSION_MAJOR} --config=inlinerecursion.cfg -O3 program.c
.
With it come configuration files, a CMake package, the library for compilers
that link the pass, headers, documentation, examples, inlinerecursion-report,
which shows what the plugin did to a whole program, inlinerecursion-plan, which
shows, merges and checks plans of what it is to do, and inlinerecursion-tune,
which finds the plan that makes a program fastest.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "libc6, libgcc-s1, libllvm${LLVM_VERSION_MAJOR}, libstdc++6, python3, python3-yaml")
# The Python libraries are what inlinerecursion-tune works with.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "clang-${LLVM_VERSION_MAJOR}, python3-matplotlib, python3-scipy, python3-tqdm")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS
  "cmake, flang-${LLVM_VERSION_MAJOR}, graphviz, lld-${LLVM_VERSION_MAJOR}, llvm-${LLVM_VERSION_MAJOR}")
include(CPack)
