/// @file
/// The interface of the Cordelbox core library: the data layer of a tool that manages the storage of
/// network printers. This header is all that a host needs.
///
/// A host keeps its state in XML documents that lie beside its executable, each with an optional
/// per-user copy:
///
///     document   file, relative to the folder of the host's executable
///     main       Cordelbox\xml\Cordelbox.xml
///     printer    Cordelbox\xml\<file name>                  one per printer; the host chooses the name
///     strings    Cordelbox\language\<language>\Strings.xml   the user-visible texts
///
/// The per-user copy lies at `<per-user root>\Marvane\Hollivet\<same relative path>`. The per-user root is
/// the roaming application-data folder on Windows; elsewhere it is $XDG_CONFIG_HOME, or else $HOME/.config,
/// of those that are an absolute path. Off Windows every `\` of a relative path becomes `/`.
///
/// What is loaded: the per-user copy when it exists and can be opened for reading and writing, otherwise the
/// installed document. What is saved: the whole document, and only over a per-user copy that exists and can
/// be written; the library never creates a file or a folder there and never writes beside the executable.
/// Without such a copy a change lasts until the document is released, and no function says so.
/// A save replaces the copy in one step: an interrupted save leaves the old document or the new one. Nobody may
/// do more with the copy afterwards than before. A save that would have to wait longer than a second for
/// somebody else does not take place.
///
/// Shape of every document: a container element, found by its tag name (the first one in document order
/// below the document element), holds a flat list of children, and each child carries one record in its
/// attributes. The children that the library adds are named "Item". Names and values are compared exactly,
/// with regard to case; an attribute's namespace prefix is ignored. A comment, text, processing instruction
/// or CDATA section among a container's children makes every read that reaches it fail.
///
/// Texts are zero-terminated 8-bit strings in the system's ANSI code page (UTF-8 off Windows). Where a null
/// pointer to a text is given it counts as the empty string.
///
/// Failures are silent: no message, no log, no error code beyond the results below. Three things stop the
/// process, each with one line on standard error: a value that does not fit a fixed text field, a clash
/// message that does not fit its 259 bytes, and a partition number too long for its field. Running out of
/// memory outside a document operation stops it as well. No exception leaves a function, except the two
/// that say so (GetXmlObj, GetPrinterXmlObj).
///
/// Threads: GetXmlObj, ReleaseAll, GetPrinterXmlObj and ReleaseXmlObj belong to one thread, at a time when
/// no other function runs. CheckID and IdsAreValid show a modal message box and belong to the thread of the
/// user interface. All others may be called from any thread at any time in between: each single read, write
/// and save of a document is made under that document's lock, but nothing is locked between the steps of
/// one function.
///
/// Off Windows the host owns the windows: see MessageBoxA and EnableWindow at the end.

#ifndef CORDELBOX_H
#define CORDELBOX_H

/// First number of this header's version: it changes when a host must be built anew.
#define CORDELBOX_VERSION_MAJOR 1
/// Second number of this header's version.
#define CORDELBOX_VERSION_MINOR 1
/// Third number of this header's version.
#define CORDELBOX_VERSION_PATCH 0

/// Whether this header has at least that version: `#if CORDELBOX_VERSION_AT_LEAST(1, 1, 0)`, for the preprocessor.
#define CORDELBOX_VERSION_AT_LEAST(major, minor, patch)                                                                \
    (CORDELBOX_VERSION_MAJOR > (major) ||                                                                              \
     (CORDELBOX_VERSION_MAJOR == (major) &&                                                                            \
      (CORDELBOX_VERSION_MINOR > (minor) ||                                                                            \
       (CORDELBOX_VERSION_MINOR == (minor) && CORDELBOX_VERSION_PATCH >= (patch)))))

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#ifdef CORDELBOX_BUILD
#define CORDELBOX_API __declspec(dllexport)
#else
#define CORDELBOX_API __declspec(dllimport)
#endif
#else
#include <semaphore.h>

