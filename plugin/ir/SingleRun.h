//===- SingleRun.h - One module at a time -----------------------*- C++ -*-===//
//
/// \file
/// The pass carries the depth of the current function in a process-wide option,
/// while compilers run pipelines side by side in one process (the backends of
/// ThinLTO, for one).  Whoever runs the pass holds a SingleRun.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_SINGLERUN_H
#define INLINERECURSION_PLUGIN_IR_SINGLERUN_H

#include <mutex>

namespace llvm {
namespace inlinerecursion {

/// Waits until no other run is under way, and keeps others out while it lives.
class SingleRun {
public:
  SingleRun() : Lock(getMutex()) {}

private:
  static std::mutex &getMutex() {
    static std::mutex Mutex;
    return Mutex;
  }

  std::lock_guard<std::mutex> Lock;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_SINGLERUN_H
