// Random bytes and special characters as values, through the exports: what was saved always opens again, and each value
// reads back as it was stored, or was refused as a whole.

#include "cordelbox.h"
#include "reference_text.h"
#include "scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const char* const kSpecial[] = {"<",
                                ">",
                                "&",
                                "\"",
                                "'",
                                "]]>",
                                "-->",
                                "?>",
                                "<!--",
                                "<![CDATA[",
                                "&amp;",
                                "&#0;",
                                "%s%n",
                                "\\",
                                "/",
                                "\t",
                                "\n",
                                "\r",
                                "\r\n",
                                " ",
                                "  ",
                                "\x01",
                                "\x0B",
                                "\x1F",
                                "\x7F",
                                "\xC2\x80",
                                "\xC2\x85",
                                "\xE2\x80\xA8",
                                "\xEF\xBB\xBF",
                                "\xEF\xBF\xBD",
                                "\xEF\xBF\xBE",
                                "\xEF\xBF\xBF",
                                "\xED\xA0\x80",
                                "\xF0\x9F\x96\xA8",
                                "\xF4\x8F\xBF\xBF",
                                "\xC0\x80",
                                "\xFF",
                                "\xFE\xFF",
                                "\xE2\x82",
                                "a",
                                "0",
                                "\xC3\xA4"};

class CValues {
public:
    explicit CValues(unsigned seed) : m_random(seed) {}

    /// Either bytes of any kind, or special texts one after the other; at most `size` bytes.
    std::string Next(std::size_t size) {
        std::string value;
        const std::size_t parts = m_random() % 6;
        for (std::size_t part = 0; part < parts; ++part) {
            if (m_random() % 4 == 0) {
                value += static_cast<char>(1 + m_random() % 255);
            } else {
                value += kSpecial[m_random() % std::size(kSpecial)];
            }
        }
        return value.substr(0, size);
    }

private:
    std::mt19937 m_random;
};

/// What a value becomes in the document; `bRefused` when it cannot stand there.
std::string Stored(const std::string& value, bool& bRefused) {
    std::string text = ReferenceText(value);
    bRefused = !IsDocumentText(text);
    return text;
}

AnsiString Text(const std::string& text) { return AnsiString(text.data(), text.size()); }

template <std::size_t size>
void Fill(char (&field)[size], const std::string& value) {
    ASSERT_LT(value.size(), size);
    std::memcpy(field, value.c_str(), value.size() + 1);
}

} // namespace

class Values : public ::testing::Test {
protected:
    Values() {
        ::setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
        fs::create_directories(m_copy.parent_path());
        sem_init(&m_semaphore, 0, 1);
        m_owner.semaphore = &m_semaphore;
    }
    ~Values() override {
        ReleaseAll();
        sem_destroy(&m_semaphore);
    }

    void Begin() {
        std::ofstream(m_copy, std::ios::trunc) << "<r><One><i V=\"before\"/></One><Two><i V=\"\"/></Two><List/><Files/>"
                                                  "<Jobs/><SendProject/><Storage/><CurrentDisk/><DefaultDisk/></r>";
        GetXmlObj(&m_owner, "none");
        ASSERT_EQ(Read("One", "V"), "before");
    }
    /// Opens anew what was saved.
    void Reopen() {
        ReleaseAll();
        GetXmlObj(&m_owner, "none");
    }
    void End() {
        ReleaseAll();
        ASSERT_EQ(m_owner.head, nullptr);
    }

    static std::string Read(const char* element, const char* attribute) {
        return GetAttrValue(element, attribute).c_str();
    }

    PoolOwner m_owner{};

private:
    sem_t m_semaphore{};
    const CScratchFolder m_folder;
    const fs::path m_copy = m_folder.Path() / "Marvane" / "Hollivet" / "Cordelbox" / "xml" / "Cordelbox.xml";
};

