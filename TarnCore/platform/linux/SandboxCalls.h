#pragma once

namespace tarn::Sandbox {

/// Part of `enter`: from now on the system calls that reach beyond this process and its open files
/// fail with EPERM. False where the kernel has no seccomp or the processor is one whose numbers of
/// calls are not known here.
bool restrictCalls();

}  // namespace tarn::Sandbox
