// The end of the process: one line on standard error, and neither a dialog nor any handler of the run-time.

#include "platform/process.h"

#include "cordelbox.h"

namespace platform {

namespace {

constexpr UINT kExitStatus = 3; // that of abort()

void WriteToStandardError(const char* text) noexcept {
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

/// A host may unload the library and leave documents open: it stays where it is all the same.
const bool kStaysLoaded = [] {
    HMODULE module = nullptr;
    return ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                reinterpret_cast<LPCSTR>(&WriteToStandardError), &module) != FALSE;
}();

} // namespace

void StopProcess(const char* line) noexcept {
    WriteToStandardError("cordelbox: ");
    WriteToStandardError(line);
    WriteToStandardError("\r\n");
    ::TerminateProcess(::GetCurrentProcess(), kExitStatus);
    for (;;) {
        ::Sleep(INFINITE); // the process ends under this thread
    }
}

} // namespace platform
