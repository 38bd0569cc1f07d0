#pragma once

/// Whether this process has asked for memory that it could not have: libraries seldom say so, they
/// only fail. Known where the C library is glibc and no sanitizer watches; elsewhere nothing is
/// ever refused. Callable from any thread.
namespace tarn::extract::RefusedMemory {

void forget();
bool wasAny();

}  // namespace tarn::extract::RefusedMemory
