// Random bytes and special characters in every field of the records that are added to a document: each record lies on
// disk and reads back as it was stored, in its order, or was refused as a whole.

#include "host_test.h"
#include "random_values.h"
#include "record_fields.h"
#include "stored_text.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace {

// A byte may become three on its way to a record of the library's, whose fields are not to overflow.
constexpr std::size_t kGrowth = 3;

/// Puts a value into a record for the library, and into the one that is expected.
template <std::size_t size>
void Put(char (&field)[size], Record& record, const char* name, const std::string& value) {
    SetField(field, value);
    record.emplace_back(name, value);
}

/// A record that a host handed in, as bytes. One of its attributes finds it again: no other has such a value.
struct Given {
    Record record;
    std::string key;
};

std::string KeyOf(const Given& given) {
    for (const auto& [name, value] : given.record) {
        if (name == given.key) {
            return value;
        }
    }
    return {};
}

/// The record as it stands in the document, or as it reads back; none when it is refused.
std::optional<Record> Stored(const Record& given, std::string StoredText::*text) {
    Record record;
    for (const auto& [name, value] : given) {
        const std::optional<StoredText> stored = StoreText(value);
        if (!stored) {
            return std::nullopt;
        }
        record.emplace_back(name, (*stored).*text);
    }
    return record;
}

} // namespace

class RecordValues : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        CopyMainForUser(Document("<List/><Files/><Jobs/><SendProject/><Storage/><CurrentDisk/><DefaultDisk/>"
                                 "<CurrentFlash/><DefaultFlash/><Other><Item V=\"loaded\"/></Other>"));
        Open();
    }

    /// Opens anew what was saved.
    void Reopen() {
        CloseAll();
        Open();
        ASSERT_EQ(GetAttrValue("Other", "V"), "loaded") << "the document does not load any more";
    }

    /// The text with a number before it that no other value of the test has.
    std::string Unique(const std::string& text) { return std::to_string(m_nLast++) + '|' + text; }

    void Note(const Record& record, const char* key) { m_given.push_back({record, key}); }

    /// The records that were noted and are not refused.
    Records Expected(std::string StoredText::*text) const {
        Records records;
        for (const Given& given : m_given) {
            if (const std::optional<Record> stored = Stored(given.record, text)) {
                records.push_back(*stored);
            }
        }
        return records;
    }

    /// Whether the container on disk holds the noted records, all that are not refused and nothing else, and whether
    /// they read back when it is opened anew.
    void ExpectNotedIn(const char* container) {
        const Records expected = Expected(&StoredText::inDocument);
        const Records saved = SavedItems(container);
        ASSERT_EQ(saved.size(), expected.size());
        for (std::size_t index = 0; index < saved.size(); ++index) {
            ASSERT_EQ(saved[index], expected[index]) << container << " " << index;
        }
        Reopen();
        for (const Given& given : m_given) {
            const std::string key = KeyOf(given);
            const std::optional<Record> stored = Stored(given.record, &StoredText::readBack);
            for (std::size_t index = 0; index < given.record.size(); ++index) {
                // A miss gives back the filter's value.
                const std::string& value = stored ? (*stored)[index].second : key;
                ASSERT_EQ(GetAttrValue1(container, given.key.c_str(), Text(key), given.record[index].first.c_str()),
                          Text(value))
                    << container << " " << key;
            }
        }
    }

    /// Whether the test saw enough of both.
    void ExpectSomeRefused() const {
        const std::size_t written = Expected(&StoredText::readBack).size();
        EXPECT_GT(written, m_given.size() / 3);
        EXPECT_LT(written, m_given.size());
    }

    std::vector<Given> m_given;

private:
    int m_nLast = 0;
};

TEST_F(RecordValues, OfTestFileNames) {
    CRandomValues values(2);
    for (int round = 0; round < 300; ++round) {
        const std::string id = Unique(values.Field(200));
        const std::string value = values.Any(1000);
        WriteTestFileName("List", Text(id), Text(value));
        Note({{"ID", id}, {"Value", value}}, "ID");
    }
    ExpectNotedIn("List");
    ExpectSomeRefused();
}

TEST_F(RecordValues, OfJobs) {
    CRandomValues values(4);
    for (int round = 0; round < 100; ++round) {
        JobRecord job{};
        Record record;
        Put(job.name, record, "Name", values.Field((sizeof job.name - 1) / kGrowth));
        Put(job.id, record, "ID", Unique(values.Field(2)));
        Put(job.type, record, "Type", values.Field((sizeof job.type - 1) / kGrowth));
        Put(job.copies, record, "Copies", values.Field((sizeof job.copies - 1) / kGrowth));
        Put(job.stored, record, "Stored", values.Field((sizeof job.stored - 1) / kGrowth));
        SetField(job.checked, values.Any(sizeof job.checked - 1)); // is ignored
        record.emplace_back("checked", "0");
        WriteJobList(&job);
        Note(record, "ID");
    }
    ExpectNotedIn("Jobs");
    ExpectSomeRefused();

    int32_t count = 0;
    JobRecord* const jobs = GetJobs(&count);
    Records read;
    for (int32_t index = 0; index < count; ++index) {
        const JobRecord& job = jobs[index];
        read.push_back({{"Name", job.name},
                        {"ID", job.id},
                        {"Type", job.type},
                        {"Copies", job.copies},
                        {"Stored", job.stored},
                        {"checked", job.checked}});
    }
    DelJobList(jobs);
    EXPECT_EQ(read, Expected(&StoredText::readBack));
}

