// A system that lacks something: memory, a semaphore, COM, a folder; or whose code page is UTF-8. The program has
// entries of its own for the functions that tell, to which the library's calls come.

#pragma once

#include "cordelbox.h"

#include <limits>
#include <string>

/// The function itself; the first argument only tells of what type it is.
template <class Function>
Function RealFunction(Function, const char* name, const char* library) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryA(library), name)));
}

struct Lacks {
    // So many are granted, and then all are refused.
    int nAllocations = std::numeric_limits<int>::max();
    int nConversions = std::numeric_limits<int>::max();
    bool bCom = false;
    bool bSemaphores = false;
    bool bApplicationData = false;
    bool bArrays = false;
};

/// While it lives, the system lacks what is named. Nothing else may be looked at or reported meanwhile.
class CLackingSystem {
public:
    explicit CLackingSystem(const Lacks& lacks);
    ~CLackingSystem();
    CLackingSystem(const CLackingSystem&) = delete;
    CLackingSystem& operator=(const CLackingSystem&) = delete;

    /// Whether memory was refused.
    bool HasRefused() const noexcept;
};

/// While it lives, the path of the host is another one.
class CHostPath {
public:
    explicit CHostPath(const std::string& path);
    ~CHostPath();
    CHostPath(const CHostPath&) = delete;
    CHostPath& operator=(const CHostPath&) = delete;

private:
    const std::string m_strPath;
};

/// While it lives, the code page is another one of single bytes, or UTF-8.
class CCodePage {
public:
    explicit CCodePage(UINT codePage = CP_UTF8);
    ~CCodePage();
    CCodePage(const CCodePage&) = delete;
    CCodePage& operator=(const CCodePage&) = delete;
};

// What this program has made, less what it has given back: memory, texts and arrays of COM, semaphores.
int Blocks() noexcept;
int ComTexts() noexcept;
int ComArrays() noexcept;
int SemaphoreHandles() noexcept;
