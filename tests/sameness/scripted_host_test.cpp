// A host that does what a script tells it, and writes down what came of it: the same script for every target, so that
// what they do can be compared.
//
// A script is made of lines, each a command and its arguments between tabs, with "%" and two digits for a byte that
// would be in the way. Every command writes one line of results in the same form:
//
//     main XML, strings XML, printer XML    installs a document, for the first and the last with a per-user copy
//     open, openprinter, close              GetXmlObj, GetPrinterXmlObj; gives back whatever is open
//     saved, savedprinter                   the bytes of the per-user copy
//     NAME ARGUMENT...                      calls the exported function

#include "host_test.h"
#include "host_text.h"
#include "message_watch.h"
#include "record_fields.h"

#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>

namespace {

using Fields = std::vector<std::string>;

constexpr const char* kPrinter = "Printer.xml";

Fields ReadFields(const std::string& line) {
    Fields fields(1);
    for (std::size_t position = 0; position < line.size(); ++position) {
        if (line[position] == '\t') {
            fields.emplace_back();
        } else if (line[position] == '%') {
            fields.back() += static_cast<char>(std::stoi(line.substr(position + 1, 2), nullptr, 16));
            position += 2;
        } else {
            fields.back() += line[position];
        }
    }
    return fields;
}

std::string WriteFields(const Fields& fields) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string line;
    for (const std::string& field : fields) {
        line += line.empty() ? "" : "\t";
        for (const char character : field) {
            const auto byte = static_cast<unsigned char>(character);
            if (byte < 0x20 || byte == '%') {
                line += std::string{'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
            } else {
                line += character;
            }
        }
    }
    return line;
}

std::string Text(const AnsiString& text) { return ToUtf8(text.c_str()); }

template <std::size_t size>
std::string Text(const char (&field)[size]) {
    return ToUtf8(field);
}

/// The arguments of a call, taken one after the other.
class CArguments {
public:
    explicit CArguments(const Fields& fields) : m_fields(fields) {}

    std::string Next() { return m_nNext < m_fields.size() ? FromUtf8(m_fields[m_nNext++]) : std::string(); }
    AnsiString NextText() { return Next().c_str(); }
    long long NextNumber() { return std::stoll(Next()); }
    bool AtEnd() const noexcept { return m_nNext >= m_fields.size(); }