#include <cstdlib>
#define CORDELBOX_API __attribute__((visibility("default")))
#endif

// ---------------------------------------------------------------------------------------------------------
// Handles

#ifdef _WIN32
using SemaphoreHandle = HANDLE; ///< a semaphore of CreateSemaphoreA, count 1, maximum 1
using WindowHandle = HWND;
#else
using SemaphoreHandle = sem_t*; ///< a semaphore of sem_init (not shared between processes), count 1
using WindowHandle = void*;     ///< whatever the host's MessageBoxA and EnableWindow take
#endif

/// One open document. Opaque: hosts only compare it with null.
struct CXmlObject;

/// One node of the list of open documents. Opaque.
struct PoolNode;

// ---------------------------------------------------------------------------------------------------------
// The string type

/// An 8-bit string: one pointer wide, immutable, its buffer shared between copies and counted atomically,
/// so that copies may be used and dropped in different threads. The buffer lies on the process heap (malloc
/// off Windows): host and library may release each other's strings although their run-time libraries differ.
/// An empty string has no buffer. A zero byte ends the text, wherever it stands.
/// Running out of memory throws std::bad_alloc.
class AnsiString {
public:
    AnsiString() noexcept = default;

    /// Copies zero-terminated text; null gives the empty string.
    AnsiString(const char* text) : AnsiString(text, text != nullptr ? std::strlen(text) : 0) {}

    /// Copies at most `length` bytes of `text`, up to its first zero byte.
    AnsiString(const char* text, std::size_t length) {
        if (length > static_cast<std::size_t>(PTRDIFF_MAX) - sizeof(Buffer) - 1) {
            throw std::bad_alloc();
        }
        const void* const zero = length != 0 ? std::memchr(text, 0, length) : nullptr;
        if (zero != nullptr) {
            length = static_cast<std::size_t>(static_cast<const char*>(zero) - text);
        }
        if (length != 0) {
            m_pBuffer = NewBuffer(length);
            std::memcpy(Text(m_pBuffer), text, length);
            Text(m_pBuffer)[length] = '\0';
        }
    }

    /// Shares the other's text.
    AnsiString(const AnsiString& other) noexcept : m_pBuffer(other.m_pBuffer) {
        if (m_pBuffer != nullptr) {
            m_pBuffer->m_nReferences.fetch_add(1, std::memory_order_relaxed);
        }
    }

    /// Takes the other's text and leaves it empty.
    AnsiString(AnsiString&& other) noexcept : m_pBuffer(other.m_pBuffer) { other.m_pBuffer = nullptr; }

    /// Shares or takes the other's text, as the constructors do.
    AnsiString& operator=(AnsiString other) noexcept {
        Buffer* const mine = m_pBuffer;
        m_pBuffer = other.m_pBuffer;
        other.m_pBuffer = mine;
        return *this;
    }

    ~AnsiString() {
        if (m_pBuffer != nullptr && m_pBuffer->m_nReferences.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            m_pBuffer->~Buffer();
            FreeBytes(m_pBuffer);
        }
    }

    /// The zero-terminated text; never null. Valid as long as this string or a copy of it lives.
    const char* c_str() const noexcept { return m_pBuffer != nullptr ? Text(m_pBuffer) : ""; }

    /// Length in bytes, without the terminating zero.
    std::size_t size() const noexcept { return m_pBuffer != nullptr ? m_pBuffer->m_nLength : 0; }

    /// Whether the text has no bytes.
    bool empty() const noexcept { return m_pBuffer == nullptr; }

    /// Byte for byte.
    friend bool operator==(const AnsiString& left, const AnsiString& right) noexcept {
        return left.m_pBuffer == right.m_pBuffer ||
               (left.size() == right.size() && std::memcmp(left.c_str(), right.c_str(), left.size()) == 0);
    }