TEST_F(RecordValues, OfStorageDevices) {
    CRandomValues values(11);
    for (int round = 0; round < 50; ++round) {
        StorageRecord storage{};
        std::vector<VolumeRecord> volumes(1 + static_cast<std::size_t>(round) % 3);
        SetField(storage.name, values.Field(sizeof storage.name - 1));
        storage.volumes = volumes.data();
        storage.volumeCount = static_cast<uint32_t>(volumes.size());
        for (VolumeRecord& volume : volumes) {
            Record record;
            if (&volume == volumes.data()) {
                record.emplace_back("VolumeNum", std::to_string(volumes.size()));
            }
            record.emplace_back("StorageName", storage.name);
            Put(volume.volume, record, "Volume", Unique(values.Field(200)));
            Put(volume.totalSpace, record, "TotalSpace", values.Field(sizeof volume.totalSpace - 1));
            Put(volume.freeSpace, record, "FreeSpace", values.Field(sizeof volume.freeSpace - 1));
            Put(volume.location, record, "Location", values.Field(sizeof volume.location - 1));
            Put(volume.label, record, "Label", values.Field(sizeof volume.label - 1));
            Put(volume.status, record, "Status", values.Field(sizeof volume.status - 1));
            Note(record, "Volume");
        }
        const PrinterInfo info{&storage, 1};
        PrinterInfoProc(&info);
    }
    ExpectNotedIn("Storage");
    ExpectSomeRefused();
}

TEST_F(RecordValues, OfVolumesThatAreSentTo) {
    CRandomValues values(5);
    for (int round = 0; round < 40; ++round) {
        m_given.clear();
        std::vector<SendSpaceRecord> records;
        for (int volume = 0; volume < 4; ++volume) {
            const Record record{{"Volume", Unique(values.Field(100))},
                                {"FilesSize", values.Field(100)},
                                {"FreeSpace", values.Field(1000)},
                                {"FreeSpaceAfterSend", values.Any(100)}};
            records.push_back(
                {Text(record[0].second), Text(record[1].second), Text(record[2].second), Text(record[3].second)});
            Note(record, "Volume");
        }
        WriteFreeVolume(records.data(), static_cast<int64_t>(records.size()));
        ASSERT_NO_FATAL_FAILURE(ExpectNotedIn("SendProject"));
    }
}

TEST_F(RecordValues, OfPartitions) {
    CRandomValues values(12);
    for (const bool bDisk : {true, false}) {
        m_given.clear();
        for (int round = 0; round < 100; ++round) {
            const std::string name = Unique(values.Any(300));
            const PartitionRecord partition{round, name.c_str(), round * 1024, round};
            WritePartition(&partition, bDisk ? 1 : 0);
            const std::string number = std::to_string(round);
            Record record{{"Image", number}, {"Partition", name}, {"Size", number}};
            if (bDisk) {
                record.emplace_back("Percent", number);
            }
            Note(record, "Partition");
        }
        ASSERT_NO_FATAL_FAILURE(ExpectNotedIn(bDisk ? "CurrentDisk" : "CurrentFlash"));
        ASSERT_NO_FATAL_FAILURE(ExpectNotedIn(bDisk ? "DefaultDisk" : "DefaultFlash"));
        ExpectSomeRefused();
    }
}

class FileValues : public RecordValues {
protected:
    /// A file whose nine own fields are filled, and its ten attributes.
    FileItem NewFile(const std::string& type, Record& record) {
        constexpr std::size_t kLongest = (sizeof FileItem::Size - 1) / kGrowth;
        FileItem file{};
        Put(file.FileID, record, "FileID", Unique(m_values.Field(kLongest - 5)));
        Put(file.Component, record, "Component", m_values.Field(kLongest));
        Put(file.ID, record, "ID", m_values.Field(kLongest));
        Put(file.Type, record, "Type", type);
        Put(file.Volume, record, "Volume", m_values.Field(kLongest));
        Put(file.Path, record, "Path", m_values.Field(kLongest));
        Put(file.LocalPath, record, "LocalPath", m_values.Field(kLongest));
        Put(file.Size, record, "Size", m_values.Field(kLongest));
        Put(file.CreateDate, record, "CreateDate", m_values.Field(kLongest));
        record.emplace_back("checked", "0");
        return file;
    }

    void Write(FileItem& file, const void* detail, const Record& record) {
        file.detail = detail;
        WritePrjFile(&file);
        Note(record, "FileID");
    }

