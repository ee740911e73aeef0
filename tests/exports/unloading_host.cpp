// usage: unloading_host LIBRARY
// A host that unloads the library while a document is open, loads it again and goes on with what it has.

#include "cordelbox.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

void* Load(const char* library) {
    void* const loaded = ::dlopen(library, RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        std::exit(1);
    }
    return loaded;
}

template <class Function>
Function* Find(void* library, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(library, name));
}

void InstallStrings(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "<Strings><Main><Item Title=\"Title\"/></Main></Strings>";
}

} // namespace

int main(int, char** arguments) {
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    InstallStrings(folder / "Cordelbox" / "language" / "English" / "Strings.xml");
    sem_t semaphore;
    ::sem_init(&semaphore, 0, 1);
    PoolOwner owner{nullptr, nullptr, &semaphore};

    void* library = Load(arguments[1]);
    CXmlObject* const opened = Find<decltype(GetXmlObj)>(library, "GetXmlObj")(&owner, "English");
    ::dlclose(library);
    library = Load(arguments[1]);
    const bool bSame =
        opened != nullptr && Find<decltype(GetXmlObj)>(library, "GetXmlObj")(&owner, "English") == opened;
    const AnsiString title = Find<decltype(GetXMLString)>(library, "GetXMLString")("Main", "Title");
    for (int opens = 0; opens < 2; ++opens) {
        Find<decltype(ReleaseAll)>(library, "ReleaseAll")();
    }
    std::printf("the same document: %d, title: %s, open in the end: %d\n", bSame ? 1 : 0, title.c_str(),
                owner.head != nullptr ? 1 : 0);
    return bSame && title == "Title" && owner.head == nullptr ? 0 : 1;
}
