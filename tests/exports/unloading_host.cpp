// usage: unloading_host LIBRARY
// A host that unloads the library while a document is open, loads it again and goes on with what it has.

#include "cordelbox.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

#ifdef _WIN32
using Library = HMODULE;

Library Load(const char* library) { return ::LoadLibraryA(library); }

void Unload(Library library) {
    ::FreeLibrary(library);
    ::VirtualAlloc(library, 1, MEM_RESERVE, PAGE_NOACCESS); // where it is gone, it does not come back to its place
}

template <class Function>
Function* Find(Library library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

fs::path OwnFolder() {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, path, MAX_PATH);
    return fs::path(path).parent_path();
}

SemaphoreHandle NewSemaphore() { return ::CreateSemaphoreA(nullptr, 1, 1, nullptr); }
#else
using Library = void*;

Library Load(const char* library) { return ::dlopen(library, RTLD_NOW | RTLD_LOCAL); }
void Unload(Library library) { ::dlclose(library); }

template <class Function>
Function* Find(Library library, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(library, name));
}

fs::path OwnFolder() { return fs::read_symlink("/proc/self/exe").parent_path(); }

SemaphoreHandle NewSemaphore() {
    static sem_t semaphore;
    return ::sem_init(&semaphore, 0, 1) == 0 ? &semaphore : nullptr;
}
#endif

void InstallStrings(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "<Strings><Main><Item Title=\"Title\"/></Main></Strings>";
}

} // namespace

int main(int, char** arguments) {
    const fs::path folder = OwnFolder();
#ifndef _WIN32
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
#endif
    InstallStrings(folder / "Cordelbox" / "language" / "Unloaded" / "Strings.xml");
    PoolOwner owner{nullptr, nullptr, NewSemaphore()};

    Library library = Load(arguments[1]);
    if (library == nullptr) {
        std::fprintf(stderr, "%s is not loaded\n", arguments[1]);
        return 1;
    }
    CXmlObject* const opened = Find<decltype(GetXmlObj)>(library, "GetXmlObj")(&owner, "Unloaded");
    Unload(library);
    library = Load(arguments[1]);
    const bool bSame =
        opened != nullptr && Find<decltype(GetXmlObj)>(library, "GetXmlObj")(&owner, "Unloaded") == opened;
    const AnsiString title = Find<decltype(GetXMLString)>(library, "GetXMLString")("Main", "Title");
    for (int opens = 0; opens < 2; ++opens) {
        Find<decltype(ReleaseAll)>(library, "ReleaseAll")();
    }
    std::printf("the same document: %d, title: %s, open in the end: %d\n", bSame ? 1 : 0, title.c_str(),
                owner.head != nullptr ? 1 : 0);
    return bSame && title == "Title" && owner.head == nullptr ? 0 : 1;
}