    template <std::size_t size>
    void NextField(char (&field)[size]) {
        SetField(field, Next());
    }

private:
    const Fields& m_fields;
    std::size_t m_nNext = 1;
};

Fields CallGetFiles(CArguments&) {
    FileItem first{};
    Fields results{std::to_string(GetFiles(&first))};
    const int nItems = std::stoi(results[0]);
    const FileItem* item = &first;
    for (int i = 0; i < nItems; ++i, item = item->next) {
        results.insert(results.end(), {Text(item->FileID), Text(item->Component), Text(item->ID), Text(item->Type),
                                       Text(item->Volume), Text(item->Path), Text(item->LocalPath)});
    }
    if (nItems > 0) {
        FileItem link{};
        for (FileItem* next = first.next; next != nullptr;) {
            link.next = next;
            next = next->next;
            FreeFileItem(&link);
        }
    }
    return results;
}

Fields CallGetJobs(CArguments&) {
    int32_t count = -1;
    JobRecord* const jobs = GetJobs(&count);
    Fields results{std::to_string(count)};
    for (int32_t i = 0; i < count; ++i) {
        results.insert(results.end(), {Text(jobs[i].id), Text(jobs[i].name), Text(jobs[i].type), Text(jobs[i].copies),
                                       Text(jobs[i].stored), Text(jobs[i].checked)});
    }
    DelJobList(jobs);
    return results;
}

Fields CallGetFilter(CArguments& arguments) {
    std::vector<char> buffer(1 << 16, 'x');
    GetFilter(arguments.NextText(), buffer.data(), static_cast<uint32_t>(buffer.size()));
    Fields results;
    const char* text = buffer.data();
    for (; *text != '\0'; text += results.back().size() + 1) {
        results.push_back(text);
    }
    for (std::string& result : results) {
        result = ToUtf8(result);
    }
    results.insert(results.begin(), std::to_string(results.size()));
    return results;
}

Fields CallReadPCLFilter(CArguments&) {
    int32_t settings[28];
    Fields results{std::to_string(ReadPCLFilter(settings))};
    for (const int32_t setting : settings) {
        results.push_back(std::to_string(setting));
    }
    return results;
}

Fields CallCheckID(CArguments&) {
    int32_t id = -77;
    int32_t kind = -77;
    const CMessageWatch watch;
    Fields results{std::to_string(CheckID(&id, &kind, nullptr)), std::to_string(id), std::to_string(kind)};
    for (const SeenMessage& message : watch.Messages()) {
        results.insert(results.end(), {ToUtf8(message.text), ToUtf8(message.caption)});
    }
    return results;
}

Fields CallIdsAreValid(CArguments&) {
    const CMessageWatch watch;
    Fields results{std::to_string(IdsAreValid(nullptr))};
    for (const SeenMessage& message : watch.Messages()) {
        results.insert(results.end(), {ToUtf8(message.text), ToUtf8(message.caption)});
    }
    return results;
}

Fields CallPrinterInfoProc(CArguments& arguments) {
    VolumeRecord volumes[3]{};
    StorageRecord storage{};
    arguments.NextField(storage.name);
    storage.volumes = volumes;
    for (; !arguments.AtEnd() && storage.volumeCount < 3; ++storage.volumeCount) {
        VolumeRecord& volume = volumes[storage.volumeCount];
        arguments.NextField(volume.volume);
        arguments.NextField(volume.freeSpace);
        arguments.NextField(volume.label);
    }
    const PrinterInfo info{&storage, 1};
    return {std::to_string(PrinterInfoProc(&info))};
}

Fields CallWriteFreeVolume(CArguments& arguments) {
    std::vector<SendSpaceRecord> records;
    while (!arguments.AtEnd()) {
        SendSpaceRecord record;
        record.volume = arguments.NextText();
        record.freeSpace = arguments.NextText();
        records.push_back(record);
    }
    return {std::to_string(WriteFreeVolume(records.data(), static_cast<int64_t>(records.size())))};
}

Fields CallWritePartition(CArguments& arguments) {
    PartitionRecord partition{};
    const std::string name = arguments.Next();
    partition.name = name.c_str();
    partition.image = static_cast<int32_t>(arguments.NextNumber());
    partition.size = arguments.NextNumber();
    partition.percent = static_cast<int32_t>(arguments.NextNumber());
    WritePartition(&partition, static_cast<uint32_t>(arguments.NextNumber()));
    return {};
}

Fields CallWritePrjFile(CArguments& arguments) {
    FileItem file{};
    arguments.NextField(file.FileID);
    arguments.NextField(file.ID);
    arguments.NextField(file.Type);
    arguments.NextField(file.LocalPath);
    TrueTypeDetail font{};
    BitmapFontDetail bitmap{};
    IcmProfileDetail profile{};
    arguments.NextField(font.fontFamilyName);
    SetField(bitmap.bitMapFontName, font.fontFamilyName);
    SetField(profile.description, font.fontFamilyName);
    SetField(profile.profileType, "2");
    const std::string type = file.Type;
    file.detail = type == "5"   ? static_cast<const void*>(&font)
                  : type == "1" ? static_cast<const void*>(&bitmap)
                                : &profile;
    return {std::to_string(WritePrjFile(&file))};
}

Fields CallWriteJobList(CArguments& arguments) {
    JobRecord job{};
    arguments.NextField(job.id);
    arguments.NextField(job.name);
    arguments.NextField(job.stored);
    return {std::to_string(WriteJobList(&job))};
}

using Call = std::function<Fields(CArguments&)>;

template <class Result>
Fields Number(Result result) {
    return {std::to_string(result)};
}

// Arguments are taken one statement each: their order within a call is the compiler's.
const std::map<std::string, Call>& Calls() {
    static const std::map<std::string, Call> s_calls = {
        {"GetAttrValue",
         [](CArguments& arguments) {
             const AnsiString element = arguments.NextText();
             return Fields{Text(GetAttrValue(element, arguments.NextText()))};
         }},
        {"GetAttrValue1",
         [](CArguments& arguments) {
             const AnsiString element = arguments.NextText();
             const AnsiString name = arguments.NextText();
             const AnsiString value = arguments.NextText();
             return Fields{Text(GetAttrValue1(element, name, value, arguments.NextText()))};
         }},
        {"GetXMLString",
         [](CArguments& arguments) {
             const AnsiString element = arguments.NextText();
             return Fields{Text(GetXMLString(element, arguments.NextText()))};
         }},
        {"GetXMLString1",
         [](CArguments& arguments) {
             const AnsiString element = arguments.NextText();
             const AnsiString name = arguments.NextText();
             const AnsiString value = arguments.NextText();
             return Fields{Text(GetXMLString1(element, name, value, arguments.NextText()))};
         }},
        {"WriteAttr",
         [](CArguments& arguments) {
             const AnsiString element = arguments.NextText();
             const AnsiString name = arguments.NextText();
             return Number(WriteAttr(element, name, arguments.NextText()));
         }},
        {"DelAllElem", [](CArguments& arguments) { return Number(DelAllElem(arguments.NextText())); }},
        {"CopyProperty",
         [](CArguments& arguments) {
             const std::string source = arguments.Next();
             const std::string target = arguments.Next();
             return Number(CopyProperty(source.c_str(), target.c_str(), arguments.Next().c_str()));
         }},
        {"CopyElement",
         [](CArguments& arguments) {
             const std::string source = arguments.Next();
             const std::string target = arguments.Next();
             return Number(CopyElement(source.c_str(), target.c_str(), arguments.Next().c_str()));
         }},
        {"PrinterInfoProc", CallPrinterInfoProc},
        {"WriteFreeVolume", CallWriteFreeVolume},
        {"WritePartition", CallWritePartition},
        {"GetDiskPercent", [](CArguments&) { return Fields{Text(GetDiskPercent())}; }},
        {"CopyPatition",
         [](CArguments& arguments) {
             CopyPatition(static_cast<int32_t>(arguments.NextNumber()));
             return Fields{};
         }},
        {"GetFiles", CallGetFiles},
        {"GetFilter", CallGetFilter},
        {"IsPathConflict", [](CArguments& arguments) { return Number(IsPathConflict(arguments.NextText())); }},
        {"WritePrjFile", CallWritePrjFile},
        {"WriteTestFileName",
         [](CArguments& arguments) {
             const AnsiString element = arguments.NextText();
             const AnsiString id = arguments.NextText();
             WriteTestFileName(element, id, arguments.NextText());
             return Fields{};
         }},
        {"ReadPCLFilter", CallReadPCLFilter},
        {"CheckID", CallCheckID},
        {"IdsAreValid", CallIdsAreValid},
        {"GetValidID",
         [](CArguments& arguments) { return Number(GetValidID(static_cast<int32_t>(arguments.NextNumber()))); }},
        {"GetAvailICMID",
         [](CArguments& arguments) { return Number(GetAvailICMID(static_cast<uint32_t>(arguments.NextNumber()))); }},
        {"WriteJobList", CallWriteJobList},
        {"GetJobs", CallGetJobs},
        {"ReleaseXmlObj", [](CArguments& arguments) { return Number(ReleaseXmlObj(arguments.Next().c_str())); }},
    };
    return s_calls;
}

} // namespace