    /// Byte for byte, with zero-terminated text; null equals the empty string.
    friend bool operator==(const AnsiString& left, const char* right) noexcept {
        return std::strcmp(left.c_str(), right != nullptr ? right : "") == 0;
    }

    /// Byte for byte.
    friend bool operator!=(const AnsiString& left, const AnsiString& right) noexcept { return !(left == right); }

    /// Byte for byte, with zero-terminated text; null equals the empty string.
    friend bool operator!=(const AnsiString& left, const char* right) noexcept { return !(left == right); }

private:
    struct Buffer { // the text and its terminating zero follow
        explicit Buffer(std::size_t length) noexcept : m_nReferences(1), m_nLength(length) {}
        std::atomic<std::size_t> m_nReferences;
        const std::size_t m_nLength;
    };

    static char* Text(Buffer* buffer) noexcept { return reinterpret_cast<char*>(buffer + 1); }

    static Buffer* NewBuffer(std::size_t length) {
        void* const bytes = AllocateBytes(sizeof(Buffer) + length + 1);
        if (bytes == nullptr) {
            throw std::bad_alloc();
        }
        return new (bytes) Buffer(length);
    }

#ifdef _WIN32
    static void* AllocateBytes(std::size_t size) noexcept { return ::HeapAlloc(::GetProcessHeap(), 0, size); }
    static void FreeBytes(void* bytes) noexcept { ::HeapFree(::GetProcessHeap(), 0, bytes); }
#else
    static void* AllocateBytes(std::size_t size) noexcept { return std::malloc(size); }
    static void FreeBytes(void* bytes) noexcept { std::free(bytes); }
#endif

    Buffer* m_pBuffer = nullptr;
};

// ---------------------------------------------------------------------------------------------------------
// Records. Plain, with natural alignment: a host that includes this header under another packing does not compile.
// Every fixed text field holds zero-terminated text; a field without a zero byte inside its width is an error of the
// host that the library does not guard against.

/// Owner of the list of open documents. The host creates it before GetXmlObj, with `head` null and a semaphore
/// of count 1, and keeps it alive until after ReleaseAll. With a null semaphore nothing can be opened.
struct PoolOwner {
    void* host;                ///< the host's own; never touched
    PoolNode* head;            ///< first open document; set to null by the host, then left to the library
    SemaphoreHandle semaphore; ///< guards the list; created and destroyed by the host
};

/// One volume of a storage device, as texts that the host formatted. They are stored unchanged.
struct VolumeRecord {
    char volume[256];     ///< "Volume"
    char totalSpace[256]; ///< "TotalSpace"
    char freeSpace[256];  ///< "FreeSpace"
    char location[256];   ///< "Location"
    char label[256];      ///< "Label"
    char status[256];     ///< "Status"
};

/// One storage device of a printer (a hard disk, a flash memory).
struct StorageRecord {
    char name[256];        ///< "StorageName"
    VolumeRecord* volumes; ///< `volumeCount` records, the host's; may be null when that is 0
    uint32_t volumeCount;  ///< also written as "VolumeNum"
};

/// A printer's storage report.
struct PrinterInfo {
    StorageRecord* storages; ///< `storageCount` records, the host's; may be null when that is 0
    uint32_t storageCount;   ///< number of devices
};

/// What sending the project does to one volume, as texts that the host formatted.
struct SendSpaceRecord {
    AnsiString volume;             ///< "Volume"
    AnsiString filesSize;          ///< "FilesSize"
    AnsiString freeSpace;          ///< "FreeSpace"
    AnsiString freeSpaceAfterSend; ///< "FreeSpaceAfterSend"
};

/// One partition of a printer's disk or flash memory.
struct PartitionRecord {
    int32_t image;    ///< "Image"
    const char* name; ///< "Partition"; the host's, read during the call only; null counts as empty
    int64_t size;     ///< bytes; "Size" is written in KiB, truncated toward zero
    int32_t percent;  ///< "Percent", for disk partitions only
};