    std::string Detail() { return m_values.Field(255); }

    CRandomValues m_values{3};
};

TEST_F(FileValues, OfAnyType) {
    for (int round = 0; round < 100; ++round) {
        Record record;
        FileItem file = NewFile("x" + m_values.Field(80), record);
        Write(file, nullptr, record);
    }
    ExpectNotedIn("Files");
    ExpectSomeRefused();
}

TEST_F(FileValues, OfTrueTypeFonts) {
    for (int round = 0; round < 100; ++round) {
        Record record;
        FileItem file = NewFile("5", record);
        TrueTypeDetail detail{};
        Put(detail.fontFamilyName, record, "FontFamilyName", Detail());
        Put(detail.trueTypeFontName, record, "TrueTypeTontName", Detail());
        Put(detail.fontStyle, record, "FontStyle", Detail());
        Put(detail.copyright, record, "Copyright", Detail());
        Put(detail.postScriptName, record, "PostScriptName", Detail());
        Put(detail.symbolSet, record, "SymbolSet", Detail());
        Write(file, &detail, record);
    }
    ExpectNotedIn("Files");
    ExpectSomeRefused();
}

TEST_F(FileValues, OfBitmapFonts) {
    for (int round = 0; round < 100; ++round) {
        Record record;
        FileItem file = NewFile("1", record);
        BitmapFontDetail detail{};
        Put(detail.bitMapFontName, record, "BitMapFontName", Detail());
        Put(detail.format, record, "Format", Detail());
        Put(detail.xResolution, record, "Xresolution", Detail());
        Put(detail.yResolution, record, "Yresolution", Detail());
        Put(detail.fontType, record, "FontType", Detail());
        Put(detail.symbolSet, record, "SymbolSet", Detail());
        Put(detail.proportional, record, "Proportional", Detail());
        Put(detail.pitchWidth, record, "PitchWidth", Detail());
        Put(detail.height, record, "Height", Detail());
        Put(detail.style, record, "Style", Detail());
        Put(detail.strokeWeight, record, "StrokeWeight", Detail());
        Put(detail.typeFace, record, "TypeFace", Detail());
        Put(detail.escapeSequence, record, "EscapeSequence", Detail());
        Write(file, &detail, record);
    }
    ExpectNotedIn("Files");
    ExpectSomeRefused();
}

TEST_F(FileValues, OfColourProfiles) {
    for (int round = 0; round < 100; ++round) {
        Record record;
        FileItem file = NewFile("6", record);
        const std::string comment = m_values.Field(2000);
        std::vector<unsigned char> memory(sizeof(IcmProfileDetail) + comment.size());
        IcmProfileDetail& detail = *new (memory.data()) IcmProfileDetail{};
        Put(detail.icmType, record, "ICMType", m_values.Field(sizeof detail.icmType - 1));
        Put(detail.profileType, record, "ProfileType", m_values.Field(sizeof detail.profileType - 1));
        Put(detail.colorSpace, record, "ColorSpace", Detail());
        Put(detail.description, record, "Description", Detail());
        Put(detail.deviceClass, record, "DeviceClass", Detail());
        Put(detail.copyright, record, "Copyright", Detail());
        std::memcpy(memory.data() + offsetof(IcmProfileDetail, comment), comment.c_str(), comment.size() + 1);
        record.emplace_back("Comment", comment);
        Write(file, &detail, record);
    }
    ExpectNotedIn("Files");
    ExpectSomeRefused();
}

TEST_F(FileValues, AreInTheRecordsOfTickedFiles) {
    for (int round = 0; round < 100; ++round) {
        Record record;
        FileItem file = NewFile("2", record);
        Write(file, nullptr, record);
    }
    // A user interface ticks files one by one; here it is all of them.
    std::string xml = UserMainText();
    const std::string unticked = "checked=\"0\"";
    for (std::size_t found = xml.find(unticked); found != std::string::npos; found = xml.find(unticked, found)) {
        xml.replace(found, unticked.size(), "checked=\"1\"");
    }
    CopyMainForUser(xml);
    Reopen();

    FileItem first{};
    const int32_t count = GetFiles(&first);
    const Records expected = Expected(&StoredText::readBack);
    ASSERT_EQ(static_cast<std::size_t>(count), expected.size());
    const FileItem* file = &first;
    for (const Record& record : expected) {
        const Record read{{"FileID", file->FileID},      {"Component", file->Component}, {"ID", file->ID},
                          {"Type", file->Type},          {"Volume", file->Volume},       {"Path", file->Path},
                          {"LocalPath", file->LocalPath}};
        EXPECT_EQ(read, Record(record.begin(), record.begin() + 7));
        EXPECT_EQ(IsPathConflict(file->LocalPath), 1u) << "as it reads back it is found";
        file = file->next;
    }
    for (FileItem link{}, *next = first.next; next != nullptr;) {
        link.next = next;
        next = next->next;
        FreeFileItem(&link);
    }
}
