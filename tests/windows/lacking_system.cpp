#include "lacking_system.h"

#include <objbase.h>
#include <oleauto.h>
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

Lacks g_lacks;
const std::string* g_hostPath = nullptr;
UINT g_codePage = CP_ACP; // the system's own
std::atomic<int> g_nBlocks = 0;
int g_nComTexts = 0;
int g_nComArrays = 0;
std::array<HANDLE, 64> g_semaphores = {}; // null: a free place

bool IsRefused(int& granted) noexcept { return granted != std::numeric_limits<int>::max() && granted-- <= 0; }

bool IsMemoryRefused() noexcept { return IsRefused(g_lacks.nAllocations); }

UINT CodePage(UINT codePage) noexcept { return codePage == CP_ACP ? g_codePage : codePage; }

} // namespace

CLackingSystem::CLackingSystem(const Lacks& lacks) { g_lacks = lacks; }

CLackingSystem::~CLackingSystem() { g_lacks = {}; }

bool CLackingSystem::HasRefused() const noexcept { return g_lacks.nAllocations < 0; }

CHostPath::CHostPath(const std::string& path) : m_strPath(path) { g_hostPath = &m_strPath; }

CHostPath::~CHostPath() { g_hostPath = nullptr; }

CCodePage::CCodePage(UINT codePage) { g_codePage = codePage; }

CCodePage::~CCodePage() { g_codePage = CP_ACP; }

int Blocks() noexcept { return g_nBlocks; }

int ComTexts() noexcept { return g_nComTexts; }

int ComArrays() noexcept { return g_nComArrays; }

int SemaphoreHandles() noexcept {
    return static_cast<int>(g_semaphores.size() - std::count(g_semaphores.begin(), g_semaphores.end(), nullptr));
}