/// One file of a project. The first nine fields are the attributes of the same names.
struct FileItem {
    char FileID[256];     ///< the file's key within the list
    char Component[256];  ///< the component that the file belongs to
    char ID[256];         ///< number under which the printer stores the file; decimal text
    char Type[256];       ///< "1" bitmap font, "5" TrueType font, "6" ICM profile, "2" and "8" further kinds
    char Volume[256];     ///< volume of the printer's storage
    char Path[256];       ///< path on the printer's storage
    char LocalPath[256];  ///< path on this computer
    char Size[256];       ///< size text
    char CreateDate[256]; ///< creation date text
    union {
        FileItem* next;     ///< from GetFiles: the next record of the chain, or null
        const void* detail; ///< to WritePrjFile: the detail record that belongs to Type (see there)
    };
};

/// Details of a TrueType font (Type "5").
struct TrueTypeDetail {
    char fontFamilyName[256];   ///< "FontFamilyName"
    char trueTypeFontName[256]; ///< "TrueTypeTontName": the attribute is spelt so
    char fontStyle[256];        ///< "FontStyle"
    char copyright[256];        ///< "Copyright"
    char postScriptName[256];   ///< "PostScriptName"
    char symbolSet[256];        ///< "SymbolSet"
};

/// Details of a bitmap font (Type "1").
struct BitmapFontDetail {
    char bitMapFontName[256]; ///< "BitMapFontName"
    char format[256];         ///< "Format"
    char xResolution[256];    ///< "Xresolution"
    char yResolution[256];    ///< "Yresolution"
    char fontType[256];       ///< "FontType"
    char symbolSet[256];      ///< "SymbolSet"
    char proportional[256];   ///< "Proportional"
    char pitchWidth[256];     ///< "PitchWidth"
    char height[256];         ///< "Height"
    char style[256];          ///< "Style"
    char strokeWeight[256];   ///< "StrokeWeight"
    char typeFace[256];       ///< "TypeFace"
    char escapeSequence[256]; ///< "EscapeSequence"
};

/// Details of an ICM colour profile (Type "6").
struct IcmProfileDetail {
    char description[256]; ///< "Description"
    char colorSpace[256];  ///< "ColorSpace"
    char deviceClass[256]; ///< "DeviceClass"
    char copyright[256];   ///< "Copyright"
    char icmType[4];       ///< "ICMType"
    char profileType[4];   ///< "ProfileType": "0", "2" or "3" (see GetAvailICMID)
    char comment[1];       ///< "Comment": zero-terminated, as long as the memory that the host allocated for it
};

/// The windows that the host lends for a message box.
struct MessageWindows {
    WindowHandle* owner;         ///< owner of the message box; null for none
    WindowHandle* windows[1024]; ///< windows disabled while the box is open; null slots are skipped
};

/// One print job stored on a printer.
struct JobRecord {
    char id[10];     ///< "ID"
    char name[100];  ///< "Name"
    char type[10];   ///< "Type"
    char copies[10]; ///< "Copies"
    char stored[10]; ///< "Stored"
    char checked[5]; ///< "checked": from GetJobs only; WriteJobList ignores it
};

// How the library lays them out: the size and the fields behind which a compiler could leave a gap, or leave one out.
static_assert(sizeof(AnsiString) == 8, "AnsiString is laid out otherwise");
static_assert(alignof(AnsiString) == 8, "AnsiString is aligned otherwise");
static_assert(sizeof(PoolOwner) == 24 && alignof(PoolOwner) == 8 && offsetof(PoolOwner, head) == 8 &&
                  offsetof(PoolOwner, semaphore) == 16,
              "PoolOwner is laid out otherwise");
static_assert(sizeof(VolumeRecord) == 1536 && offsetof(VolumeRecord, status) == 1280,
              "VolumeRecord is laid out otherwise");
