; The original of a chain that was imported by ThinLTO: once the chain is merged into
; its caller, only its own call uses it, and constants fold that away when it is
; merged.  LLVM's inliner would delete the function that it stands in, and crash over
; the remark.
; RUN: %opt -passes='thinlto<O2>' -pass-remarks=inline -S %s 2>&1 | FileCheck %s
; RUN: %opt -passes=inlinerecursion-pipeline -S %s | FileCheck %s --check-prefix=EARLY

; CHECK: 'work.recurse.clone' inlined into 'main'
; CHECK: define {{.*}}@main()
; EARLY: define available_externally void @work(
; EARLY: call void @work({{.*}}) #[[KEPT:[0-9]+]]
; EARLY: attributes #[[KEPT]] = { noinline }

@Fuel = external global i32
@Table = external global [16 x i32]

define void @main() {
  call void @work(i32 1, i8 0)
  ret void
}

define available_externally void @work(i32 %x, i8 %kind) {
entry:
  %fuel = load i32, ptr @Fuel
  %stop = icmp eq i32 %fuel, 0
  br i1 %stop, label %exit, label %body
body:
  %less = sub i32 %fuel, 1
  store i32 %less, ptr @Fuel
  %again = icmp eq i8 %kind, 2
  br i1 %again, label %more, label %exit
more:
  %slot = getelementptr inbounds [16 x i32], ptr @Table, i64 0, i64 3
  %next = load volatile i32, ptr %slot
  call void @work(i32 %next, i8 0)
  store i32 %x, ptr @Fuel
  br label %exit
exit:
  ret void
}