TEST_F(Values, OfOneAttributeReadBackOrAreRefused) {
    CValues values(1);
    Begin();
    std::string before = "before";
    int refused = 0;
    for (int round = 0; round < 1500; ++round) {
        const std::string value = values.Next(1000);
        bool bRefused = false;
        const std::string stored = Stored(value, bRefused);
        refused += bRefused ? 1 : 0;
        WriteAttr("One", "V", Text(value));
        before = bRefused ? before : stored;
        ASSERT_EQ(Read("One", "V"), before);
        if (round % 3 == 0) {
            Reopen();
            ASSERT_EQ(Read("One", "V"), before) << "after it was saved and loaded";
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_LT(refused, 1000);
    End();
}

TEST_F(Values, OfEverySingleByteReadBackOrAreRefused) {
    Begin();
    std::string before = "before";
    for (int byte = 1; byte < 256; ++byte) {
        const std::string value = std::string("a") + static_cast<char>(byte) + "z";
        bool bRefused = false;
        const std::string stored = Stored(value, bRefused);
        WriteAttr("One", "V", Text(value));
        before = bRefused ? before : stored;
        Reopen();
        ASSERT_EQ(Read("One", "V"), before) << byte;
    }
    End();
}

TEST_F(Values, OfItemsReadBackOrAreRefusedAsAWhole) {
    CValues values(2);
    Begin();
    std::vector<std::pair<std::string, std::string>> written;
    for (int round = 0; round < 600; ++round) {
        const std::string id = std::to_string(round);
        const std::string value = values.Next(1000);
        bool bRefused = false;
        const std::string stored = Stored(value, bRefused);
        WriteTestFileName("List", Text(id), Text(value));
        if (!bRefused) {
            written.emplace_back(id, stored);
        }
    }
    Reopen();
    for (int round = 0; round < 600; ++round) {
        const std::string id = std::to_string(round);
        const auto found =
            std::find_if(written.begin(), written.end(), [&](const auto& row) { return row.first == id; });
        // A miss gives back the filter's value.
        const std::string expected = found != written.end() ? found->second : id;
        ASSERT_EQ(GetAttrValue1("List", "ID", Text(id), "Value"), Text(expected)) << id;
    }
    End();
}

TEST_F(Values, OfFileRowsReadBackOrTheRowIsRefused) {
    CValues values(3);
    Begin();
    for (int round = 0; round < 300; ++round) {
        FileItem file{};
        TrueTypeDetail detail{};
        file.detail = &detail;
        const std::string id = std::to_string(round);
        Fill(file.FileID, id);
        Fill(file.Type, "5");
        const std::string path = values.Next(60);
        const std::string name = values.Next(60);
        Fill(file.LocalPath, path);
        Fill(detail.fontFamilyName, name);
        bool bPathRefused = false;
        bool bNameRefused = false;
        const std::string storedPath = Stored(path, bPathRefused);
        const std::string storedName = Stored(name, bNameRefused);
        ASSERT_EQ(WritePrjFile(&file), 1u);
        if (round % 10 == 0) {
            Reopen();
        }
        const bool bRefused = bPathRefused || bNameRefused;
        ASSERT_EQ(GetAttrValue1("Files", "FileID", Text(id), "LocalPath"), Text(bRefused ? id : storedPath));
        ASSERT_EQ(GetAttrValue1("Files", "FileID", Text(id), "FontFamilyName"), Text(bRefused ? id : storedName));
        if (!bRefused) {
            ASSERT_EQ(IsPathConflict(Text(path)), 1u) << "the bytes as the host gave them find what they became";
        }
    }
    End();
}

TEST_F(Values, OfJobsReadBackOrTheJobIsRefused) {
    CValues values(4);
    Begin();
    std::vector<std::string> names;
    for (int round = 0; round < 200; ++round) {
        JobRecord job{};
        const std::string name = values.Next(30);
        Fill(job.name, name);
        Fill(job.id, std::to_string(round));
        bool bRefused = false;
        const std::string stored = Stored(name, bRefused);
        WriteJobList(&job);
        if (!bRefused) {
            names.push_back(stored);
        }
    }
    Reopen();
    int32_t count = 0;
    JobRecord* const jobs = GetJobs(&count);
    ASSERT_EQ(static_cast<std::size_t>(count), names.size());
    for (std::size_t index = 0; index < names.size(); ++index) {
        EXPECT_EQ(jobs[index].name, names[index]);
    }
    DelJobList(jobs);
    End();
}

TEST_F(Values, OfSendRecordsAndPartitionsLeaveADocumentThatLoads) {
    CValues values(5);
    Begin();
    for (int round = 0; round < 200; ++round) {
        const SendSpaceRecord record{Text(values.Next(100)), Text(values.Next(100)), Text(values.Next(100)),
                                     Text(values.Next(100))};
        WriteFreeVolume(&record, 1);
        const std::string name = values.Next(100);
        const PartitionRecord partition{round, name.c_str(), round * 1024, round};
        WritePartition(&partition, 1);
        if (round % 5 == 0) {
            Reopen();
            ASSERT_EQ(Read("One", "V"), "before") << "the document does not load any more";
            bool bRefused = false;
            const std::string stored = Stored(name, bRefused);
            if (!bRefused) {
                ASSERT_EQ(GetAttrValue1("DefaultDisk", "Image", Text(std::to_string(round)), "Partition"),
                          Text(stored));
            }
        }
    }
    End();
}

TEST_F(Values, AsNamesOfElementsAndAttributesDoNoHarm) {
    CValues values(6);
    Begin();
    for (int round = 0; round < 300; ++round) {
        const std::string name = values.Next(100);
        WriteAttr(Text(name), "V", "x");
        WriteAttr("One", Text(name), "x");
        WriteTestFileName(Text(name), "1", "2");
        DelAllElem(Text(name));
        CopyProperty(name.c_str(), "Three", "V");
        CopyElement("One", name.c_str(), "V");
        GetAttrValue1(Text(name), Text(name), Text(name), Text(name));
    }
    Reopen();
    EXPECT_EQ(Read("One", "V"), "before");
    EXPECT_EQ(Read("Two", "V"), "");
    End();
}

TEST_F(Values, CopiedFromOneContainerToAnotherAreTheSame) {
    CValues values(7);
    Begin();
    for (int round = 0; round < 300; ++round) {
        WriteAttr("One", "V", Text(values.Next(200)));
        CopyProperty("One", "Two", "V");
        ASSERT_EQ(Read("Two", "V"), Read("One", "V"));
    }
    Reopen();
    EXPECT_EQ(Read("Two", "V"), Read("One", "V"));
    End();
}