static_assert(sizeof(StorageRecord) == 272 && alignof(StorageRecord) == 8 && offsetof(StorageRecord, volumes) == 256 &&
                  offsetof(StorageRecord, volumeCount) == 264,
              "StorageRecord is laid out otherwise");
static_assert(sizeof(PrinterInfo) == 16 && alignof(PrinterInfo) == 8 && offsetof(PrinterInfo, storageCount) == 8,
              "PrinterInfo is laid out otherwise");
static_assert(sizeof(SendSpaceRecord) == 32 && alignof(SendSpaceRecord) == 8 &&
                  offsetof(SendSpaceRecord, filesSize) == 8 && offsetof(SendSpaceRecord, freeSpace) == 16 &&
                  offsetof(SendSpaceRecord, freeSpaceAfterSend) == 24,
              "SendSpaceRecord is laid out otherwise");
static_assert(sizeof(PartitionRecord) == 32 && alignof(PartitionRecord) == 8 && offsetof(PartitionRecord, name) == 8 &&
                  offsetof(PartitionRecord, size) == 16 && offsetof(PartitionRecord, percent) == 24,
              "PartitionRecord is laid out otherwise");
static_assert(sizeof(FileItem) == 2312 && alignof(FileItem) == 8 && offsetof(FileItem, CreateDate) == 2048 &&
                  offsetof(FileItem, next) == 2304 && offsetof(FileItem, detail) == 2304,
              "FileItem is laid out otherwise");
static_assert(sizeof(TrueTypeDetail) == 1536, "TrueTypeDetail is laid out otherwise");
static_assert(sizeof(BitmapFontDetail) == 3328, "BitmapFontDetail is laid out otherwise");
static_assert(offsetof(IcmProfileDetail, icmType) == 1024 && offsetof(IcmProfileDetail, profileType) == 1028 &&
                  offsetof(IcmProfileDetail, comment) == 1032,
              "IcmProfileDetail is laid out otherwise");
static_assert(sizeof(MessageWindows) == 8200 && alignof(MessageWindows) == 8 && offsetof(MessageWindows, windows) == 8,
              "MessageWindows is laid out otherwise");
static_assert(sizeof(JobRecord) == 145 && offsetof(JobRecord, name) == 10 && offsetof(JobRecord, type) == 110 &&
                  offsetof(JobRecord, checked) == 140,
              "JobRecord is laid out otherwise");

// ---------------------------------------------------------------------------------------------------------
// Functions

#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage" // strings are returned by value on purpose
#endif

