// A complete host: opens the documents, takes a printer's report, adds a file, ticks it, checks the IDs, reads back
// what would be sent, and shuts down. docs/guide.md walks through it.
//
// usage: sending_host; the folder Cordelbox lies beside the program.

#include <cordelbox.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>

#ifdef _WIN32
namespace {
SemaphoreHandle NewSemaphore() { return CreateSemaphoreA(nullptr, 1, 1, nullptr); }
void DeleteSemaphore(SemaphoreHandle semaphore) { CloseHandle(semaphore); }
} // namespace
#else
namespace {
sem_t poolSemaphore;
SemaphoreHandle NewSemaphore() { return sem_init(&poolSemaphore, 0, 1) == 0 ? &poolSemaphore : nullptr; }
void DeleteSemaphore(SemaphoreHandle semaphore) { sem_destroy(semaphore); }
} // namespace

// Off Windows the message box is the host's own. This host prints.
extern "C" int MessageBoxA(WindowHandle, const char* text, const char* caption, unsigned int) {
    std::fprintf(stderr, "[%s] %s\n", caption, text);
    return 0;
}
extern "C" int EnableWindow(WindowHandle, int) { return 0; }
#endif

namespace {

/// Copies text into a fixed field. A text that is too long is the host's to handle: the library would stop the process
/// when it is read back.
template <std::size_t size>
void SetField(char (&field)[size], const std::string& text) {
    if (text.size() >= size) {
        throw std::length_error("too long for a field: " + text);
    }
    std::memcpy(field, text.c_str(), text.size() + 1);
}

/// Opens the documents and closes them again.
class CLibrary {
public:
    explicit CLibrary(const char* language) {
        // May throw; the library is then of no further use in this process.
        const bool bStrings = GetXmlObj(&m_owner, language) != nullptr;
        if (!bStrings) {
            std::fprintf(stderr, "no texts for %s: messages will be empty\n", language);
        }
    }
    ~CLibrary() {
        ReleaseAll();
        DeleteSemaphore(m_owner.semaphore);
    }
    CLibrary(const CLibrary&) = delete;
    CLibrary& operator=(const CLibrary&) = delete;

private:
    PoolOwner m_owner{nullptr, nullptr, NewSemaphore()};
};

void RecordStorage() {
    VolumeRecord volume{};
    SetField(volume.volume, "0:");
    SetField(volume.totalSpace, "20480");
    SetField(volume.freeSpace, "18032");
    SetField(volume.status, "Ready");
    StorageRecord disk{};
    SetField(disk.name, "Hard disk");
    disk.volumes = &volume;
    disk.volumeCount = 1;
    const PrinterInfo report{&disk, 1};
    DelAllElem("Storage"); // a fresh report: older items do not go by themselves
    PrinterInfoProc(&report);
}

void AddMacro(const std::string& fileId, const std::string& localPath) {
    if (IsPathConflict(localPath.c_str()) != 0) {
        std::printf("%s is in the project already\n", localPath.c_str());
        return;
    }
    const int32_t id = GetValidID(2);
    if (id < 0) {
        throw std::runtime_error("every ID of this kind is taken");
    }
    FileItem file{};
    SetField(file.FileID, fileId);
    SetField(file.ID, std::to_string(id));
    SetField(file.Type, "2");
    SetField(file.Volume, "0:");
    SetField(file.Path, "0:\\macro\\" + fileId);
    SetField(file.LocalPath, localPath);
    WritePrjFile(&file);
}

/// The chain starts in the caller's record; the rest is given back record by record.
void PrintTicked() {
    FileItem first{};
    const int32_t count = GetFiles(&first);
    const FileItem* file = &first;
    for (int32_t index = 0; index < count; ++index, file = file->next) {
        std::printf("to send: %s as ID %s\n", file->LocalPath, file->ID);
    }
    for (FileItem *link = count > 0 ? first.next : nullptr, *next = nullptr; link != nullptr; link = next) {
        next = link->next;
        FileItem before{};
        before.next = link;
        FreeFileItem(&before);
    }
}

void Run() {
    const CLibrary library("English");
    RecordStorage();
    std::printf("free on 0: %s\n", GetAttrValue1("Storage", "Volume", "0:", "FreeSpace").c_str());

    DelAllElem("Files");
    AddMacro("1", "/home/user/stamp.mac");
    AddMacro("1", "/home/user/STAMP.MAC"); // paths are compared without regard to case
    WriteAttr("Files", "checked", "1");    // ticks the first file of the list

    MessageWindows windows{}; // no owner, nothing to disable
    std::printf("IDs are %s\n", IdsAreValid(&windows) != 0 ? "valid" : "not valid");
    PrintTicked();
}

} // namespace

int main() {
    try {
        Run();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
