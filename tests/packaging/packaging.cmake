# Run by ctest: what a user does with an installed project.

# Runs a command that has to succeed; its standard output goes to OUTPUT.
function(run OUTPUT)
  execute_process(COMMAND ${ARGN}
    RESULT_VARIABLE Status OUTPUT_VARIABLE Out ERROR_VARIABLE Err)
  if(NOT Status EQUAL 0)
    message(FATAL_ERROR "failed (${Status}): ${ARGN}\n${Out}${Err}")
  endif()
  set(${OUTPUT} "${Out}${Err}" PARENT_SCOPE)
endfunction()

function(expect WHAT TEXT PATTERN)
  if(NOT TEXT MATCHES "${PATTERN}")
    message(FATAL_ERROR "${WHAT}: expected ${PATTERN} in:\n${TEXT}")
  endif()
  message(STATUS "${WHAT}: as expected")
endfunction()

file(REMOVE_RECURSE ${Scratch})
set(Prefix ${Scratch}/prefix)
run(_ ${CMAKE_COMMAND} --install ${Build} --prefix ${Prefix})

# A program that is compiled with the pass.
run(_ ${CMAKE_COMMAND} -S ${Source}/examples/app -B ${Scratch}/app -G Ninja
  -DCMAKE_C_COMPILER=${Tools}/clang -DCMAKE_PREFIX_PATH=${Prefix}
  -DCMAKE_C_FLAGS=-Rpass=inlinerecursion)
run(Output ${CMAKE_COMMAND} --build ${Scratch}/app)
expect("flags target" "${Output}" "'fraction' rebuilt as a chain of 7 copies")
run(Output ${Scratch}/app/fraction 1000)

# What became of it, in the report of the installed copy, whose parts are installed,
# too.
run(_ ${CMAKE_COMMAND} -S ${Source}/examples/app -B ${Scratch}/app-recorded -G Ninja
  -DCMAKE_C_COMPILER=${Tools}/clang -DCMAKE_PREFIX_PATH=${Prefix}
  -DCMAKE_C_FLAGS=-fsave-optimization-record)
run(_ ${CMAKE_COMMAND} --build ${Scratch}/app-recorded)
run(Output ${Prefix}/bin/inlinerecursion-report ${Scratch}/app-recorded)
expect("report" "${Output}" "fraction +[^ ]*fraction.c:[0-9]+ +chain +7 ")
run(_ ${Prefix}/bin/inlinerecursion-report --format html
  -o ${Scratch}/report.html ${Scratch}/app-recorded)
file(READ ${Scratch}/report.html Output)
expect("report's page" "${Output}" ">fraction</td>.*<svg")

# A plan, with the other tool.
run(_ ${Tools}/clang --config=${Prefix}/lib/inlinerecursion/inlinerecursion.cfg
  -O3 -c ${Source}/examples/fraction.c -o ${Scratch}/fraction.o
  -mllvm -inlinerecursion-write-plan=${Scratch}/app.plan)
run(Output ${Prefix}/bin/inlinerecursion-plan show ${Scratch}/app.plan)
expect("plan" "${Output}" "fraction +[^ ]*fraction.c +early +chain copies=7 ")

# With another compiler the configuration says what is wrong, unless the flags are
# to be ignored then.
find_program(Gcc gcc REQUIRED)
execute_process(COMMAND ${CMAKE_COMMAND} -S ${Source}/examples/app
    -B ${Scratch}/app-gcc -G Ninja -DCMAKE_C_COMPILER=${Gcc}
    -DCMAKE_PREFIX_PATH=${Prefix}
  RESULT_VARIABLE Status OUTPUT_VARIABLE Out ERROR_VARIABLE Err)
if(Status EQUAL 0)
  message(FATAL_ERROR "the flags of clang are taken for gcc")
endif()
expect("another compiler" "${Err}"
  "ClangFlags-needs-clang-16-and-the-compiler-is-GNU-[0-9.]+")
file(READ ${Source}/examples/app/CMakeLists.txt App)
string(REPLACE "find_package(InlineRecursion REQUIRED)"
  "find_package(InlineRecursion REQUIRED COMPONENTS IgnoreOtherCompilers)"
  App "${App}")
string(REPLACE "../fraction.c" "${Source}/examples/fraction.c" App "${App}")
file(WRITE ${Scratch}/ignoring/CMakeLists.txt "${App}")
run(_ ${CMAKE_COMMAND} -S ${Scratch}/ignoring -B ${Scratch}/ignoring/build
  -G Ninja -DCMAKE_C_COMPILER=${Gcc} -DCMAKE_PREFIX_PATH=${Prefix})
run(_ ${CMAKE_COMMAND} --build ${Scratch}/ignoring/build)
message(STATUS "another compiler, ignored: as expected")

# A compiler that links the library.
run(_ ${CMAKE_COMMAND} -S ${Source}/examples/compiler -B ${Scratch}/compiler
  -G Ninja -DCMAKE_PREFIX_PATH=${Prefix} -DLLVM_DIR=${LLVMDir})
run(_ ${CMAKE_COMMAND} --build ${Scratch}/compiler)
file(WRITE ${Scratch}/down.ll "
define i32 @down(i32 %n) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %more
more:
  %m = udiv i32 %n, 3
  %r = call i32 @down(i32 %m)
  %s = mul i32 %r, %r
  %t = add i32 %s, %n
  ret i32 %t
end:
  ret i32 1
}
define i32 @enter(i32 %n) {
  %r = call i32 @down(i32 %n)
  ret i32 %r
}
")
run(Output ${Scratch}/compiler/tiny-compiler ${Scratch}/down.ll)
# One level of the recursion has been inlined into the caller.
expect("linked library" "${Output}" "define i32 @enter[^}]*udiv[^}]*@down")

# The configuration file, from an installed place, with the plugin's options and
# for assembly too.
file(GLOB_RECURSE Config ${Prefix}/inlinerecursion.cfg)
run(Output ${Tools}/clang --config=${Config} -O3 -Rpass=inlinerecursion
  -mllvm -inline-recursion-opt-level=4
  ${Source}/examples/fraction.c -o ${Scratch}/fraction)
expect("configuration file" "${Output}" "chain of 10 copies at level 4")
file(WRITE ${Scratch}/nothing.s ".globl nothing\nnothing: ret\n")
run(_ ${Tools}/clang --config=${Config} -O3 -c ${Scratch}/nothing.s
  -o ${Scratch}/nothing.o)
file(WRITE ${Scratch}/request.c "
#include <inlinerecursion/request.h>
INLINERECURSION_SPECIALIZE static int f(int n) {
  int k = n % 3;
  return n <= 0 ? k : k + f(n - 1) * 2;
}
int g(int n) { return f(n); }
")
run(Output ${Tools}/clang --config=${Config} -O3 -Rpass=inlinerecursion
  -c ${Scratch}/request.c -o ${Scratch}/request.o)
expect("installed header" "${Output}" "ring of 3 copies")

# Fortran: the plugin loads and the program still computes the same.
file(GLOB_RECURSE Config ${Prefix}/inlinerecursion-flang.cfg)
file(WRITE ${Scratch}/factorial.f90 "
program main
  implicit none
  print *, factorial(5)
contains
  recursive function factorial(n) result(r)
    integer, intent(in) :: n
    integer :: r
    if (n == 0) then
      r = 1
    else
      r = n * factorial(n - 1)
    end if
  end function
end program
")
run(Output ${Tools}/flang-new --config=${Config} -O3
  ${Scratch}/factorial.f90 -o ${Scratch}/factorial)
run(Output ${Scratch}/factorial)
expect("Fortran" "${Output}" "120")