extern "C" {

// Documents -----------------------------------------------------------------------------------------------

/// Opens the main document, which becomes the current document, and the strings document of `language` (a
/// folder name). Must be the first call; `owner` is remembered for all that follow.
/// Returns the strings document, or null when that could not be opened. The result says nothing of the main
/// document: either may be open without the other. Each call adds one reference to each document opened; a
/// document that is open already is shared and not read again.
/// A document whose file is missing, unreadable, malformed, deeper than 1,000 elements or larger than 256 MiB
/// is not opened. External entities and external document type definitions are never read.
/// Throws a class derived from std::exception when the DOM's own load call fails (out of memory, say). The
/// semaphores of the pool and of that document may then stay taken: the host can only report and end.
CORDELBOX_API CXmlObject* GetXmlObj(PoolOwner* owner, const char* language);

/// Releases one reference of the main and of the strings document opened by the last GetXmlObj. Printer
/// documents stay open until they are released one by one. The current document must not be used afterwards.
/// Returns 0, also when nothing was open; 1 before any GetXmlObj and without a pool semaphore.
CORDELBOX_API int32_t ReleaseAll() noexcept;

/// Opens the printer document `fileName` (a file name in `Cordelbox\xml`), or shares it when it is open, and
/// makes it the current document. Returns null, and leaves no current document, when it cannot be opened.
/// Only another GetXmlObj makes the main document current again. Throws as GetXmlObj does.
///
/// The name is the host's to check: one with `..` or a separator leads to any XML file that the user may read, and
/// over a per-user copy of it to one that the user may write. The same holds for the language of GetXmlObj. A name
/// that comes from anywhere but the host itself is taken only when it is nothing but a name:
///     name[0] != '\0' && name[0] != '.' &&
///         std::strspn(name, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.") ==
///             std::strlen(name)
/// Two spellings of one file's name (other letter case on Windows, `./a.xml`, a link) are two documents, and the
/// last one that saves wins: a host keeps to one spelling.
CORDELBOX_API CXmlObject* GetPrinterXmlObj(const char* fileName);

/// Releases one reference of the printer document `fileName`; the last one closes it, and unsaved changes
/// are gone. When it was the current document, the host opens another before it uses one.
/// Returns 0, also for a document that is not open; 1 before any GetXmlObj and without a pool semaphore.
CORDELBOX_API int32_t ReleaseXmlObj(const char* fileName) noexcept;

// Reading -------------------------------------------------------------------------------------------------

/// The value of `attribute` on the first child of the container `element` of the current document that
/// carries it. A miss gives the empty string.
CORDELBOX_API AnsiString GetAttrValue(AnsiString element, AnsiString attribute) noexcept;

/// The same among the children whose attribute `filterName` has exactly the value `filterValue`.
/// A miss gives back `filterValue`, not the empty string: hosts rely on it.
CORDELBOX_API AnsiString GetAttrValue1(AnsiString element, AnsiString filterName, AnsiString filterValue,
                                       AnsiString attribute) noexcept;

/// GetAttrValue on the strings document.
CORDELBOX_API AnsiString GetXMLString(AnsiString element, AnsiString attribute) noexcept;

/// GetAttrValue1 on the strings document, with the same result on a miss.
CORDELBOX_API AnsiString GetXMLString1(AnsiString element, AnsiString filterName, AnsiString filterValue,
                                       AnsiString attribute) noexcept;

// Writing. Every function from here on that changes the current document saves it before it returns, also
// when nothing was changed; whether the save succeeded is not reported.
//
// A value or a name that XML cannot hold (a control character other than tab, newline and carriage return,
// U+FFFE, U+FFFF) is refused: nothing of that item or attribute is written. Bytes that are not valid in the
// code page are stored as U+FFFD.

/// Overwrites `attribute` on the first child of the container `element` that carries it. Never creates
/// anything. Saves. Always returns 1, whether or not anything was written.
CORDELBOX_API uint32_t WriteAttr(AnsiString element, AnsiString attribute, AnsiString value) noexcept;

/// Removes every child of the container `element`. Saves.
/// Returns 1 when at least one was removed, else 0.
CORDELBOX_API uint32_t DelAllElem(AnsiString element) noexcept;

/// Copies the value of `attribute` from the first child of the container `sourceElement` that carries it over
/// the one of `targetElement` that carries it. A source that does not exist blanks the target: the empty
/// string is written. Saves. Always returns 1.
CORDELBOX_API uint32_t CopyProperty(const char* sourceElement, const char* targetElement,
                                    const char* attribute) noexcept;

/// For each child of `sourceElement` with the attribute `keyAttribute`: copies attributes over the first child
/// of `targetElement` with the same key value. Only the first four attributes of a source child are copied,
/// the key among them if it stands there; attributes and children that the target lacks are not created.
/// Saves once for each key, and not at all when there is none. Always returns 1.
CORDELBOX_API uint32_t CopyElement(const char* sourceElement, const char* targetElement,
                                   const char* keyAttribute) noexcept;

// Printer storage -----------------------------------------------------------------------------------------

/// Adds one item per volume of the report to "Storage"; the first of each device also carries "VolumeNum".
/// An item that is there already, with all these values, is not added again; older items stay (DelAllElem
/// removes them). Saves once. Null counts as a report without devices. Always returns 1.
CORDELBOX_API uint32_t PrinterInfoProc(const PrinterInfo* info) noexcept;

/// Replaces the items of "SendProject" by `count` records; null or a count below 1 leaves it empty. Equal
/// records make one item. Saves twice: once empty, once complete. Always returns 1.
CORDELBOX_API uint32_t WriteFreeVolume(const SendSpaceRecord* records, int64_t count) noexcept;

/// Adds a partition to the current and to the default layout: "CurrentDisk" and "DefaultDisk" when `disk` is
/// not 0, else "CurrentFlash" and "DefaultFlash". An equal item is not added again; a changed one is added
/// beside the old. Saves. Null does nothing at all.
/// A "Size" of more than 14 characters, or a disk's "Percent" of more than 9, stops the process.
CORDELBOX_API void WritePartition(const PartitionRecord* partition, uint32_t disk) noexcept;

/// The "Percent" of every partition of "CurrentDisk" in document order, each followed by one blank. In place of
/// a missing percentage stands the partition's own name: hosts rely on it.
CORDELBOX_API AnsiString GetDiskPercent() noexcept;

/// Carries values from "CurrentDisk" to the items of the same "Partition" in "DefaultDisk". `mode` not 0: the
/// "Percent" and "Size" of all partitions. `mode` 0: the "Image" of the partition that "CurrentChosePartition"
/// names. A value missing at the source is replaced by the partition's name: hosts rely on it. Creates nothing. Saves.
CORDELBOX_API void CopyPatition(int32_t mode) noexcept;

// Files ---------------------------------------------------------------------------------------------------

/// Reads the ticked files ("checked" is exactly "1") of "Files" into a chain that starts with the caller's
/// record, and returns their number. Further records belong to the library: read `next` of each, then release
/// it with FreeFileItem. `Size` and `CreateDate` are not filled.
/// With no file ticked the result is 0, and the caller's record holds the last file of the list with its `next`
/// untouched: go by the result. Values are taken by position, ten attributes a file from "FileID" on.
/// A value of more than 255 bytes stops the process. Null gives 0.
CORDELBOX_API int32_t GetFiles(FileItem* first) noexcept;

/// Releases the record that `item->next` points to, and nothing else: neither `item` itself, nor further records.
/// `item->next` is not cleared. Null, and a null `next`, are ignored. A whole chain is released from its end, or:
///     for (FileItem link{}, *next = first.next; next != nullptr;) {
///         link.next = next; next = next->next; FreeFileItem(&link);
///     }
CORDELBOX_API void FreeFileItem(FileItem* item) noexcept;

/// Copies every attribute value of every child of the container `element` of the strings document to `buffer`,
/// each ended by a zero byte; one more zero byte ends the list. `size` in bytes is what is filled with zeros
/// before, and is not a limit: the host must supply a buffer that is large enough, and name its whole size, since the
/// ending zero bytes are those of the fill. This is the one function that can write past the host's memory. A null
/// buffer is ignored. Always returns 1.
CORDELBOX_API uint32_t GetFilter(AnsiString element, char* buffer, uint32_t size) noexcept;

/// 1 when a file of "Files" has this "LocalPath", without regard to letter case, else 0. Letters are folded one by
/// one to the lower case of Unicode, whatever the locale. Bytes that are not valid in the code page count as what
/// they would be stored as. Separators are compared as they stand.
CORDELBOX_API uint32_t IsPathConflict(AnsiString localPath) noexcept;

/// Adds a file to "Files", not ticked ("checked" = "0"), with the details of its Type: "5" a TrueTypeDetail,
/// "1" a BitmapFontDetail, "6" an IcmProfileDetail in `file->detail` (null: as if all its fields were empty). Any
/// other Type has no details, and `detail` is not read. A file with all the same values is not added again.
/// Saves. Null does nothing at all. Always returns 1.
CORDELBOX_API uint32_t WritePrjFile(const FileItem* file) noexcept;

/// Adds an item with "ID" and "Value" to the container `element`, unless an equal one is there. Saves.
CORDELBOX_API void WriteTestFileName(AnsiString element, AnsiString id, AnsiString value) noexcept;

/// Reads the 28 PCL settings of "PCLCurrentSetting" in their fixed order, from "CMFORMFEED" to
/// "CMFRAGMENT_CHECK" (docs/documents.md lists them). All 28 are always set: 0 for what is missing or no number,
/// and numbers beyond 32 bits become the nearest end of the range. Null is ignored. Always returns 1.
CORDELBOX_API uint32_t ReadPCLFilter(int32_t settings[28]) noexcept;

// File IDs ------------------------------------------------------------------------------------------------

/// Checks the file whose "FileID" is named by "Property" against the files of its group: Type "2"; Type "8";
/// fonts, Types "1" and "5" together. Other Types are not checked.
/// `id` receives the file's ID as a number, always; `kind` receives 1 for Type "2", 2 for Type "8", 0 for
/// fonts, and is left as it is otherwise. Either may be null.
/// Returns 1 without a clash. On a clash: disables the lent windows, shows the message box, enables the windows
/// that it disabled again, whatever the record says by then, and returns 0. A message of more than 65,536 bytes is
/// cut there. `windows` may be null: no owner, no windows.
CORDELBOX_API int32_t CheckID(int32_t* id, int32_t* kind, MessageWindows* windows) noexcept;

/// Checks all ticked files for two of one group with the same ID: Type "2", then fonts. Type "8" is not checked:
/// hosts rely on it. Returns 1 without a clash. Shows the first clash in a message box as CheckID does and returns 0.
CORDELBOX_API int32_t IdsAreValid(MessageWindows* windows) noexcept;

/// The lowest ID from 0 to 32767 that is free among the fonts (`kind` 0) or the Type "2" files (any other
/// `kind`), or -1. As soon as one ID was found taken, an ID of a file of any Type counts as taken for the rest of
/// the search: hosts rely on it.
CORDELBOX_API int32_t GetValidID(int32_t kind) noexcept;

/// The lowest free slot, 1 or more, for an ICM profile of `kind` 0, 2 or 3 (slots in "IDArray" of "RGBSource",
/// "PrinterProfile", "LinkedProfile"), or 0 when there is none or for another kind.
CORDELBOX_API int32_t GetAvailICMID(uint32_t kind) noexcept;

// Stored jobs ---------------------------------------------------------------------------------------------

/// Adds a job to "Jobs", not ticked, unless an equal one is there. Saves. Null does nothing at all.
/// Always returns 1.
CORDELBOX_API uint32_t WriteJobList(const JobRecord* job) noexcept;

/// All jobs of "Jobs", in document order, as an array to be released with DelJobList; null when there are none.
/// `count` receives their number, and may be null. Attributes are taken by position, as WriteJobList writes
/// them. A value that does not fit its field stops the process.
CORDELBOX_API JobRecord* GetJobs(int32_t* count) noexcept;

/// Releases an array of GetJobs. Null is ignored.
CORDELBOX_API void DelJobList(JobRecord* jobs) noexcept;

#ifndef _WIN32
// Supplied by the host -------------------------------------------------------------------------------------
//
// A host with a user interface defines these two and exports them from its executable (link with -rdynamic). A
// host without them gets the caption and the text of a message on standard error, and no window is disabled.

/// Shows a modal message box and returns when it is closed; the result is ignored. `flags` is 0x10: an OK button
/// and the error icon.
int MessageBoxA(WindowHandle owner, const char* text, const char* caption, unsigned int flags);

/// Disables (`enable` 0) or enables a window; the result is ignored.
int EnableWindow(WindowHandle window, int enable);
#endif

} // extern "C"

#ifdef __clang__
#pragma clang diagnostic pop
#endif

#endif
