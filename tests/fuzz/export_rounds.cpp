#include "export_rounds.h"

#include "cordelbox.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <vector>

namespace {

/// Containers that the library itself knows, and some names besides.
const char* const kContainers[] = {
    "Files",        "Jobs",         "Storage",       "SendProject",       "CurrentDisk", "DefaultDisk",
    "CurrentFlash", "DefaultFlash", "Property",      "PCLCurrentSetting", "RGBSource",   "Item",
    "Main",         "StringTable",  "ProjectFilter", "LinkedProfile",     "a",           "b"};
const char* const kAttributes[] = {"FileID", "ID", "Type", "checked", "LocalPath", "Partition", "Percent", "Name", "a"};

AnsiString Text(const std::string& text) { return AnsiString(text.data(), text.size()); }

std::size_t LongestValue(CXmlObject* document, const char* container) {
    CXmlQuery query(container, {});
    ListAllAttributes(document, &query);
    std::size_t longest = 0;
    for (const CXmlAttribute::Pair* pair = query.m_attrs.Head(); pair != nullptr; pair = pair->next) {
        longest = std::max(longest, pair->value.size());
    }
    return longest;
}

/// True when no template that could be used makes a message that is too long: without numbers in it, no width either.
bool MessagesFit() {
    const AnsiString text = GetXMLString("StringTable", "DuplicateID_EditingFile_SendingProject");
    const std::size_t names =
        LongestValue(State().stringsDocument, "StringTable") + LongestValue(State().stringsDocument, "ProjectFilter");
    return std::strpbrk(text.c_str(), "0123456789") == nullptr && text.size() + 2 * names + 24 < 260;
}

void ReadFiles() {
    if (LongestValue(State().currentDocument, "Files") < 256) {
        FileItem first{};
        if (GetFiles(&first) > 0) {
            FileItem link{};
            for (FileItem* next = first.next; next != nullptr;) {
                link.next = next;
                next = next->next;
                FreeFileItem(&link);
            }
        }
    }
    constexpr std::size_t kNarrowestJobField = sizeof(JobRecord::checked);
    if (LongestValue(State().currentDocument, "Jobs") < kNarrowestJobField) {
        int32_t count = 0;
        DelJobList(GetJobs(&count));
    }
}

void ReadFilter(const char* container) {
    CXmlQuery query(container, {});
    ListAllAttributes(State().stringsDocument, &query);
    std::size_t size = 1;
    for (const CXmlAttribute::Pair* pair = query.m_attrs.Head(); pair != nullptr; pair = pair->next) {
        size += pair->value.size() + 1;
    }
    std::vector<char> buffer(size, 'x');
    GetFilter(container, buffer.data(), static_cast<uint32_t>(size));
}

template <std::size_t size>
void Fill(char (&field)[size], const std::string& value) {
    const std::size_t length = std::min(value.size(), size - 1);
    std::memcpy(field, value.data(), length);
    field[length] = '\0';
}

void WriteRecords(const std::string& value) {
    TrueTypeDetail font{};
    Fill(font.copyright, value);
    FileItem file{};
    file.detail = &font;
    Fill(file.FileID, value);
    Fill(file.ID, value);
    Fill(file.Type, "5");
    WritePrjFile(&file);
    JobRecord job{};
    Fill(job.id, value);
    Fill(job.name, value);
    WriteJobList(&job);
    VolumeRecord volume{};
    Fill(volume.label, value);
    StorageRecord storage{};
    storage.volumes = &volume;
    storage.volumeCount = 1;
    Fill(storage.name, value);
    const PrinterInfo info{&storage, 1};
    PrinterInfoProc(&info);
    const SendSpaceRecord record{Text(value), "1", "2", "3"};
    WriteFreeVolume(&record, 1);
    const std::string name = value.c_str();
    const PartitionRecord partition{1, name.c_str(), 2048, 50};
    WritePartition(&partition, 0);
    WritePartition(&partition, 1);
}

} // namespace

// A host without a user interface would print every message.
extern "C" int MessageBoxA(WindowHandle, const char*, const char*, unsigned int) { return 0; }
extern "C" int EnableWindow(WindowHandle, int) { return 0; }

void CallReaders(const std::string& name, const std::string& value) {
    // Every container with some attributes: with all of them most of the time would go here.
    std::size_t turn = 0;
    for (const char* const container : kContainers) {
        const char* const attribute = kAttributes[turn++ % std::size(kAttributes)];
        GetAttrValue(container, attribute);
        GetAttrValue1(container, attribute, Text(value), Text(name));
        GetXMLString(container, attribute);
        GetXMLString1(container, attribute, Text(value), Text(name));
        ReadFilter(container);
    }
    GetAttrValue(Text(name), Text(value));
    ReadFiles();
    GetDiskPercent();
    IsPathConflict(Text(value));
    std::array<int32_t, 28> settings{};
    ReadPCLFilter(settings.data());
    int32_t id = 0;
    int32_t kind = 0;
    CheckID(&id, &kind, nullptr);
    if (MessagesFit()) {
        IdsAreValid(nullptr);
    }
    GetValidID(0);
    GetValidID(1);
    for (uint32_t profile = 0; profile < 5; ++profile) {
        GetAvailICMID(profile);
    }
}

void CallWriters(const std::string& name, const std::string& value) {
    for (const char* const container : {"Files", "Jobs", "a", "Item"}) {
        WriteAttr(container, Text(name), Text(value));
        WriteTestFileName(container, Text(value), Text(name));
        CopyProperty(container, "b", "a");
        CopyElement(container, "b", "a");
    }
    WriteRecords(value);
    WriteTestFileName(Text(name), "1", Text(value));
    CopyPatition(0);
    CopyPatition(1);
    DelAllElem(Text(name));
    DelAllElem("Item");
}