namespace {

void* Allocate(std::size_t size) noexcept {
    void* const memory = IsMemoryRefused() ? nullptr : std::malloc(size != 0 ? size : 1);
    g_nBlocks += memory != nullptr ? 1 : 0;
    return memory;
}

void Free(void* memory) noexcept {
    g_nBlocks -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }

void operator delete(void* memory) noexcept { Free(memory); }

void operator delete(void* memory, std::size_t) noexcept { Free(memory); }

namespace {

BSTR WINAPI LackingSysAllocStringLen(const OLECHAR* text, UINT length) {
    static const auto s_real = RealFunction(&::SysAllocStringLen, "SysAllocStringLen", "oleaut32.dll");
    const BSTR made = IsMemoryRefused() ? nullptr : s_real(text, length);
    g_nComTexts += made != nullptr ? 1 : 0;
    return made;
}

void WINAPI CountedSysFreeString(BSTR text) {
    static const auto s_real = RealFunction(&::SysFreeString, "SysFreeString", "oleaut32.dll");
    g_nComTexts -= text != nullptr ? 1 : 0;
    s_real(text);
}

HRESULT WINAPI LackingCoInitialize(LPVOID reserved) {
    static const auto s_real = RealFunction(&::CoInitialize, "CoInitialize", "ole32.dll");
    return g_lacks.bCom ? RPC_E_CHANGED_MODE : s_real(reserved);
}

HANDLE WINAPI LackingCreateSemaphoreA(LPSECURITY_ATTRIBUTES security, LONG count, LONG most, LPCSTR name) {
    static const auto s_real = RealFunction(&::CreateSemaphoreA, "CreateSemaphoreA", "kernel32.dll");
    const HANDLE made = g_lacks.bSemaphores ? nullptr : s_real(security, count, most, name);
    *std::find(g_semaphores.begin(), g_semaphores.end(), nullptr) = made;
    return made;
}

BOOL WINAPI CountedCloseHandle(HANDLE handle) {
    static const auto s_real = RealFunction(&::CloseHandle, "CloseHandle", "kernel32.dll");
    std::replace(g_semaphores.begin(), g_semaphores.end(), handle, HANDLE{nullptr});
    return s_real(handle);
}

SAFEARRAY* WINAPI LackingSafeArrayCreateVector(VARTYPE type, LONG first, ULONG count) {
    static const auto s_real = RealFunction(&::SafeArrayCreateVector, "SafeArrayCreateVector", "oleaut32.dll");
    SAFEARRAY* const made = g_lacks.bArrays ? nullptr : s_real(type, first, count);
    g_nComArrays += made != nullptr ? 1 : 0;
    return made;
}

HRESULT WINAPI CountedSafeArrayDestroy(SAFEARRAY* array) {
    static const auto s_real = RealFunction(&::SafeArrayDestroy, "SafeArrayDestroy", "oleaut32.dll");
    g_nComArrays -= array != nullptr ? 1 : 0;
    return s_real(array);
}

BOOL WINAPI LackingSHGetSpecialFolderPathA(HWND owner, LPSTR path, int folder, BOOL bCreate) {
    static const auto s_real = RealFunction(&::SHGetSpecialFolderPathA, "SHGetSpecialFolderPathA", "shell32.dll");
    return g_lacks.bApplicationData ? FALSE : s_real(owner, path, folder, bCreate);
}

/// A path that is too long is cut.
DWORD WINAPI LackingGetModuleFileNameA(HMODULE module, LPSTR path, DWORD size) {
    static const auto s_real = RealFunction(&::GetModuleFileNameA, "GetModuleFileNameA", "kernel32.dll");
    if (g_hostPath == nullptr) {
        return s_real(module, path, size);
    }
    const std::size_t length = g_hostPath->copy(path, size - 1);
    path[length] = '\0';
    return length == g_hostPath->size() ? static_cast<DWORD>(length) : size;
}

UINT WINAPI LackingGetACP() {
    static const auto s_real = RealFunction(&::GetACP, "GetACP", "kernel32.dll");
    return g_codePage != CP_ACP ? g_codePage : s_real();
}

int WINAPI LackingMultiByteToWideChar(UINT codePage, DWORD flags, LPCCH bytes, int length, LPWSTR units, int size) {
    static const auto s_real = RealFunction(&::MultiByteToWideChar, "MultiByteToWideChar", "kernel32.dll");
    return IsRefused(g_lacks.nConversions) ? 0 : s_real(CodePage(codePage), flags, bytes, length, units, size);
}

int WINAPI LackingWideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH units, int length, LPSTR bytes, int size,
                                      LPCCH standIn, LPBOOL bUsed) {
    static const auto s_real = RealFunction(&::WideCharToMultiByte, "WideCharToMultiByte", "kernel32.dll");
    return s_real(CodePage(codePage), flags, units, length, bytes, size, standIn, bUsed);
}

} // namespace

extern "C" {

decltype(&::SysAllocStringLen) __imp_SysAllocStringLen = LackingSysAllocStringLen;
decltype(&::SysFreeString) __imp_SysFreeString = CountedSysFreeString;
decltype(&::CoInitialize) __imp_CoInitialize = LackingCoInitialize;
decltype(&::CreateSemaphoreA) __imp_CreateSemaphoreA = LackingCreateSemaphoreA;
decltype(&::CloseHandle) __imp_CloseHandle = CountedCloseHandle;
decltype(&::SafeArrayCreateVector) __imp_SafeArrayCreateVector = LackingSafeArrayCreateVector;
decltype(&::SafeArrayDestroy) __imp_SafeArrayDestroy = CountedSafeArrayDestroy;
decltype(&::SHGetSpecialFolderPathA) __imp_SHGetSpecialFolderPathA = LackingSHGetSpecialFolderPathA;
decltype(&::GetModuleFileNameA) __imp_GetModuleFileNameA = LackingGetModuleFileNameA;
decltype(&::GetACP) __imp_GetACP = LackingGetACP;
decltype(&::MultiByteToWideChar) __imp_MultiByteToWideChar = LackingMultiByteToWideChar;
decltype(&::WideCharToMultiByte) __imp_WideCharToMultiByte = LackingWideCharToMultiByte;

} // extern "C"
