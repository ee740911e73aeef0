// Part of the library in a measured build only: a process that the library stops writes down first what it has reached,
// so that the tests in which a process ends count too. Calls to end a process come here, since an entry of the
// module's own for an imported function goes before that of a library.

#include "cordelbox.h"

extern "C" void __gcov_dump(void);

namespace {

BOOL WINAPI KeepCountsAndTerminate(HANDLE process, UINT status) {
    __gcov_dump();
    const auto address = ::GetProcAddress(::GetModuleHandleA("kernel32.dll"), "TerminateProcess");
    return reinterpret_cast<decltype(&::TerminateProcess)>(reinterpret_cast<void*>(address))(process, status);
}

} // namespace

extern "C" {

decltype(&::TerminateProcess) __imp_TerminateProcess = KeepCountsAndTerminate;

} // extern "C"
