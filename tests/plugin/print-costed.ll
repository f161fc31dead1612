; What is printed about functions that are costed: the record and the decision, with the one reason of a refusal.
; RUN: %opt -passes='print<inlinerecursion>' -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --check-prefixes=ALL,ZERO
; RUN: %opt -passes='print<inlinerecursion><level=3>' -maximum-clone-limit-inline-recursion=1 -disable-output %s 2>&1 | FileCheck %s --match-full-lines --strict-whitespace --check-prefixes=ALL,THREE

;       ALL:InlineRecursion: Function chain Summary:
;  ALL-NEXT:   IsRecursiveFunction: 1
;  ALL-NEXT:   NumOfBlocks: 1
;  ALL-NEXT:   NumOfInsts: 3
;  ALL-NEXT:   NumOfBranches: 0
;  ALL-NEXT:   NumOfFunctionCalls: 1
;  ALL-NEXT:   NumOfRecursiveCalls: 1
;  ALL-NEXT:   NumOfCandidateFunCallSiteInMod: 1
;  ALL-NEXT:   NumOfCandidateFunCallSite in chain: 1
;  ALL-NEXT:   EstimatedDepth: unknown
;  ALL-NEXT:   ExternalCallSites: 0
;  ALL-NEXT:   Benefit: 1, limit 0
; ZERO-NEXT:   Decision: not chained, it is called from 0 places outside itself, not from exactly one
; ZERO-NEXT:   Plan: none
;THREE-NEXT:   Decision: chain of 1 copy at level 3
;THREE-NEXT:   Plan: chain copies=1 rules
;  ALL-NEXT:InlineRecursion: Function two_calls Summary:
;  ALL-NEXT:   IsRecursiveFunction: 1
;  ALL-NEXT:   NumOfBlocks: 1
;  ALL-NEXT:   NumOfInsts: 3
;  ALL-NEXT:   NumOfBranches: 0
;  ALL-NEXT:   NumOfFunctionCalls: 2
;  ALL-NEXT:   NumOfRecursiveCalls: 2
;  ALL-NEXT:   NumOfCandidateFunCallSiteInMod: 2
;  ALL-NEXT:   NumOfCandidateFunCallSite in two_calls: 2
;  ALL-NEXT:   EstimatedDepth: unknown
;  ALL-NEXT:   ExternalCallSites: 0
;  ALL-NEXT:   Benefit: 0, limit 0
;  ALL-NEXT:   Decision: not chained, it calls itself in 2 places, not in exactly one
;  ALL-NEXT:   Plan: none
;  ALL-NEXT:InlineRecursion: Function last Summary:
;       ALL:   NumOfCandidateFunCallSiteInMod: 2
;  ALL-NEXT:   NumOfCandidateFunCallSite in {{last|caller}}: 1
;  ALL-NEXT:   NumOfCandidateFunCallSite in {{last|caller}}: 1
;  ALL-NEXT:   EstimatedDepth: unknown
;  ALL-NEXT:   ExternalCallSites: 1
;  ALL-NEXT:   Benefit: not estimated
; ZERO-NEXT:   Decision: not chained, the depth of its recursion is not a known constant
; ZERO-NEXT:   Plan: none
;THREE-NEXT:   Decision: not chained, 1 more copies on top of 1 would exceed the limit of 1 per module
;THREE-NEXT:   Plan: none
;   ALL-NOT:{{.}}

define i32 @chain(i32 %n) {
  %m = sub i32 %n, 1
  %x = call i32 @chain(i32 %m)
  ret i32 %x
}
define i32 @two_calls(i32 %n) {
  %x = call i32 @two_calls(i32 %n)
  %y = call i32 @two_calls(i32 %x)
  ret i32 %y
}
define i32 @last(i32 %n, i32 %m) {
  %x = call i32 @last(i32 %m, i32 %n)
  ret i32 %x
}
define i32 @caller(i32 %n) {
  %x = call i32 @last(i32 %n, i32 3)
  ret i32 %x
}
