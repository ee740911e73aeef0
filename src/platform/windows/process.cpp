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