class ScriptedHost : public HostTest {
protected:
    Fields Do(const Fields& fields) {
        const std::string& command = fields.at(0);
        if (command == "main") {
            InstallMain(fields.at(1));
            CopyMainForUser(fields.at(1));
            return {};
        }
        if (command == "printer") {
            InstallPrinter(kPrinter, fields.at(1));
            CopyPrinterForUser(kPrinter, fields.at(1));
            return {};
        }
        if (command == "strings") {
            InstallStrings("English", fields.at(1));
            return {};
        }
        if (command == "open") {
            return {Open() != nullptr ? "strings" : "none", m_owner.head != nullptr ? "some" : "none"};
        }
        if (command == "openprinter") {
            return {OpenPrinter(kPrinter) != nullptr ? "open" : "none"};
        }
        if (command == "close") {
            CloseAll();
            return {};
        }
        if (command == "saved") {
            return {UserMainText()};
        }
        if (command == "savedprinter") {
            return {UserPrinterText(kPrinter)};
        }
        CArguments arguments(fields);
        return Calls().at(command)(arguments);
    }
};

TEST_F(ScriptedHost, DoesWhatTheScriptTells) {
    const char* const script = std::getenv("CORDELBOX_SCRIPT");
    const char* const results = std::getenv("CORDELBOX_RESULTS");
    if (script == nullptr || results == nullptr) {
        GTEST_SKIP() << "no script: see compare_targets";
    }
    std::ifstream lines(script, std::ios::binary);
    std::ofstream output(results, std::ios::binary);
    ASSERT_TRUE(lines && output);
    for (std::string line; std::getline(lines, line);) {
        Fields fields = Do(ReadFields(line));
        fields.insert(fields.begin(), line.substr(0, line.find('\t')));
        output << WriteFields(fields) << '\n';
    }
}
