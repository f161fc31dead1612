; In a pipeline, nothing is analysed for functions that are neither recursive nor requested.
; RUN: %opt -passes='inlinerecursion-pipeline<level=3;no-find-requests>' -debug-pass-manager -disable-output %s 2>&1 | FileCheck %s --implicit-check-not='Analysis on plain' --implicit-check-not='Analysis on weak'
; RUN: %opt -passes='inlinerecursion<level=3>' -debug-pass-manager -disable-output %s 2>&1 | FileCheck %s --check-prefixes=CHECK,BARE

; BARE: Running analysis: ScalarEvolutionAnalysis on plain
define i32 @plain(i32 %n) {
  ret i32 %n
}
; BARE: Running analysis: ScalarEvolutionAnalysis on weak
define weak i32 @weak(i32 %n) {
  %r = call i32 @weak(i32 %n)
  ret i32 %r
}
; CHECK: Running analysis: ScalarEvolutionAnalysis on recursive
define i32 @recursive(i32 %n) {
  %r = call i32 @recursive(i32 %n)
  ret i32 %r
}
